#include "xml/Document.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

namespace kt500::xml {
namespace {

using test::parseError;
using test::parseOrFail;
using test::readFile;
using test::ScratchFolder;

TEST(XmlDocument, LoadFailureGivesTheReasonWithItsLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"<r>\n<a>\n</b></r>", "line 3: Opening and ending tag mismatch"},
        {"just text", "line 1: Start tag expected"},
        {"<r>&undefined;</r>", "line 1: Entity 'undefined' not defined"},
        {"\xff\xfe garbage \x01", "line 1:"},
        {"<?xml version='1.0'?>", "line 1:"},
        {"", "empty"}};
    for (const auto& [text, reason] : cases) {
        EXPECT_NE(parseError(text).find(reason), std::string::npos) << text;
    }
}

TEST(XmlDocument, OversizeInputAndMissingFilesAreRefusedBeforeParsing) {
    ParseOptions small;
    small.maxBytes = 11;
    EXPECT_NE(parseError("<r>1234567</r>", small).find("more than the 11 allowed"),
              std::string::npos);
    EXPECT_TRUE(Document::parse("<r>1</r>", small).ok());

    ScratchFolder folder;
    EXPECT_NE(Document::load(folder.path() / "absent.xml").error.find("absent.xml"),
              std::string::npos);
    EXPECT_FALSE(Document::load(folder.write("big.xml", "<r>1234567</r>"), small).ok());
}

TEST(XmlDocument, SerialisesAsUtf8WithDeclarationAndNoReformatting) {
    Document doc =
        parseOrFail("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE4<a/>\n  <b/></r>");
    EXPECT_EQ(doc.toXml(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\xC3\xA4<a/>\n  <b/></r>\n");
    EXPECT_NE(Document::create("dtm", "urn:c").toXml().find("<dtm xmlns=\"urn:c\"/>"),
              std::string::npos);
}

TEST(XmlDocument, CloneAndSetRootCopyIndependentlyOfTheSource) {
    Document original = parseOrFail("<r><p value='1'/></r>");
    Document copy = original.clone();
    copy.root().firstChildElement().setAttribute("value", "2");
    EXPECT_EQ(original.root().toXml(), "<r><p value=\"1\"/></r>");

    Document source = parseOrFail("<a xmlns='urn:a'><b><c/></b></a>");
    copy.setRoot(source.root().firstChildElement());
    source = Document::create("gone");
    Document reread = parseOrFail(copy.toXml());
    EXPECT_EQ(reread.root().name(), "b");
    EXPECT_EQ(reread.root().firstChildElement().namespaceUri(), "urn:a");
    EXPECT_THROW(copy.setRoot(Node()), std::logic_error);
}

TEST(XmlDocument, SaveReplacesTheFileOrGivesAReasonAndKeepsTheFormerOne) {
    ScratchFolder folder;
    Document doc = parseOrFail("<r>new</r>");
    const auto file = folder.write("data.xml", "old contents");
    ASSERT_EQ(doc.save(file), "");
    EXPECT_EQ(readFile(file), doc.toXml());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "data.xml.tmp"));

    // The target's name is taken by a folder: the rename fails after writing.
    const auto blocked = folder.path() / "blocked.xml";
    std::filesystem::create_directories(blocked / "inside");
    EXPECT_NE(doc.save(blocked).find("blocked.xml"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_directory(blocked / "inside"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "blocked.xml.tmp"));
}

}  // namespace
}  // namespace kt500::xml
