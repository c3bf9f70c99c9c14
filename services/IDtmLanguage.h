// m_pLanguage: the translation texts of the BL's language service.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kt500::services {

class IDtmLanguage {
public:
    virtual ~IDtmLanguage() = default;

    // The text of a key in a language.
    virtual void TranslateKey(std::int32_t lngLanguageId, const std::string& strKey,
                              std::string& strText) = 0;
    // The languages offered, in the service's order.
    virtual void GetLanguageIds(std::vector<std::int32_t>& arrIds) = 0;
    // The display name of a language ("English", "Deutsch").
    virtual void GetLanguageName(std::int32_t lngLanguageId, std::string& strName) = 0;
};

}  // namespace kt500::services
