// Loading outside input. The bytes are read here and handed to libxml2 from
// memory; the parser resolves nothing outside them: any DOCTYPE stops it at
// once, so no entity is ever declared, and the entity loader denies all URLs.
#include "xml/Document.h"
#include "xml/FileText.h"

#include "xml/ErrorList.h"
#include "xml/SchemaCollection.h"
#include "xml/XmlText.h"

#include <climits>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace kt500::xml {

namespace {

constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// SAX hook for <!DOCTYPE ...>: reached before any declaration inside it is read.
void refuseDoctype(void* context, const xmlChar* /*name*/, const xmlChar* /*externalId*/,
                   const xmlChar* /*systemId*/) {
    xmlStopParser(static_cast<xmlParserCtxtPtr>(context));
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
        return lineOf(context) + "DOCTYPE is not allowed";
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
    XmlParserCtxtPtr context(xmlNewParserCtxt());
    if (!context || context->sax == nullptr) {
        return failure("out of memory creating the XML parser");
    }
    context->sax->internalSubset = &refuseDoctype;
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
