#include "support/MemorySettings.h"

#include "session/modRegistry.h"

namespace kt500::testing {

using session::RegistryRoot;

long MemoryStore::openKey(RegistryRoot root, const std::string& strKeyPath) {
    if (openFails) {
        return session::RegNotFound;
    }
    for (const auto& entry : values) {
        if (std::get<0>(entry.first) == root && std::get<1>(entry.first) == strKeyPath) {
            return session::RegSuccess;
        }
    }
    return session::RegNotFound;
}

long MemoryStore::queryValue(RegistryRoot root, const std::string& strKeyPath,
                             const std::string& strValueName, std::string& strValue) {
    const auto it = values.find({root, strKeyPath, strValueName});
    if (it == values.end()) {
        return session::RegNotFound;
    }
    strValue = it->second;
    return session::RegSuccess;
}

long MemoryStore::setValue(RegistryRoot root, const std::string& strKeyPath,
                           const std::string& strValueName, int /*intType*/,
                           const std::string& strValue) {
    ++writes;
    if (readOnly) {
        return session::RegAccessDenied;
    }
    values[{root, strKeyPath, strValueName}] = strValue;
    return session::RegSuccess;
}

void MemoryStore::put(const std::string& strSubKey, const std::string& strName,
                      const std::string& strValue) {
    values[{RegistryRoot::LocalMachine, std::string(session::modRegistry::KeyRoot) + strSubKey,
            strName}] = strValue;
}

std::string MemoryStore::get(const std::string& strSubKey, const std::string& strName) const {
    const auto it = values.find(
        {RegistryRoot::LocalMachine, std::string(session::modRegistry::KeyRoot) + strSubKey, strName});
    return it == values.end() ? std::string() : it->second;
}

}  // namespace kt500::testing
