// The parameter document twice over: the live node that the BL owns (whose
// attributes hold the data set's values) and the copy made at start-up with
// the two namespaces, which answers every query by name. Lookups by name are
// the hottest queries of the value routing (one per item of every reply), so
// the document is indexed once: a lookup returns exactly the node that the
// XPath query of the same name would, in a hash lookup.
#pragma once

#include "xml/Document.h"
#include "xml/XPath.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kt500::data {

class ParameterDocument {
public:
    static constexpr const char* SelectionNamespaces =
        "xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'";

    // liveNode: the root the BL handed over; copy: xmlDataFile, loaded from it.
    ParameterDocument(xml::Node liveNode, const xml::Document& copy);

    // The live node's parameter of that name when the copy knows the name,
    // else nothing. A name that cannot stand in the query's quotes is a
    // run-time failure, as the query would be.
    [[nodiscard]] xml::Node ParameterNodeByName(std::string_view strName) const;
    // The copy's request group of that name, or nothing.
    [[nodiscard]] xml::Node RequestGroupByName(std::string_view strName) const;
    // The parameter names of a group, in sending order.
    [[nodiscard]] std::vector<std::string> IncludedParams(xml::Node group) const;

    // The query forms themselves, for callers that need the XPath result.
    [[nodiscard]] static std::string ParameterQuery(std::string_view strName);
    [[nodiscard]] static std::string RequestGroupQuery(std::string_view strName);

private:
    // Looked up by the caller's view of a name, without a copy of it.
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept {
            return std::hash<std::string_view>{}(name);
        }
    };
    using Index = std::unordered_map<std::string, xmlNode*, NameHash, std::equal_to<>>;
    static Index indexParameters(const xml::XPath& query, xml::Node context);
    static void requireQuotable(std::string_view strName);

    xml::Node m_live;
    Index m_copyParameters;
    Index m_liveParameters;
    Index m_requestGroups;
};

}  // namespace kt500::data
