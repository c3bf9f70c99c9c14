#include "xml/XmlText.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

namespace kt500::xml {

namespace {

bool isXmlChar(std::uint32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

}  // namespace

bool isLocalName(std::string_view name) {
    if (name.empty() || name.find('\0') != std::string_view::npos) {
        return false;
    }
    const std::string text(name);
    return xmlValidateNCName(asXml(text), 0) == 0;
}

void requireLocalName(std::string_view name, const char* operation) {
    if (!isLocalName(name)) {
        throw std::invalid_argument(std::string(operation) + ": '" + std::string(name) +
                                    "' is not an XML name");
    }
}

void requireXmlText(std::string_view text, const char* operation) {
    std::size_t at = 0;
    while (at < text.size()) {
        int length = static_cast<int>(std::min<std::size_t>(text.size() - at, 4));
        const int c = xmlGetUTF8Char(reinterpret_cast<const xmlChar*>(text.data() + at), &length);
        if (c < 0 || length <= 0 || !isXmlChar(static_cast<std::uint32_t>(c))) {
            throw std::invalid_argument(std::string(operation) +
                                        ": text holds a character XML does not allow at byte " +
                                        std::to_string(at));
        }
        at += static_cast<std::size_t>(length);
    }
}

}  // namespace kt500::xml
