#include "xml/Document.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace kt500::xml {
namespace {

using test::parseOrFail;
using test::readFile;
using test::ScratchFolder;

// A failed load has no document, and the parser's reason with a line.
void expectRefused(std::string_view text, std::string_view reasonPart) {
    const LoadResult result = Document::parse(text);
    EXPECT_FALSE(result.ok()) << text;
    EXPECT_NE(result.error.find(reasonPart), std::string::npos) << result.error;
    EXPECT_EQ(result.message(), result.error);
}

TEST(XmlDocumentLoadFailure, ReportsTheParserReasonWithItsLine) {
    expectRefused("<r>\n<a>\n</b></r>", "line 3: Opening and ending tag mismatch");
    expectRefused("<r>\n<a>", "line 2:");
    expectRefused("just text", "line 1: Start tag expected");
    expectRefused("<r>&undefined;</r>", "line 1: Entity 'undefined' not defined");
    expectRefused("\xff\xfe garbage \x01", "line 1:");
    expectRefused("<?xml version='1.0'?>", "line 1:");
}

TEST(XmlDocumentLoadFailure, EmptyAndOversizeInputAreRefusedBeforeParsing) {
    expectRefused("", "empty");
    ParseOptions small;
    small.maxBytes = 8;
    const LoadResult big = Document::parse("<r>123456</r>", small);
    EXPECT_FALSE(big.ok());
    EXPECT_NE(big.error.find("more than the 8 allowed"), std::string::npos) << big.error;
    EXPECT_TRUE(Document::parse("<r>1</r>", small).ok());
}

TEST(XmlDocumentLoadFailure, MissingOrOversizeFile) {
    ScratchFolder folder;
    const LoadResult missing = Document::load(folder.path() / "absent.xml");
    EXPECT_FALSE(missing.ok());
    EXPECT_NE(missing.error.find("absent.xml"), std::string::npos) << missing.error;

    ParseOptions small;
    small.maxBytes = 4;
    EXPECT_FALSE(Document::load(folder.write("big.xml", "<r>big</r>"), small).ok());
    const LoadResult loaded = Document::load(folder.write("ok.xml", "<r>fine</r>"));
    ASSERT_TRUE(loaded.ok()) << loaded.message();
    EXPECT_EQ(loaded.document->root().text(), "fine");
}

TEST(XmlDocumentSerialise, Utf8WithDeclarationAndNoReformatting) {
    Document doc =
        parseOrFail("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE4<a/>\n  <b/></r>");
    EXPECT_EQ(doc.toXml(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\xC3\xA4<a/>\n  <b/></r>\n");
}

TEST(XmlDocumentCreate, RootInANamespace) {
    Document doc = Document::create("dtm", "x-schema:QDLCommunicationSchema.xml");
    EXPECT_EQ(doc.root().name(), "dtm");
    EXPECT_EQ(doc.root().namespaceUri(), "x-schema:QDLCommunicationSchema.xml");
    EXPECT_NE(doc.toXml().find("<dtm xmlns=\"x-schema:QDLCommunicationSchema.xml\"/>"),
              std::string::npos);
}

TEST(XmlDocumentClone, IsIndependentOfTheOriginal) {
    Document original = parseOrFail("<r><p value='1'/></r>");
    Document copy = original.clone();
    copy.root().firstChildElement().setAttribute("value", "2");
    copy.root().appendElement("added");
    EXPECT_EQ(original.root().toXml(), "<r><p value=\"1\"/></r>");
    original = Document::create("other");
    EXPECT_EQ(copy.root().toXml(), "<r><p value=\"2\"/><added/></r>");
}

TEST(XmlDocumentSetRoot, CopiesTheNodeFromAnotherDocument) {
    Document source = parseOrFail("<a xmlns='urn:a'><b><c/></b></a>");
    Document target = parseOrFail("<old/>");
    target.setRoot(source.root().firstChildElement());
    source = Document::create("gone");
    Document reread = parseOrFail(target.toXml());
    EXPECT_EQ(reread.root().name(), "b");
    EXPECT_EQ(reread.root().namespaceUri(), "urn:a");
    EXPECT_EQ(reread.root().firstChildElement().namespaceUri(), "urn:a");
    EXPECT_THROW(target.setRoot(Node()), std::logic_error);
}

TEST(XmlDocumentSave, ReplacesTheFileAndLeavesNoTemporary) {
    ScratchFolder folder;
    const auto file = folder.write("data.xml", "old contents");
    Document doc = parseOrFail("<r>new</r>");
    ASSERT_EQ(doc.save(file), "");
    EXPECT_EQ(readFile(file), doc.toXml());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "data.xml.tmp"));
}

TEST(XmlDocumentSave, FailureGivesAReasonAndKeepsTheFormerFile) {
    ScratchFolder folder;
    Document doc = parseOrFail("<r/>");
    const std::string missingFolder = doc.save(folder.path() / "no" / "such" / "file.xml");
    EXPECT_NE(missingFolder.find("file.xml.tmp"), std::string::npos) << missingFolder;

    // The target's name is taken by a folder: the rename fails after writing.
    const auto blocked = folder.path() / "blocked.xml";
    std::filesystem::create_directories(blocked / "inside");
    const std::string notReplaced = doc.save(blocked);
    EXPECT_NE(notReplaced.find("blocked.xml"), std::string::npos) << notReplaced;
    EXPECT_TRUE(std::filesystem::is_directory(blocked / "inside"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "blocked.xml.tmp"));

    if (::geteuid() != 0) {  // root writes anywhere
        const auto readOnly = folder.path() / "ro";
        std::filesystem::create_directories(readOnly);
        const auto file = folder.write("ro/keep.xml", "former");
        ::chmod(readOnly.c_str(), 0555);
        EXPECT_NE(doc.save(file).find("Permission denied"), std::string::npos);
        ::chmod(readOnly.c_str(), 0755);
        EXPECT_EQ(readFile(file), "former");
    }
}

}  // namespace
}  // namespace kt500::xml
