#include "services/IQDLGuiEvent.h"
#include "simulator/BuiltInBL.h"
#include "simulator/LanguageTexts.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::simulator {
namespace {

// A sink that only counts: the door of the BL delivers no event by itself.
class QuietSink final : public services::IQDLGuiEvent {
public:
    bool IQDLGuiEvent_UpdateSessionData(const std::string&) override { return ++events, true; }
    bool IQDLGuiEvent_CommunicationEvent(const std::string&) override { return ++events, true; }
    void IQDLGuiEvent_ReadyForAutoAction(bool) override { ++events; }
    void IQDLGuiEvent_AutoActionComplete(bool) override { ++events; }
    void IQDLGuiEvent_AutoActionStopped(bool) override { ++events; }
    void IQDLGuiEvent_OnLockDataSet(const std::string&, const std::string&) override { ++events; }
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string&, const std::string&) override {
        return ++events, true;
    }
    void IQDLGuiEvent_OnParameterChanged(const std::string&, const std::string&) override {
        ++events;
    }
    int events = 0;
};

struct Connection {
    std::int32_t id = 0;
    std::string sessionData;
    xml::Node parameters;
    std::shared_ptr<services::IDtmLanguage> language;
    bool locked = false;
    bool success = false;
};

Connection Open(services::IDtmControl& control, services::IQDLGuiEvent& sink) {
    Connection c;
    control.OpenConnection(sink, "", c.id, c.sessionData, c.parameters, c.language, c.locked,
                           c.success);
    return c;
}

xml::SchemaCollection Schemas() {
    const std::filesystem::path schemas = std::filesystem::path(KT500_SHARE_DIR) / "schemas";
    xml::SchemaCollection collection;
    EXPECT_EQ(collection.add("x-schema:QDLDeviceTypeInfoSchema.xml",
                             schemas / "QDLDeviceTypeInfoSchema.xml"),
              "");
    EXPECT_EQ(collection.add("x-schema:QDLDatafileSchema.xml", schemas / "QDLDatafileSchema.xml"),
              "");
    EXPECT_EQ(
        collection.add("x-schema:QDLSessionDataSchema.xml", schemas / "QDLSessionDataSchema.xml"),
        "");
    return collection;
}

TEST(BuiltInBLTest, EveryDeviceKeyConnectsWithValidSessionDataAndParameters) {
    const xml::SchemaCollection schemas = Schemas();
    for (const DeviceModel& model : DeviceCatalogue::models()) {
        SessionOptions options;
        options.deviceKey = model.key;
        options.online = false;
        options.role = "observer";
        options.locked = true;
        BuiltInBL bl(options, KT500_SHARE_DIR);
        QuietSink sink;
        const Connection c = Open(*bl.control(), sink);
        EXPECT_TRUE(c.success) << model.key;
        EXPECT_TRUE(c.locked);
        EXPECT_EQ(sink.events, 0);

        const xml::LoadResult session = xml::Document::parse(c.sessionData, {.schemas = &schemas});
        ASSERT_TRUE(session.ok()) << model.key << ": " << session.message();
        const xml::Node attributes = session.document->root().firstChildElement();
        EXPECT_EQ(attributes.attribute("deviceType") + "_" + attributes.attribute("revision"),
                  model.key);
        EXPECT_EQ(attributes.attribute("online"), "0");
        EXPECT_EQ(attributes.attribute("userRole"), "observer");

        const xml::LoadResult parameters =
            xml::Document::parse(c.parameters.toXml(), {.schemas = &schemas});
        ASSERT_TRUE(parameters.ok()) << model.key << ": " << parameters.message();
        const xml::XPath query(*parameters.document,
                               xml::Namespaces::fromSelection(
                                   "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'"));
        const xml::Node published = query.selectSingle("//typeInfo:device/typeInfo:publishedInfo");
        EXPECT_EQ(published.attribute("name"), model.name);
        EXPECT_EQ(published.attribute("version"), model.revision);
    }
}

