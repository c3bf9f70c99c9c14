// XPath 1.0 queries with registered namespace prefixes. Namespaces holds the
// prefix table in the form of the system's SelectionNamespaces string
// ("xmlns:data='x-schema:QDLDatafileSchema.xml' xmlns:typeInfo='...'").
#pragma once

#include "xml/Node.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kt500::xml {

class Document;

class Namespaces {
public:
    Namespaces() = default;
    // Parses "xmlns:p='uri' xmlns:q=\"uri\"". Throws std::invalid_argument
    // on text that is not of that form.
    static Namespaces fromSelection(std::string_view selectionNamespaces);

    void add(std::string prefix, std::string uri);
    [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& entries() const noexcept {
        return m_entries;
    }

private:
    std::vector<std::pair<std::string, std::string>> m_entries;
};

// A query context for one document; reuse it for many queries.
class XPath {
public:
    XPath(const Document& document, const Namespaces& namespaces);
    // A context for the document a node belongs to (a document owned elsewhere).
    XPath(Node node, const Namespaces& namespaces);
    ~XPath();
    XPath(const XPath&) = delete;
    XPath& operator=(const XPath&) = delete;

    // Nodes (elements or attributes) matching the expression, in document
    // order, evaluated relative to context (the document element when
    // nothing). Throws std::runtime_error for an expression that does not
    // compile or does not yield a node set.
    [[nodiscard]] std::vector<Node> select(std::string_view expression, Node context = {}) const;
    // First match or nothing.
    [[nodiscard]] Node selectSingle(std::string_view expression, Node context = {}) const;

private:
    XPath(xmlDoc* document, const Namespaces& namespaces);

    struct Impl;
    Impl* m_impl;
};

}  // namespace kt500::xml
