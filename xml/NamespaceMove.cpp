#include "xml/NamespaceMove.h"

#include <new>
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

// The namespace the moved elements take: one the root has in scope already,
// or a new declaration on the root. The root may declare a default
// namespace of its own (even xmlns="", which names none), so the new one
// takes a prefix the root does not declare yet.
xmlNs* namespaceOnRoot(xmlDoc* doc, xmlNode* root, const std::string& uri) {
    const auto* href = reinterpret_cast<const xmlChar*>(uri.c_str());
    if (xmlNs* found = xmlSearchNsByHref(doc, root, href)) {
        return found;
    }
    int declared = 0;
    for (const xmlNs* ns = root->nsDef; ns != nullptr; ns = ns->next) {
        ++declared;
    }
    for (int i = 0; i <= declared; ++i) {
        const std::string prefix = "moved" + std::to_string(i);
        if (xmlNs* ns = xmlNewNs(root, href, reinterpret_cast<const xmlChar*>(prefix.c_str()))) {
            return ns;
        }
    }
    throw std::bad_alloc();  // one of the prefixes was free: only memory can fail
}

}  // namespace

void MoveIntoNamespace(Document& document, std::string_view namespaceUri) {
    xmlNode* root = xmlDocGetRootElement(document.raw());
    if (root == nullptr) {
        throw std::invalid_argument("MoveIntoNamespace: the document has no root element");
    }
    moveElements(root, namespaceOnRoot(document.raw(), root, std::string(namespaceUri)));
}

}  // namespace kt500::xml
