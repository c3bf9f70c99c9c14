// Data files from bytes: what is accepted, and every reason a file is
// refused before anything of it reaches a page.
#include "datasets/DataFileRead.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::datasets {
namespace {

constexpr const char* kCommunication = "x-schema:QDLCommunicationSchema.xml";

DataFileShape Kt520Shape() {
    DataFileShape shape;
    shape.deviceType = "KT520";
    shape.revision = "7";
    shape.groups["operationUnit"] = {{"hartTag", "stringVal"}, {"deviceDay", "integerVal"}};
    shape.groups["valveRelatedConfigurations"] = {{"splitRangeLow", "floatVal"}};
    return shape;
}

std::string File(const std::string& strResponses, const std::string& strRoot =
                                                      "<dtm deviceType='KT520' revision='7'>") {
    return "<?xml version='1.0' encoding='UTF-8'?>" + strRoot + strResponses + "</dtm>";
}

std::string Response(const std::string& strName, const std::string& strItems) {
    return "<communicationResponse name='" + strName +
           "' access='read' responseStatus='ok' isFinal='1' errorCode=''>" + strItems +
           "</communicationResponse>";
}

const std::string kGood = File(
    Response("operationUnit",
             "<item name='hartTag' unit='noUnit'><stringVal>PV-101</stringVal></item>"
             "<item name='deviceDay' unit='noUnit'><integerVal>14</integerVal></item>") +
    Response("valveRelatedConfigurations",
             "<item name='splitRangeLow' unit='%'><floatVal>-1.5e1</floatVal></item>"));

class DataFileReadTest : public ::testing::Test {
protected:
    DataFileReadTest() {
        const std::string error = schemas.add(
            kCommunication, std::string(KT500_SHARE_DIR) + "/schemas/QDLCommunicationSchema.xml");
        EXPECT_EQ(error, "");
    }
    DataFileRead Read(const std::string& bytes) { return ReadDataFile(bytes, shape, &schemas); }
    std::string Reason(const std::string& bytes) { return Read(bytes).reasonKey; }

