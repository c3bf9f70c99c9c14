// What a session of the built-in BL starts with: the device, the mode, the
// user's role and languages, as the frame would configure them.
#pragma once

#include <string>

namespace kt500::simulator {

struct SessionOptions {
    std::string deviceKey = "KT520_7";
    bool online = true;
    std::string role = "maintenance";
    std::string language = "1033";
    std::string frameLanguage = "1033";
    bool privateDialog = false;
    std::string savePath;
    bool locked = false;
};

// The session data message of these options, in the session data schema's form.
[[nodiscard]] std::string BuildSessionData(const SessionOptions& options,
                                           const std::string& strDeviceType,
                                           const std::string& strRevision);

}  // namespace kt500::simulator
