#include "host/SessionData.h"

#include "devices/clsKT520.h"
#include "session/modRegistry.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/SessionOptions.h"
#include "support/MemorySettings.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kt500::host {
namespace {

using simulator::SessionOptions;

constexpr const char* kSaveDefault = "/var/kt500/documents/";
// The language service answers this language with the keys themselves.
constexpr const char* kKeyLanguage = "9999";

SessionOptions Options(const std::string& strDeviceKey, bool blOnline, const std::string& strRole) {
    SessionOptions options = testing::SessionOf(strDeviceKey, blOnline, strRole);
    options.language = options.frameLanguage = kKeyLanguage;
    options.savePath = "/data/sets/";
    return options;
}

std::string Message(const SessionOptions& options) {
    const simulator::DeviceModel* model = simulator::DeviceCatalogue::find(options.deviceKey);
    return simulator::BuildSessionData(options, model->deviceType, model->revision);
}

// A device class whose page switching is recorded in the control's calls.
class RecordingKT520 final : public devices::clsKT520 {
public:
    explicit RecordingKT520(std::vector<std::string>& calls) : m_calls(calls) {}
    void HideFrames() override { m_calls.push_back("HideFrames"); }
    void ShowFrame(const std::string& strNodeName) override {
        m_calls.push_back("ShowFrame " + strNodeName);
    }

private:
    std::vector<std::string>& m_calls;
};

class Session {
public:
    explicit Session(SessionOptions sessionOptions)
        : options(std::move(sessionOptions)),
          control(options),
          session(control, store, output, kSaveDefault) {}

    // A failure is recorded, so that the checks after it still run.
    void load(const std::string& strText, bool blInit) {
        try {
            session.LoadSessionData(strText, blInit);
        } catch (const std::exception& failure) {
            ADD_FAILURE() << "LoadSessionData: " << failure.what();
        }
    }
    void load(bool blInit) { load(Message(options), blInit); }

    form::Control& at(const std::string& strName, int intIndex = -1) {
        return control.form().control(strName, intIndex);
    }
    form::Control& addCommand(const std::string& strName, int intIndex = -1) {
        return control.addField(form::ControlKind::CommandButton, strName, intIndex, "fraKT520", 1,
                                "");
    }
    form::ToolbarModel& toolbar() { return at("smuiDTM", 1).toolbar(); }
    bool enabled(const std::string& strKey) { return toolbar().item(strKey).enabled; }

