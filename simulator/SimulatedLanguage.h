// The built-in language service: English (1033) and German (1031) from the
// texts files, and the pseudo-language 9999 whose text for every key is the
// key itself, so that scripts can check which key a caption shows.
#pragma once

#include "services/IDtmLanguage.h"
#include "simulator/LanguageTexts.h"

#include <filesystem>
#include <vector>

namespace kt500::simulator {

class SimulatedLanguage final : public services::IDtmLanguage {
public:
    static constexpr std::int32_t KeyLanguage = 9999;

    explicit SimulatedLanguage(std::vector<LanguageTexts> languages);
    // Every texts file (*.xml) of a folder, English first, then by
    // identifier; throws when one does not load.
    static SimulatedLanguage fromFolder(const std::filesystem::path& folder);

    void TranslateKey(std::int32_t lngLanguageId, const std::string& strKey,
                      std::string& strText) override;
    void GetLanguageIds(std::vector<std::int32_t>& arrIds) override;
    void GetLanguageName(std::int32_t lngLanguageId, std::string& strName) override;

private:
    [[nodiscard]] const LanguageTexts* languageOf(std::int32_t lngLanguageId) const;

    std::vector<LanguageTexts> m_languages;
};

}  // namespace kt500::simulator