TEST(BuiltInBLTest, ConnectionLifeAndRefusals) {
    SessionOptions qVariantRevision5;
    qVariantRevision5.deviceKey = "KTQ500_5";  // no such device
    EXPECT_THROW(BuiltInBL(qVariantRevision5, KT500_SHARE_DIR), std::invalid_argument);
    BuiltInBL bl(SessionOptions{}, KT500_SHARE_DIR);
    services::IDtmControl& control = *bl.control();
    QuietSink sink;
    const Connection c = Open(control, sink);
    EXPECT_THROW(Open(control, sink), std::logic_error);
    bool accepted = true;
    // A request that is no request is refused; one for another connection
    // fails at interface level.
    control.PostRequest(c.id, "<dtm/>", accepted);
    EXPECT_FALSE(accepted);
    EXPECT_THROW(control.PostRequest(c.id + 1, "<dtm/>", accepted), std::invalid_argument);
    bool closed = false;
    control.CloseConnection(c.id + 1, closed);
    EXPECT_FALSE(closed);
    control.CloseConnection(c.id, closed);
    EXPECT_TRUE(closed);
    EXPECT_FALSE(bl.simulatedControl().connected());
    control.CloseConnection(c.id, closed);
    EXPECT_FALSE(closed);
}

TEST(BuiltInBLTest, LanguageServiceOffersEnglishGermanAndKeys) {
    BuiltInBL bl(SessionOptions{}, KT500_SHARE_DIR);
    QuietSink sink;
    const Connection c = Open(*bl.control(), sink);
    std::vector<std::int32_t> ids;
    c.language->GetLanguageIds(ids);
    EXPECT_EQ(ids, (std::vector<std::int32_t>{1033, 1031, 9999}));
    std::string text;
    c.language->TranslateKey(1031, "dtmConnected", text);
    EXPECT_EQ(text, "Verbunden");
    c.language->TranslateKey(9999, "dtmConnected", text);
    EXPECT_EQ(text, "dtmConnected");
    c.language->TranslateKey(1033, "noSuchKeyAnywhere", text);
    EXPECT_EQ(text, "noSuchKeyAnywhere");
    EXPECT_THROW(c.language->TranslateKey(1036, "dtmConnected", text), std::invalid_argument);
    c.language->GetLanguageName(1031, text);
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
    EXPECT_EQ(dialogs.boxes().size(), 3U);
}

TEST(LanguageTextsTest, RefusesBadTextsFiles) {
    const char* bad[] = {
        "",
        "<texts xmlns='x-schema:KT500TextsSchema.xml' language='1033'><text key='a'>",
        "<texts language='1033'/>",
        "<words xmlns='x-schema:KT500TextsSchema.xml' language='1033'/>",
        "<texts xmlns='x-schema:KT500TextsSchema.xml' language='en'/>",
        "<texts xmlns='x-schema:KT500TextsSchema.xml' language='1033x'/>",
        "<texts xmlns='x-schema:KT500TextsSchema.xml' language='1033'><text>x</text></texts>",
        "<texts xmlns='x-schema:KT500TextsSchema.xml' language='1033'>"
        "<text key='a'>1</text><text key='a'>2</text></texts>",
        "<!DOCTYPE t [<!ENTITY e 'x'>]><texts xmlns='x-schema:KT500TextsSchema.xml' "
        "language='1033'><text key='a'>&e;</text></texts>",
    };
    for (const char* bytes : bad) {
        try {
            (void)LanguageTexts::parse(bytes, "bad.xml");
            ADD_FAILURE() << "accepted: " << bytes;
        } catch (const std::runtime_error& failure) {
            EXPECT_NE(std::string(failure.what()).find("texts file bad.xml: "), std::string::npos);
        }
    }
    const LanguageTexts good = LanguageTexts::parse(
        "<texts xmlns='x-schema:KT500TextsSchema.xml' language='1031' name='Deutsch'>"
        "<text key='a'>&#xC4;rger &amp; Co</text><text key='empty'/></texts>",
        "good.xml");
    EXPECT_EQ(good.languageId(), 1031);
    ASSERT_NE(good.find("a"), nullptr);
    EXPECT_EQ(*good.find("a"), "\xC3\x84rger & Co");
    EXPECT_EQ(*good.find("empty"), "");
    EXPECT_EQ(good.find("b"), nullptr);
}

}  // namespace
}  // namespace kt500::simulator
