#include "session/QtSettingsStore.h"

#include <QDebug>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

#include <memory>

namespace kt500::session {

namespace {

// "Software\Maker\Product\Sub" as a QSettings group.
QString groupOf(const std::string& strKeyPath) {
    QString group = QString::fromStdString(strKeyPath);
    group.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (group.endsWith(QLatin1Char('/'))) {
        group.chop(1);
    }
    return group;
}

}  // namespace

QtSettingsStore::QtSettingsStore() : m_native(true) {}

QtSettingsStore::QtSettingsStore(QString strMachineFile, QString strUserFile)
    : m_machineFile(std::move(strMachineFile)), m_userFile(std::move(strUserFile)) {}

QtSettingsStore QtSettingsStore::ForInstallation(const QString& strPrefix) {
#ifdef Q_OS_WIN
    Q_UNUSED(strPrefix);
    return QtSettingsStore();
#else
    const QString userDir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QtSettingsStore(QDir(strPrefix).filePath(QStringLiteral("etc/kt500-dtm/machine.conf")),
                           QDir(userDir).filePath(QStringLiteral("kt500-dtm/user.conf")));
#endif
}

QString QtSettingsStore::fileOf(RegistryRoot root) const {
    return root == RegistryRoot::CurrentUser ? m_userFile : m_machineFile;
}

static std::unique_ptr<QSettings> settingsFor(bool native, RegistryRoot root, const QString& file) {
    if (native) {
        const QString hive = root == RegistryRoot::CurrentUser
                                 ? QStringLiteral("HKEY_CURRENT_USER")
                                 : QStringLiteral("HKEY_LOCAL_MACHINE");
        return std::make_unique<QSettings>(hive, QSettings::NativeFormat);
    }
    return std::make_unique<QSettings>(file, QSettings::IniFormat);
}

long QtSettingsStore::openKey(RegistryRoot root, const std::string& strKeyPath) {
    auto settings = settingsFor(m_native, root, fileOf(root));
    if (settings->status() != QSettings::NoError) {
        return RegAccessDenied;
    }
    settings->beginGroup(groupOf(strKeyPath));
    const bool exists = !settings->childKeys().isEmpty() || !settings->childGroups().isEmpty();
    return exists ? RegSuccess : RegNotFound;
}

long QtSettingsStore::queryValue(RegistryRoot root, const std::string& strKeyPath,
                                 const std::string& strValueName, std::string& strValue) {
    auto settings = settingsFor(m_native, root, fileOf(root));
    settings->beginGroup(groupOf(strKeyPath));
    const QString name = QString::fromStdString(strValueName);
    if (!settings->contains(name)) {
        return RegNotFound;
    }
    strValue = settings->value(name).toString().toStdString();
    return RegSuccess;
}

long QtSettingsStore::setValue(RegistryRoot root, const std::string& strKeyPath,
                               const std::string& strValueName, int intType,
                               const std::string& strValue) {
    auto settings = settingsFor(m_native, root, fileOf(root));
    if (!settings->isWritable()) {
        return RegAccessDenied;
    }
    settings->beginGroup(groupOf(strKeyPath));
    const QString name = QString::fromStdString(strValueName);
    if (intType == RegDword) {
        settings->setValue(name, QString::fromStdString(strValue).toLongLong());
    } else {
        settings->setValue(name, QString::fromStdString(strValue));
    }
    settings->endGroup();
    settings->sync();
    return settings->status() == QSettings::NoError ? RegSuccess : RegAccessDenied;
}

void QtDebugOutput::write(const std::string& strMessage) {
    qDebug().noquote() << QString::fromStdString(strMessage);
}

}  // namespace kt500::session
