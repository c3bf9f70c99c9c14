#include "xml/ErrorList.h"

#include <libxml/globals.h>
#include <libxml/xmlerror.h>

#include <utility>

namespace kt500::xml {

namespace {

// A broken document can raise thousands of errors; the first ones tell the story.
constexpr std::size_t kMaxLines = 100;

// Schema imports that cannot be read are only warnings to libxml2, but a
// collection missing one of its members is broken.
bool isFailure(const xmlError& error) {
    return error.level >= XML_ERR_ERROR || error.code == XML_SCHEMAP_WARN_SKIP_SCHEMA ||
           error.code == XML_SCHEMAP_WARN_UNLOCATED_SCHEMA;
}

}  // namespace

void ErrorList::collect(void* userData, xmlErrorPtr error) noexcept {
    auto* self = static_cast<ErrorList*>(userData);
    if (self == nullptr || error == nullptr) {
        return;
    }
    try {
        self->add(*error);
    } catch (...) {
        if (!self->m_pending) {
            self->m_pending = std::current_exception();
        }
    }
}

void ErrorList::add(const xmlError& error) {
    m_failed = m_failed || isFailure(error);
    if (m_lines.size() < kMaxLines) {
        m_lines.push_back(format(error));
        return;
    }
    ++m_dropped;
    const std::string more = "... and " + std::to_string(m_dropped) + " more";
    if (m_dropped == 1) {
        m_lines.push_back(more);
    } else {
        m_lines.back() = more;
    }
}

void ErrorList::rethrow() {
    if (m_pending) {
        std::rethrow_exception(std::exchange(m_pending, nullptr));
    }
}

std::string ErrorList::format(const xmlError& error) {
    std::string message = error.message != nullptr ? error.message : "unknown error";
    while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) {
        message.pop_back();
    }
    std::string where = error.file != nullptr ? std::string(error.file) + " " : std::string();
    if (error.line > 0) {
        where += "line " + std::to_string(error.line) + ": ";
    } else if (!where.empty()) {
        where.back() = ':';
        where += ' ';
    }
    return where + message;
}

ThreadErrorCapture::ThreadErrorCapture(ErrorList& list) noexcept
    : m_previous(xmlStructuredError), m_previousData(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(&list, &ErrorList::collect);
}

ThreadErrorCapture::~ThreadErrorCapture() {
    xmlSetStructuredErrorFunc(m_previousData, m_previous);
}

void ignoreStructuredError(void* /*userData*/, xmlErrorPtr /*error*/) noexcept {}

}  // namespace kt500::xml
