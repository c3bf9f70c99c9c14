// Bad family sources: each mistake is refused with the source's name and
// the line of the offending element.
#include "simulator/DeviceCatalogue.h"
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <fstream>

namespace kt500::simulator::testing {
namespace {

// A small family around the body given.
std::string family(const std::string& body) {
    return "<family name=\"T\" prefix=\"TT\" revisions=\"1 2\" variants=\"X\">\n"
           "  <model deviceType=\"T\" guiInit=\"GUIInit_T_{revision}.xml\"/>\n" +
           body + "</family>\n";
}

std::string errorOf(const std::string& bytes) {
    return ErrorOf<DeviceSourceError>([&] { (void)DeviceFamilySource::parse(bytes, "bad.xml"); });
}

TEST(DeviceSourceErrorTest, AGoodSourceComposesByRevisionAndVariant) {
    const DeviceFamilySource source = DeviceFamilySource::parse(
        family("  <group name=\"g\" save=\"1\">\n"
               "    <parameter name=\"a\" type=\"floatVal\" unit=\"%\" value=\"1.5\" "
               "decimals=\"1\"/>\n"
               "    <parameter name=\"b\" type=\"integerVal\" value=\"1\" revisions=\"2\"/>\n"
               "    <series name=\"s\" from=\"0\" to=\"2\" type=\"stringVal\" values=\"x y z\"/>\n"
               "  </group>\n"
               "  <tree><branch name=\"r\" offline=\"1\"><node name=\"g\" "
               "offline=\"3\"/></branch></tree>\n"
               "  <upload name=\"uploadAll\" groups=\"g\"/>\n"),
        "good.xml");
    const DeviceModel one{"T_1", "T", "1", "7", "T"};
    const DeviceModel two{"T_2", "T", "2", "7", "T"};
    const std::string first = source.parameterDocument(one).toXml();
    const std::string second = source.parameterDocument(two).toXml();
    EXPECT_EQ(first.find("name=\"b\""), std::string::npos);
    EXPECT_NE(second.find("name=\"b\""), std::string::npos);
    EXPECT_NE(first.find("name=\"s02\""), std::string::npos);
    EXPECT_NE(first.find("value=\"z\""), std::string::npos);
    ASSERT_EQ(source.guiInitFiles().size(), 2U);
    EXPECT_EQ(source.guiInitFiles()[1].fileName, "GUIInit_T_2.xml");
    EXPECT_THROW((void)source.parameterDocument({"T_3", "T", "3", "7", "T"}), DeviceSourceError);
    EXPECT_THROW((void)source.parameterDocument({"U_1", "U", "1", "7", "U"}), DeviceSourceError);
}

TEST(DeviceSourceErrorTest, MistakesNameTheFileAndLine) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        // Malformed XML: the parser's line.
        {family("  <group name=\"g\">\n  </grup>\n"), "bad.xml:4:"},
        {"", "bad.xml: "},
        {"<other/>", "bad.xml:1: the document element must be <family>"},
        // Condition words the family does not have.
        {family("  <group name=\"g\" revisions=\"1 8\"/>\n"), "bad.xml:3: unknown revision '8'"},
        {family("  <group name=\"g\">\n    <include name=\"a\" variants=\"Y\"/>\n  </group>\n"),
         "bad.xml:4: unknown variant 'Y'"},
        // A parameter that two definitions give to the same revision.
        {family("  <group name=\"g\">\n"
                "    <parameter name=\"a\" type=\"stringVal\"/>\n"
                "    <parameter name=\"a\" type=\"stringVal\" revisions=\"2\"/>\n"
                "  </group>\n"),
         "bad.xml:5: parameter 'a' is defined twice for T revision 2 (first at line 4)"},
        {family("  <group name=\"g\"/>\n  <group name=\"g\" revisions=\"1\"/>\n"),
         "bad.xml:4: request group 'g' is defined twice"},
        // Dangling references and wrong kinds.
        {family("  <group name=\"g\">\n    <include name=\"nothing\"/>\n  </group>\n"),
         "bad.xml:4: request group 'g' includes 'nothing'"},
        {family("  <group name=\"g\">\n    <parameter name=\"a\" type=\"floatVal\" value=\"x\" "
                "decimals=\"1\"/>\n  </group>\n"),
         "bad.xml:4: the value 'x' of a floatVal is no number"},
        {family("  <group name=\"g\">\n    <parameter name=\"a\" type=\"float\"/>\n  </group>\n"),
         "bad.xml:4: 'float' is no type"},
        {family("  <group name=\"g\">\n    <parameter name=\"a\" type=\"stringVal\" list=\"l\"/>\n"
                "  </group>\n"),
         "bad.xml:4: parameter 'a' names the unknown list 'l'"},
        {family("  <group name=\"g\" colour=\"red\"/>\n"), "bad.xml:3: unknown attribute 'colour'"},
        {family("  <upload name=\"uploadAll\" groups=\"missing\"/>\n"),
         "bad.xml:3: upload group 'uploadAll' names the unknown request group 'missing'"},
        {family("  <group name=\"g\">\n    <series name=\"s\" from=\"0\" to=\"2\" "
                "type=\"stringVal\" values=\"x y\"/>\n  </group>\n"),
         "bad.xml:4: the series has 3 items but 2 values"},
        {family("  <tree><branch name=\"r\" offline=\"4\"/></tree>\n"),
         "bad.xml:3: '4' is no offline"},
    };
    for (const auto& [bytes, message] : cases) {
        const std::string error = errorOf(bytes);
        EXPECT_EQ(error.substr(0, message.size()), message);
    }
}

TEST(DeviceSourceErrorTest, TheBuilderNamesTheFolderWhenNoSourceServesAModel) {
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / "kt500-device-sources-test";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    std::ofstream(dir / "T.xml") << family("");
    const ParameterDocumentBuilder builder(dir);
    EXPECT_TRUE(builder.familyFor("T").serves("T"));
    EXPECT_NE(ErrorOf<DeviceSourceError>([&] {
                  (void)builder.build(*DeviceCatalogue::find("KT520_7"));
              }).find("no device source describes the model 'KT520'"),
              std::string::npos);
    std::ofstream(dir / "Broken.xml") << "<family";
    EXPECT_THROW((void)ParameterDocumentBuilder(dir).familyFor("T"), DeviceSourceError);
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace kt500::simulator::testing
