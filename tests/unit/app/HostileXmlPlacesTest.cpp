// Every place XML enters refuses every attack of support/HostileXml.h with
// the parser's reason, takes nothing, reads no file and calls no URL.
#include "app/ControlSession.h"
#include "datasets/DataFileRead.h"
#include "form/Form.h"
#include "form/FormLoader.h"
#include "simulator/LanguageTexts.h"
#include "simulator/UnitTables.h"
#include "support/HostileXml.h"
#include "support/MemorySettings.h"
#include "xml/SchemaCollection.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kt500::app {
namespace {

namespace fs = std::filesystem;
using test::Envelope;
using test::HostileAttack;

constexpr std::string_view kSecret = "TOP-SECRET-9d27e4";

// One place XML enters. refusal feeds it the text and gives what the user or
// the log is told; "" when the place took the document.
struct Place {
    std::string name;
    Envelope envelope;
    // The message holds the parser's reason (else the place's own fixed text).
    bool showsReason = true;
    std::function<std::string(const std::string&)> refusal;
};

// The box a BL event showed under header, as "HEADER | TEXT"; "" for none.
std::string BoxUnder(ControlSession& session, const std::string& header) {
    std::string shown;
    for (const auto& box : session.dialogs().takeBoxes()) {
        if (box.header == header) {
            shown = box.header + " | " + box.text;
        }
    }
    return shown;
}

// The share folder with the KT520_7's GUIInit document replaced: every other
// file is a link into the real one.
class ShareWithGuiInit {
public:
    explicit ShareWithGuiInit(const std::string& text) {
        const fs::path share = KT500_SHARE_DIR;
        for (const auto& entry : fs::directory_iterator(share)) {
            if (entry.path().filename() != "guiinit") {
                fs::create_directory_symlink(entry.path(), root() / entry.path().filename());
            }
        }
        fs::create_directory(root() / "guiinit");
        for (const auto& entry : fs::directory_iterator(share / "guiinit")) {
            if (entry.path().filename() != "GUIInit_KT520_7.xml") {
                fs::create_symlink(entry.path(), root() / "guiinit" / entry.path().filename());
            }
        }
        std::ofstream(root() / "guiinit" / "GUIInit_KT520_7.xml", std::ios::binary) << text;
    }
    [[nodiscard]] fs::path root() const { return m_folder.path().toStdString(); }

private:
    QTemporaryDir m_folder;
};

class HostileXmlPlaces : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_session = std::make_unique<ControlSession>(KT500_SHARE_DIR);
        ASSERT_TRUE(s_session->start({}));
        s_session->settle();
        (void)s_session->dialogs().takeBoxes();
    }
    static void TearDownTestSuite() { s_session.reset(); }

    std::vector<Place> places() {
        ControlSession& session = *s_session;
        const fs::path share = KT500_SHARE_DIR;
        return {
            {"reply",
             {"<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationResponse "
              "name='operationUnit' access='read' responseStatus='ok' isFinal='1' errorCode=''>",
              "</communicationResponse></dtm>"},
             false,
             [&session](const std::string& text) {
                 (void)session.control().IQDLGuiEvent_CommunicationEvent(text);
                 session.settle();
                 return BoxUnder(session, "ItemListFromReply");
             }},
            {"session data",
             {"<sessionData xmlns='x-schema:QDLSessionDataSchema.xml'><session "
              "privateDialogEnabled='0' deviceType='KT520' revision='7' userRole='observer' "
              "frameLanguage='1031' guiLanguage='1031' online='0' savePath=''/>",
              "</sessionData>"},
             false,
             [&session](const std::string& text) {
                 (void)session.control().IQDLGuiEvent_UpdateSessionData(text);
                 session.settle();
                 return BoxUnder(session, "GetSessionData");
             }},
            {"data file",
             {"<dtm deviceType='KT520' revision='7'><communicationResponse name='operationUnit' "
              "access='read' responseStatus='ok' isFinal='1' errorCode=''>",
              "</communicationResponse></dtm>"},
             true,
             [this](const std::string& text) {
                 datasets::DataFileShape shape;
                 shape.deviceType = "KT520";
                 shape.revision = "7";
                 shape.groups["operationUnit"] = {{"hartTag", "stringVal"}};
                 const datasets::DataFileRead read =
                     datasets::ReadDataFile(text, shape, &communicationSchemas());
                 return read.ok() ? std::string() : read.reasonKey + " (" + read.detail + ")";
             }},
            {"form file",
             {"<form xmlns='x-schema:KT500FormSchema.xml' description='hostile'>", "</form>"},
             true,
             [share](const std::string& text) {
                 const form::FormLoader loader(share / "schemas" / "KT500FormSchema.xsd");
                 form::Form form;
                 try {
                     loader.loadBytes(form, text, "hostile.xml");
                 } catch (const form::FormLoadError& error) {
                     return std::string(error.what());
                 }
                 return std::string();
             }},
            {"texts",
             {"<texts xmlns='x-schema:KT500TextsSchema.xml' language='1033' name='English'>",
              "</texts>"},
             true,
             [](const std::string& text) {
                 try {
                     (void)simulator::LanguageTexts::parse(text, "hostile.xml");
                 } catch (const std::runtime_error& error) {
                     return std::string(error.what());
                 }
                 return std::string();
             }},
            {"unit tables",
             {"<unitTables xmlns='x-schema:KT500UnitsSchema.xml'><quantity name='percent' "
              "base='%'><unit name='%' factor='1' offset='0'/></quantity>",
              "<system name='SI'/></unitTables>"},
             true,
             [](const std::string& text) {
                 try {
                     (void)simulator::UnitTables::parse(text, "hostile.xml");
                 } catch (const std::runtime_error& error) {
                     return std::string(error.what());
                 }
                 return std::string();
             }},
            {"GUIInit",
             {"<dtm><treeView><branch name='identification' offline='1'>",
              "<node name='operationUnit' offline='1'/></branch></treeView><uploadGroups>"
              "<uploadGroup name='uploadAll' count='1'><requestGroup name='operationUnit'/>"
              "</uploadGroup></uploadGroups></dtm>"},
             true,
             [](const std::string& text) {
                 const ShareWithGuiInit share(text);
                 auto output = std::make_shared<testing::RecordingOutput>();
                 SessionEnvironment environment;
                 environment.debugOutput = output;
                 ControlSession started(share.root(), environment);
                 (void)started.start({});
                 if (started.control().tools().RavikDTMParameters() != nullptr) {
                     return std::string();
                 }
                 for (const std::string& line : output->lines) {
                     if (line.find("GUIInit_KT520_7.xml") != std::string::npos) {
                         return line;
                     }
                 }
                 return std::string("no document and no reason");
             }},
        };
    }

    const xml::SchemaCollection& communicationSchemas() {
        if (!m_schemas) {
            m_schemas = std::make_unique<xml::SchemaCollection>();
            EXPECT_EQ(m_schemas->add(
                          "x-schema:QDLCommunicationSchema.xml",
                          fs::path(KT500_SHARE_DIR) / "schemas" / "QDLCommunicationSchema.xml"),
                      "");
        }
        return *m_schemas;
    }

    static inline std::unique_ptr<ControlSession> s_session;
    std::unique_ptr<xml::SchemaCollection> m_schemas;
};

