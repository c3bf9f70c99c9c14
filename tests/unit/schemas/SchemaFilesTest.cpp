// The schema files of share/schemas, compiled as the product compiles them,
// against the sample messages of tests/data/schemas: every form the system
// and its BL produce must pass, and every malformed one must be refused for
// the right reason.
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;
using kt500::xml::Document;
using kt500::xml::SchemaCollection;

namespace {

constexpr const char* kCommunication = "x-schema:QDLCommunicationSchema.xml";
constexpr const char* kSessionData = "x-schema:QDLSessionDataSchema.xml";
constexpr const char* kDatafile = "x-schema:QDLDatafileSchema.xml";
constexpr const char* kDeviceTypeInfo = "x-schema:QDLDeviceTypeInfoSchema.xml";

// Namespace and file name of each schema; the file name is the namespace
// less its "x-schema:" prefix.
std::vector<std::pair<std::string, fs::path>> schemaFiles() {
    std::vector<std::pair<std::string, fs::path>> files;
    for (const char* ns : {kCommunication, kSessionData, kDatafile, kDeviceTypeInfo}) {
        const std::string uri = ns;
        files.emplace_back(uri,
                           fs::path(KT500_SHARE_DIR) / "schemas" / uri.substr(uri.find(':') + 1));
    }
    return files;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text += line;
        text += '\n';
    }
    return text;
}

std::string readText(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Sample files of one folder under tests/data/schemas, sorted by name.
std::vector<fs::path> samples(const char* folder) {
    std::vector<fs::path> files;
    const fs::path dir = fs::path(KT500_TEST_DATA_DIR) / "schemas" / folder;
    if (fs::is_directory(dir)) {
        for (const auto& entry : fs::directory_iterator(dir)) {
            if (entry.is_regular_file() && entry.path().extension() == ".xml") {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string testName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.stem().string();
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

// The word an invalid sample's errors must name, from its comment
// "<!-- error names: WORD -->"; empty when the sample names none.
std::string expectedWord(const fs::path& file) {
    static const std::regex marker(R"(<!-- error names: (\S+) -->)");
    const std::string text = readText(file);
    std::smatch match;
    return std::regex_search(text, match, marker) ? match[1].str() : std::string();
}

class SchemaFiles : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_collection = new SchemaCollection;
        for (const auto& [ns, file] : schemaFiles()) {
            s_addErrors += s_collection->add(ns, file);
        }
    }
    static void TearDownTestSuite() {
        delete s_collection;
        s_collection = nullptr;
    }

    void SetUp() override { ASSERT_EQ(s_addErrors, ""); }

    static const SchemaCollection& collection() { return *s_collection; }

private:
    static inline SchemaCollection* s_collection = nullptr;
    static inline std::string s_addErrors;
};

// --- Compiling the set ------------------------------------------------------

TEST(SchemaSet, CompilesInAnyOrderOfAdding) {
    auto files = schemaFiles();
    // The parameter document's schema refers to the device type namespace;
    // adding it before or after that schema must both work.
    for (int round = 0; round < 2; ++round) {
        SchemaCollection set;
        for (const auto& [ns, file] : files) {
            ASSERT_TRUE(fs::is_regular_file(file)) << file;
            EXPECT_EQ(set.add(ns, file), "") << ns;
            EXPECT_TRUE(set.contains(ns)) << ns;
        }
        std::reverse(files.begin(), files.end());
    }
}

TEST(SchemaSet, EachSchemaCompilesAlone) {
    for (const auto& [ns, file] : schemaFiles()) {
        SchemaCollection single;
        EXPECT_EQ(single.add(ns, file), "") << ns;
    }
}

TEST(SchemaSet, ParameterDocumentIsRefusedWithoutTheDeviceTypeSchema) {
    SchemaCollection set;
    ASSERT_EQ(set.add(kDatafile, fs::path(KT500_SHARE_DIR) / "schemas" / "QDLDatafileSchema.xml"),
              "");
    const auto loaded =
        Document::load(fs::path(KT500_TEST_DATA_DIR) / "schemas" / "valid" / "parameters.xml");
    ASSERT_TRUE(loaded.ok()) << loaded.message();
    const auto errors = set.validate(*loaded.document);
    ASSERT_FALSE(errors.empty());
    EXPECT_NE(joined(errors).find("device"), std::string::npos) << joined(errors);
}

TEST_F(SchemaFiles, EverySampleFolderHoldsSamples) {
    EXPECT_GE(samples("valid").size(), 10U);
    EXPECT_GE(samples("invalid").size(), 10U);
}

// --- Forms the system and the BL produce -----------------------------------

class ValidSample : public SchemaFiles, public testing::WithParamInterface<fs::path> {};

TEST_P(ValidSample, PassesValidation) {
    const auto loaded = Document::load(GetParam(), {.schemas = &collection()});
    EXPECT_TRUE(loaded.ok()) << loaded.message();
    EXPECT_TRUE(loaded.validationErrors.empty()) << joined(loaded.validationErrors);
    if (loaded.ok()) {
        EXPECT_TRUE(collection().validate(*loaded.document).empty());
    }
}

INSTANTIATE_TEST_SUITE_P(SchemaSamples, ValidSample, testing::ValuesIn(samples("valid")), testName);

// --- Malformed messages ------------------------------------------------------

class InvalidSample : public SchemaFiles, public testing::WithParamInterface<fs::path> {};

TEST_P(InvalidSample, IsRefusedForItsFault) {
    // Well-formed XML: the schema, not the parser, must refuse it.
    const auto parsed = Document::load(GetParam());
    ASSERT_TRUE(parsed.ok()) << parsed.message();

    const auto errors = collection().validate(*parsed.document);
    ASSERT_FALSE(errors.empty());
    const std::string word = expectedWord(GetParam());
    if (!word.empty()) {
        EXPECT_NE(joined(errors).find(word), std::string::npos)
            << "expected an error naming '" << word << "', got:\n"
            << joined(errors);
    }

    const auto validated = Document::load(GetParam(), {.schemas = &collection()});
    EXPECT_FALSE(validated.ok());
}

INSTANTIATE_TEST_SUITE_P(SchemaSamples, InvalidSample, testing::ValuesIn(samples("invalid")),
                         testName);

}  // namespace
