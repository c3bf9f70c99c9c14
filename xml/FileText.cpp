#include "xml/FileText.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace kt500::xml {

std::string ReadFileBytes(const std::filesystem::path& file, std::string& bytes,
                          std::size_t maxBytes) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(file, ec);
    if (ec) {
        return "cannot read " + file.string() + ": " + ec.message();
    }
    if (size > maxBytes) {
        return file.string() + " has " + std::to_string(size) + " bytes, more than the " +
               std::to_string(maxBytes) + " allowed";
    }
    std::ifstream in(file, std::ios::binary);
    if (!in.is_open()) {
        return "cannot open " + file.string();
    }
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        return "cannot read " + file.string();
    }
    return {};
}

std::string Located(std::string_view source, long line, std::string_view reason) {
    std::string text(source);
    if (line > 0) {
        text += ':';
        text += std::to_string(line);
    }
    text += ": ";
    text += reason;
    return text;
}

}  // namespace kt500::xml
