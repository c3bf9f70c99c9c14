#include "session/modRegistry.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace kt500::session {

namespace {

constexpr std::size_t kValueBuffer = 255;

RegistryRoot rootOf(bool blUserRoot) {
    return blUserRoot ? RegistryRoot::CurrentUser : RegistryRoot::LocalMachine;
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

// The numeric value of a "Debug Level" text, or nothing when it is not a
// number that fits a 16-bit level.
std::optional<std::int16_t> debugLevelOf(const std::string& strValue) {
    const std::string text = trimmed(strValue);
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    const double rounded = std::nearbyint(number);
    if (rounded < std::numeric_limits<std::int16_t>::min() ||
        rounded > std::numeric_limits<std::int16_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int16_t>(rounded);
}

}  // namespace

PathDefaults PathDefaults::Windows() {
    return {"C:\\Program Files\\Dovra\\DovraDTM\\Documents\\",
            "C:\\Program Files\\Dovra\\DovraDTM\\Documents\\",
            "C:\\Program Files\\Dovra\\DovraDTM\\", "C:\\Dtm\\"};
}

PathDefaults PathDefaults::UnderShare(const std::string& strShareDir,
                                      const std::string& strSaveDir) {
    std::string share = strShareDir;
    if (!share.empty() && share.back() != '/') {
        share += '/';
    }
    return {share + "guiinit/", share + "schemas/", share, strSaveDir};
}

modRegistry::modRegistry(ISettingsStore& store, IDebugOutput& debugOutput)
    : m_store(store), m_debugOutput(debugOutput) {}

bool modRegistry::GetAppRegValue(const std::string& strValueName, int /*intType*/,
                                 std::string& strValue, bool blLogErrors, bool blUserRoot) {
    const RegistryRoot root = rootOf(blUserRoot);
    const long opened = m_store.openKey(root, m_strKeyPath);
    if (opened != RegSuccess) {
        if (blLogErrors) {
            m_debugOutput.write("GetAppRegValue - Error Opening Registry Key Entry: Key/Path=" +
                                m_strKeyPath + " DLL Returned=" + std::to_string(opened));
        }
        return false;
    }
    std::string buffer;
    const long read = m_store.queryValue(root, m_strKeyPath, strValueName, buffer);
    if (read != RegSuccess) {
        if (blLogErrors) {
            m_debugOutput.write("GetAppRegValue - Error Retrieving Registry Key Entry: Key=" +
                                strValueName + " DLL Returned=" + std::to_string(read));
        }
        return false;
    }
    if (buffer.size() > kValueBuffer) {
        buffer.resize(kValueBuffer);
    }
    const auto zero = buffer.find('\0');
    if (zero != std::string::npos) {
        buffer.resize(zero);
    }
    strValue = buffer;
    return true;
}

bool modRegistry::CreateRegEntry(int intType, const std::string& strValueName,
                                 const std::string& strValue, bool blUserRoot) {
    const long written =
        m_store.setValue(rootOf(blUserRoot), m_strKeyPath, strValueName, intType, strValue);
    if (written != RegSuccess) {
        m_debugOutput.write(
            "CreateRegEntry - Error Creating Registry Key Entry: Key=" + m_strKeyPath + "\\" +
            strValueName + " DLL Returned=" + std::to_string(written));
        return false;
    }
    return true;
}

std::string modRegistry::ReadSetting(const std::string& strSubKey, const std::string& strValueName,
                                     const std::string& strDefault) {
    m_strKeyPath = std::string(KeyRoot) + strSubKey;
    std::string value;
    if (!GetAppRegValue(strValueName, RegString, value, false, false) || value.empty()) {
        CreateRegEntry(RegString, strValueName, strDefault, false);
        return strDefault;
    }
    return value;
}

std::int16_t modRegistry::ReadDebugLevel() {
    const std::string value = ReadSetting(DebugKey, "Debug Level", "0");
    if (const auto level = debugLevelOf(value)) {
        return *level;
    }
    CreateRegEntry(RegString, "Debug Level", "0", false);
    return 0;
}

std::string modRegistry::ReadSavePath(const std::string& strDefault) {
    m_strKeyPath = std::string(KeyRoot) + FilePathsKey;
    std::string value;
    if (!GetAppRegValue("Install Path", RegString, value, false, false)) {
        CreateRegEntry(RegString, "Install Path", strDefault, false);
        return strDefault;
    }
    return value;
}

}  // namespace kt500::session
