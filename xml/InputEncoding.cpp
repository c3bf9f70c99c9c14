#include "xml/InputEncoding.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>

namespace kt500::xml {

namespace {

struct Mark {
    std::string_view bytes;
    const char* encoding;
};

// Longest first: the UTF-32LE mark begins with the UTF-16LE one.
constexpr std::array kMarks = {
    Mark{std::string_view("\x00\x00\xFE\xFF", 4), "UTF-32BE"},
    Mark{std::string_view("\xFF\xFE\x00\x00", 4), "UTF-32LE"},
    Mark{std::string_view("\xFE\xFF", 2), "UTF-16BE"},
    Mark{std::string_view("\xFF\xFE", 2), "UTF-16LE"},
    Mark{std::string_view("\x2B\x2F\x76", 3), "UTF-7"},
    Mark{std::string_view("\xDD\x73\x66\x73", 4), "UTF-EBCDIC"},
};

std::string hexByte(unsigned char byte) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02X", byte);
    return text.data();
}

}  // namespace

std::size_t FirstNonUtf8(std::string_view bytes) noexcept {
    static constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto lead = static_cast<std::uint8_t>(bytes[i]);
        if (lead < 0x80U) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        std::uint32_t code = 0;
        if ((lead & 0xE0U) == 0xC0U) {
            length = 2;
            code = lead & 0x1FU;
        } else if ((lead & 0xF0U) == 0xE0U) {
            length = 3;
            code = lead & 0x0FU;
        } else if ((lead & 0xF8U) == 0xF0U) {
            length = 4;
            code = lead & 0x07U;
        } else {
            return i;
        }
        if (i + length > bytes.size()) {
            return i;
        }
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<std::uint8_t>(bytes[i + k]);
            if ((next & 0xC0U) != 0x80U) {
                return i;
            }
            code = (code << 6U) | (next & 0x3FU);
        }
        if (code < kSmallest[length] || code > 0x10FFFFU || (code >= 0xD800U && code <= 0xDFFFU)) {
            return i;
        }
        i += length;
    }
    return std::string_view::npos;
}

std::string ForeignEncoding(std::string_view bytes) {
    for (const Mark& mark : kMarks) {
        if (bytes.starts_with(mark.bytes)) {
            return std::string("line 1: the document starts with the byte order mark of ") +
                   mark.encoding + "; only UTF-8 is read";
        }
    }
    // "<" or "<?" in UTF-16 or UTF-32 without a mark: a zero byte among the first four.
    if (bytes.substr(0, 4).find('\0') != std::string_view::npos) {
        return "line 1: the document is in UTF-16 or UTF-32 (zero bytes at its start); only "
               "UTF-8 is read";
    }
    if (!ForeignDeclaredEncoding(DeclaredEncoding(bytes).c_str()).empty()) {
        return {};  // the parser converts it
    }
    if (const std::size_t bad = FirstNonUtf8(bytes); bad != std::string_view::npos) {
        const auto line = 1 + std::count(bytes.begin(),
                                         bytes.begin() + static_cast<std::ptrdiff_t>(bad), '\n');
        return "line " + std::to_string(line) + ": byte " +
               hexByte(static_cast<unsigned char>(bytes[bad])) + " at offset " +
               std::to_string(bad) + " is not UTF-8; only UTF-8 is read";
    }
    return {};
}

std::string DeclaredEncoding(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    if (!bytes.starts_with("<?xml")) {
        return {};
    }
    std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    const std::size_t name = declaration.find("encoding");
    if (name == std::string_view::npos) {
        return {};
    }
    declaration.remove_prefix(name + 8);
    const std::size_t quote = declaration.find_first_of("'\"");
    if (quote == std::string_view::npos ||
        declaration.substr(0, quote).find_first_not_of(" \t\r\n=") != std::string_view::npos) {
        return {};
    }
    const std::size_t end = declaration.find(declaration[quote], quote + 1);
    return end == std::string_view::npos
               ? std::string()
               : std::string(declaration.substr(quote + 1, end - quote - 1));
}

std::string ForeignDeclaredEncoding(const char* declared) {
    if (declared == nullptr || *declared == '\0') {
        return {};
    }
    std::string letters;
    for (const char* c = declared; *c != '\0'; ++c) {
        if (*c != '-' && *c != '_') {
            letters += static_cast<char>(std::toupper(static_cast<unsigned char>(*c)));
        }
    }
    if (letters == "UTF8") {
        return {};
    }
    return std::string("the document declares the encoding ") + declared + "; only UTF-8 is read";
}

}  // namespace kt500::xml
