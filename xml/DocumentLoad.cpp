// Loading outside input. The bytes are read here and handed to libxml2 from
// memory; the parser resolves nothing outside them: any DOCTYPE stops it at
// once, so no entity is ever declared, and the entity loader denies all URLs.
// A document in UTF-16 or UTF-32 is refused, and one that declares no other
// encoding must be UTF-8 throughout; a declared 8-bit encoding is converted.
#include "xml/Document.h"
#include "xml/FileText.h"

#include "xml/ErrorList.h"
#include "xml/InputEncoding.h"
#include "xml/SchemaCollection.h"
#include "xml/XmlText.h"

#include <libxml/SAX2.h>

#include <climits>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace kt500::xml {

namespace {

constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// Why the parser was stopped on this thread's current parse; nullptr: it
// was not, or by a DOCTYPE.
thread_local const char* t_stopReason = nullptr;

void stop(xmlParserCtxtPtr context, const char* reason) {
    t_stopReason = reason;
    xmlStopParser(context);
}

// SAX hook for <!DOCTYPE ...>: reached before any declaration inside it is read.
void refuseDoctype(void* context, const xmlChar* /*name*/, const xmlChar* /*externalId*/,
                   const xmlChar* /*systemId*/) {
    stop(static_cast<xmlParserCtxtPtr>(context), "DOCTYPE is not allowed");
}

bool isXInclude(const xmlChar* uri) {
    return uri != nullptr &&
           (xmlStrEqual(uri, BAD_CAST "http://www.w3.org/2001/XInclude") != 0 ||
            xmlStrEqual(uri, BAD_CAST "http://www.w3.org/2003/XInclude") != 0);
}

// libxml2 writes a namespace name as it stands, without escaping, so one
// holding '<' or '&' would be written as text that does not read back. No
// namespace of the product's documents holds either.
bool writesBack(const xmlChar* namespaceName) {
    return namespaceName == nullptr ||
           (xmlStrchr(namespaceName, '<') == nullptr && xmlStrchr(namespaceName, '&') == nullptr);
}

// SAX hook for each start tag: the tree is built as usual, but an element
// of XInclude, which could name a file to read, a nesting deeper than any
// document of the product and a namespace name that would not be written
// back as it was read stop the parse.
void checkElement(void* context, const xmlChar* localName, const xmlChar* prefix,
                  const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                  int attributeCount, int defaultedCount, const xmlChar** attributes) {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    if (isXInclude(uri)) {
        stop(parser, "XInclude is not allowed");
        return;
    }
    // The element being opened is not yet among the parser's open names:
    // it lies one level below them.
    if (parser->nameNr + 1 > kMaxNesting) {
        static const std::string reason =
            "elements nest deeper than " + std::to_string(kMaxNesting) + " levels";
        stop(parser, reason.c_str());
        return;
    }
    // namespaces holds a prefix and a namespace name for each declaration.
    for (int i = 0; i < namespaceCount; ++i) {
        if (!writesBack(namespaces[2 * i + 1])) {
            stop(parser, "a namespace name holds '<' or '&'");
            return;
        }
    }
    xmlSAX2StartElementNs(context, localName, prefix, uri, namespaceCount, namespaces,
                          attributeCount, defaultedCount, attributes);
}

// Structured errors of the parser reach this hook with the parser context,
// which carries the ErrorList in _private: the first error is the cause, later
// ones mostly follow from it.
void collectParserError(void* context, xmlErrorPtr error) noexcept {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    ErrorList::collect(parser != nullptr ? parser->_private : nullptr, error);
}

LoadResult failure(std::string reason) {
    LoadResult result;
    result.error = std::move(reason);
    return result;
}

std::string lineOf(const xmlParserCtxt& context) {
    const int line = context.input != nullptr ? context.input->line : 0;
    return line > 0 ? "line " + std::to_string(line) + ": " : std::string();
}

std::string parserReason(const xmlParserCtxt& context, const ErrorList& errors) {
    if (context.errNo == XML_ERR_USER_STOP) {
        return lineOf(context) + (t_stopReason != nullptr ? t_stopReason : "the parse was stopped");
    }
    if (!errors.lines().empty()) {
        return errors.lines().front();
    }
    if (const xmlError& error = context.lastError; error.code != XML_ERR_OK) {
        return ErrorList::format(error);
    }
    return lineOf(context) + "the document has no root element";
}

}  // namespace

LoadResult Document::parse(std::string_view bytes, const ParseOptions& options) {
    initialiseLibrary();
    if (bytes.size() > options.maxBytes || bytes.size() > static_cast<std::size_t>(INT_MAX)) {
        return failure("the document has " + std::to_string(bytes.size()) +
                       " bytes, more than the " + std::to_string(options.maxBytes) + " allowed");
    }
    if (bytes.empty()) {
        return failure("the document is empty");
    }
    if (std::string reason = ForeignEncoding(bytes); !reason.empty()) {
        return failure(std::move(reason));
    }
    XmlParserCtxtPtr context(xmlNewParserCtxt());
    if (!context || context->sax == nullptr) {
        return failure("out of memory creating the XML parser");
    }
    context->sax->internalSubset = &refuseDoctype;
    context->sax->startElementNs = &checkElement;
    t_stopReason = nullptr;
    ErrorList errors;
    context->_private = &errors;
    context->sax->serror = &collectParserError;
    XmlDocPtr doc(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()),
                                    nullptr, nullptr, kParseOptions));
    // A stopped parser may still hand back a well-formed prefix without a root.
    if (!doc || context->errNo == XML_ERR_USER_STOP || xmlDocGetRootElement(doc.get()) == nullptr) {
        errors.rethrow();
        return failure(parserReason(*context, errors));
    }
    Document document(std::move(doc));
    if (options.schemas != nullptr) {
        LoadResult result;
        try {
            result.validationErrors = options.schemas->validate(document);
        } catch (const std::runtime_error& e) {
            return failure(e.what());
        }
        if (!result.validationErrors.empty()) {
            result.error = "document does not validate";
            return result;
        }
    }
    LoadResult result;
    result.document.emplace(std::move(document));
    return result;
}

LoadResult Document::load(const std::filesystem::path& file, const ParseOptions& options) {
    std::string bytes;
    if (std::string reason = ReadFileBytes(file, bytes, options.maxBytes); !reason.empty()) {
        LoadResult result;
        result.error = std::move(reason);
        return result;
    }
    return parse(bytes, options);
}

}  // namespace kt500::xml
