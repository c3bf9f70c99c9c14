#include "datasets/SafeSave.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace kt500::datasets {

namespace {

constexpr std::size_t kPiece = 64U * 1024U;

SaveFailure failure(std::string strKey, const QString& strDetail) {
    return {std::move(strKey), strDetail.toStdString()};
}

// The reason of a failed write or commit, by the system's error number
// where the device gives one.
SaveFailure writeFailure(const QSaveFile& file, int intErrno) {
    if (intErrno == ENOSPC || intErrno == EDQUOT) {
        return failure("saveDiskFull", file.errorString());
    }
    if (intErrno == EACCES || intErrno == EPERM || intErrno == EROFS ||
        file.error() == QFileDevice::PermissionsError) {
        return failure("savePermissionDenied", file.errorString());
    }
    if (file.error() == QFileDevice::ResourceError) {
        return failure("saveDiskFull", file.errorString());
    }
    return failure("saveFailed", file.errorString());
}

}  // namespace

bool SafeSave::writePiece(QSaveFile& file, std::string_view piece) {
    return file.write(piece.data(), static_cast<qint64>(piece.size())) ==
           static_cast<qint64>(piece.size());
}

SaveFailure SafeSave::save(const std::filesystem::path& file, std::string_view bytes) {
    const QString path = QString::fromStdString(file.string());
    const QFileInfo folder(QFileInfo(path).absolutePath());
    if (!folder.exists() || !folder.isDir()) {
        return failure("saveFolderMissing", QFileInfo(path).path());
    }
    QSaveFile target(path);
    errno = 0;
    if (!target.open(QIODevice::WriteOnly)) {
        const int error = errno;
        if (error == ENOENT || error == ENOTDIR) {
            return failure("saveFolderMissing", target.errorString());
        }
        return writeFailure(target, error);
    }
    for (std::size_t offset = 0; offset < bytes.size(); offset += kPiece) {
        errno = 0;
        const std::string_view piece = bytes.substr(offset, std::min(kPiece, bytes.size() - offset));
        if (!writePiece(target, piece)) {
            const int error = errno;
            SaveFailure reason = writeFailure(target, error);
            target.cancelWriting();
            return reason;
        }
    }
    errno = 0;
    if (!target.commit()) {
        return writeFailure(target, errno);
    }
    return {};
}

}  // namespace kt500::datasets
