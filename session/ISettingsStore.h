// The platform's settings store as modRegistry sees it: keys under one of two
// roots, string or 32-bit values, and the operating system's return codes
// (0 success, 2 not found, 5 access denied).
#pragma once

#include <string>

namespace kt500::session {

enum class RegistryRoot { LocalMachine, CurrentUser };

enum RegistryValueType : int {
    RegString = 1,  // a string value
    RegDword = 4,   // a 32-bit number
};

enum RegistryCode : long {
    RegSuccess = 0,
    RegNotFound = 2,
    RegAccessDenied = 5,
};

class ISettingsStore {
public:
    virtual ~ISettingsStore() = default;

    // Opens a key: full rights on the user root, read rights on the machine root.
    virtual long openKey(RegistryRoot root, const std::string& strKeyPath) = 0;
    // Reads a value of an opened key as text (numbers in decimal).
    virtual long queryValue(RegistryRoot root, const std::string& strKeyPath,
                            const std::string& strValueName, std::string& strValue) = 0;
    // Creates the key if needed and writes the value.
    virtual long setValue(RegistryRoot root, const std::string& strKeyPath,
                          const std::string& strValueName, int intType,
                          const std::string& strValue) = 0;
};

// The system debug output: one line a message.
class IDebugOutput {
public:
    virtual ~IDebugOutput() = default;
    virtual void write(const std::string& strMessage) = 0;
};

}  // namespace kt500::session
