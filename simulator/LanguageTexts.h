// The texts of one language of the built-in language service, read from a
// texts file of share/texts/:
//   <texts xmlns="x-schema:KT500TextsSchema.xml" language="1033" name="English">
//     <text key="dtmConnected">Connected</text> ...
//   </texts>
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kt500::simulator {

class LanguageTexts {
public:
    // Reads a texts file; throws std::runtime_error naming the file and the
    // reason when it does not load, lacks its language or repeats a key.
    static LanguageTexts load(const std::filesystem::path& file);
    static LanguageTexts parse(std::string_view bytes, const std::string& strSource);

    [[nodiscard]] std::int32_t languageId() const noexcept { return m_languageId; }
    [[nodiscard]] const std::string& displayName() const noexcept { return m_displayName; }
    // The text of a key, or nullptr when the language has none.
    [[nodiscard]] const std::string* find(const std::string& strKey) const;
    [[nodiscard]] std::size_t size() const noexcept { return m_texts.size(); }
    [[nodiscard]] const std::unordered_map<std::string, std::string>& texts() const noexcept {
        return m_texts;
    }

private:
    std::int32_t m_languageId = 0;
    std::string m_displayName;
    std::unordered_map<std::string, std::string> m_texts;
};

}  // namespace kt500::simulator
