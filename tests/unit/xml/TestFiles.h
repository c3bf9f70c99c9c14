// A scratch folder per test and small helpers to write and read its files.
#pragma once

#include "xml/Document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kt500::xml::test {

class ScratchFolder {
public:
    ScratchFolder() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_path = std::filesystem::temp_directory_path() /
                 ("kt500-xml-" + std::string(info->test_suite_name()) + "-" + info->name());
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path write(const std::string& name, std::string_view text) const {
        std::ofstream(m_path / name, std::ios::binary) << text;
        return m_path / name;
    }

private:
    std::filesystem::path m_path;
};

inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Parses text that the test knows to be good.
inline Document parseOrFail(std::string_view text) {
    LoadResult result = Document::parse(text);
    if (!result.ok()) {
        ADD_FAILURE() << "does not parse: " << result.message();
        return Document::create("failed");
    }
    return std::move(*result.document);
}

// The reason a parse fails; empty, with a failure, when it succeeds.
inline std::string parseError(std::string_view text, const ParseOptions& options = {}) {
    const LoadResult result = Document::parse(text, options);
    EXPECT_FALSE(result.ok()) << text;
    return result.error;
}

}  // namespace kt500::xml::test
