#include "xml/Document.h"
#include "xml/Node.h"
#include "xml/XPath.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::xml {
namespace {

using test::parseOrFail;

constexpr std::string_view kRequestTemplate =
    "<?xml version='1.0'?><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
    "<communicationRequest name='1' access='read'><item name='1' unit='noUnit'>"
    "<floatVal>1</floatVal></item></communicationRequest></dtm>";
constexpr std::string_view kCommunication = "x-schema:QDLCommunicationSchema.xml";

TEST(XmlNodeAttributes, ReadWriteAndRemove) {
    Document doc = parseOrFail("<r a='1' b=''/>");
    Node root = doc.root();
    EXPECT_EQ(root.attribute("a"), "1");
    EXPECT_EQ(root.findAttribute("b"), std::optional<std::string>(""));
    EXPECT_EQ(root.findAttribute("c"), std::nullopt);
    EXPECT_EQ(root.attribute("c"), "");
    EXPECT_TRUE(root.hasAttribute("b"));

    root.setAttribute("a", "2");
    root.setAttribute("c", "x");
    root.removeAttribute("b");
    root.removeAttribute("absent");
    EXPECT_EQ(root.toXml(), "<r a=\"2\" c=\"x\"/>");
}

TEST(XmlNodeAttributes, NamespacedAttributeIsNotReadByLocalName) {
    Document doc = parseOrFail("<r xmlns:p='urn:p' p:a='ns'/>");
    EXPECT_FALSE(doc.root().hasAttribute("a"));
    EXPECT_EQ(doc.root().attribute("a"), "");
}

TEST(XmlNodeText, EscapedValuesRoundTrip) {
    const std::string tricky = "a < b && c > 'd' \"e\" &amp; ]]> \xC3\xA4\t\n";
    Document doc = Document::create("r");
    Node item = doc.root().appendElement("item");
    item.setText(tricky);
    item.setAttribute("v", tricky);

    Document again = parseOrFail(doc.toXml());
    Node read = again.root().firstChildElement("item");
    EXPECT_EQ(read.text(), tricky);
    EXPECT_EQ(read.attribute("v"), tricky);
}

TEST(XmlNodeText, SetTextReplacesChildrenAndTextCoversDescendants) {
    Document doc = parseOrFail("<r><a>x<b>y</b>z</a></r>");
    Node a = doc.root().firstChildElement("a");
    EXPECT_EQ(a.text(), "xyz");
    a.setText("new");
    EXPECT_EQ(doc.root().toXml(), "<r><a>new</a></r>");
    a.setText("");
    EXPECT_EQ(doc.root().toXml(), "<r><a/></r>");
}

TEST(XmlNodeText, TextThatXmlCannotHoldIsRefused) {
    Document doc = Document::create("r");
    EXPECT_THROW(doc.root().setText(std::string("a\x01")), std::invalid_argument);
    EXPECT_THROW(doc.root().setText("\xC3"), std::invalid_argument);
    EXPECT_THROW(doc.root().setAttribute("a", std::string("x\0y", 3)), std::invalid_argument);
    EXPECT_THROW(doc.root().setAttribute("not a name", "x"), std::invalid_argument);
    EXPECT_THROW(doc.root().appendElement("p:q"), std::invalid_argument);
}

TEST(XmlNodeNavigation, ChildrenSiblingsAndParent) {
    Document doc = parseOrFail("<r>text<a n='1'/><!-- c --><b/><a n='2'/></r>");
    Node root = doc.root();
    EXPECT_EQ(root.childElements().size(), 3U);
    ASSERT_EQ(root.childElements("a").size(), 2U);
    EXPECT_EQ(root.childElements("a")[1].attribute("n"), "2");
    EXPECT_EQ(root.firstChildElement().name(), "a");
    EXPECT_EQ(root.firstChildElement("b").nextSiblingElement().attribute("n"), "2");
    EXPECT_EQ(root.firstChildElement().nextSiblingElement("a").attribute("n"), "2");
    EXPECT_FALSE(root.firstChildElement("missing"));
    EXPECT_EQ(root.firstChildElement().parent(), root);
    EXPECT_FALSE(root.parent());
}

TEST(XmlNodeNothing, QueriesAreEmptyAndChangesThrowNamingTheOperation) {
    Node nothing;
    EXPECT_EQ(nothing.name(), "");
    EXPECT_EQ(nothing.text(), "");
    EXPECT_EQ(nothing.attribute("a"), "");
    EXPECT_FALSE(nothing.hasAttribute("a"));
    EXPECT_TRUE(nothing.childElements().empty());
    EXPECT_FALSE(nothing.firstChildElement());
    EXPECT_EQ(nothing.toXml(), "");

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
    throwsNaming("removeAttribute", [&] { nothing.removeAttribute("a"); });
    throwsNaming("setText", [&] { nothing.setText("x"); });
    throwsNaming("appendElement", [&] { nothing.appendElement("x"); });
    throwsNaming("appendChild", [&] { nothing.appendChild(doc.root()); });
    throwsNaming("appendChild", [&] { doc.root().appendChild(Node()); });
    throwsNaming("cloneInto", [&] { nothing.cloneInto(doc.root()); });
    throwsNaming("cloneInto", [&] { doc.root().cloneInto(Node()); });
    throwsNaming("remove", [&] { nothing.remove(); });
}

TEST(XmlNodeAppendElement, EmptyUriInheritsTheDefaultNamespace) {
    Document doc = parseOrFail(kRequestTemplate);
    Node request = doc.root().firstChildElement("communicationRequest");
    request.firstChildElement("item").remove();
    Node item = request.appendElement("item");
    Node value = item.appendElement("stringVal");
    EXPECT_EQ(item.namespaceUri(), kCommunication);
    EXPECT_EQ(value.namespaceUri(), kCommunication);
    // No new declaration: the children serialise without a prefix or xmlns.
    EXPECT_EQ(request.toXml(),
              "<communicationRequest name=\"1\" access=\"read\"><item><stringVal/></item>"
              "</communicationRequest>");

    Document plain = Document::create("r");
    EXPECT_EQ(plain.root().appendElement("c").namespaceUri(), "");
}

TEST(XmlNodeAppendElement, GivenUriReusesOrDeclaresANamespace) {
    Document doc = parseOrFail("<r xmlns:p='urn:p'/>");
    Node reused = doc.root().appendElement("a", "urn:p");
    EXPECT_EQ(reused.toXml(), "<p:a/>");
    Node declared = doc.root().appendElement("b", "urn:q");
    EXPECT_EQ(declared.namespaceUri(), "urn:q");
    EXPECT_EQ(declared.appendElement("c").namespaceUri(), "urn:q");

    Document again = parseOrFail(doc.toXml());
    EXPECT_EQ(again.root().firstChildElement("b").firstChildElement("c").namespaceUri(), "urn:q");
}

TEST(XmlNodeCloneInto, AcrossDocumentsKeepsNamespaces) {
    Document source = parseOrFail(
        "<d:dtm xmlns:d='urn:data' xmlns:t='urn:type'><d:parameters>"
        "<d:parameter name='p1' t:kind='x'/></d:parameters></d:dtm>");
    Document target = parseOrFail("<dtm xmlns='urn:other'><slot/></dtm>");
    Node parameter = source.root().firstChildElement().firstChildElement();
    Node copy = parameter.cloneInto(target.root().firstChildElement("slot"));
    source = Document::create("gone");  // the copy must not depend on the source

    Document reread = parseOrFail(target.toXml());
    Node copied = reread.root().firstChildElement("slot").firstChildElement();
    EXPECT_EQ(copied.namespaceUri(), "urn:data");
    EXPECT_EQ(copied.attribute("name"), "p1");
    ASSERT_NE(copied.raw()->properties, nullptr);
    EXPECT_EQ(Node(reinterpret_cast<xmlNode*>(copied.raw()->properties->next)).namespaceUri(),
              "urn:type");
    EXPECT_EQ(copy.raw()->doc, target.raw());
}

TEST(XmlNodeCloneInto, ElementWithoutNamespaceStaysOutOfTheDefaultNamespace) {
    Document source = parseOrFail("<r><plain/></r>");
    Document target = parseOrFail("<dtm xmlns='urn:x'/>");
    source.root().firstChildElement().cloneInto(target.root());
    Document reread = parseOrFail(target.toXml());
    EXPECT_EQ(reread.root().firstChildElement().namespaceUri(), "");
}

TEST(XmlNodeAppendChild, MovesWithinTheDocumentKeepingNamespaces) {
    Document doc = parseOrFail("<r><a xmlns:p='urn:p'><p:m/></a><b/></r>");
    Node a = doc.root().firstChildElement("a");
    Node b = doc.root().firstChildElement("b");
    b.appendChild(a.firstChildElement());
    a.remove();
    EXPECT_FALSE(a);
    Document reread = parseOrFail(doc.toXml());
    EXPECT_EQ(reread.root().firstChildElement("b").firstChildElement("m").namespaceUri(), "urn:p");
    EXPECT_THROW(b.appendChild(doc.root()), std::invalid_argument);
    Document other = Document::create("o");
    EXPECT_THROW(b.appendChild(other.root()), std::invalid_argument);
}

TEST(XmlNodeRemove, AttributeSelectedByXPath) {
    Document doc = parseOrFail("<r a='1' b='2'/>");
    XPath xpath(doc, {});
    Node attribute = xpath.selectSingle("@a");
    ASSERT_TRUE(attribute);
    attribute.remove();
    EXPECT_EQ(doc.root().toXml(), "<r b=\"2\"/>");
}

}  // namespace
}  // namespace kt500::xml
