// Conversions between libxml2's xmlChar strings and std::string (both UTF-8),
// and the checks that keep names and text the product writes well-formed.
#pragma once

#include "xml/XmlFree.h"

#include <string>
#include <string_view>

namespace kt500::xml {

inline const xmlChar* asXml(const std::string& text) noexcept {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

inline std::string fromXml(const xmlChar* text) {
    return text != nullptr ? std::string(reinterpret_cast<const char*>(text)) : std::string();
}

// Takes ownership of a string libxml2 allocated for the caller.
inline std::string takeXml(xmlChar* text) {
    const XmlCharPtr owned(text);
    return fromXml(owned.get());
}

// True for a name without prefix (an XML NCName).
[[nodiscard]] bool isLocalName(std::string_view name);

// Throws std::invalid_argument unless name is a local name.
void requireLocalName(std::string_view name, const char* operation);

// Throws std::invalid_argument unless text is UTF-8 made of characters that
// XML 1.0 allows, so that whatever is written reads back the same.
void requireXmlText(std::string_view text, const char* operation);

}  // namespace kt500::xml
