// Stateless deleters and owning pointers for every libxml2 type the product
// holds. Nothing else in the product frees a libxml2 object by hand.
#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlschemas.h>
#include <libxml/xpath.h>

#include <memory>

namespace kt500::xml {

struct XmlFree {
    void operator()(xmlDoc* p) const noexcept { xmlFreeDoc(p); }
    void operator()(xmlNode* p) const noexcept { xmlFreeNode(p); }
    void operator()(xmlParserCtxt* p) const noexcept { xmlFreeParserCtxt(p); }
    void operator()(xmlXPathContext* p) const noexcept { xmlXPathFreeContext(p); }
    void operator()(xmlXPathObject* p) const noexcept { xmlXPathFreeObject(p); }
    void operator()(xmlXPathCompExpr* p) const noexcept { xmlXPathFreeCompExpr(p); }
    void operator()(xmlSchema* p) const noexcept { xmlSchemaFree(p); }
    void operator()(xmlSchemaParserCtxt* p) const noexcept { xmlSchemaFreeParserCtxt(p); }
    void operator()(xmlSchemaValidCtxt* p) const noexcept { xmlSchemaFreeValidCtxt(p); }
    void operator()(xmlBuffer* p) const noexcept { xmlBufferFree(p); }
    void operator()(xmlChar* p) const noexcept { xmlFree(p); }
};

using XmlDocPtr = std::unique_ptr<xmlDoc, XmlFree>;
using XmlNodePtr = std::unique_ptr<xmlNode, XmlFree>;
using XmlParserCtxtPtr = std::unique_ptr<xmlParserCtxt, XmlFree>;
using XmlXPathContextPtr = std::unique_ptr<xmlXPathContext, XmlFree>;
using XmlXPathObjectPtr = std::unique_ptr<xmlXPathObject, XmlFree>;
using XmlXPathCompExprPtr = std::unique_ptr<xmlXPathCompExpr, XmlFree>;
using XmlSchemaPtr = std::unique_ptr<xmlSchema, XmlFree>;
using XmlSchemaParserCtxtPtr = std::unique_ptr<xmlSchemaParserCtxt, XmlFree>;
using XmlSchemaValidCtxtPtr = std::unique_ptr<xmlSchemaValidCtxt, XmlFree>;
using XmlBufferPtr = std::unique_ptr<xmlBuffer, XmlFree>;
using XmlCharPtr = std::unique_ptr<xmlChar, XmlFree>;

}  // namespace kt500::xml
