#include "support/MemorySettings.h"

#include "host/modRegistry.h"

namespace kt500::testing {

using host::RegistryRoot;

long MemoryStore::openKey(RegistryRoot root, const std::string& strKeyPath) {
    if (openFails) {
        return host::RegNotFound;
    }
    for (const auto& entry : values) {
        if (std::get<0>(entry.first) == root && std::get<1>(entry.first) == strKeyPath) {
            return host::RegSuccess;
        }
    }
    return host::RegNotFound;
}

long MemoryStore::queryValue(RegistryRoot root, const std::string& strKeyPath,
                             const std::string& strValueName, std::string& strValue) {
    const auto it = values.find({root, strKeyPath, strValueName});
    if (it == values.end()) {
        return host::RegNotFound;
    }
    strValue = it->second;
    return host::RegSuccess;
}

long MemoryStore::setValue(RegistryRoot root, const std::string& strKeyPath,
                           const std::string& strValueName, int /*intType*/,
                           const std::string& strValue) {
    ++writes;
    if (readOnly) {
        return host::RegAccessDenied;
    }
    values[{root, strKeyPath, strValueName}] = strValue;
    return host::RegSuccess;
}

void MemoryStore::put(const std::string& strSubKey, const std::string& strName,
                      const std::string& strValue) {
    values[{RegistryRoot::LocalMachine, std::string(host::modRegistry::KeyRoot) + strSubKey,
            strName}] = strValue;
}

std::string MemoryStore::get(const std::string& strSubKey, const std::string& strName) const {
    const auto it = values.find(
        {RegistryRoot::LocalMachine, std::string(host::modRegistry::KeyRoot) + strSubKey, strName});
    return it == values.end() ? std::string() : it->second;
}

}  // namespace kt500::testing
