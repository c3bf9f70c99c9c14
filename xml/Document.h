// An owned XML document, parsed securely from bytes. Every load of outside
// input goes through Document::parse or Document::load: no external entity,
// DTD or network access is ever resolved, any DOCTYPE is refused, and a
// failure comes back as a message, never as an abort.
#pragma once

#include "xml/Node.h"
#include "xml/XmlFree.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::xml {

class SchemaCollection;
struct LoadResult;

// Elements nest no deeper than this in any document the product reads: a
// parse refuses a deeper one, and so does any tree taken from elsewhere
// (Node::nestsWithin). The parser's own limit lies above it.
inline constexpr int kMaxNesting = 200;

struct ParseOptions {
    // Validate against the schema of the root's namespace; a root namespace
    // the collection does not hold is an error. nullptr: no validation.
    const SchemaCollection* schemas = nullptr;
    // Documents larger than this are refused before parsing.
    std::size_t maxBytes = 64U * 1024U * 1024U;
};

class Document {
public:
    // An empty document with the element rootName (in namespaceUri if given).
    static Document create(std::string_view rootName, std::string_view namespaceUri = {});
    static LoadResult parse(std::string_view bytes, const ParseOptions& options = {});
    static LoadResult load(const std::filesystem::path& file, const ParseOptions& options = {});

    Document(Document&&) noexcept = default;
    Document& operator=(Document&&) noexcept = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() = default;

    // A deep, independent copy.
    [[nodiscard]] Document clone() const;
    [[nodiscard]] Node root() const;
    // Replaces the document element by a deep copy of node (any document).
    void setRoot(Node node);

    // Serialised as UTF-8 with an XML declaration.
    [[nodiscard]] std::string toXml() const;
    // Written to a temporary file beside the target, then renamed over it.
    // Returns "" on success, else the reason.
    [[nodiscard]] std::string save(const std::filesystem::path& file) const;

    [[nodiscard]] xmlDoc* raw() const noexcept { return m_doc.get(); }

private:
    explicit Document(XmlDocPtr doc) noexcept : m_doc(std::move(doc)) {}

    XmlDocPtr m_doc;
};

// Outcome of a load: a document, or the parser's reason and any schema errors.
struct LoadResult {
    std::optional<Document> document;
    std::string error;                          // parser or I/O reason, "" on success
    std::vector<std::string> validationErrors;  // one line per schema error

    [[nodiscard]] bool ok() const noexcept { return document.has_value(); }
    // The parser's reason or the first validation errors, one line.
    [[nodiscard]] std::string message() const;
};

// Installs the deny-all external entity loader and initialises libxml2.
// Called by every parse; safe to call any number of times.
void initialiseLibrary();

}  // namespace kt500::xml