    SessionOptions options;
    testing::MemoryStore store;
    testing::RecordingOutput output;
    testing::TestUserControl control;
    SessionData session;
};

TEST(SessionData, AttributesLandInTheSessionState) {
    SessionOptions options = Options("KT520_7", false, "maintenance");
    options.frameLanguage = "1031";
    options.privateDialog = true;
    Session s(options);
    // The session names a PT model of another revision than the control knew.
    s.options.deviceKey = "KT520_PT_6";
    s.load(true);

    const session::clsTools& tools = s.control.tools();
    EXPECT_EQ(tools.DeviceRevision, "6");
    EXPECT_EQ(tools.DeviceParameterXml(), "GUIInit_KT520PT_6.xml");
    EXPECT_EQ(tools.FrameLanguage, "1031");
    EXPECT_EQ(s.at("filOpenFile").path(), "/data/sets/");
    EXPECT_TRUE(s.session.privateDialogEnabled());
}

TEST(SessionData, ModelWordChoosesTheToolbarPicture) {
    const std::vector<std::pair<std::string, int>> cases = {
        {"KTQ500_7", 1}, {"KTQ500_PT_6", 2}, {"PL500_2", 3}, {"KT540_1.0", 4}, {"KT520_5", 4}};
    for (const auto& [deviceKey, shown] : cases) {
        Session s(Options(deviceKey, true, "maintenance"));
        s.load(true);
        for (int element = 1; element <= 4; ++element) {
            EXPECT_EQ(s.at("imgToolbar", element).visible(), element == shown)
                << deviceKey << " element " << element;
        }
    }
}

TEST(SessionData, ModeSetsFlowCaptionHeaderStatusAndMonitoringCommands) {
    struct Case {
        bool online;
        const char* flowCaption;
        const char* headerStatus;
    };
    for (const Case& c : {Case{true, "download", ""}, Case{false, "accept", "notMonitored"}}) {
        Session s(Options("KT520_7", c.online, "maintenance"));
        form::Control& apply = s.addCommand("cmdHAFlowModification", 5);
        s.toolbar().setEnabled("uploadCurrent", false);
        s.toolbar().setEnabled("send", false);
        s.load(true);

        SCOPED_TRACE(c.online ? "online" : "offline");
        EXPECT_EQ(apply.caption(), c.flowCaption);
        EXPECT_EQ(s.toolbar().item("strHeaderStatus").text, c.headerStatus);
        EXPECT_TRUE(s.enabled("send"));
        // The upload band follows the mode.
        EXPECT_EQ(s.enabled("uploadCurrent"), c.online);
        for (const char* command : {"cmdHAMonitoring", "cmdPAMonitoring", "cmdPLMonitoring"}) {
            EXPECT_EQ(s.at(command, 1).enabled(), c.online) << command;
        }
    }
}

TEST(SessionData, OnlineUploadBandOffersTheGroupsOfTheGuiInitDocument) {
    Session s(Options("KT520_7", true, "maintenance"));
    xml::LoadResult guiInit = xml::Document::parse(
        "<dtm><uploadGroups><uploadGroup name='uploadAll'/></uploadGroups></dtm>");
    ASSERT_TRUE(guiInit.ok());
    s.control.tools().setRavikDTMParameters(
        std::make_unique<xml::Document>(std::move(*guiInit.document)));
    s.load(true);
    EXPECT_TRUE(s.enabled("uploadAll"));
    EXPECT_FALSE(s.enabled("uploadAdvanced"));
}

TEST(SessionData, RoleLimitsFollowTheRoleWord) {
    struct Case {
        const char* role;
        bool online;
        bool send;
        bool offlineConf;
        bool calibration;
        bool reset;
        bool startTest;
        bool plTests;
    };
    // The role words compare without regard to case; the tests need the
    // device online whatever the role, and an operator runs the
    // positioners' tests but not the PL500's (docs/roles.md).
    const Case cases[] = {
        {"observer", false, false, false, false, false, false, false},
        {"operator", true, true, false, false, false, true, false},
        {"Operator", true, true, false, false, false, true, false},
        {"maintenance", false, true, true, true, true, false, false},
        {"oemService", true, true, false, true, true, true, true},
    };
    for (const Case& c : cases) {
        Session s(Options("KT520_7", c.online, c.role));
        form::Control& calibration = s.addCommand("cmdHAAutoTravelCalibration", 0);
        form::Control& reset = s.addCommand("cmdResetDiagnostics", 3);
        form::Control& factoryReset = s.addCommand("cmdPAFactoryReset");
        s.load(true);

        SCOPED_TRACE(std::string(c.role) + (c.online ? " online" : " offline"));
        EXPECT_EQ(s.enabled("send"), c.send);
        EXPECT_EQ(s.enabled("offlineConf"), c.offlineConf);
        EXPECT_EQ(calibration.enabled(), c.calibration);
        EXPECT_EQ(reset.enabled(), c.reset);
        EXPECT_EQ(factoryReset.enabled(), c.calibration);
        EXPECT_EQ(s.at("cmdStartTest", 0).enabled(), c.startTest);
        for (const auto& [name, index] :
             {std::pair{"cmdPLStartTest", 1}, std::pair{"cmdPLSetTestSettings", 1}}) {
            EXPECT_EQ(s.at(name, index).enabled(), c.plTests) << name;
        }
    }
}

TEST(SessionData, ALanguageTheServiceDoesNotOfferGivesWayToTheFirstOfItsList) {
    const struct {
        const char* language;
        const char* frameLanguage;
        const char* inForce;
    } cases[] = {
        {"1031", "1040", "1031"},  // offered: taken as it comes
        {"1040", "1031", "1033"},
        {"0", "1031", "0"},        // the frame's language is in force, and offered
        {"0", "1040", "1033"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.language) + " " + c.frameLanguage);
        SessionOptions options = Options("KT520_7", true, "maintenance");
        options.language = c.language;
        options.frameLanguage = c.frameLanguage;
        testing::TestUserControl control(options);
        testing::MemoryStore store;
        testing::RecordingOutput output;
        SessionData session(control, store, output, kSaveDefault,
                            [] { return std::vector<std::int32_t>{1033, 1031, 9999}; });
        session.LoadSessionData(Message(options), true);
        EXPECT_EQ(control.tools().Language, c.inForce);
    }
}

