#include "xml/NamespaceScope.h"

#include "xml/XmlText.h"

#include <new>
#include <string>

namespace kt500::xml {

namespace {

const xmlChar* const kXmlPrefix = BAD_CAST "xml";

bool declaresPrefix(const xmlNode* element, const xmlChar* prefix) {
    for (const xmlNs* ns = element->nsDef; ns != nullptr; ns = ns->next) {
        if (xmlStrEqual(ns->prefix, prefix) != 0) {
            return true;
        }
    }
    return false;
}

xmlNs* declare(xmlNode* element, const xmlChar* href, const xmlChar* prefix) {
    std::string generated;
    for (int i = 0; declaresPrefix(element, prefix); ++i) {
        generated = "ns" + std::to_string(i);
        prefix = asXml(generated);
    }
    xmlNs* ns = xmlNewNs(element, href, prefix);
    if (ns == nullptr) {
        throw std::bad_alloc();
    }
    return ns;
}

// The declaration to use at element for ns (owned by element, or an attribute
// of it when forAttribute: attributes cannot use a default namespace).
xmlNs* inScope(xmlNode* element, xmlNs* ns, bool forAttribute) {
    if (xmlStrEqual(ns->prefix, kXmlPrefix) != 0) {
        return xmlSearchNs(element->doc, element, kXmlPrefix);
    }
    if (xmlSearchNs(element->doc, element, ns->prefix) == ns) {
        return ns;
    }
    xmlNs* found = xmlSearchNsByHref(element->doc, element, ns->href);
    if (found != nullptr && (!forAttribute || found->prefix != nullptr)) {
        return found;
    }
    const xmlChar* prefix = ns->prefix;
    std::string attributePrefix = "ns";
    if (forAttribute && prefix == nullptr) {
        prefix = asXml(attributePrefix);
    }
    return declare(element, ns->href, prefix);
}

void reconcile(xmlNode* element) {
    if (element->ns != nullptr) {
        element->ns = inScope(element, element->ns, false);
    }
    for (xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
        if (attr->ns != nullptr) {
            attr->ns = inScope(element, attr->ns, true);
        }
    }
}

}  // namespace

xmlNs* namespaceFor(xmlNode* element, std::string_view uri) {
    const std::string href(uri);
    if (xmlNs* found = xmlSearchNsByHref(element->doc, element, asXml(href))) {
        return found;
    }
    return declare(element, asXml(href), nullptr);
}

void keepNamespacesAfterMove(xmlNode* subtree) {
    if (subtree->ns == nullptr && !declaresPrefix(subtree, nullptr)) {
        const xmlNs* inherited = xmlSearchNs(subtree->doc, subtree, nullptr);
        if (inherited != nullptr && inherited->href != nullptr && inherited->href[0] != 0) {
            declare(subtree, BAD_CAST "", nullptr);
        }
    }
    xmlNode* node = subtree;
    while (node != nullptr) {
        if (node->type == XML_ELEMENT_NODE) {
            reconcile(node);
        }
        if (node->children != nullptr && node->type == XML_ELEMENT_NODE) {
            node = node->children;
            continue;
        }
        while (node != subtree && node->next == nullptr) {
            node = node->parent;
        }
        node = node == subtree ? nullptr : node->next;
    }
}

}  // namespace kt500::xml
