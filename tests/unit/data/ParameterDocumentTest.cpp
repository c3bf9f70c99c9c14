#include "data/ParameterDocument.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"
#include "unit/data/DataTestSupport.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::data {
namespace {

using test::Parsed;

// The two-step query as written: the copy decides whether the name exists,
// the live document gives the node.
xml::Node ByQuery(const xml::Document& live, const xml::Document& copy, std::string_view name) {
    static const xml::Namespaces prefixes =
        xml::Namespaces::fromSelection(ParameterDocument::SelectionNamespaces);
    const std::string query = ParameterDocument::ParameterQuery(name);
    if (!xml::XPath(copy, prefixes).selectSingle(query)) {
        return {};
    }
    return xml::XPath(live, prefixes).selectSingle(query);
}

TEST(ParameterDocumentTest, LookupsReturnWhatTheQueriesReturn) {
    const xml::Document live = Parsed(
        "<data:dtm xmlns:data='x-schema:QDLDatafileSchema.xml'>"
        "<data:persistentData><data:parameters>"
        "<data:parameter name='hartTag' value='first'/>"
        "<data:parameter name='hartTag' value='second'/>"
        "<data:parameter name='onlyHere' value='x'/>"
        "</data:parameters></data:persistentData>"
        "<data:persistentData><data:parameters>"
        "<data:parameter name='later' value='y'/>"
        "</data:parameters></data:persistentData></data:dtm>");
    // The copy lacks "onlyHere" and knows "ghost", which the live document lacks.
    const xml::Document copy = Parsed(
        "<data:dtm xmlns:data='x-schema:QDLDatafileSchema.xml'><data:persistentData>"
        "<data:parameters><data:parameter name='hartTag'/><data:parameter name='later'/>"
        "<data:parameter name='ghost'/></data:parameters></data:persistentData>"
        "<data:requestGroups><data:requestGroup name='operationUnit'>"
        "<data:includedParam name='hartTag'/><data:includedParam name='later'/>"
        "</data:requestGroup></data:requestGroups></data:dtm>");
    const ParameterDocument document(live.root(), copy);
    for (const char* name : {"hartTag", "later", "onlyHere", "ghost", "", "missing"}) {
        EXPECT_EQ(document.ParameterNodeByName(name), ByQuery(live, copy, name)) << name;
    }
    EXPECT_EQ(document.ParameterNodeByName("hartTag").attribute("value"), "first");

    const xml::Node group = document.RequestGroupByName("operationUnit");
    ASSERT_TRUE(group);
    EXPECT_EQ(document.IncludedParams(group), (std::vector<std::string>{"hartTag", "later"}));
    EXPECT_FALSE(document.RequestGroupByName("alertSettings"));
    EXPECT_THROW((void)document.ParameterNodeByName("it's"), std::invalid_argument);
}

TEST(ParameterDocumentTest, EveryParameterOfEveryFamilyIsFoundAsByQuery) {
    const simulator::ParameterDocumentBuilder builder(std::filesystem::path(KT500_SHARE_DIR) /
                                                      "devices");
    for (const char* key : {"KT520_7", "KT520_4", "KT540_1.0", "PL500_2"}) {
        const xml::Document live = builder.build(*simulator::DeviceCatalogue::find(key));
        const xml::Document copy = live.clone();
        const ParameterDocument document(live.root(), copy);
        const auto parameters =
            xml::XPath(copy, xml::Namespaces::fromSelection(ParameterDocument::SelectionNamespaces))
                .select("data:persistentData/data:parameters/data:parameter");
        ASSERT_FALSE(parameters.empty()) << key;
        for (const xml::Node& parameter : parameters) {
            const std::string name = parameter.attribute("name");
            EXPECT_EQ(document.ParameterNodeByName(name), ByQuery(live, copy, name))
                << key << " " << name;
        }
    }
}

}  // namespace
}  // namespace kt500::data
