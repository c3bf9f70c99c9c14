#include "xml/Document.h"
#include "xml/Node.h"
#include "xml/XPath.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::xml {
namespace {

using test::parseOrFail;

// The namespace of an element after the document is written and read again.
std::string namespaceAfterReread(const Document& doc, const std::string& path) {
    Document reread = parseOrFail(doc.toXml());
    return XPath(reread, {}).selectSingle(path).namespaceUri();
}

TEST(XmlNode, AttributesReadWriteAndRemove) {
    Document doc = parseOrFail("<r xmlns:p='urn:p' a='1' b='' p:n='ns'/>");
    Node root = doc.root();
    EXPECT_EQ(root.findAttribute("b"), std::optional<std::string>(""));
    EXPECT_FALSE(root.hasAttribute("n"));  // not by the local name of a namespaced one
    EXPECT_EQ(root.findAttribute("n"), std::nullopt);
    EXPECT_EQ(root.findAttribute("a").value_or("") + root.attribute("ab"), "1");  // whole names only
    root.setAttribute("a", "2");
    root.setAttribute("c", "x");
    root.removeAttribute("b");
    root.removeAttribute("absent");
    EXPECT_EQ(root.toXml(), "<r xmlns:p=\"urn:p\" a=\"2\" p:n=\"ns\" c=\"x\"/>");
}

TEST(XmlNode, TextRoundTripsEscapedAndReplacesChildren) {
    const std::string tricky = "a < b && c > 'd' \"e\" &amp; ]]> \xC3\xA4\t\n";
    Document doc = Document::create("r");
    Node item = doc.root().appendElement("item");
    item.setText(tricky);
    item.setAttribute("v", tricky);
    Document again = parseOrFail(doc.toXml());
    EXPECT_EQ(again.root().firstChildElement("item").text(), tricky);
    EXPECT_EQ(again.root().firstChildElement("item").attribute("v"), tricky);

    Document mixed = parseOrFail("<r><a>x<b>y</b>z</a></r>");
    Node a = mixed.root().firstChildElement("a");
    EXPECT_EQ(a.text(), "xyz");
    // Text in several pieces, in CDATA alone, and an attribute node's own text.
    Document pieces = parseOrFail("<r v='1'><a>x<![CDATA[<y>]]>z</a><b><![CDATA[&]]></b><c/></r>");
    EXPECT_EQ(pieces.root().firstChildElement("a").text(), "x<y>z");
    EXPECT_EQ(pieces.root().firstChildElement("b").text(), "&");
    EXPECT_EQ(pieces.root().firstChildElement("c").text(), "");
    Node value = XPath(pieces, {}).selectSingle("/r/@v");
    EXPECT_EQ(value.text(), "1");
    value.setText("2 & 3");
    EXPECT_EQ(pieces.root().attribute("v") + value.text(), "2 & 32 & 3");
    a.setText("new");
    EXPECT_EQ(mixed.root().toXml(), "<r><a>new</a></r>");

    // Text and names that XML cannot hold are refused.
    EXPECT_THROW(doc.root().setText(std::string("a\x01")), std::invalid_argument);
    EXPECT_THROW(doc.root().setText("\xC3"), std::invalid_argument);
    EXPECT_THROW(doc.root().setAttribute("a", std::string("x\0y", 3)), std::invalid_argument);
    EXPECT_THROW(doc.root().setAttribute("not a name", "x"), std::invalid_argument);
    EXPECT_THROW(doc.root().appendElement("p:q"), std::invalid_argument);
}

TEST(XmlNode, NothingAnswersEmptyAndThrowsOnChangeNamingTheOperation) {
    Node nothing;
    EXPECT_EQ(nothing.name() + nothing.text() + nothing.attribute("a") + nothing.toXml(), "");
    EXPECT_TRUE(nothing.childElements().empty());
    EXPECT_FALSE(nothing.firstChildElement());

    const auto throwsNaming = [](const char* operation, auto&& change) {
        try {
            change();
            ADD_FAILURE() << operation << " did not throw";
        } catch (const std::logic_error& e) {
            EXPECT_NE(std::string(e.what()).find(operation), std::string::npos) << e.what();
        }
    };
    Document doc = Document::create("r");
    throwsNaming("setAttribute", [&] { nothing.setAttribute("a", "1"); });
    throwsNaming("setText", [&] { nothing.setText("x"); });
    throwsNaming("appendElement", [&] { nothing.appendElement("x"); });
    throwsNaming("appendChild", [&] { doc.root().appendChild(Node()); });
    throwsNaming("cloneInto", [&] { nothing.cloneInto(doc.root()); });
    throwsNaming("remove", [&] { nothing.remove(); });
}

// Elements in the default namespace are followed by the requests of the
// send and upload scenarios.
TEST(XmlNode, NestingIsCountedOverEveryBranchUpToTheLimit) {
    // The deepest branch is not the first: the walk comes back up and on.
    Document doc = Document::create("r");
    doc.root().appendElement("shallow").appendElement("a");
    Node deep = doc.root().appendElement("deep");
    for (int level = 3; level <= kMaxNesting; ++level) {
        deep = deep.appendElement("n");
    }
    EXPECT_TRUE(doc.root().nestsWithin(kMaxNesting));
    EXPECT_FALSE(doc.root().nestsWithin(kMaxNesting - 1));
    EXPECT_TRUE(Document::parse(doc.toXml()).ok());
    deep.appendElement("n");
    EXPECT_FALSE(doc.root().nestsWithin(kMaxNesting));
    // A parse refuses what the walk refuses.
    EXPECT_FALSE(Document::parse(doc.toXml()).ok());
    EXPECT_TRUE(Node().nestsWithin(1));
}

TEST(XmlNode, AppendElementReusesOrDeclaresTheNamespace) {
    EXPECT_EQ(Document::create("r").root().appendElement("c").namespaceUri(), "");
    Document prefixed = parseOrFail("<r xmlns:p='urn:p'/>");
    EXPECT_EQ(prefixed.root().appendElement("a", "urn:p").toXml(), "<p:a/>");
    prefixed.root().appendElement("b", "urn:q").appendElement("c");
    EXPECT_EQ(namespaceAfterReread(prefixed, "*[2]/*"), "urn:q");
}

TEST(XmlNode, CloneIntoAnotherDocumentKeepsNamespaces) {
    Document source = parseOrFail(
        "<d:dtm xmlns:d='urn:data' xmlns:t='urn:type'><d:parameters>"
        "<d:parameter name='p1' t:kind='x'/></d:parameters><plain/></d:dtm>");
    Document target = parseOrFail("<dtm xmlns='urn:other'><slot/></dtm>");
    Node slot = target.root().firstChildElement("slot");
    Node copy = source.root().firstChildElement().firstChildElement().cloneInto(slot);
    source.root().firstChildElement("plain").cloneInto(slot);
    source = Document::create("gone");  // the copy must not depend on the source
    EXPECT_EQ(copy.raw()->doc, target.raw());

    Document reread = parseOrFail(target.toXml());
    const auto copied = reread.root().firstChildElement("slot").childElements();
    ASSERT_EQ(copied.size(), 2U);
    EXPECT_EQ(copied[0].namespaceUri(), "urn:data");
    ASSERT_NE(copied[0].raw()->properties, nullptr);
    EXPECT_EQ(Node(reinterpret_cast<xmlNode*>(copied[0].raw()->properties->next)).namespaceUri(),
              "urn:type");
    EXPECT_EQ(copied[1].namespaceUri(), "");  // stays out of the target's default namespace
}

TEST(XmlNode, AppendChildMovesWithinTheDocumentAndRemoveTakesAttributesToo) {
    Document doc = parseOrFail("<r k='1'><a xmlns:p='urn:p'><p:m/></a><b/></r>");
    Node a = doc.root().firstChildElement("a");
    Node b = doc.root().firstChildElement("b");
    b.appendChild(a.firstChildElement());
    a.remove();
    EXPECT_FALSE(a);
    EXPECT_EQ(namespaceAfterReread(doc, "b/*"), "urn:p");
    EXPECT_THROW(b.appendChild(doc.root()), std::invalid_argument);
    Document other = Document::create("o");
    EXPECT_THROW(b.appendChild(other.root()), std::invalid_argument);

    XPath(doc, {}).selectSingle("@k").remove();
    EXPECT_FALSE(doc.root().hasAttribute("k"));
}

}  // namespace
}  // namespace kt500::xml
