#include "simulator/SimulatedLanguage.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::simulator {

SimulatedLanguage::SimulatedLanguage(std::vector<LanguageTexts> languages)
    : m_languages(std::move(languages)) {}

SimulatedLanguage SimulatedLanguage::fromFolder(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.path().extension() == ".xml") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::vector<LanguageTexts> languages;
    languages.reserve(files.size());
    for (const auto& file : files) {
        languages.push_back(LanguageTexts::load(file));
    }
    // English first, as the service offers it; then by identifier.
    std::stable_sort(languages.begin(), languages.end(),
                     [](const LanguageTexts& a, const LanguageTexts& b) {
                         const bool aEnglish = a.languageId() == 1033;
                         const bool bEnglish = b.languageId() == 1033;
                         if (aEnglish != bEnglish) {
                             return aEnglish;
                         }
                         return a.languageId() < b.languageId();
                     });
    return SimulatedLanguage(std::move(languages));
}

const LanguageTexts* SimulatedLanguage::languageOf(std::int32_t lngLanguageId) const {
    for (const auto& language : m_languages) {
        if (language.languageId() == lngLanguageId) {
            return &language;
        }
    }
    return nullptr;
}

void SimulatedLanguage::TranslateKey(std::int32_t lngLanguageId, const std::string& strKey,
                                     std::string& strText) {
    if (lngLanguageId == KeyLanguage) {
        strText = strKey;
        return;
    }
    const LanguageTexts* language = languageOf(lngLanguageId);
    if (language == nullptr) {
        throw std::invalid_argument("TranslateKey: the language " + std::to_string(lngLanguageId) +
                                    " is not offered");
    }
    // A key without a text shows as the key, so that nothing on a page is blank.
    const std::string* text = language->find(strKey);
    strText = text != nullptr ? *text : strKey;
}

void SimulatedLanguage::GetLanguageIds(std::vector<std::int32_t>& arrIds) {
    arrIds.clear();
    for (const auto& language : m_languages) {
        arrIds.push_back(language.languageId());
    }
    arrIds.push_back(KeyLanguage);
}

void SimulatedLanguage::GetLanguageName(std::int32_t lngLanguageId, std::string& strName) {
    if (lngLanguageId == KeyLanguage) {
        strName = "Translation keys";
        return;
    }
    const LanguageTexts* language = languageOf(lngLanguageId);
    if (language == nullptr) {
        throw std::invalid_argument("GetLanguageName: the language " +
                                    std::to_string(lngLanguageId) + " is not offered");
    }
    strName = language->displayName();
}

}  // namespace kt500::simulator
