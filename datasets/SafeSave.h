// Files the data set code writes go through QSaveFile: the bytes go to a
// temporary file beside the target, which replaces the target only once all
// of it is on disk. A failure at any point (a folder that is missing or not
// writable, a full disk) leaves the previous file as it was and no half
// file behind.
#pragma once

#include <QSaveFile>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace kt500::datasets {

// Why a save failed: the language key and the system's own words.
struct SaveFailure {
    std::string reasonKey;  // "" when the file was saved
    std::string detail;

    [[nodiscard]] bool ok() const noexcept { return reasonKey.empty(); }
};

class SafeSave {
public:
    SafeSave() = default;
    virtual ~SafeSave() = default;
    SafeSave(const SafeSave&) = delete;
    SafeSave& operator=(const SafeSave&) = delete;

    // Writes bytes to file. Reasons: "saveFolderMissing", "savePermissionDenied",
    // "saveDiskFull", "saveFailed" (anything else).
    [[nodiscard]] SaveFailure save(const std::filesystem::path& file, std::string_view bytes);

protected:
    // Writes one piece to the temporary file; false when the device refused
    // it. A test may fail here as a full disk would.
    virtual bool writePiece(QSaveFile& file, std::string_view piece);
};

}  // namespace kt500::datasets
