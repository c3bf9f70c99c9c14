#include "presentation/Toolbar.h"

#include "devices/clsKT520.h"
#include "support/RecordingServices.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::presentation {
namespace {

using testing::TestUserControl;

// Notes whether the stop is flagged while the errors are printed.
class StoppingKT520 final : public devices::clsKT520 {
public:
    explicit StoppingKT520(std::vector<std::string>& calls) : m_calls(calls) {}
    void PrintErrorMessages() override {
        m_calls.push_back("PrintErrorMessages stop=" + std::to_string(SmuiStopPressed()));
    }

private:
    std::vector<std::string>& m_calls;
};

struct Started {
    std::string program;
    std::vector<std::string> arguments;
};

struct ToolbarTest : ::testing::Test {
    explicit ToolbarTest(const std::string& role = "maintenance")
        : uc(testing::SessionOf("KT520_7", true, role)) {
        uc.tools().ActorRole = role;
        uc.tools().CurrentFrame = "HAoperationUnit";
    }
    form::ToolbarModel& items() { return uc.form().control("smuiDTM", 1).toolbar(); }
    bool enabled(const char* name, int element) {
        return uc.form().control(name, element).enabled();
    }

    TestUserControl uc;
    NavigationTree navigation{uc};
    std::vector<Started> started;
    Toolbar toolbar{uc, navigation,
                    [this](const std::string& program, const std::vector<std::string>& arguments) {
                        started.push_back({program, arguments});
                        return true;
                    }};
};

TEST_F(ToolbarTest, StopCancelsAndGivesTheToolsBack) {
    auto log = std::make_shared<testing::CallLog>();
    uc.controlDouble = std::make_shared<testing::RecordingControl>(log);
    uc.setDeviceClass(std::make_unique<StoppingKT520>(uc.calls));
    uc.tools().ConnectionID = 7;
    uc.tools().CommunicationSign("read", "1");
    items().setEnabled("stop", true);
    items().setEnabled("uploadCurrent", false);
    items().setEnabled("send", false);
    uc.form().control("fraProgress").setVisible(true);

    toolbar.smuiDTM_ToolbarClick("stop");

    EXPECT_EQ(*log, testing::CallLog{"CancelRequests 7"});
    EXPECT_EQ(uc.calls, std::vector<std::string>{"PrintErrorMessages stop=1"});
    EXPECT_FALSE(uc.deviceClass().SmuiStopPressed());
    EXPECT_FALSE(uc.tools().CommunicationSign("read", ""));
    EXPECT_FALSE(items().item("stop").enabled);
    EXPECT_TRUE(items().item("uploadCurrent").enabled);
    EXPECT_TRUE(items().item("send").enabled);
    EXPECT_FALSE(uc.form().control("fraProgress").visible());
    EXPECT_TRUE(enabled("cmdHAAutoTravelCalibration", 0));
}

TEST_F(ToolbarTest, ClicksDuringAnAutoActionAreDropped) {
    uc.tools().CurrentAutoAction = 2;
    for (const char* key : {"uploadAll", "uploadCurrent", "send", "undoAll"}) {
        toolbar.smuiDTM_ToolbarClick(key);
    }
    EXPECT_TRUE(uc.calls.empty());
    EXPECT_FALSE(uc.form().control("fraConfirmation", 0).visible());
}

TEST_F(ToolbarTest, KeysReachTheirCommands) {
    const struct {
        const char* key;
        const char* call;
    } cases[] = {
        {"uploadCurrent", "cmdReload"},
        {"uploadDiagnostics", "RunUploadGroup uploadDiagnostics"},
        {"uploadAll", "RunUploadGroup uploadAll"},
        {"undoAll", "UndoAllPages"},
        {"undoCurrentPage", "ClearPageChanges HAoperationUnit"},
    };
    for (const auto& c : cases) {
        uc.calls.clear();
        toolbar.smuiDTM_ToolbarClick(c.key);
        ASSERT_FALSE(uc.calls.empty()) << c.key;
        EXPECT_EQ(uc.calls.back(), c.call) << c.key;
    }
    uc.calls.clear();
    toolbar.smuiDTM_ToolbarClick("maximize");
    EXPECT_TRUE(uc.calls.empty());
}

TEST_F(ToolbarTest, SendShowsTheListWithSendEnabledByCheckedRows) {
    form::ListViewModel& rows = uc.form().control("lsvConfirmation").listView();
    toolbar.smuiDTM_ToolbarClick("send");
    EXPECT_TRUE(uc.form().control("fraConfirmation", 0).visible());
    EXPECT_FALSE(enabled("cmdSend", 8));

    rows.add("travel");
    rows.setChecked(1, true);
    toolbar.smuiDTM_ToolbarClick("offlineConf");
    EXPECT_TRUE(enabled("cmdSend", 8));
}

TEST_F(ToolbarTest, SettingsTwiceKeepsTheLastRealPage) {
    toolbar.smuiDTM_ToolbarClick("settings");
    toolbar.smuiDTM_ToolbarClick("settings");
    EXPECT_TRUE(uc.form().control("fraCommon", 0).visible());
    EXPECT_EQ(uc.tools().CurrentFrame, "HAoperationUnit");
}

TEST_F(ToolbarTest, HelpStartsTheViewerOnlyWithPrivateDialogs) {
    uc.tools().InstallPath = "/opt/kt500";
    toolbar.smuiDTM_ToolbarClick("help");
    EXPECT_TRUE(started.empty());

    uc.privateDialog = true;
    toolbar.smuiDTM_ToolbarClick("help");
    ASSERT_EQ(started.size(), 1U);
    EXPECT_EQ(started[0].program, "xdg-open");
    EXPECT_EQ(started[0].arguments, std::vector<std::string>{"/opt/kt500/DTMHelp.chm"});

    // A viewer that fails is ignored.
    Toolbar failing{uc, navigation,
                    [](const std::string&, const std::vector<std::string>&) -> bool {
                        throw std::runtime_error("no viewer");
                    }};
    EXPECT_NO_THROW(failing.smuiDTM_ToolbarClick("help"));
}

struct ObserverToolbar : ToolbarTest {
    ObserverToolbar() : ToolbarTest("observer") {}
};

TEST_F(ObserverToolbar, StopLeavesSendDisabled) {
    uc.controlDouble =
        std::make_shared<testing::RecordingControl>(std::make_shared<testing::CallLog>());
    items().setEnabled("send", false);
    toolbar.smuiDTM_ToolbarClick("stop");
    EXPECT_FALSE(items().item("send").enabled);
}

TEST_F(ToolbarTest, RolesLimitTheCommands) {
    const struct {
        const char* role;
        bool send;
        bool reset;
        bool calibration;
        bool testing;
    } cases[] = {
        {"observer", false, false, false, false},
        {"operator", true, true, false, false},
        {"maintenance", true, true, true, true},
    };
    for (const auto& c : cases) {
        items().setEnabled("send", true);
        uc.form().control("cmdResetDiagnostics", 0).setEnabled(true);
        uc.form().control("cmdHAAutoTravelCalibration", 0).setEnabled(true);
        uc.calls.clear();
        toolbar.ApplyRole(c.role);
        EXPECT_EQ(items().item("send").enabled, c.send) << c.role;
        EXPECT_EQ(enabled("cmdResetDiagnostics", 0), c.reset) << c.role;
        EXPECT_EQ(enabled("cmdHAAutoTravelCalibration", 0), c.calibration) << c.role;
        EXPECT_EQ(uc.calls.empty(), c.testing) << c.role;
    }
}

}  // namespace
}  // namespace kt500::presentation
