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

// Every control's value and colour, in form order; a property a kind of
// control does not have is left out.
std::string Pages(form::Form& form) {
    std::string all;
    const auto add = [&all](const auto& read) {
        try {
            all += read() + "|";
        } catch (const std::exception&) {
            all += "-|";
        }
    };
    for (const form::Control* control : form.controls()) {
        all += control->name() + std::to_string(control->index()) + "=";
        add([&] { return control->text(); });
        add([&] { return control->caption(); });
        add([&] { return std::to_string(control->listIndex()); });
        add([&] { return std::to_string(control->value()); });
        add([&] { return std::to_string(control->foreColor()); });
        all += "\n";
    }
    return all;
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

TEST_F(DataFilesTest, SaveAddsTheExtensionAndReportsSuccess) {
    Name(folder / "valve");
    EXPECT_TRUE(files.CreateSaveXml());
    EXPECT_TRUE(fs::exists(folder / "valve.xml"));
    ASSERT_FALSE(uc.messages.empty());
    EXPECT_NE(uc.messages.back().find(uc.Translate("exportOk")), std::string::npos) << uc.messages.back();
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

TEST_F(DataFilesTest, ALoadBringsTheSavedValuesBack) {
    const fs::path file = folder / "KT520_7.xml";
    Name(file);
    ASSERT_TRUE(files.CreateSaveXml());
    const std::string before = Pages(uc.form());
    const std::string tag = Field("hartTag").text();
    const std::string serial = Field("kt500SerialNumber").text();
    ASSERT_NE(serial.find('-'), std::string::npos) << serial;
    Field("hartTag").setText("CHANGED");
    Field("splitRangeHigh").setText("55");
    Field("kt500SerialNumber").setText("2000-01-0001");
    Name(file);
    ASSERT_TRUE(files.LoadValuesFromFile());
    EXPECT_EQ(Field("hartTag").text(), tag);
    // Stored packed, shown as the page shows a reply's.
    EXPECT_EQ(Field("kt500SerialNumber").text(), serial);
    EXPECT_FALSE(uc.tools().ImportFromFile);
    EXPECT_EQ(Pages(uc.form()), before);
}

TEST_F(DataFilesTest, ARefusedFileChangesNothing) {
    const fs::path file = folder / "bad.xml";
    const std::string pages = Pages(uc.form());
    const std::string document = uc.parameterNode().toXml();
    const std::pair<std::string, std::string> files_[] = {
        {"<dtm deviceType='KT520' revision='7'><communicationResponse", "dataFileNotWellFormed"},
        {"<dtm deviceType='KT520' revision='6'/>", "errDeviceMismatch"},
        {"<dtm deviceType='KT520' revision='7'><communicationResponse name='operationUnit' "
         "access='read' responseStatus='ok' isFinal='1' errorCode=''><item name='hartTag' "
         "unit='noUnit'><stringVal>NEW</stringVal></item></communicationResponse>"
         "<communicationResponse name='operationUnit' access='read' responseStatus='ok' "
         "isFinal='1' errorCode=''><item name='nope' unit='noUnit'/></communicationResponse>"
         "</dtm>",
         "dataFileUnknownItem"},
    };
    for (const auto& [bytes, reason] : files_) {
        std::ofstream(file, std::ios::trunc) << bytes;
        Name(file);
        uc.messages.clear();
        EXPECT_FALSE(files.LoadValuesFromFile()) << reason;
        ASSERT_EQ(uc.messages.size(), 1U) << reason;
        EXPECT_NE(uc.messages.back().find(uc.Translate(reason)), std::string::npos)
            << uc.messages.back();
        if (reason != "errDeviceMismatch") {
            EXPECT_NE(uc.messages.back().find(file.string()), std::string::npos);
        }
        Name("");
        EXPECT_EQ(Pages(uc.form()), pages) << reason;
        EXPECT_EQ(uc.parameterNode().toXml(), document) << reason;
    }
    Name(folder / "missing.xml");
    EXPECT_FALSE(files.LoadValuesFromFile());
    EXPECT_NE(uc.messages.back().find(uc.Translate("dataFileMissing")), std::string::npos);
}

TEST_F(DataFilesTest, TheShippedExampleLoadsOnItsDevice) {
    Name(fs::path(KT500_SHARE_DIR) / "examples" / "KT520_7.xml");
    EXPECT_TRUE(files.LoadValuesFromFile()) << (uc.messages.empty() ? "" : uc.messages.back());
}

}  // namespace
}  // namespace kt500::datasets
