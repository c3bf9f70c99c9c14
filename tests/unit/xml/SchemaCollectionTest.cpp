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

class XmlSchemaCollectionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_schemas.add(kCommunication, kData / "communication.xsd"), "");
        m_options.schemas = &m_schemas;
    }

    SchemaCollection m_schemas;
    ParseOptions m_options;
};

TEST_F(XmlSchemaCollectionTest, ValidDocumentLoads) {
    const LoadResult result = Document::parse(kValidRequest, m_options);
    ASSERT_TRUE(result.ok()) << result.message();
    EXPECT_TRUE(result.validationErrors.empty());
    EXPECT_TRUE(m_schemas.validate(*result.document).empty());
}

TEST_F(XmlSchemaCollectionTest, InvalidDocumentFailsWithLinedErrors) {
    const LoadResult result = Document::parse(
        "<dtm xmlns='urn:kt500:test:communication'>\n"
        "<communicationRequest name='g' access='delete'/>\n"
        "<communicationRequest name='g' access='read'>\n"
        "<item name='x'><floatVal/></item></communicationRequest></dtm>",
        m_options);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.error, "document does not validate");
    ASSERT_EQ(result.validationErrors.size(), 2U);
    EXPECT_EQ(result.validationErrors[0].rfind("line 2: ", 0), 0U) << result.validationErrors[0];
    EXPECT_NE(result.validationErrors[0].find("access"), std::string::npos);
    EXPECT_EQ(result.validationErrors[1].rfind("line 4: ", 0), 0U) << result.validationErrors[1];
    EXPECT_NE(result.message().find("line 2: "), std::string::npos);
}

TEST_F(XmlSchemaCollectionTest, RootInAnUnknownNamespaceIsOneError) {
    const LoadResult result = Document::parse("<dtm xmlns='urn:elsewhere'/>", m_options);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.validationErrors,
              std::vector<std::string>{"no schema for namespace 'urn:elsewhere'"});
    EXPECT_EQ(Document::parse("<dtm/>", m_options).validationErrors,
              std::vector<std::string>{"no schema for namespace ''"});
}

TEST_F(XmlSchemaCollectionTest, ValidatesEveryTimeWithAFreshContext) {
    // An error of one validation must not leak into the next.
    const LoadResult bad =
        Document::parse("<dtm xmlns='urn:kt500:test:communication'/>", m_options);
    EXPECT_FALSE(bad.ok());
    EXPECT_TRUE(Document::parse(kValidRequest, m_options).ok());
}

TEST(XmlSchemaCollectionImports, MemberUsesTypesAndElementsOfAnotherMember) {
    SchemaCollection schemas;
    // The importing namespace sorts first: the import cannot rely on the order of members.
    ASSERT_EQ(schemas.add(kTypes, kData / "types.xsd"), "");
    ASSERT_EQ(schemas.add(kUses, kData / "uses.xsd"), "");
    EXPECT_TRUE(schemas.contains(kUses));
    EXPECT_TRUE(schemas.contains(kTypes));

    ParseOptions options;
    options.schemas = &schemas;
    constexpr std::string_view kHead =
        "<parameters xmlns='urn:kt500:test:uses' xmlns:t='urn:kt500:test:xtypes'>"
        "<t:publishedInfo deviceTypeId='KT520'/>";
    const LoadResult good = Document::parse(
        std::string(kHead) + "<parameter name='a' synchronised='2'/></parameters>", options);
    EXPECT_TRUE(good.ok()) << good.message();
    const LoadResult outOfRange = Document::parse(
        std::string(kHead) + "<parameter name='a' synchronised='3'/></parameters>", options);
    EXPECT_FALSE(outOfRange.ok());
    EXPECT_FALSE(outOfRange.validationErrors.empty());
}

TEST(XmlSchemaCollectionImports, SchemaWithoutNamespaceValidatesBesideNamespacedOnes) {
    SchemaCollection schemas;
    ASSERT_EQ(schemas.add("", kData / "plain.xsd"), "");
    ASSERT_EQ(schemas.add(kCommunication, kData / "communication.xsd"), "");
    ParseOptions options;
    options.schemas = &schemas;
    EXPECT_TRUE(Document::parse("<dtm><node name='a'/></dtm>", options).ok());
    const LoadResult unnamed = Document::parse("<dtm><node/></dtm>", options);
    EXPECT_FALSE(unnamed.ok());
    EXPECT_FALSE(unnamed.validationErrors.empty());
    EXPECT_TRUE(Document::parse(std::string(kValidRequest), options).ok());
}

TEST(XmlSchemaCollectionImports, ImportOfANamespaceOutsideTheCollectionFails) {
    SchemaCollection schemas;
    const std::string reason = schemas.add(kUses, kData / "uses.xsd");
    EXPECT_NE(reason, "");
    EXPECT_TRUE(schemas.empty());
}

TEST(XmlSchemaCollectionFailure, BrokenSchemaKeepsTheFormerSet) {
    SchemaCollection schemas;
    ASSERT_EQ(schemas.add(kCommunication, kData / "communication.xsd"), "");
    const std::string reason = schemas.add("urn:kt500:test:broken", kData / "broken.xsd");
    EXPECT_NE(reason.find("broken.xsd"), std::string::npos) << reason;
    EXPECT_NE(reason.find("line 4"), std::string::npos) << reason;
    EXPECT_FALSE(schemas.contains("urn:kt500:test:broken"));

    ParseOptions options;
    options.schemas = &schemas;
    EXPECT_TRUE(Document::parse(kValidRequest, options).ok());

    const std::string missing = schemas.add("urn:x", kData / "absent.xsd");
    EXPECT_NE(missing.find("absent.xsd"), std::string::npos) << missing;
    EXPECT_TRUE(Document::parse(kValidRequest, options).ok());
}

TEST(XmlSchemaCollectionFailure, TargetNamespaceMustMatchTheRegisteredOne) {
    SchemaCollection schemas;
    EXPECT_NE(schemas.add("urn:not-its-namespace", kData / "types.xsd"), "");
    EXPECT_TRUE(schemas.empty());
}

// A member may name only files of the collection: a file beside it, outside
// the collection, is never read, whether included or imported.
TEST(XmlSchemaCollectionFailure, FilesOutsideTheCollectionAreNotRead) {
    ScratchFolder folder;
    folder.write("outside.xsd",
                 "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' "
                 "targetNamespace='urn:member'><xs:element name='secret'/></xs:schema>");
    folder.write("outsideNs.xsd",
                 "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' "
                 "targetNamespace='urn:outside'><xs:element name='secret'/></xs:schema>");
    const auto including = folder.write(
        "including.xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:member'>"
        "<xs:include schemaLocation='outside.xsd'/><xs:element name='root'/></xs:schema>");
    const auto importing = folder.write(
        "importing.xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:member' "
        "xmlns:o='urn:outside'><xs:import namespace='urn:outside' schemaLocation='" +
            (folder.path() / "outsideNs.xsd").string() +
            "'/><xs:element name='root'><xs:complexType><xs:sequence><xs:element "
            "ref='o:secret'/></xs:sequence></xs:complexType></xs:element></xs:schema>");

    for (const auto& member : {including, importing}) {
        SchemaCollection schemas;
        const std::string reason = schemas.add("urn:member", member);
        EXPECT_NE(reason, "") << member;
        EXPECT_TRUE(schemas.empty());
    }
}

}  // namespace
}  // namespace kt500::xml
