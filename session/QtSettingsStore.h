// The settings store on QSettings. On Windows the keys live in the registry
// under HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER; elsewhere each root is an
// INI file: the machine file belongs to the installation (so that a fresh
// build starts from its own defaults), the user file to the user's
// configuration folder.
#pragma once

#include "session/ISettingsStore.h"

#include <QString>

namespace kt500::session {

class QtSettingsStore final : public ISettingsStore {
public:
    // The registry of this machine (Windows only).
    QtSettingsStore();
    // Two INI files for the machine and the user root.
    QtSettingsStore(QString strMachineFile, QString strUserFile);

    long openKey(RegistryRoot root, const std::string& strKeyPath) override;
    long queryValue(RegistryRoot root, const std::string& strKeyPath,
                    const std::string& strValueName, std::string& strValue) override;
    long setValue(RegistryRoot root, const std::string& strKeyPath, const std::string& strValueName,
                  int intType, const std::string& strValue) override;

    // The files beside an installation: <prefix>/etc/kt500-dtm/machine.conf
    // and the user's configuration folder.
    static QtSettingsStore ForInstallation(const QString& strPrefix);

private:
    [[nodiscard]] QString fileOf(RegistryRoot root) const;

    bool m_native = false;
    QString m_machineFile;
    QString m_userFile;
};

// The system debug output on this platform (standard error elsewhere).
class QtDebugOutput final : public IDebugOutput {
public:
    void write(const std::string& strMessage) override;
};

}  // namespace kt500::session