TEST(SessionData, MessageThatDoesNotParseIsReportedAndTheSessionStays) {
    SessionOptions guest = Options("PL500_1", false, "maintenance");
    guest.role = "guest";
    for (const std::string& text : {std::string("<sessionData"), Message(guest)}) {
        Session s(Options("KT520_7", true, "maintenance"));
        s.control.tools().MonitoringFlag = true;
        s.load(text, false);

        EXPECT_EQ(s.control.messages, std::vector<std::string>{"GetSessionData: parseFailed"});
        EXPECT_EQ(s.control.tools().DeviceType, "KT520_7");
        EXPECT_TRUE(s.control.tools().OnlineConf);
        EXPECT_FALSE(s.control.tools().MonitoringFlag);
    }
}

TEST(SessionData, EmptySavePathTakesTheInstallPath) {
    struct Case {
        const char* installPath;  // nullptr: not in the settings
        std::string savePath;
    };
    // Only a failed read falls back to the default, and writes it back.
    for (const Case& c :
         {Case{"/opt/kt500/", "/opt/kt500/"}, Case{"", ""}, Case{nullptr, kSaveDefault}}) {
        SessionOptions options = Options("KT520_7", true, "maintenance");
        options.savePath.clear();
        Session s(options);
        if (c.installPath != nullptr) {
            s.store.put(session::modRegistry::FilePathsKey, "Install Path", c.installPath);
        }
        s.load(true);
        EXPECT_EQ(s.control.tools().SavePath, c.savePath);
        EXPECT_EQ(s.at("dirOpenFile").path(), c.savePath);
        EXPECT_EQ(s.store.get(session::modRegistry::FilePathsKey, "Install Path"), c.savePath);
    }
}

TEST(SessionData, UpdateAfterStartUpRebuildsTheTreeAndShowsTheDefaultPage) {
    struct Case {
        const char* language;
        bool initialized;
        bool blInit;
        std::vector<std::string> calls;
    };
    const std::vector<std::string> rebuild = {"BuildNavigationTree", "HideFrames",
                                              "ShowFrame monitoringVariables", "SelectNode 8"};
    std::vector<std::string> translatedRebuild = rebuild;
    translatedRebuild.insert(translatedRebuild.begin(), "TranslateForm");
    const Case cases[] = {
        {kKeyLanguage, true, false, rebuild},
        {"1033", true, false, translatedRebuild},
        {"1033", false, false, {"TranslateForm"}},
        {"1033", true, true, {}},
    };
    for (const Case& c : cases) {
        // Offline before; the update turns the session online.
        Session s(Options("KT520_7", false, "maintenance"));
        s.control.setDeviceClass(std::make_unique<RecordingKT520>(s.control.calls));
        s.control.tools().DTMInitialized = c.initialized;
        s.options.online = true;
        s.options.language = c.language;
        s.load(c.blInit);
        EXPECT_EQ(s.control.calls, c.calls) << c.language << " " << c.initialized;
    }
}

TEST(SessionData, AnyUpdateStopsTheMonitoringState) {
    struct Case {
        const char* deviceKey;
        const char* label;
        int element;
        const char* command;
    };
    for (const Case& c : {Case{"KT520_7", "lblHAMonitoringSettings", 6, "cmdHAMonitoring"},
                          Case{"KT540_1.0", "lblPAMonValue", 6, "cmdPAMonitoring"},
                          Case{"PL500_1", "lblPLParams", 11, "cmdPLMonitoring"}}) {
        Session s(Options(c.deviceKey, true, "maintenance"));
        if (s.control.form().find(c.label, c.element) == nullptr) {
            s.control.addField(form::ControlKind::Label, c.label, c.element, "fraKT520", 6, "");
        }
        // The value labels beside the buttons keep their values.
        s.at("lblPLParams", 9).setCaption("2.5");
        session::clsTools& tools = s.control.tools();
        tools.MonitoringFlag = true;
        tools.CurrentAutoAction = 2;
        tools.CommunicationSign("monitoring", "1");
        s.at(c.label, c.element).setCaption("running");
        s.at(c.command, 0).setCaption("stop");
        s.at("treeNavigation").tree().add("", "monitoringVariables", "", "read");
        s.load(false);

        SCOPED_TRACE(c.deviceKey);
        EXPECT_FALSE(tools.MonitoringFlag);
        EXPECT_EQ(tools.CurrentAutoAction, 0);
        EXPECT_FALSE(tools.CommunicationSign("monitoring", ""));
        EXPECT_EQ(s.at(c.label, c.element).caption(), "stopped");
        EXPECT_EQ(s.at("lblPLParams", 9).caption(), "2.5");
        EXPECT_EQ(s.at(c.command, 0).caption(), "start");
        EXPECT_EQ(s.at("treeNavigation").tree().node("monitoringVariables").image, "notRead");
    }
}

}  // namespace
}  // namespace kt500::host
