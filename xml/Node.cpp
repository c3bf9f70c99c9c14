#include "xml/Node.h"

#include "xml/NamespaceScope.h"
#include "xml/XmlFree.h"
#include "xml/XmlText.h"

#include <stdexcept>

namespace kt500::xml {

namespace {

std::string_view nameOf(const xmlChar* name) noexcept {
    return name != nullptr ? std::string_view(reinterpret_cast<const char*>(name))
                           : std::string_view();
}

bool matches(const xmlNode* node, std::string_view localName) {
    return node->type == XML_ELEMENT_NODE && (localName.empty() || nameOf(node->name) == localName);
}

xmlNode* firstElementFrom(xmlNode* node, std::string_view localName) {
    for (; node != nullptr; node = node->next) {
        if (matches(node, localName)) {
            return node;
        }
    }
    return nullptr;
}

bool isAncestorOrSelf(const xmlNode* candidate, const xmlNode* node) {
    for (; node != nullptr; node = node->parent) {
        if (node == candidate) {
            return true;
        }
    }
    return false;
}

// The attribute of this name in no namespace, found by walking the element's
// attributes: no copy of the name and none of the value on the way.
const xmlAttr* propertyOf(const xmlNode* element, std::string_view name) noexcept {
    for (const xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
        if (attr->ns == nullptr && nameOf(attr->name) == name) {
            return attr;
        }
    }
    return nullptr;
}

// The text of a node's children: a single text node (the usual value) is
// read in place, anything else is left to libxml2 to join.
std::string childrenText(const xmlNode* node, xmlNode* children) {
    if (children == nullptr) {
        return {};
    }
    if (children->next == nullptr &&
        (children->type == XML_TEXT_NODE || children->type == XML_CDATA_SECTION_NODE)) {
        return fromXml(children->content);
    }
    return takeXml(node->type == XML_ATTRIBUTE_NODE
                       ? xmlNodeListGetString(node->doc, children, 1)
                       : xmlNodeGetContent(node));
}

}  // namespace

void Node::requireNode(const char* operation) const {
    if (m_node == nullptr) {
        throw std::logic_error(std::string(operation) + " on a node that is nothing");
    }
}

void Node::requireElement(const char* operation) const {
    requireNode(operation);
    if (m_node->type != XML_ELEMENT_NODE) {
        throw std::logic_error(std::string(operation) + " on a node that is not an element");
    }
}

bool Node::isElement() const noexcept {
    return m_node != nullptr && m_node->type == XML_ELEMENT_NODE;
}

std::string Node::name() const {
    if (m_node == nullptr ||
        (m_node->type != XML_ELEMENT_NODE && m_node->type != XML_ATTRIBUTE_NODE)) {
        return {};
    }
    return fromXml(m_node->name);
}

std::string Node::namespaceUri() const {
    if (m_node == nullptr) {
        return {};
    }
    if (m_node->type == XML_ELEMENT_NODE) {
        return m_node->ns != nullptr ? fromXml(m_node->ns->href) : std::string();
    }
    if (m_node->type == XML_ATTRIBUTE_NODE) {
        const auto* attr = reinterpret_cast<const xmlAttr*>(m_node);
        return attr->ns != nullptr ? fromXml(attr->ns->href) : std::string();
    }
    return {};
}

std::optional<std::string> Node::findAttribute(std::string_view name) const {
    if (!isElement()) {
        return std::nullopt;
    }
    const xmlAttr* attr = propertyOf(m_node, name);
    if (attr == nullptr) {
        return std::nullopt;
    }
    return childrenText(reinterpret_cast<const xmlNode*>(attr), attr->children);
}

std::string Node::attribute(std::string_view name) const {
    if (!isElement()) {
        return {};
    }
    const xmlAttr* attr = propertyOf(m_node, name);
    return attr == nullptr ? std::string()
                           : childrenText(reinterpret_cast<const xmlNode*>(attr), attr->children);
}

bool Node::hasAttribute(std::string_view name) const {
    return isElement() && propertyOf(m_node, name) != nullptr;
}

void Node::setAttribute(std::string_view name, std::string_view value) {
    requireElement("setAttribute");
    requireLocalName(name, "setAttribute");
    requireXmlText(value, "setAttribute");
    const std::string key(name);
    const std::string text(value);
    // xmlSetProp stores the value as text: '&' and '<' are escaped on output.
    if (xmlSetProp(m_node, asXml(key), asXml(text)) == nullptr) {
        throw std::bad_alloc();
    }
}

void Node::removeAttribute(std::string_view name) {
    requireElement("removeAttribute");
    const std::string key(name);
    xmlUnsetProp(m_node, asXml(key));
}

std::string Node::text() const {
    if (m_node == nullptr) {
        return {};
    }
    if (m_node->type == XML_ELEMENT_NODE || m_node->type == XML_ATTRIBUTE_NODE) {
        return childrenText(m_node, m_node->children);
    }
    return takeXml(xmlNodeGetContent(m_node));
}

void Node::setText(std::string_view text) {
    requireNode("setText");
    requireXmlText(text, "setText");
    const std::string value(text);
    if (m_node->type == XML_ATTRIBUTE_NODE) {
        auto* attr = reinterpret_cast<xmlAttr*>(m_node);
        xmlSetNsProp(attr->parent, attr->ns, attr->name, asXml(value));
        return;
    }
    requireElement("setText");
    // Not xmlNodeSetContent: it would read '&' in the text as an entity reference.
    while (m_node->children != nullptr) {
        xmlNode* child = m_node->children;
        xmlUnlinkNode(child);
        xmlFreeNode(child);
    }
    if (!value.empty()) {
        xmlNode* textNode =
            xmlNewDocTextLen(m_node->doc, asXml(value), static_cast<int>(value.size()));
        if (textNode == nullptr) {
            throw std::bad_alloc();
        }
        xmlAddChild(m_node, textNode);
    }
}

Node Node::firstChildElement(std::string_view localName) const {
    if (m_node == nullptr || m_node->type != XML_ELEMENT_NODE) {
        return {};
    }
    return Node(firstElementFrom(m_node->children, localName));
}

std::vector<Node> Node::childElements(std::string_view localName) const {
    std::vector<Node> children;
    if (m_node == nullptr || m_node->type != XML_ELEMENT_NODE) {
        return children;
    }
    for (xmlNode* child = firstElementFrom(m_node->children, localName); child != nullptr;
         child = firstElementFrom(child->next, localName)) {
        children.emplace_back(child);
    }
    return children;
}

Node Node::nextSiblingElement(std::string_view localName) const {
    if (m_node == nullptr || m_node->type != XML_ELEMENT_NODE) {
        return {};
    }
    return Node(firstElementFrom(m_node->next, localName));
}

bool Node::nestsWithin(int levels) const {
    if (m_node == nullptr || m_node->type != XML_ELEMENT_NODE) {
        return true;
    }
    int depth = 1;
    xmlNode* node = m_node;
    while (true) {
        if (xmlNode* child = firstElementFrom(node->children, {})) {
            if (++depth > levels) {
                return false;
            }
            node = child;
            continue;
        }
        // Up until a level has a next element, or back at this one.
        while (true) {
            if (node == m_node) {
                return true;
            }
            if (xmlNode* next = firstElementFrom(node->next, {})) {
                node = next;
                break;
            }
            node = node->parent;
            --depth;
        }
    }
}

Node Node::parent() const {
    if (m_node == nullptr || m_node->parent == nullptr ||
        m_node->parent->type != XML_ELEMENT_NODE) {
        return {};
    }
    return Node(m_node->parent);
}

Node Node::appendElement(std::string_view localName, std::string_view namespaceUri) {
    requireElement("appendElement");
    requireLocalName(localName, "appendElement");
    const std::string name(localName);
    XmlNodePtr created(xmlNewDocNode(m_node->doc, nullptr, asXml(name), nullptr));
    if (!created) {
        throw std::bad_alloc();
    }
    xmlNode* child = xmlAddChild(m_node, created.release());
    if (namespaceUri.empty()) {
        xmlSetNs(child, xmlSearchNs(m_node->doc, m_node, nullptr));
    } else {
        xmlSetNs(child, namespaceFor(child, namespaceUri));
    }
    return Node(child);
}

Node Node::appendChild(Node child) {
    requireElement("appendChild");
    child.requireElement("appendChild");
    if (child.m_node->doc != m_node->doc) {
        throw std::invalid_argument("appendChild: the node belongs to another document");
    }
    if (isAncestorOrSelf(child.m_node, m_node)) {
        throw std::invalid_argument("appendChild: a node cannot become its own descendant");
    }
    xmlUnlinkNode(child.m_node);
    xmlAddChild(m_node, child.m_node);
    keepNamespacesAfterMove(child.m_node);
    return child;
}

Node Node::cloneInto(Node newParent) const {
    requireElement("cloneInto");
    newParent.requireElement("cloneInto");
    XmlNodePtr copy(xmlDocCopyNode(m_node, newParent.m_node->doc, 1));
    if (!copy) {
        throw std::bad_alloc();
    }
    xmlNode* added = xmlAddChild(newParent.m_node, copy.release());
    keepNamespacesAfterMove(added);
    return Node(added);
}

void Node::remove() {
    requireNode("remove");
    if (m_node->type == XML_ATTRIBUTE_NODE) {
        xmlRemoveProp(reinterpret_cast<xmlAttr*>(m_node));
    } else {
        xmlUnlinkNode(m_node);
        xmlFreeNode(m_node);
    }
    m_node = nullptr;
}

std::string Node::toXml() const {
    if (m_node == nullptr) {
        return {};
    }
    XmlBufferPtr buffer(xmlBufferCreate());
    if (!buffer) {
        throw std::bad_alloc();
    }
    if (xmlNodeDump(buffer.get(), m_node->doc, m_node, 0, 0) < 0) {
        throw std::runtime_error("toXml: the node could not be serialised");
    }
    return std::string(reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
                       static_cast<std::size_t>(xmlBufferLength(buffer.get())));
}

}  // namespace kt500::xml
