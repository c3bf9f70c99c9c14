// The encodings of outside input. A document in UTF-16 or UTF-32 (by its
// byte order mark or the zero bytes of its first characters) is refused
// before the parser sees it, and so is a document that declares no encoding
// (or UTF-8) but holds bytes that are no UTF-8, with the line of the first.
// A declared 8-bit encoding is left to the parser, which converts it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kt500::xml {

// The offset of the first byte that does not belong to well-formed UTF-8
// (no overlong forms, no surrogates, nothing past U+10FFFF); npos when all do.
[[nodiscard]] std::size_t FirstNonUtf8(std::string_view bytes) noexcept;

// "" when the parser may read the bytes; else the reason, with its line.
[[nodiscard]] std::string ForeignEncoding(std::string_view bytes);

// The encoding the XML declaration names; "" when there is none.
[[nodiscard]] std::string DeclaredEncoding(std::string_view bytes);

// "" for a declared encoding that is UTF-8 (any case, with or without the
// hyphen) or none; else the reason.
[[nodiscard]] std::string ForeignDeclaredEncoding(const char* declared);

}  // namespace kt500::xml
