// Every translation key the product uses has a text in English (1033) and
// German (1031): the keys the code passes to Translate, the names of the
// parameter documents and GUIInit files (pages, groups, parameters, status
// items, mappings, tree nodes), and the caption keys of the form files.
#include "simulator/LanguageTexts.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace kt500::simulator {
namespace {

namespace fs = std::filesystem;

const fs::path kShare = KT500_SHARE_DIR;
const fs::path kSource = KT500_SOURCE_DIR;

// Texts that are empty on purpose (none so far).
const std::set<std::string> kIntentionallyEmpty = {};

// key -> where it was first found, for the failure report.
using KeySources = std::map<std::string, std::string>;

std::string readFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

void add(KeySources& keys, const std::string& key, const std::string& source) {
    if (!key.empty()) {
        keys.emplace(key, source);
    }
}

std::vector<fs::path> filesUnder(const fs::path& folder, const std::set<std::string>& extensions) {
    std::vector<fs::path> files;
    if (!fs::is_directory(folder)) {
        return files;
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && extensions.count(entry.path().extension().string()) > 0) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

// (1) Keys the code passes to Translate as a string literal.
KeySources codeKeys() {
    KeySources keys;
    const std::regex call(R"re(\bTranslate\s*\(\s*"((?:[^"\\]|\\.)*)"\s*\))re");
    for (const char* folder : {"host", "data", "devices", "monitoring", "calibration",
                               "performance", "flow", "datasets", "presentation", "app"}) {
        for (const fs::path& file : filesUnder(kSource / folder, {".cpp", ".h"})) {
            const std::string text = readFile(file);
            for (auto it = std::sregex_iterator(text.begin(), text.end(), call);
                 it != std::sregex_iterator(); ++it) {
                add(keys, (*it)[1].str(), fs::relative(file, kSource).string());
            }
        }
    }
    return keys;
}

void walk(const xml::Node& node, const std::function<void(const xml::Node&)>& visit) {
    visit(node);
    for (const xml::Node& child : node.childElements()) {
        walk(child, visit);
    }
}

xml::Document loadOrFail(const fs::path& file) {
    xml::LoadResult loaded = xml::Document::load(file);
    if (!loaded.ok()) {
        throw std::runtime_error(file.string() + ": " + loaded.message());
    }
    return std::move(*loaded.document);
}

// (2) Names of the parameter documents and GUIInit files: every page, group,
// parameter, status group and item, mapping and tree node is shown through
// its translation.
KeySources documentKeys() {
    KeySources keys;
    // Elements whose "name" is a translation key, by local name.
    const std::set<std::string> named = {
        "parameter",   "includedParam", "requestGroup", "mappedParam", "mapping",
        "statusGroup", "status",        "branch",       "node",        "uploadGroup"};
    for (const char* folder : {"devices", "guiinit"}) {
        for (const fs::path& file : filesUnder(kShare / folder, {".xml"})) {
            const xml::Document document = loadOrFail(file);
            const std::string source = fs::relative(file, kShare).string();
            walk(document.root(), [&](const xml::Node& node) {
                if (named.count(node.name()) > 0) {
                    add(keys, node.attribute("name"), source + " <" + node.name() + ">");
                }
            });
        }
    }
    return keys;
}

bool endsWith(const std::string& text, std::string_view tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail.data(), tail.size()) == 0;
}

// (3) Caption keys of the form files: captions and tool tips of controls,
// rows, list columns and toolbar items; the keys of the toolbar's buttons,
// whose captions and tool tips are their keys' texts; and the tags of the
// captioned kinds (label, command button, check box, option button), which
// the form's translation takes as keys. A label tagged "...Unit" shows a
// unit and is not translated, "operationUnit" excepted.
KeySources formKeys() {
    KeySources keys;
    for (const fs::path& file : filesUnder(kShare / "forms", {".xml"})) {
        const xml::Document document = loadOrFail(file);
        const std::string source = fs::relative(file, kShare).string();
        walk(document.root(), [&](const xml::Node& node) {
            const std::string where = source + " <" + node.name() + ">";
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
                const bool captioned =
                    kind == "lbl" || kind == "cmd" || kind == "chk" || kind == "opt";
                const bool unitLabel =
                    kind == "lbl" && endsWith(tag, "Unit") && tag != "operationUnit";
                if (captioned && !unitLabel && node.attribute("name") != "lblTimeStamp") {
                    add(keys, tag, where);
                }
            }
        });
    }
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

class TranslationCompleteness : public testing::TestWithParam<const char*> {};

TEST_P(TranslationCompleteness, EveryKeyOfTheCodeHasAText) {
    const std::string missing = missingIn(codeKeys(), texts(GetParam()));
    EXPECT_TRUE(missing.empty()) << "keys passed to Translate without a text in " << GetParam()
                                 << ":" << missing;
}

TEST_P(TranslationCompleteness, EveryNameOfTheDeviceDocumentsHasAText) {
    const std::string missing = missingIn(documentKeys(), texts(GetParam()));
    EXPECT_TRUE(missing.empty()) << "document names without a text in " << GetParam() << ":"
                                 << missing;
}

TEST_P(TranslationCompleteness, EveryCaptionKeyOfTheFormsHasAText) {
    const std::string missing = missingIn(formKeys(), texts(GetParam()));
    EXPECT_TRUE(missing.empty()) << "form keys without a text in " << GetParam() << ":" << missing;
}

TEST_P(TranslationCompleteness, NoTextIsEmpty) {
    const LanguageTexts language = texts(GetParam());
    for (const auto& [key, text] : language.texts()) {
        if (kIntentionallyEmpty.count(key) == 0) {
            EXPECT_NE(text.find_first_not_of(" \t\r\n"), std::string::npos)
                << "the text of '" << key << "' in " << GetParam() << " is empty";
        }
    }
}

TEST_P(TranslationCompleteness, TheTextsFileValidates) {
    xml::SchemaCollection schemas;
    ASSERT_EQ(
        schemas.add("x-schema:KT500TextsSchema.xml", kShare / "schemas" / "KT500TextsSchema.xsd"),
        "");
    xml::ParseOptions options;
    options.schemas = &schemas;
    const xml::LoadResult loaded =
        xml::Document::load(kShare / "texts" / (std::string(GetParam()) + ".xml"), options);
    EXPECT_TRUE(loaded.ok()) << loaded.message();
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationCompleteness, testing::Values("1033", "1031"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             return std::string(info.param);
                         });

TEST(TranslationTexts, EnglishAndGermanHoldTheSameKeys) {
    const LanguageTexts english = texts("1033");
    const LanguageTexts german = texts("1031");
    std::string onlyEnglish;
    std::string onlyGerman;
    for (const auto& [key, text] : english.texts()) {
        if (german.find(key) == nullptr) {
            onlyEnglish += " " + key;
        }
    }
    for (const auto& [key, text] : german.texts()) {
        if (english.find(key) == nullptr) {
            onlyGerman += " " + key;
        }
    }
    EXPECT_TRUE(onlyEnglish.empty()) << "only in 1033:" << onlyEnglish;
    EXPECT_TRUE(onlyGerman.empty()) << "only in 1031:" << onlyGerman;
}

// The collectors themselves: each finds its kind of key, so that an empty
// harvest cannot pass for a complete one.
TEST(TranslationKeyHarvest, FindsKeysOfTheFormsAndTheirToolbar) {
    const KeySources keys = formKeys();
    EXPECT_EQ(keys.count("uploadCurrent"), 1U);        // toolbar button
    EXPECT_EQ(keys.count("monitoringVariables"), 1U);  // frame caption
    EXPECT_EQ(keys.count("oldValue"), 1U);             // list view column
    EXPECT_EQ(keys.count("strDtmStatus"), 0U);         // status label of the toolbar, set by code
}

TEST(TranslationKeyHarvest, FindsNamesInEveryDocumentThatExists) {
    bool anyDocument = false;
    for (const char* folder : {"devices", "guiinit"}) {
        anyDocument = anyDocument || !filesUnder(kShare / folder, {".xml"}).empty();
    }
    if (!anyDocument) {
        GTEST_SKIP() << "no parameter document or GUIInit file under " << kShare;
    }
    EXPECT_FALSE(documentKeys().empty());
}

}  // namespace
}  // namespace kt500::simulator
