// Every translation key the product uses has a text in English and German.
#include "simulator/LanguageTexts.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace kt500::simulator {
namespace {

namespace fs = std::filesystem;

const fs::path kShare = KT500_SHARE_DIR;
const fs::path kSource = KT500_SOURCE_DIR;

// key -> where it was first found, for the failure report.
using KeySources = std::map<std::string, std::string>;

void add(KeySources& keys, const std::string& key, const std::string& source) {
    if (!key.empty()) {
        keys.emplace(key, source);
    }
}

// The files of a folder and its subfolders with one of the extensions.
std::vector<fs::path> filesUnder(const fs::path& folder, const std::set<std::string>& extensions) {
    std::vector<fs::path> files;
    if (!fs::is_directory(folder)) {
        return files;
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (extensions.count(entry.path().extension().string()) > 0) {
            files.push_back(entry.path());
        }
    }
    return files;
}

// (1) Keys the code passes to Translate as a string literal.
KeySources codeKeys() {
    KeySources keys;
    const std::regex call(R"re(\bTranslate\s*\(\s*"((?:[^"\\]|\\.)*)"\s*\))re");
    for (const char* folder : {"host", "data", "devices", "monitoring", "calibration",
                               "performance", "flow", "datasets", "presentation", "app"}) {
        for (const fs::path& file : filesUnder(kSource / folder, {".cpp", ".h"})) {
            std::ifstream in(file, std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(in), {}};
            for (auto it = std::sregex_iterator(text.begin(), text.end(), call);
                 it != std::sregex_iterator(); ++it) {
                add(keys, (*it)[1].str(), fs::relative(file, kSource).string());
            }
        }
    }
    return keys;
}

// Visits every element of the XML files under share/<folder>.
void walkXml(const char* folder,
             const std::function<void(const xml::Node&, const std::string&)>& visit) {
    for (const fs::path& file : filesUnder(kShare / folder, {".xml"})) {
        const xml::LoadResult loaded = xml::Document::load(file);
        ASSERT_TRUE(loaded.ok()) << file << ": " << loaded.message();
        std::vector<xml::Node> pending{loaded.document->root()};
        while (!pending.empty()) {
            const xml::Node node = pending.back();
            pending.pop_back();
            visit(node, fs::relative(file, kShare).string() + " <" + node.name() + ">");
            for (const xml::Node& child : node.childElements()) {
                pending.push_back(child);
            }
        }
    }
}

// (2) Names of the parameter documents and GUIInit files, each shown
// through its translation.
KeySources documentKeys() {
    KeySources keys;
    const std::set<std::string> named = {
        "parameter",   "includedParam", "requestGroup", "mappedParam", "mapping",
        "statusGroup", "status",        "branch",       "node",        "uploadGroup"};
    for (const char* folder : {"devices", "guiinit"}) {
        walkXml(folder, [&](const xml::Node& node, const std::string& where) {
            if (named.count(node.name()) > 0) {
                add(keys, node.attribute("name"), where);
            }
            // A family's value lists become the mappings of its parameter
            // documents, named by their entries' keys.
            if (node.name() == "entry" && node.hasAttribute("key")) {
                add(keys, node.attribute("key"), where);
            }
        });
    }
    return keys;
}

// (3) Caption keys of the form files, the toolbar buttons' keys and the tags
// of captioned kinds; a "...Unit" label shows a unit and is not translated.
KeySources formKeys() {
    KeySources keys;
    walkXml("forms", [&](const xml::Node& node, const std::string& where) {
        add(keys, node.attribute("captionKey"), where);
        add(keys, node.attribute("toolTipKey"), where);
        if (node.name() == "item") {
            const std::string style = node.attribute("style");
            if (style.empty() || style == "button" || style == "check") {
                add(keys, node.attribute("key"), where);
            }
        }
        if (node.name() == "control" || node.name() == "row") {
            const std::string kind = node.attribute("kind");
            const std::string tag = node.attribute("tag");
            const bool captioned = kind == "lbl" || kind == "cmd" || kind == "chk" || kind == "opt";
            const bool unitLabel = kind == "lbl" && tag.ends_with("Unit") && tag != "operationUnit";
            if (captioned && !unitLabel && node.attribute("name") != "lblTimeStamp") {
                add(keys, tag, where);
            }
        }
    });
    return keys;
}

LanguageTexts texts(const char* language) {
    return LanguageTexts::load(kShare / "texts" / (std::string(language) + ".xml"));
}

std::string missingIn(const KeySources& keys, const LanguageTexts& language) {
    std::string report;
    for (const auto& [key, source] : keys) {
        if (language.find(key) == nullptr) {
            report += "\n  " + key + "  (" + source + ")";
        }
    }
    return report;
}

class TranslationCompleteness : public ::testing::TestWithParam<const char*> {};

TEST_P(TranslationCompleteness, EveryKeyOfTheCodeDocumentsAndFormsHasAText) {
    xml::SchemaCollection schemas;
    ASSERT_EQ(
        schemas.add("x-schema:KT500TextsSchema.xml", kShare / "schemas" / "KT500TextsSchema.xsd"),
        "");
    const xml::LoadResult loaded = xml::Document::load(
        kShare / "texts" / (std::string(GetParam()) + ".xml"), {.schemas = &schemas});
    EXPECT_TRUE(loaded.ok()) << loaded.message();
    const LanguageTexts language = texts(GetParam());
    for (const auto& [key, text] : language.texts()) {
        EXPECT_NE(text.find_first_not_of(" \t\r\n"), std::string::npos) << key;
    }
    EXPECT_EQ(missingIn(codeKeys(), language), "") << "keys passed to Translate";
    EXPECT_EQ(missingIn(documentKeys(), language), "") << "names of the device documents";
    EXPECT_EQ(missingIn(formKeys(), language), "") << "caption keys of the forms";
    // English and German hold the same keys.
    const char* other = GetParam() == std::string("1033") ? "1031" : "1033";
    const LanguageTexts otherTexts = texts(other);
    KeySources otherKeys;
    for (const auto& [key, text] : otherTexts.texts()) {
        add(otherKeys, key, std::string(other) + ".xml");
    }
    EXPECT_EQ(missingIn(otherKeys, language), "") << "keys of the other language";
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationCompleteness, testing::Values("1033", "1031"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             return std::string(info.param);
                         });

// The collectors themselves find their kind of key, so that an empty
// harvest cannot pass for a complete one.
TEST(TranslationKeyHarvest, FindsKeysOfTheDocumentsAndTheForms) {
    EXPECT_EQ(documentKeys().count("monitoringVariables"), 1U);
    const KeySources keys = formKeys();
    EXPECT_EQ(keys.count("uploadCurrent"), 1U);        // toolbar button
    EXPECT_EQ(keys.count("monitoringVariables"), 1U);  // frame caption
    EXPECT_EQ(keys.count("oldValue"), 1U);             // list view column
    EXPECT_EQ(keys.count("strDtmStatus"), 0U);         // status label of the toolbar, set by code
}

}  // namespace
}  // namespace kt500::simulator
