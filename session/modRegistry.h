// modRegistry: the few settings that live outside the program, with their
// defaults and the write-back rule: a value that cannot be read, or is empty,
// is written back with its default, and the default is used. Failures go to
// the system debug output; without the right to write, the defaults stand.
#pragma once

#include "session/ISettingsStore.h"

#include <cstdint>
#include <string>

namespace kt500::session {

// The folders the settings default to on this platform.
struct PathDefaults {
    std::string XmlDatafilePath;  // folder of the GUIInit documents
    std::string XmlSchemaPath;    // folder of the schema files
    std::string InstallPath;      // installation folder
    std::string SavePath;         // data file folder when "Install Path" cannot be read

    // The defaults of a Windows installation.
    static PathDefaults Windows();
    // Folders under a share directory (the installed or built share/).
    static PathDefaults UnderShare(const std::string& strShareDir, const std::string& strSaveDir);
};

class modRegistry {
public:
    static constexpr const char* KeyRoot = "Software\\Ravik Automation\\KT500 DTM\\";
    static constexpr const char* FilePathsKey = "File Paths";
    static constexpr const char* DebugKey = "Debug";

    modRegistry(ISettingsStore& store, IDebugOutput& debugOutput);

    // The key path of the next call, as the module variable of the routines.
    std::string m_strKeyPath;

    // Reads a value of m_strKeyPath into strValue (cut at the first zero and
    // at 255 characters). Returns True on success.
    bool GetAppRegValue(const std::string& strValueName, int intType, std::string& strValue,
                        bool blLogErrors, bool blUserRoot);
    // Creates m_strKeyPath if needed and writes the value. Returns True on success.
    bool CreateRegEntry(int intType, const std::string& strValueName, const std::string& strValue,
                        bool blUserRoot);

    // A string setting of the machine root with the write-back rule.
    std::string ReadSetting(const std::string& strSubKey, const std::string& strValueName,
                            const std::string& strDefault);
    // "Debug Level": missing, empty or not numeric is written back as "0".
    std::int16_t ReadDebugLevel();
    // The data file folder when the session gives none: "Install Path" as it
    // stands (even empty); only a failed read writes and uses strDefault.
    std::string ReadSavePath(const std::string& strDefault);

private:
    ISettingsStore& m_store;
    IDebugOutput& m_debugOutput;
};

}  // namespace kt500::session
