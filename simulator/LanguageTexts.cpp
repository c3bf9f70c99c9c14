#include "simulator/LanguageTexts.h"

#include "xml/Document.h"
#include "xml/FileText.h"

#include <charconv>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kt500::simulator {

namespace {

constexpr std::string_view kTextsNamespace = "x-schema:KT500TextsSchema.xml";

[[noreturn]] void fail(const std::string& strSource, const std::string& strReason) {
    throw std::runtime_error("texts file " + strSource + ": " + strReason);
}

}  // namespace

LanguageTexts LanguageTexts::load(const std::filesystem::path& file) {
    std::string bytes;
    if (!xml::ReadFileBytes(file, bytes).empty()) {
        fail(file.string(), "cannot be read");
    }
    return parse(bytes, file.string());
}

LanguageTexts LanguageTexts::parse(std::string_view bytes, const std::string& strSource) {
    xml::LoadResult loaded = xml::Document::parse(bytes);
    if (!loaded.ok()) {
        fail(strSource, loaded.message());
    }
    const xml::Node root = loaded.document->root();
    if (root.name() != "texts" || root.namespaceUri() != kTextsNamespace) {
        fail(strSource, "the document element is not <texts> of " + std::string(kTextsNamespace));
    }
    LanguageTexts result;
    const std::string language = root.attribute("language");
    const auto [end, error] =
        std::from_chars(language.data(), language.data() + language.size(), result.m_languageId);
    if (language.empty() || error != std::errc() || end != language.data() + language.size()) {
        fail(strSource, "language '" + language + "' is not a language identifier");
    }
    result.m_displayName = root.attribute("name");
    for (const xml::Node& text : root.childElements("text")) {
        std::string key = text.attribute("key");
        if (key.empty()) {
            fail(strSource, "a text without a key");
        }
        if (!result.m_texts.emplace(key, text.text()).second) {
            fail(strSource, "the key '" + key + "' is given twice");
        }
    }
    return result;
}

const std::string* LanguageTexts::find(const std::string& strKey) const {
    const auto it = m_texts.find(strKey);
    return it == m_texts.end() ? nullptr : &it->second;
}

}  // namespace kt500::simulator
