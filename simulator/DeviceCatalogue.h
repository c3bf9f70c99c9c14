// The devices the built-in BL can simulate, by device key: the words of the
// session data that make the key, and the published identity of the type.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kt500::simulator {

struct DeviceModel {
    std::string key;           // "KT520_7", "KTQ500_PT_6", "KT540_1.0", "PL500_2"
    std::string deviceType;    // the session's deviceType word: "KT520", "KTQ500_PT"
    std::string revision;      // the session's revision: "7", "1.0"
    std::string deviceTypeId;  // the published type identifier
    std::string name;          // the published display name
};

class DeviceCatalogue {
public:
    // Every model of the family.
    [[nodiscard]] static const std::vector<DeviceModel>& models();
    // The model of a key, or nullptr.
    [[nodiscard]] static const DeviceModel* find(std::string_view key);
    // "KT520_4, KT520_5, ..." for messages.
    [[nodiscard]] static std::string keyList();
};

}  // namespace kt500::simulator
