// The collection compiles all its members into one schema: a wrapper schema,
// made in memory, imports each namespace from its file's URL, and while it
// compiles the entity loader serves exactly those URLs from the bytes read in
// add(). Members import one another's namespaces without a location; the
// wrapper has brought them in already.
#include "xml/SchemaCollection.h"

#include "xml/FileText.h"

#include "xml/Document.h"
#include "xml/EntityLoader.h"
#include "xml/ErrorList.h"

#include <climits>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kt500::xml {

namespace {

constexpr std::size_t kMaxSchemaBytes = std::size_t{16} * 1024U * 1024U;

bool isUnreserved(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~' || c == '/';
}

// A file URL that libxml2 keeps exactly as written when it resolves it.
std::string fileUrl(const std::filesystem::path& file) {
    std::string path = std::filesystem::absolute(file).lexically_normal().generic_string();
    if (path.empty() || path.front() != '/') {
        path.insert(0, "/");
    }
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isUnreserved(byte)) {
            url += c;
        } else {
            url += '%';
            url += kHex[byte >> 4U];
            url += kHex[byte & 0xFU];
        }
    }
    return url;
}

std::string attributeValue(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
                break;
        }
    }
    return escaped;
}

std::string readSchemaFile(const std::filesystem::path& file, std::string& bytes) {
    std::string reason = ReadFileBytes(file, bytes, kMaxSchemaBytes);
    return reason.empty() ? reason : "the schema: " + reason;
}

// The member's own targetNamespace must be the one it is registered for;
// libxml2 would accept the import and leave the namespace without declarations.
std::string checkTargetNamespace(const std::string& bytes, const std::string& namespaceUri,
                                 const std::filesystem::path& file) {
    const LoadResult parsed = Document::parse(bytes);
    if (!parsed.ok()) {
        return "the schema " + file.string() + " does not load: " + parsed.message();
    }
    const std::string target = parsed.document->root().attribute("targetNamespace");
    if (target != namespaceUri) {
        return "the schema " + file.string() + " has the target namespace '" + target + "', not '" +
               namespaceUri + "'";
    }
    return {};
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text += (text.empty() ? "" : "; ") + line;
    }
    return text;
}

XmlSchemaPtr compile(const std::map<std::string, std::filesystem::path, std::less<>>& files,
                     const std::map<std::string, std::string, std::less<>>& texts,
                     std::string& reason) {
    std::map<std::string, std::string> allowed;
    std::string wrapper = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">)";
    for (const auto& [uri, file] : files) {
        const std::string url = fileUrl(file);
        allowed[url] = texts.at(uri);
        // A schema without a target namespace joins the wrapper, which has
        // none either, by inclusion; libxml2 refuses to import one.
        wrapper +=
            uri.empty() ? "<xs:include" : "<xs:import namespace=\"" + attributeValue(uri) + "\"";
        wrapper += " schemaLocation=\"" + attributeValue(url) + "\"/>";
    }
    wrapper += "</xs:schema>";
    if (wrapper.size() > static_cast<std::size_t>(INT_MAX)) {
        reason = "the schema set is too large";
        return nullptr;
    }

    ErrorList errors;
    XmlSchemaPtr schema;
    {
        const EntityAllowance allowance(allowed);
        const ThreadErrorCapture capture(errors);
        XmlSchemaParserCtxtPtr parser(
            xmlSchemaNewMemParserCtxt(wrapper.data(), static_cast<int>(wrapper.size())));
        if (!parser) {
            throw std::bad_alloc();
        }
        xmlSchemaSetParserStructuredErrors(parser.get(), &ErrorList::collect, &errors);
        schema.reset(xmlSchemaParse(parser.get()));
    }
    errors.rethrow();
    if (!schema || errors.failed()) {
        reason =
            errors.lines().empty() ? "the schema set does not compile" : joined(errors.lines());
        return nullptr;
    }
    return schema;
}

}  // namespace

SchemaCollection::SchemaCollection() = default;
SchemaCollection::~SchemaCollection() = default;
SchemaCollection::SchemaCollection(SchemaCollection&&) noexcept = default;
SchemaCollection& SchemaCollection::operator=(SchemaCollection&&) noexcept = default;

std::string SchemaCollection::add(const std::string& namespaceUri,
                                  const std::filesystem::path& file) {
    initialiseLibrary();
    std::string bytes;
    if (std::string reason = readSchemaFile(file, bytes); !reason.empty()) {
        return reason;
    }
    if (std::string reason = checkTargetNamespace(bytes, namespaceUri, file); !reason.empty()) {
        return reason;
    }
    auto files = m_files;
    auto texts = m_texts;
    files[namespaceUri] = file;
    texts[namespaceUri] = std::move(bytes);
    std::string reason;
    XmlSchemaPtr schema = compile(files, texts, reason);
    if (!schema) {
        return reason;
    }
    m_files = std::move(files);
    m_texts = std::move(texts);
    m_schema = std::move(schema);
    return {};
}

bool SchemaCollection::contains(std::string_view namespaceUri) const {
    return m_files.find(namespaceUri) != m_files.end();
}

std::vector<std::string> SchemaCollection::validate(const Document& document) const {
    const Node root = document.root();
    if (!root) {
        return {"the document has no root element"};
    }
    const std::string uri = root.namespaceUri();
    if (!m_schema || !contains(uri)) {
        return {"no schema for namespace '" + uri + "'"};
    }
    XmlSchemaValidCtxtPtr context(xmlSchemaNewValidCtxt(m_schema.get()));
    if (!context) {
        throw std::bad_alloc();
    }
    ErrorList errors;
    xmlSchemaSetValidStructuredErrors(context.get(), &ErrorList::collect, &errors);
    const int code = xmlSchemaValidateDoc(context.get(), document.raw());
    errors.rethrow();
    if (code < 0) {
        throw std::runtime_error("internal error of the schema validator (code " +
                                 std::to_string(code) + ")");
    }
    if (code == 0) {
        return {};
    }
    if (errors.lines().empty()) {
        return {"the document does not validate (code " + std::to_string(code) + ")"};
    }
    return errors.takeLines();
}

}  // namespace kt500::xml
