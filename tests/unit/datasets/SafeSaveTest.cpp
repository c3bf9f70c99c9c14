// Saving safely: a failed save names its reason and leaves the previous
// file whole, with no temporary file left beside it.
#include "datasets/SafeSave.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace kt500::datasets {
namespace {

namespace fs = std::filesystem;

std::string Contents(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

std::size_t Entries(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// A disk that fills up after the first piece, as ENOSPC reports it.
class FullDisk final : public SafeSave {
protected:
    bool writePiece(QSaveFile& file, std::string_view piece) override {
        if (m_pieces++ == 0) {
            return SafeSave::writePiece(file, piece);
        }
        errno = ENOSPC;
        return false;
    }

private:
    int m_pieces = 0;
};

class SafeSaveTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(scratch.isValid());
        std::ofstream(target) << "<dtm>the previous file</dtm>";
    }
    QTemporaryDir scratch;
    fs::path folder{scratch.path().toStdString()};
    fs::path target = folder / "KT520_7.xml";
};

TEST_F(SafeSaveTest, ReplacesTheFileWhole) {
    SafeSave writer;
    const std::string bytes(200 * 1024, 'a');  // more than one piece
    EXPECT_TRUE(writer.save(target, bytes).ok());
    EXPECT_EQ(Contents(target), bytes);
    EXPECT_EQ(Entries(folder), 1U);
}

TEST_F(SafeSaveTest, AFullDiskKeepsThePreviousFile) {
    FullDisk writer;
    const SaveFailure failure = writer.save(target, std::string(200 * 1024, 'b'));
    EXPECT_EQ(failure.reasonKey, "saveDiskFull");
    EXPECT_EQ(Contents(target), "<dtm>the previous file</dtm>");
    EXPECT_EQ(Entries(folder), 1U) << "the temporary file stays behind";
}

TEST_F(SafeSaveTest, AMissingFolderIsNamed) {
    SafeSave writer;
    const SaveFailure failure = writer.save(folder / "no" / "such" / "file.xml", "x");
    EXPECT_EQ(failure.reasonKey, "saveFolderMissing");
    EXPECT_NE(failure.detail.find("no/such"), std::string::npos);
    // A file where the folder should be.
    EXPECT_EQ(writer.save(target / "file.xml", "x").reasonKey, "saveFolderMissing");
    EXPECT_EQ(Contents(target), "<dtm>the previous file</dtm>");
}

TEST_F(SafeSaveTest, AFolderThatCannotBeWrittenKeepsThePreviousFile) {
    SafeSave writer;
    fs::path locked = folder;
    if (geteuid() == 0) {
        // The superuser writes everywhere but into the kernel's folders.
        locked = "/sys";
        ASSERT_TRUE(fs::is_directory(locked));
    } else {
        fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    }
    const SaveFailure failure = writer.save(locked / "KT520_7.xml", "<dtm/>");
    fs::permissions(folder, fs::perms::owner_all);
    EXPECT_EQ(failure.reasonKey, "savePermissionDenied") << failure.detail;
    EXPECT_EQ(Contents(target), "<dtm>the previous file</dtm>");
    EXPECT_EQ(Entries(folder), 1U);
}

}  // namespace
}  // namespace kt500::datasets
