// Reading the product's outside files whole, and naming a place in one for
// a message. Every loader of files (documents, schemas, forms, device
// sources, texts, unit tables, scripts) reads through here.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace kt500::xml {

// Reads the whole file into bytes. Returns "" on success, else the reason
// ("cannot read FILE: ...", or that it is larger than maxBytes).
[[nodiscard]] std::string ReadFileBytes(const std::filesystem::path& file, std::string& bytes,
                                        std::size_t maxBytes = std::size_t{64} * 1024U * 1024U);

// "SOURCE:LINE: REASON", the line left out when it is 0 or less.
[[nodiscard]] std::string Located(std::string_view source, long line, std::string_view reason);

}  // namespace kt500::xml