TEST_F(HostileXmlPlaces, EveryPlaceRefusesEveryAttackAndTouchesNothing) {
    QTemporaryDir folder;
    const fs::path secret = fs::path(folder.path().toStdString()) / "secret.txt";
    std::ofstream(secret) << kSecret;
    const test::LoopbackListener listener;
    ASSERT_TRUE(listener.ready());
    const test::AttackTargets targets{secret.string(), listener.url};

    const std::string roleBefore = s_session->control().tools().ActorRole;
    for (const Place& place : places()) {
        for (const HostileAttack& attack : test::HostileAttacks()) {
            const std::string message = place.refusal(attack.build(place.envelope, targets));
            ASSERT_NE(message, "") << place.name << " took " << attack.name;
            if (place.showsReason) {
                EXPECT_NE(message.find(attack.reason), std::string::npos)
                    << place.name << ", " << attack.name << ": " << message;
            }
            EXPECT_EQ(message.find(kSecret), std::string::npos)
                << place.name << ", " << attack.name;
        }
    }
    EXPECT_FALSE(listener.wasContacted());
    // The session data of no attack took effect.
    EXPECT_EQ(s_session->control().tools().ActorRole, roleBefore);
}

// Each envelope is a good document of its place (a reply with an item of its
// own), so that above the attack is what each place refuses.
TEST_F(HostileXmlPlaces, EachEnvelopeAloneIsTaken) {
    const std::string item =
        "<item name='hartTag' unit='noUnit'><stringVal>PV-1</stringVal></item>";
    for (const Place& place : places()) {
        const std::string body = place.name == "reply" ? item : "";
        EXPECT_EQ(place.refusal(place.envelope.open + body + place.envelope.close), "")
            << place.name;
    }
    EXPECT_EQ(s_session->control().tools().ActorRole, "observer");
}

}  // namespace
}  // namespace kt500::app
