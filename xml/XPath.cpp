#include "xml/XPath.h"

#include "xml/Document.h"
#include "xml/ErrorList.h"
#include "xml/XmlFree.h"
#include "xml/XmlText.h"

#include <libxml/xpathInternals.h>

#include <algorithm>
#include <stdexcept>

namespace kt500::xml {

namespace {

// The one place where prefixes reach an XPath context.
void registerNamespaces(xmlXPathContext& context, const Namespaces& namespaces) {
    for (const auto& [prefix, uri] : namespaces.entries()) {
        if (xmlXPathRegisterNs(&context, asXml(prefix), asXml(uri)) != 0) {
            throw std::runtime_error("cannot register the XPath prefix '" + prefix + "'");
        }
    }
}

bool isSelectable(const xmlNode* node) {
    switch (node->type) {
        case XML_ELEMENT_NODE:
        case XML_ATTRIBUTE_NODE:
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
            return true;
        default:  // namespace nodes are not xmlNode at all; the document node is not a Node
            return false;
    }
}

}  // namespace

struct XPath::Impl {
    xmlDoc* document = nullptr;
    XmlXPathContextPtr context;
    ErrorList errors;

    [[nodiscard]] std::string reason(std::string_view expression, const char* what) const {
        std::string text = "XPath expression '" + std::string(expression) + "' " + what;
        if (!errors.lines().empty()) {
            text += ": " + errors.lines().back();
        }
        return text;
    }
};

XPath::XPath(const Document& document, const Namespaces& namespaces)
    : XPath(document.raw(), namespaces) {}

XPath::XPath(Node node, const Namespaces& namespaces)
    : XPath(node ? node.raw()->doc : nullptr, namespaces) {}

XPath::XPath(xmlDoc* document, const Namespaces& namespaces) : m_impl(new Impl) {
    std::unique_ptr<Impl> impl(m_impl);
    if (document == nullptr) {
        throw std::logic_error("XPath on a document that was moved from, or on no node");
    }
    impl->document = document;
    impl->context.reset(xmlXPathNewContext(document));
    if (!impl->context) {
        throw std::bad_alloc();
    }
    impl->context->error = &ErrorList::collect;
    impl->context->userData = &impl->errors;
    registerNamespaces(*impl->context, namespaces);
    static_cast<void>(impl.release());
}

XPath::~XPath() {
    delete m_impl;
}

std::vector<Node> XPath::select(std::string_view expression, Node context) const {
    if (!context) {
        context = Node(xmlDocGetRootElement(m_impl->document));
        if (!context) {
            return {};
        }
    }
    if (context.raw()->doc != m_impl->document) {
        throw std::invalid_argument("XPath: the context node belongs to another document");
    }
    const std::string text(expression);
    xmlXPathContext& xpath = *m_impl->context;
    m_impl->errors = ErrorList();
    XmlXPathCompExprPtr compiled(xmlXPathCtxtCompile(&xpath, asXml(text)));
    if (!compiled) {
        throw std::runtime_error(m_impl->reason(expression, "does not compile"));
    }
    xpath.node = context.raw();
    XmlXPathObjectPtr result(xmlXPathCompiledEval(compiled.get(), &xpath));
    m_impl->errors.rethrow();
    if (!result) {
        throw std::runtime_error(m_impl->reason(expression, "cannot be evaluated"));
    }
    if (result->type != XPATH_NODESET) {
        throw std::runtime_error(m_impl->reason(expression, "does not yield nodes"));
    }
    std::vector<Node> nodes;
    const xmlNodeSet* set = result->nodesetval;
    const int count = set != nullptr ? set->nodeNr : 0;
    nodes.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        if (isSelectable(set->nodeTab[i])) {
            nodes.emplace_back(set->nodeTab[i]);
        }
    }
    return nodes;
}

Node XPath::selectSingle(std::string_view expression, Node context) const {
    std::vector<Node> nodes = select(expression, context);
    return nodes.empty() ? Node() : nodes.front();
}

}  // namespace kt500::xml
