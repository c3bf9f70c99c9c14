#include "xml/XPath.h"

#include "xml/Document.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::xml {
namespace {

using test::parseOrFail;

constexpr std::string_view kSelection =
    "xmlns:data='x-schema:QDLDatafileSchema.xml' "
    "xmlns:typeInfo=\"x-schema:QDLDeviceTypeInfoSchema.xml\"";

constexpr std::string_view kParameters = R"(<data:dtm xmlns:data='x-schema:QDLDatafileSchema.xml'
    xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'>
  <typeInfo:info><typeInfo:device><typeInfo:publishedInfo deviceTypeId='KT520' name='KT 520'/>
  </typeInfo:device></typeInfo:info>
  <data:persistentData><data:parameters>
    <data:parameter name='setpoint' value='12.5'/>
    <data:parameter name='tag' value='V-101'/>
  </data:parameters></data:persistentData>
  <data:requestGroups>
    <data:requestGroup name='operationUnit' lastUpdate='2024-01-02 10:11:12'>
      <data:includedParam name='setpoint'/><data:includedParam name='tag'/>
    </data:requestGroup>
  </data:requestGroups>
</data:dtm>)";

class XmlXPathTest : public ::testing::Test {
protected:
    Document m_doc = parseOrFail(kParameters);
    XPath m_xpath{m_doc, Namespaces::fromSelection(kSelection)};
};

TEST_F(XmlXPathTest, RelativePathsStartAtTheDocumentElementAbsoluteOnesIgnoreTheContext) {
    EXPECT_EQ(m_xpath.select("data:persistentData/data:parameters/data:parameter").size(), 2U);
    const Node group =
        m_xpath.selectSingle("//data:requestGroups/data:requestGroup[@name = \"operationUnit\"]");
    ASSERT_TRUE(group);
    EXPECT_EQ(m_xpath.selectSingle("//typeInfo:publishedInfo", group).attribute("deviceTypeId"),
              "KT520");
    const auto included = m_xpath.select("data:includedParam", group);
    ASSERT_EQ(included.size(), 2U);
    EXPECT_EQ(included[1].attribute("name"), "tag");
}

TEST_F(XmlXPathTest, AttributeSelectionReadsAndWritesTheAttribute) {
    Node stamp = m_xpath.selectSingle("data:requestGroups/data:requestGroup/@lastUpdate");
    EXPECT_EQ(stamp.text(), "2024-01-02 10:11:12");
    stamp.setText("2025-03-04 05:06:07 & later");
    EXPECT_EQ(stamp.parent().attribute("lastUpdate"), "2025-03-04 05:06:07 & later");
}

TEST_F(XmlXPathTest, NoMatchIsEmptyAndBadExpressionsThrow) {
    EXPECT_FALSE(m_xpath.selectSingle("//data:parameter[@name = 'absent']"));
    // Namespace nodes are not elements; they are left out, not handed back.
    EXPECT_TRUE(m_xpath.select("namespace::*").empty());
    for (const char* bad : {"data:parameter[@name = '", "unknown:parameter",
                            "count(//data:parameter)", "$undefined"}) {
        EXPECT_THROW((void)m_xpath.select(bad), std::runtime_error) << bad;
    }
    Document other = parseOrFail("<r/>");
    EXPECT_THROW((void)m_xpath.select("*", other.root()), std::invalid_argument);
    // The context stays usable after a failure.
    EXPECT_EQ(m_xpath.select("//data:parameter").size(), 2U);
}

TEST(XmlNamespaces, SelectionFormWithEitherQuote) {
    const Namespaces ns = Namespaces::fromSelection(kSelection);
    ASSERT_EQ(ns.entries().size(), 2U);
    EXPECT_EQ(ns.entries()[1].second, "x-schema:QDLDeviceTypeInfoSchema.xml");
    EXPECT_TRUE(Namespaces::fromSelection("  ").entries().empty());
    EXPECT_EQ(Namespaces::fromSelection("xmlns:a=\"it's\"").entries()[0].second, "it's");
    for (const char* bad :
         {"xmlns:data", "xmlns:data=x", "xmlns:data='x", "xmlns='x'", "data='x'", "xmlns:1a='x'",
          "xmlns:a='x'xmlns:b='y'", "xmlns:a=''", "xmlns:a:b='x'"}) {
        EXPECT_THROW((void)Namespaces::fromSelection(bad), std::invalid_argument) << bad;
    }
}

}  // namespace
}  // namespace kt500::xml
