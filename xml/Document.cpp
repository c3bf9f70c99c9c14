#include "xml/Document.h"

#include "xml/NamespaceScope.h"
#include "xml/XmlText.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace kt500::xml {

namespace {

constexpr std::size_t kErrorsInMessage = 3;

struct FileClose {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

std::string writeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::unique_ptr<std::FILE, FileClose> out(std::fopen(file.c_str(), "wb"));
    if (!out) {
        return "cannot create " + file.string() + ": " + std::strerror(errno);
    }
    if (std::fwrite(bytes.data(), 1, bytes.size(), out.get()) != bytes.size() ||
        std::fflush(out.get()) != 0) {
        return "cannot write " + file.string() + ": " + std::strerror(errno);
    }
    if (std::fclose(out.release()) != 0) {
        return "cannot write " + file.string() + ": " + std::strerror(errno);
    }
    return {};
}

}  // namespace

std::string LoadResult::message() const {
    std::string text = error;
    for (std::size_t i = 0; i < validationErrors.size() && i < kErrorsInMessage; ++i) {
        text += (i == 0 ? ": " : "; ") + validationErrors[i];
    }
    if (validationErrors.size() > kErrorsInMessage) {
        text += " (" + std::to_string(validationErrors.size() - kErrorsInMessage) + " more)";
    }
    return text;
}

Document Document::create(std::string_view rootName, std::string_view namespaceUri) {
    initialiseLibrary();
    requireLocalName(rootName, "Document::create");
    XmlDocPtr doc(xmlNewDoc(BAD_CAST "1.0"));
    const std::string name(rootName);
    xmlNode* root = doc ? xmlNewDocNode(doc.get(), nullptr, asXml(name), nullptr) : nullptr;
    if (root == nullptr) {
        throw std::bad_alloc();
    }
    xmlDocSetRootElement(doc.get(), root);
    if (!namespaceUri.empty()) {
        xmlSetNs(root, namespaceFor(root, namespaceUri));
    }
    return Document(std::move(doc));
}

Document Document::clone() const {
    if (!m_doc) {
        throw std::logic_error("clone of a document that was moved from");
    }
    XmlDocPtr copy(xmlCopyDoc(m_doc.get(), 1));
    if (!copy) {
        throw std::bad_alloc();
    }
    return Document(std::move(copy));
}

Node Document::root() const {
    return m_doc ? Node(xmlDocGetRootElement(m_doc.get())) : Node();
}

void Document::setRoot(Node node) {
    if (!m_doc) {
        throw std::logic_error("setRoot on a document that was moved from");
    }
    if (!node) {
        throw std::logic_error("setRoot with a node that is nothing");
    }
    if (!node.isElement()) {
        throw std::invalid_argument("setRoot with a node that is not an element");
    }
    XmlNodePtr copy(xmlDocCopyNode(node.raw(), m_doc.get(), 1));
    if (!copy) {
        throw std::bad_alloc();
    }
    XmlNodePtr former(xmlDocSetRootElement(m_doc.get(), copy.get()));
    keepNamespacesAfterMove(copy.release());
}

std::string Document::toXml() const {
    if (!m_doc) {
        return {};
    }
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(m_doc.get(), &bytes, &size, "UTF-8", 0);
    const XmlCharPtr owned(bytes);
    if (bytes == nullptr || size < 0) {
        throw std::runtime_error("toXml: the document could not be serialised");
    }
    return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

std::string Document::save(const std::filesystem::path& file) const {
    if (!m_doc) {
        return "the document was moved from";
    }
    std::filesystem::path temporary = file;
    temporary += ".tmp";
    std::string reason = writeFile(temporary, toXml());
    if (reason.empty()) {
        std::error_code ec;
        std::filesystem::rename(temporary, file, ec);
        if (!ec) {
            return {};
        }
        reason = "cannot replace " + file.string() + ": " + ec.message();
    }
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    return reason;
}

}  // namespace kt500::xml
