// Settings doubles: a store in memory whose failures the test sets, and a
// debug output that keeps its lines.
#pragma once

#include "session/ISettingsStore.h"

#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace kt500::testing {

class MemoryStore final : public session::ISettingsStore {
public:
    long openKey(session::RegistryRoot root, const std::string& strKeyPath) override;
    long queryValue(session::RegistryRoot root, const std::string& strKeyPath,
                    const std::string& strValueName, std::string& strValue) override;
    long setValue(session::RegistryRoot root, const std::string& strKeyPath,
                  const std::string& strValueName, int intType,
                  const std::string& strValue) override;

    // A value of the machine root under the product's key ("File Paths", ...).
    void put(const std::string& strSubKey, const std::string& strName, const std::string& strValue);
    [[nodiscard]] std::string get(const std::string& strSubKey, const std::string& strName) const;

    std::map<std::tuple<session::RegistryRoot, std::string, std::string>, std::string> values;
    bool readOnly = false;
    bool openFails = false;
    int writes = 0;
};

class RecordingOutput final : public session::IDebugOutput {
public:
    void write(const std::string& strMessage) override { lines.push_back(strMessage); }
    std::vector<std::string> lines;
};

}  // namespace kt500::testing
