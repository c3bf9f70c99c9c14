// A non-owning handle on an element (or attribute) of a Document. Valid while
// its document lives and the node is not removed. A default-constructed Node
// is "nothing": every query on it returns empty, every change throws.
#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::xml {

class Node {
public:
    Node() = default;
    explicit Node(xmlNode* node) noexcept : m_node(node) {}

    [[nodiscard]] explicit operator bool() const noexcept { return m_node != nullptr; }
    [[nodiscard]] xmlNode* raw() const noexcept { return m_node; }
    [[nodiscard]] bool isElement() const noexcept;

    // Local name (without prefix) and namespace URI ("" when none).
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string namespaceUri() const;

    // Attributes by local name, without namespace. Absent reads as "".
    [[nodiscard]] std::string attribute(std::string_view name) const;
    [[nodiscard]] std::optional<std::string> findAttribute(std::string_view name) const;
    [[nodiscard]] bool hasAttribute(std::string_view name) const;
    void setAttribute(std::string_view name, std::string_view value);
    void removeAttribute(std::string_view name);

    // Text content of the node and all its descendants; setText replaces
    // every child by one text node (escaped when serialised).
    [[nodiscard]] std::string text() const;
    void setText(std::string_view text);

    // Element children, optionally only those with this local name.
    [[nodiscard]] Node firstChildElement(std::string_view localName = {}) const;
    [[nodiscard]] std::vector<Node> childElements(std::string_view localName = {}) const;
    [[nodiscard]] Node nextSiblingElement(std::string_view localName = {}) const;
    [[nodiscard]] Node parent() const;
    // Whether the elements under this one nest at most levels deep (this
    // one is level 1); walked without recursion, so any depth is safe.
    [[nodiscard]] bool nestsWithin(int levels) const;

    // Creates an element as the last child, in the given namespace URI (an
    // empty URI inherits the namespace in scope at this node, if any, so
    // that <dtm xmlns='...'> children stay in the document's namespace).
    Node appendElement(std::string_view localName, std::string_view namespaceUri = {});
    // Moves a node of the same document to be the last child.
    Node appendChild(Node child);
    // Deep copy of this node as the last child of newParent (any document).
    Node cloneInto(Node newParent) const;
    // Removes the node from its document and frees it; the handle becomes nothing.
    void remove();

    // The subtree as XML text, without an XML declaration.
    [[nodiscard]] std::string toXml() const;

    friend bool operator==(const Node& a, const Node& b) noexcept { return a.m_node == b.m_node; }

private:
    void requireNode(const char* operation) const;
    void requireElement(const char* operation) const;

    xmlNode* m_node = nullptr;
};

}  // namespace kt500::xml
