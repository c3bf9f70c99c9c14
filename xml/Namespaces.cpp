// The prefix table of XPath queries, read from the SelectionNamespaces form:
// declarations "xmlns:prefix='uri'" (or with double quotes) apart by blanks.
#include "xml/XPath.h"

#include "xml/XmlText.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::xml {

namespace {

constexpr std::string_view kXmlns = "xmlns:";

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

[[noreturn]] void malformed(std::string_view text, std::size_t at, const char* what) {
    throw std::invalid_argument("selection namespaces '" + std::string(text) + "': " + what +
                                " at character " + std::to_string(at + 1));
}

}  // namespace

Namespaces Namespaces::fromSelection(std::string_view selectionNamespaces) {
    const std::string_view text = selectionNamespaces;
    Namespaces namespaces;
    std::size_t at = 0;
    for (;;) {
        while (at < text.size() && isBlank(text[at])) {
            ++at;
        }
        if (at == text.size()) {
            return namespaces;
        }
        if (text.substr(at, kXmlns.size()) != kXmlns) {
            malformed(text, at, "expected xmlns:prefix");
        }
        at += kXmlns.size();
        const std::size_t equals = text.find('=', at);
        if (equals == std::string_view::npos) {
            malformed(text, at, "expected '=' after the prefix");
        }
        const std::string_view prefix = text.substr(at, equals - at);
        if (!isLocalName(prefix)) {
            malformed(text, at, "expected a prefix");
        }
        at = equals + 1;
        if (at == text.size() || (text[at] != '\'' && text[at] != '"')) {
            malformed(text, at, "expected a quoted namespace URI");
        }
        const std::size_t close = text.find(text[at], at + 1);
        if (close == std::string_view::npos) {
            malformed(text, at, "the namespace URI has no closing quote");
        }
        const std::string_view uri = text.substr(at + 1, close - at - 1);
        if (uri.empty()) {
            malformed(text, at, "a prefix cannot stand for the empty namespace URI");
        }
        namespaces.add(std::string(prefix), std::string(uri));
        at = close + 1;
        if (at < text.size() && !isBlank(text[at])) {
            malformed(text, at, "expected a blank between declarations");
        }
    }
}

void Namespaces::add(std::string prefix, std::string uri) {
    requireLocalName(prefix, "Namespaces::add");
    requireXmlText(uri, "Namespaces::add");
    const auto same = [&prefix](const auto& entry) { return entry.first == prefix; };
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), same);
    if (found != m_entries.end()) {
        found->second = std::move(uri);
    } else {
        m_entries.emplace_back(std::move(prefix), std::move(uri));
    }
}

}  // namespace kt500::xml
