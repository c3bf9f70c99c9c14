// Data files of a KT520_7 session: what a save writes, and a load that
// either brings every saved value back onto the pages or changes nothing.
#include "datasets/DataFiles.h"

#include "devices/DeviceClass.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace kt500::datasets {
namespace {

using testing::TestUserControl;
namespace fs = std::filesystem;

std::string Contents(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

class NoSpace final : public SafeSave {
protected:
    bool writePiece(QSaveFile&, std::string_view) override {
        errno = ENOSPC;
        return false;
    }
};

class DataFilesTest : public ::testing::Test {
protected:
    DataFilesTest() : uc(testing::SessionOf("KT520_7", true)) {
        uc.values.FillMappedParams();
        uc.values.FillDateFields();
        uc.values.LoadPagesFromDocument();
        // The pages as a read of the device leaves them.
        xml::LoadResult example =
            xml::Document::load(std::string(KT500_SHARE_DIR) + "/examples/KT520_7.xml");
        EXPECT_TRUE(example.ok()) << example.message();
        uc.replyRouting.ReplayDataFile(*example.document);
        uc.tools().CurrentFrame = "HAoperationUnit";
    }
    form::Control& Field(const std::string& strTag) {
        for (form::Control* control : uc.form().controls()) {
            if (control->tag() == strTag && control->kind() == form::ControlKind::TextBox) {
                return *control;
            }
        }
        throw std::runtime_error("no text box for " + strTag);
    }
    void Name(const fs::path& file) { uc.form().control("txtFileName").setText(file.string()); }

    TestUserControl uc;
    SafeSave writer;
    DataFiles files{uc, uc.replyRouting, writer};
    QTemporaryDir scratch;
    fs::path folder{scratch.path().toStdString()};
};

TEST_F(DataFilesTest, ASaveHoldsEverySavedGroupAndNoTemplate) {
    const xml::Document document = files.SaveDocument();
    const xml::Node root = document.root();
    EXPECT_EQ(root.attribute("deviceType"), uc.tools().DeviceName);
    EXPECT_EQ(root.attribute("revision"), "7");
    const DataFileShape shape = files.Shape();
    std::size_t groups = 0;
    for (const xml::Node& response : root.childElements("communicationResponse")) {
        EXPECT_NE(response.attribute("name"), "templateGroup");
        EXPECT_EQ(shape.groups.count(response.attribute("name")), 1U);
        EXPECT_EQ(response.childElements("item").size(),
                  shape.groups.at(response.attribute("name")).size());
        ++groups;
    }
    EXPECT_EQ(groups, shape.groups.size());
    EXPECT_GT(groups, 5U);
    // The file reads back on its own device, against the schema.
    const DataFileRead read = ReadDataFile(document.toXml(), shape, uc.communicationSchemas());
    EXPECT_TRUE(read.ok()) << read.reasonKey << " " << read.detail;
}

TEST_F(DataFilesTest, TheExceptionsOfTheValueRule) {
    // The page shows the serial number as "yyyy-ww-nnnn"; the file holds it packed.
    EXPECT_EQ(Field("kt500SerialNumber").text(), "2024-10-0042");
    EXPECT_EQ(files.SaveValue("kt500SerialNumber", "integerVal"), "14660042");
    uc.tools().DeviceTypeId = "238";
    EXPECT_EQ(files.SaveValue("deviceType", "stringVal"), "238");
    EXPECT_EQ(files.SaveValue("deviceDate", "stringVal"), uc.deviceClass().DeviceDate());
    EXPECT_EQ(files.SaveValue("manufacturer", "stringVal"),
              uc.ParameterNodeByName("manufacturer").attribute("value"));
}

TEST_F(DataFilesTest, AFailedSaveNamesTheReasonAndKeepsTheOldFile) {
    const fs::path file = folder / "KT520_7.xml";
    std::ofstream(file) << "old";
    NoSpace full;
    DataFiles failing(uc, uc.replyRouting, full);
    Name(file);
    EXPECT_FALSE(failing.CreateSaveXml());
    ASSERT_FALSE(uc.messages.empty());
    EXPECT_NE(uc.messages.back().find(uc.Translate("saveDiskFull")), std::string::npos) << uc.messages.back();
    EXPECT_NE(uc.messages.back().find(file.string()), std::string::npos);
    EXPECT_EQ(Contents(file), "old");
}

// The rest of the round trip is in the scenario data_file_round_trip_kt520.
TEST_F(DataFilesTest, ALoadShowsThePackedSerialNumberInItsPageForm) {
    const fs::path file = folder / "KT520_7.xml";
    Name(file);
    ASSERT_TRUE(files.CreateSaveXml());
    const std::string serial = Field("kt500SerialNumber").text();
    ASSERT_NE(serial.find('-'), std::string::npos) << serial;
    Field("kt500SerialNumber").setText("2000-01-0001");
    Name(file);
    ASSERT_TRUE(files.LoadValuesFromFile());
    EXPECT_EQ(Field("kt500SerialNumber").text(), serial);
}

TEST_F(DataFilesTest, TheShippedExampleLoadsOnItsDevice) {
    Name(fs::path(KT500_SHARE_DIR) / "examples" / "KT520_7.xml");
    EXPECT_TRUE(files.LoadValuesFromFile()) << (uc.messages.empty() ? "" : uc.messages.back());
}

}  // namespace
}  // namespace kt500::datasets
