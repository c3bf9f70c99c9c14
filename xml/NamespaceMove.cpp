#include "xml/NamespaceMove.h"

#include <stdexcept>
#include <string>

namespace kt500::xml {

namespace {

void moveElements(xmlNode* node, xmlNs* ns) {
    for (xmlNode* child = node; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) {
            continue;
        }
        if (child->ns == nullptr) {
            xmlSetNs(child, ns);
        }
        moveElements(child->children, ns);
    }
}

}  // namespace

void MoveIntoNamespace(Document& document, std::string_view namespaceUri) {
    xmlNode* root = xmlDocGetRootElement(document.raw());
    if (root == nullptr) {
        throw std::invalid_argument("MoveIntoNamespace: the document has no root element");
    }
    const std::string uri(namespaceUri);
    xmlNs* ns = xmlNewNs(root, reinterpret_cast<const xmlChar*>(uri.c_str()), nullptr);
    if (ns == nullptr) {
        // The root declares a default namespace already: take it if it is ours.
        ns = xmlSearchNs(document.raw(), root, nullptr);
        if (ns == nullptr || uri != reinterpret_cast<const char*>(ns->href)) {
            throw std::invalid_argument("MoveIntoNamespace: the root declares another namespace");
        }
    }
    moveElements(root, ns);
}

}  // namespace kt500::xml