    DataFileShape shape = Kt520Shape();
    xml::SchemaCollection schemas;
};

TEST_F(DataFileReadTest, AcceptsTheFileAsWrittenAndInTheCommunicationNamespace) {
    const DataFileRead read = Read(kGood);
    ASSERT_TRUE(read.ok()) << read.reasonKey << " " << read.detail;
    EXPECT_EQ(read.document->root().childElements("communicationResponse").size(), 2U);

    const std::string namespaced = File(
        Response("operationUnit", "<item name='hartTag' unit='noUnit'><stringVal/></item>"),
        std::string("<dtm xmlns='") + kCommunication + "' deviceType='KT520' revision='7'>");
    EXPECT_TRUE(Read(namespaced).ok());
    // xmlns="" names no namespace; the communication namespace bound to a
    // prefix of the root's own, or a default namespace of another kind on a
    // prefixed root, leave the elements where they are.
    const std::string items =
        Response("operationUnit", "<item name='hartTag' unit='noUnit'><stringVal/></item>");
    EXPECT_TRUE(Read(File(items, "<dtm xmlns='' deviceType='KT520' revision='7'>")).ok());
    EXPECT_TRUE(Read(File(items, std::string("<dtm xmlns:c='") + kCommunication +
                                     "' deviceType='KT520' revision='7'>"))
                    .ok());
    EXPECT_EQ(Reason("<c:dtm xmlns:c='" + std::string(kCommunication) +
                     "' xmlns='urn:other' deviceType='KT520' revision='7'>" + items + "</c:dtm>"),
              "dataFileInvalid");
    // Empty numbers mean "no value"; an item without a value element is
    // what the writer leaves for a kind it does not know.
    EXPECT_TRUE(Read(File(Response("operationUnit",
                                   "<item name='deviceDay' unit='noUnit'><integerVal> </integerVal>"
                                   "</item><item name='hartTag' unit='noUnit'/>")))
                    .ok());
    EXPECT_TRUE(Read(File("")).ok());
}

TEST_F(DataFileReadTest, RefusesBytesThatAreNoDataFile) {
    EXPECT_EQ(Reason(""), "dataFileEmpty");
    EXPECT_EQ(Reason(" \n"), "dataFileEmpty");
    std::string large = kGood;
    large.insert(large.find("<dtm"), "<!--" + std::string(kDataFileMaxBytes, 'x') + "-->");
    EXPECT_EQ(Reason(large), "dataFileTooLarge");
    EXPECT_EQ(Reason(File(Response("operationUnit",
                                   "<item name='hartTag' unit='noUnit'><stringVal>V\xe4ntil"
                                   "</stringVal></item>"))),
              "dataFileNotUtf8");
    std::string latin1 = kGood;
    latin1.replace(latin1.find("UTF-8"), 5, "ISO-8859-1");
    EXPECT_EQ(Reason(latin1), "dataFileNotUtf8");
    EXPECT_EQ(Reason(kGood.substr(0, kGood.size() - 3)), "dataFileNotWellFormed");
    EXPECT_EQ(Reason("<dtm deviceType='KT520' revision='7'><a></b></dtm>"),
              "dataFileNotWellFormed");
    EXPECT_EQ(Reason("<?xml version='1.0'?><parameters/>"), "dataFileNoDtm");
    EXPECT_EQ(Reason("<dtm xmlns='urn:other' deviceType='KT520' revision='7'/>"), "dataFileNoDtm");
}

TEST_F(DataFileReadTest, RefusesAnotherDeviceOrRevisionNamingTheFilesOwn) {
    const DataFileRead other = Read(File("", "<dtm deviceType='KT540' revision='7'>"));
    EXPECT_EQ(other.reasonKey, "errDeviceMismatch");
    EXPECT_EQ(other.fileDeviceType, "KT540");
    EXPECT_EQ(other.fileRevision, "7");
    // The test is strict on both fields.
    EXPECT_EQ(Reason(File("", "<dtm deviceType='KT520' revision='6'>")), "errDeviceMismatch");
    EXPECT_EQ(Reason(File("", "<dtm revision='7'>")), "errDeviceMismatch");
}

TEST_F(DataFileReadTest, RefusesWhatTheSchemaOrTheDeviceDoesNotKnow) {
    // A response without its access word does not validate.
    EXPECT_EQ(Reason(File("<communicationResponse name='operationUnit' responseStatus='ok' "
                          "isFinal='1' errorCode=''/>")),
              "dataFileInvalid");
    EXPECT_EQ(Reason(File("<foreign/>")), "dataFileInvalid");
    const DataFileRead group = Read(File(Response("eventLog", "")));
    EXPECT_EQ(group.reasonKey, "dataFileUnknownGroup");
    EXPECT_EQ(group.detail, "eventLog");
    EXPECT_EQ(Reason(File(Response("templateGroup", ""))), "dataFileUnknownGroup");
    const DataFileRead item = Read(File(Response(
        "operationUnit", "<item name='splitRangeLow' unit='%'><floatVal>1</floatVal></item>")));
    EXPECT_EQ(item.reasonKey, "dataFileUnknownItem");
    EXPECT_EQ(item.detail, "operationUnit/splitRangeLow");
    EXPECT_EQ(Reason(File(Response(
                  "operationUnit", "<item name='hartTag' unit='noUnit'><floatVal>1</floatVal></item>"))),
              "dataFileWrongType");
    EXPECT_EQ(Reason(File(Response("valveRelatedConfigurations",
                                   "<item name='splitRangeLow' unit='%'><floatVal>1,5</floatVal>"
                                   "</item>"))),
              "dataFileBadNumber");
    EXPECT_EQ(Reason(File(Response("operationUnit",
                                   "<item name='deviceDay' unit='noUnit'><integerVal>1.5"
                                   "</integerVal></item>"))),
              "dataFileBadNumber");
}

TEST(DataFileNumbersTest, ReadsNumbersOfEachKind) {
    EXPECT_TRUE(ReadsAsNumber("12", "integerVal"));
    EXPECT_TRUE(ReadsAsNumber(" -3 ", "integerVal"));
    EXPECT_TRUE(ReadsAsNumber("+3", "integerVal"));
    EXPECT_FALSE(ReadsAsNumber("3x", "integerVal"));
    EXPECT_FALSE(ReadsAsNumber("99999999999999999999999", "integerVal"));
    EXPECT_TRUE(ReadsAsNumber("0.5", "floatVal"));
    EXPECT_TRUE(ReadsAsNumber("1e-3", "floatVal"));
    EXPECT_FALSE(ReadsAsNumber("nan", "floatVal"));
    EXPECT_FALSE(ReadsAsNumber("inf", "floatVal"));
    EXPECT_FALSE(ReadsAsNumber("0,5", "floatVal"));
    EXPECT_TRUE(ReadsAsNumber("anything", "stringVal"));
}

TEST(DataFileUtf8Test, TellsUtf8FromOtherBytes) {
    EXPECT_TRUE(IsUtf8("plain"));
    EXPECT_TRUE(IsUtf8("Ventil \xc3\xa4 \xe2\x82\xac \xf0\x9f\x98\x80"));
    EXPECT_FALSE(IsUtf8("\xc3"));              // cut short
    EXPECT_FALSE(IsUtf8("\xc0\xaf"));          // overlong
    EXPECT_FALSE(IsUtf8("\xed\xa0\x80"));      // a surrogate
    EXPECT_FALSE(IsUtf8("\xf4\x90\x80\x80"));  // past U+10FFFF
    EXPECT_FALSE(IsUtf8("\xff\xfe<\0d\0"));    // UTF-16
}

}  // namespace
}  // namespace kt500::datasets
