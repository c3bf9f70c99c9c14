#include "simulator/LanguageTexts.h"
#include "support/TestUserControl.h"
#include "unit/simulator/SimulatedSession.h"
#include "xml/XPath.h"

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
        EXPECT_EQ(attributes.attribute("deviceType") + "_" + attributes.attribute("revision"),
                  model.key);
        EXPECT_EQ(attributes.attribute("online") + attributes.attribute("userRole"), "0observer");

        // The document itself is checked where the families compose it.
        const xml::LoadResult parameters = xml::Document::parse(session.parameters().toXml());
        ASSERT_TRUE(parameters.ok());
        const xml::Node published =
            xml::XPath(*parameters.document,
                       xml::Namespaces::fromSelection(
                           "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'"))
                .selectSingle("//typeInfo:device/typeInfo:publishedInfo");
        EXPECT_EQ(published.attribute("name"), model.name);
        EXPECT_EQ(published.attribute("version"), model.revision);
    }
}

TEST(BuiltInBLTest, ConnectionLifeAndRefusals) {
    SessionOptions qVariantRevision5;
    qVariantRevision5.deviceKey = "KTQ500_5";  // no such device
    EXPECT_THROW(BuiltInBL(qVariantRevision5, KT500_SHARE_DIR), std::invalid_argument);
    SimulatedSession session;
    services::IDtmControl& control = *session.bl().control();
    std::int32_t id = 0;
    std::string data;
    xml::Node parameters;
    std::shared_ptr<services::IDtmLanguage> language;
    bool locked = false;
    bool closed = false;
    EXPECT_THROW(
        control.OpenConnection(session.sink, "", id, data, parameters, language, locked, closed),
        std::logic_error);
    control.CloseConnection(SimulatedControl::kConnectionId + 1, closed);
    EXPECT_FALSE(closed);
    control.CloseConnection(SimulatedControl::kConnectionId, closed);
    EXPECT_TRUE(closed);
    EXPECT_FALSE(session.control().connected());
    control.CloseConnection(SimulatedControl::kConnectionId, closed);
    EXPECT_FALSE(closed);
}

TEST(BuiltInBLTest, LanguageServiceOffersEnglishGermanAndKeys) {
    SimulatedSession session;
    services::IDtmLanguage& language = *session.language;
    std::vector<std::int32_t> ids;
    language.GetLanguageIds(ids);
    EXPECT_EQ(ids, (std::vector<std::int32_t>{1033, 1031, 9999}));
    std::string text;
    language.TranslateKey(1031, "dtmConnected", text);
    EXPECT_EQ(text, "Verbunden");
    language.TranslateKey(9999, "dtmConnected", text);
    EXPECT_EQ(text, "dtmConnected");
    language.TranslateKey(1033, "noSuchKeyAnywhere", text);
    EXPECT_EQ(text, "noSuchKeyAnywhere");
    EXPECT_THROW(language.TranslateKey(1036, "dtmConnected", text), std::invalid_argument);
    language.GetLanguageName(1031, text);
    EXPECT_EQ(text, "Deutsch");
}

TEST(BuiltInBLTest, HeadlessDialogsAnswerFromTheQueue) {
    HeadlessDialogs dialogs;
    int pressed = 0;
    int result = 0;
    dialogs.ShowMessage(0, 4, 6, "Question", "Go on?", pressed, result);
    EXPECT_EQ(pressed, services::ButtonYes);
    dialogs.queueAnswer(services::ButtonNo);
    dialogs.ShowMessage(0, 4, 6, "Question", "Again?", pressed, result);
    EXPECT_EQ(pressed, services::ButtonNo);
    dialogs.ShowMessage(0, 1, 4, "Note", "Done", pressed, result);
    EXPECT_EQ(pressed, services::ButtonOk);
    EXPECT_EQ(dialogs.takeBoxes().size(), 3U);
    EXPECT_TRUE(dialogs.takeBoxes().empty());
    EXPECT_EQ(dialogs.boxes().size(), 3U) << "taking leaves the history";
}

TEST(LanguageTextsTest, RefusesBadTextsFiles) {
    const std::string open = "<texts xmlns='x-schema:KT500TextsSchema.xml' language=";
    const std::string bad[] = {
        "",
        open + "'1033'><text key='a'>",
        "<texts language='1033'/>",
        "<words xmlns='x-schema:KT500TextsSchema.xml' language='1033'/>",
        open + "'en'/>",
        open + "'1033x'/>",
        open + "'1033'><text>x</text></texts>",
        open + "'1033'><text key='a'>1</text><text key='a'>2</text></texts>",
        "<!DOCTYPE t [<!ENTITY e 'x'>]>" + open + "'1033'><text key='a'>&e;</text></texts>",
    };
    for (const std::string& bytes : bad) {
        try {
            (void)LanguageTexts::parse(bytes, "bad.xml");
            ADD_FAILURE() << "accepted: " << bytes;
        } catch (const std::runtime_error& failure) {
            EXPECT_NE(std::string(failure.what()).find("texts file bad.xml: "), std::string::npos);
        }
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
