#include "xml/SchemaCollection.h"

#include "xml/Document.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

namespace kt500::xml {
namespace {

using test::ScratchFolder;

const std::filesystem::path kData = std::filesystem::path(KT500_TEST_DATA_DIR) / "xml";
constexpr const char* kCommunication = "urn:kt500:test:communication";
constexpr const char* kTypes = "urn:kt500:test:xtypes";
constexpr const char* kUses = "urn:kt500:test:uses";

constexpr std::string_view kValidRequest =
    "<dtm xmlns='urn:kt500:test:communication'>\n"
    "<communicationRequest name='operationUnit' access='read'>\n"
    "<item name='setpoint' unit='noUnit'><floatVal/></item>\n"
    "</communicationRequest></dtm>";

LoadResult parseWith(const SchemaCollection& schemas, std::string_view text) {
    ParseOptions options;
    options.schemas = &schemas;
    return Document::parse(text, options);
}

class XmlSchemaCollectionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_schemas.add(kCommunication, kData / "communication.xsd"), "");
    }
    SchemaCollection m_schemas;
};

TEST_F(XmlSchemaCollectionTest, InvalidDocumentFailsWithLinedErrorsThatDoNotLeakIntoTheNext) {
    const LoadResult result =
        parseWith(m_schemas,
                  "<dtm xmlns='urn:kt500:test:communication'>\n"
                  "<communicationRequest name='g' access='delete'/>\n"
                  "<communicationRequest name='g' access='read'>\n"
                  "<item name='x'><floatVal/></item></communicationRequest></dtm>");
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.error, "document does not validate");
    ASSERT_EQ(result.validationErrors.size(), 2U);
    EXPECT_EQ(result.validationErrors[0].rfind("line 2: ", 0), 0U) << result.validationErrors[0];
    EXPECT_EQ(result.validationErrors[1].rfind("line 4: ", 0), 0U) << result.validationErrors[1];

    // A root in a namespace without a schema is one error.
    EXPECT_EQ(parseWith(m_schemas, "<dtm xmlns='urn:elsewhere'/>").validationErrors,
              std::vector<std::string>{"no schema for namespace 'urn:elsewhere'"});
    const LoadResult valid = parseWith(m_schemas, kValidRequest);
    EXPECT_TRUE(valid.ok()) << valid.message();
}

TEST(XmlSchemaCollectionImports, MembersUseEachOthersTypesWhateverTheirOrder) {
    SchemaCollection schemas;
    // The importing namespace sorts first: the import cannot rely on the order of members.
    ASSERT_EQ(schemas.add(kTypes, kData / "types.xsd"), "");
    ASSERT_EQ(schemas.add(kUses, kData / "uses.xsd"), "");
    const std::string head =
        "<parameters xmlns='urn:kt500:test:uses' xmlns:t='urn:kt500:test:xtypes'>"
        "<t:publishedInfo deviceTypeId='KT520'/><parameter name='a' synchronised=";
    const LoadResult good = parseWith(schemas, head + "'2'/></parameters>");
    EXPECT_TRUE(good.ok()) << good.message();
    EXPECT_FALSE(parseWith(schemas, head + "'3'/></parameters>").ok());

    // An import of a namespace outside the collection fails.
    SchemaCollection alone;
    EXPECT_NE(alone.add(kUses, kData / "uses.xsd"), "");
    EXPECT_TRUE(alone.empty());
}

TEST(XmlSchemaCollectionImports, SchemaWithoutNamespaceValidatesBesideNamespacedOnes) {
    SchemaCollection schemas;
    ASSERT_EQ(schemas.add("", kData / "plain.xsd"), "");
    ASSERT_EQ(schemas.add(kCommunication, kData / "communication.xsd"), "");
    EXPECT_TRUE(parseWith(schemas, "<dtm><node name='a'/></dtm>").ok());
    EXPECT_FALSE(parseWith(schemas, "<dtm><node/></dtm>").ok());
    EXPECT_TRUE(parseWith(schemas, kValidRequest).ok());
}

TEST_F(XmlSchemaCollectionTest, BrokenMissingOrMisnamedSchemaKeepsTheFormerSet) {
    const std::string broken = m_schemas.add("urn:kt500:test:broken", kData / "broken.xsd");
    EXPECT_NE(broken.find("broken.xsd"), std::string::npos) << broken;
    EXPECT_NE(broken.find("line 4"), std::string::npos) << broken;
    EXPECT_NE(m_schemas.add("urn:x", kData / "absent.xsd").find("absent.xsd"), std::string::npos);
    // The target namespace must match the registered one.
    EXPECT_NE(m_schemas.add("urn:not-its-namespace", kData / "types.xsd"), "");
    EXPECT_FALSE(m_schemas.contains("urn:kt500:test:broken"));
    EXPECT_FALSE(m_schemas.contains("urn:not-its-namespace"));
    EXPECT_TRUE(parseWith(m_schemas, kValidRequest).ok());
}

// A member may name only files of the collection: a file beside it, outside
// the collection, is never read, whether included or imported.
TEST(XmlSchemaCollectionFailure, FilesOutsideTheCollectionAreNotRead) {
    ScratchFolder folder;
    const std::string head = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' ";
    folder.write("outside.xsd",
                 head + "targetNamespace='urn:member'><xs:element name='secret'/></xs:schema>");
    folder.write("outsideNs.xsd",
                 head + "targetNamespace='urn:outside'><xs:element name='secret'/></xs:schema>");
    const auto including = folder.write(
        "including.xsd", head +
                             "targetNamespace='urn:member'><xs:include "
                             "schemaLocation='outside.xsd'/><xs:element name='root'/></xs:schema>");
    const auto importing = folder.write(
        "importing.xsd",
        head +
            "targetNamespace='urn:member' xmlns:o='urn:outside'><xs:import "
            "namespace='urn:outside' schemaLocation='" +
            (folder.path() / "outsideNs.xsd").string() +
            "'/><xs:element name='root'><xs:complexType><xs:sequence><xs:element "
            "ref='o:secret'/></xs:sequence></xs:complexType></xs:element></xs:schema>");
    for (const auto& member : {including, importing}) {
        SchemaCollection schemas;
        EXPECT_NE(schemas.add("urn:member", member), "") << member;
        EXPECT_TRUE(schemas.empty());
    }
}

}  // namespace
}  // namespace kt500::xml
