// Process-wide set-up of libxml2: the deny-all entity loader and silenced
// default error output. Every error the product wants is taken from a parser
// context or a structured error list instead.
#include "xml/Document.h"
#include "xml/EntityLoader.h"
#include "xml/ErrorList.h"

#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <climits>
#include <mutex>

namespace kt500::xml {

namespace {

thread_local const std::map<std::string, std::string>* t_allowed = nullptr;

xmlParserInputPtr serveAllowed(const char* url, xmlParserCtxtPtr context) {
    if (t_allowed == nullptr || url == nullptr) {
        return nullptr;
    }
    const auto found = t_allowed->find(url);
    if (found == t_allowed->end() || found->second.size() > INT_MAX) {
        return nullptr;
    }
    xmlParserInputBufferPtr buffer = xmlParserInputBufferCreateMem(
        found->second.data(), static_cast<int>(found->second.size()), XML_CHAR_ENCODING_NONE);
    if (buffer == nullptr) {
        return nullptr;
    }
    xmlParserInputPtr input = xmlNewIOInputStream(context, buffer, XML_CHAR_ENCODING_NONE);
    if (input == nullptr) {
        xmlFreeParserInputBuffer(buffer);
        return nullptr;
    }
    // The file name gives the loaded document its URL, the base of its own imports.
    input->filename = reinterpret_cast<const char*>(xmlStrdup(BAD_CAST url));
    return input;
}

xmlParserInputPtr denyingLoader(const char* url, const char* /*publicId*/,
                                xmlParserCtxtPtr context) {
    return serveAllowed(url, context);
}

void ignoreGeneric(void* /*context*/, const char* /*message*/, ...) {}

}  // namespace

EntityAllowance::EntityAllowance(const std::map<std::string, std::string>& uriToBytes) noexcept
    : m_previous(t_allowed) {
    t_allowed = &uriToBytes;
}

EntityAllowance::~EntityAllowance() {
    t_allowed = m_previous;
}

void initialiseLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        xmlInitParser();
        xmlSetExternalEntityLoader(&denyingLoader);
        // Defaults for threads libxml2 has not seen yet.
        xmlThrDefSetGenericErrorFunc(nullptr, &ignoreGeneric);
        xmlThrDefSetStructuredErrorFunc(nullptr, &ignoreStructuredError);
    });
    // libxml2 keeps its error handlers per thread.
    thread_local const bool silenced = [] {
        xmlSetGenericErrorFunc(nullptr, &ignoreGeneric);
        xmlSetStructuredErrorFunc(nullptr, &ignoreStructuredError);
        return true;
    }();
    static_cast<void>(silenced);
}

}  // namespace kt500::xml
