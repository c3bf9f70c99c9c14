// The BL's own services; the language list and the translation into each
// language are shown by the start and session data scenarios.
#include "simulator/LanguageTexts.h"
#include "support/TestUserControl.h"
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::simulator::testing {
namespace {

TEST(BuiltInBLTest, EveryDeviceKeyConnectsWithValidSessionDataAndParameters) {
    const xml::SchemaCollection schemas = DeviceSchemas(true);
    for (const DeviceModel& model : DeviceCatalogue::models()) {
        SCOPED_TRACE(model.key);
        SessionOptions options = kt500::testing::SessionOf(model.key, false, "observer");
        options.locked = true;
        SimulatedSession session(options);
        EXPECT_TRUE(session.locked);
        EXPECT_TRUE(session.sink.events.empty()) << "opening delivers no event by itself";

        const xml::LoadResult data =
            xml::Document::parse(session.sessionData, {.schemas = &schemas});
        ASSERT_TRUE(data.ok()) << data.message();
        const xml::Node attributes = data.document->root().firstChildElement();
        EXPECT_EQ(attributes.attribute("deviceType") + "_" + attributes.attribute("revision") +
                      " " + attributes.attribute("online") + attributes.attribute("userRole"),
                  model.key + " 0observer");
        // The document itself is checked where the families compose it.
        const xml::Node published = xml::XPath(session.parameters(), DeviceNamespaces())
                                        .selectSingle("//typeInfo:device/typeInfo:publishedInfo");
        EXPECT_EQ(published.attribute("name") + " " + published.attribute("version") + " " +
                      published.attribute("deviceTypeId"),
                  model.name + " " + model.revision + " " + model.deviceTypeId);
    }
}

TEST(BuiltInBLTest, ConnectionLifeAndRefusals) {
    SessionOptions unknown;
    unknown.deviceKey = "KTQ500_5";  // no such device
    EXPECT_THROW(BuiltInBL(unknown, KT500_SHARE_DIR), std::invalid_argument);
    SimulatedSession session;
    services::IDtmControl& control = *session.bl().control();
    std::int32_t id = 0;
    std::string data;
    xml::Node parameters;
    bool locked = false;
    bool closed = false;
    EXPECT_THROW(control.OpenConnection(session.sink, "", id, data, parameters, session.language,
                                        locked, closed),
                 std::logic_error);
    control.CloseConnection(SimulatedControl::kConnectionId + 1, closed);
    EXPECT_FALSE(closed);
    control.CloseConnection(SimulatedControl::kConnectionId, closed);
    EXPECT_TRUE(closed);
    EXPECT_FALSE(session.control().connected());
    control.CloseConnection(SimulatedControl::kConnectionId, closed);
    EXPECT_FALSE(closed);
}

TEST(BuiltInBLTest, UnknownKeysTranslateToThemselvesAndUnknownLanguagesAreRefused) {
    SimulatedSession session;
    std::string text;
    session.language->TranslateKey(1033, "noSuchKeyAnywhere", text);
    EXPECT_EQ(text, "noSuchKeyAnywhere");
    EXPECT_THROW(session.language->TranslateKey(1036, "dtmConnected", text), std::invalid_argument);
}

TEST(LanguageTextsTest, RefusesBadTextsFilesAndDecodesGoodOnes) {
    const std::string open = "<texts xmlns='x-schema:KT500TextsSchema.xml' language=";
    for (const std::string& bytes : {
             std::string(),
             open + "'1033'><text key='a'>",
             std::string("<texts language='1033'/>"),
             std::string("<words xmlns='x-schema:KT500TextsSchema.xml' language='1033'/>"),
             open + "'en'/>",
             open + "'1033x'/>",
             open + "'1033'><text>x</text></texts>",
             open + "'1033'><text key='a'>1</text><text key='a'>2</text></texts>",
             "<!DOCTYPE t [<!ENTITY e 'x'>]>" + open + "'1033'><text key='a'>&e;</text></texts>",
         }) {
        EXPECT_NE(ErrorOf<std::runtime_error>([&] {
                      (void)LanguageTexts::parse(bytes, "bad.xml");
                  }).find("texts file bad.xml: "),
                  std::string::npos)
            << bytes;
    }
    const LanguageTexts good = LanguageTexts::parse(
        open +
            "'1031' name='Deutsch'><text key='a'>&#xC4;rger &amp; Co</text><text key='empty'/>"
            "</texts>",
        "good.xml");
    EXPECT_EQ(good.languageId(), 1031);
    ASSERT_NE(good.find("a"), nullptr);
    EXPECT_EQ(*good.find("a"), "\xC3\x84rger & Co");
    EXPECT_EQ(*good.find("empty"), "");
    EXPECT_EQ(good.find("b"), nullptr);
}

}  // namespace
}  // namespace kt500::simulator::testing
