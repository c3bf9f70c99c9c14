#include "app/InstallLayout.h"

#include <QDir>

namespace kt500::app {

InstallLayout InstallLayout::Detect(const QString& strProgramDir,
                                    const std::filesystem::path& builtShareDir) {
    QDir prefix(strProgramDir);
    prefix.cdUp();
    const QString installed = prefix.filePath(QStringLiteral("share/kt500-dtm"));
    InstallLayout layout;
    layout.prefix = prefix.absolutePath();
    layout.shareDir = QDir(installed).exists(QStringLiteral("schemas"))
                          ? std::filesystem::path(installed.toStdString())
                          : builtShareDir;
    return layout;
}

}  // namespace kt500::app
