// The schema files of share/schemas against the sample messages of
// tests/data/schemas: every form the system and its BL produce must pass, and
// every malformed one must be refused for the right reason.
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;
using kt500::xml::Document;
using kt500::xml::SchemaCollection;

namespace {

const fs::path kSamples = fs::path(KT500_TEST_DATA_DIR) / "schemas";
constexpr const char* kDatafile = "x-schema:QDLDatafileSchema.xml";

// Namespace and file of each schema; the file is the namespace less "x-schema:".
std::vector<std::pair<std::string, fs::path>> schemaFiles() {
    std::vector<std::pair<std::string, fs::path>> files;
    for (const std::string ns :
         {"x-schema:QDLCommunicationSchema.xml", "x-schema:QDLSessionDataSchema.xml", kDatafile,
          "x-schema:QDLDeviceTypeInfoSchema.xml"}) {
        files.emplace_back(ns, fs::path(KT500_SHARE_DIR) / "schemas" / ns.substr(9));
    }
    return files;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text += line + '\n';
    }
    return text;
}

std::vector<fs::path> samples(const char* folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(kSamples / folder)) {
        if (entry.path().extension() == ".xml") {
            files.push_back(entry.path());
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

// The whole set, compiled once; empty with a failure when a schema does not compile.
const SchemaCollection& collection() {
    static const SchemaCollection set = [] {
        SchemaCollection added;
        for (const auto& [ns, file] : schemaFiles()) {
            EXPECT_EQ(added.add(ns, file), "") << ns;
        }
        return added;
    }();
    return set;
}

TEST(SchemaSet, CompilesAloneAndInAnyOrderOfAdding) {
    auto files = schemaFiles();
    for (const auto& [ns, file] : files) {
        EXPECT_EQ(SchemaCollection().add(ns, file), "") << ns;
    }
    // The parameter document's schema refers to the device type namespace.
    std::reverse(files.begin(), files.end());
    SchemaCollection set;
    for (const auto& [ns, file] : files) {
        EXPECT_EQ(set.add(ns, file), "") << ns;
        EXPECT_TRUE(set.contains(ns)) << ns;
    }
    EXPECT_GE(samples("valid").size(), 10U);
    EXPECT_GE(samples("invalid").size(), 10U);
}

TEST(SchemaSet, ParameterDocumentIsRefusedWithoutTheDeviceTypeSchema) {
    SchemaCollection set;
    ASSERT_EQ(set.add(kDatafile, fs::path(KT500_SHARE_DIR) / "schemas" / "QDLDatafileSchema.xml"),
              "");
    const auto loaded = Document::load(kSamples / "valid" / "parameters.xml");
    ASSERT_TRUE(loaded.ok()) << loaded.message();
    const std::string errors = joined(set.validate(*loaded.document));
    EXPECT_NE(errors.find("device"), std::string::npos) << errors;
}

class ValidSample : public testing::TestWithParam<fs::path> {};

TEST_P(ValidSample, PassesValidation) {
    const auto loaded = Document::load(GetParam(), {.schemas = &collection()});
    EXPECT_TRUE(loaded.ok()) << loaded.message();
}

INSTANTIATE_TEST_SUITE_P(SchemaSamples, ValidSample, testing::ValuesIn(samples("valid")), testName);

// Well-formed XML that the schema, not the parser, refuses; the sample names
// the word its errors must hold in a comment "<!-- error names: WORD -->".
class InvalidSample : public testing::TestWithParam<fs::path> {};

TEST_P(InvalidSample, IsRefusedForItsFault) {
    const auto parsed = Document::load(GetParam());
    ASSERT_TRUE(parsed.ok()) << parsed.message();
    const std::string errors = joined(collection().validate(*parsed.document));
    EXPECT_NE(errors, "");

    std::ifstream in(GetParam());
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    std::smatch word;
    if (std::regex_search(text, word, std::regex(R"(<!-- error names: (\S+) -->)"))) {
        EXPECT_NE(errors.find(word[1].str()), std::string::npos)
            << "expected an error naming '" << word[1] << "', got:\n"
            << errors;
    }
    EXPECT_FALSE(Document::load(GetParam(), {.schemas = &collection()}).ok());
}

INSTANTIATE_TEST_SUITE_P(SchemaSamples, InvalidSample, testing::ValuesIn(samples("invalid")),
                         testName);

}  // namespace
