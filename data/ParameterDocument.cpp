#include "data/ParameterDocument.h"

#include <stdexcept>

namespace kt500::data {

namespace {

constexpr const char* kAllParameters = "//data:persistentData/data:parameters/data:parameter";
constexpr const char* kAllRequestGroups = "//data:requestGroups/data:requestGroup";

}  // namespace

ParameterDocument::Index ParameterDocument::indexParameters(const xml::XPath& query,
                                                            xml::Node context) {
    Index index;
    // Document order: the first parameter of a name is the one a query finds.
    for (const xml::Node& parameter : query.select(kAllParameters, context)) {
        index.emplace(parameter.attribute("name"), parameter.raw());
    }
    return index;
}

ParameterDocument::ParameterDocument(xml::Node liveNode, const xml::Document& copy)
    : m_live(liveNode) {
    const xml::Namespaces namespaces = xml::Namespaces::fromSelection(SelectionNamespaces);
    const xml::XPath copyQuery(copy, namespaces);
    m_copyParameters = indexParameters(copyQuery, copy.root());
    for (const xml::Node& group : copyQuery.select(kAllRequestGroups, copy.root())) {
        m_requestGroups.emplace(group.attribute("name"), group.raw());
    }
    if (m_live) {
        // The live node belongs to the BL's document; a query on it searches that document.
        m_liveParameters = indexParameters(xml::XPath(m_live, namespaces), m_live);
    }
}

void ParameterDocument::requireQuotable(std::string_view strName) {
    if (strName.find('\'') != std::string_view::npos) {
        throw std::invalid_argument("Invalid expression: the name " + std::string(strName) +
                                    " cannot stand in a query");
    }
}

std::string ParameterDocument::ParameterQuery(std::string_view strName) {
    return "//data:persistentData/data:parameters/data:parameter[@name = '" + std::string(strName) +
           "']";
}

std::string ParameterDocument::RequestGroupQuery(std::string_view strName) {
    return "//data:requestGroups/data:requestGroup[@name = '" + std::string(strName) + "']";
}

xml::Node ParameterDocument::ParameterNodeByName(std::string_view strName) const {
    requireQuotable(strName);
    if (m_copyParameters.find(strName) == m_copyParameters.end()) {
        return {};
    }
    const auto live = m_liveParameters.find(strName);
    return live == m_liveParameters.end() ? xml::Node() : xml::Node(live->second);
}

xml::Node ParameterDocument::RequestGroupByName(std::string_view strName) const {
    requireQuotable(strName);
    const auto group = m_requestGroups.find(strName);
    return group == m_requestGroups.end() ? xml::Node() : xml::Node(group->second);
}

std::vector<std::string> ParameterDocument::IncludedParams(xml::Node group) const {
    std::vector<std::string> names;
    for (const xml::Node& included : group.childElements("includedParam")) {
        names.push_back(included.attribute("name"));
    }
    return names;
}

}  // namespace kt500::data
