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
    ToolbarTest() { uc.tools().CurrentFrame = "HAoperationUnit"; }
    form::ToolbarModel& items() { return uc.form().control("smuiDTM", 1).toolbar(); }
    bool enabled(const char* name, int element) {
        return uc.form().control(name, element).enabled();
    }

    TestUserControl uc{testing::SessionOf("KT520_7", true)};
    NavigationTree navigation{uc};
    std::vector<Started> started;
    Toolbar toolbar{uc, navigation,
                    [this](const std::string& program, const std::vector<std::string>& arguments) {
                        started.push_back({program, arguments});
                        return true;
                    }};
};

// The upload scenario follows the stop's toolbar and progress frame.
TEST_F(ToolbarTest, StopCancelsAndGivesTheToolsBackButAnObserversSend) {
    for (const char* role : {"maintenance", "observer"}) {
        auto log = std::make_shared<testing::CallLog>();
        uc.controlDouble = std::make_shared<testing::RecordingControl>(log);
        uc.setDeviceClass(std::make_unique<StoppingKT520>(uc.calls));
        uc.calls.clear();
        uc.tools().ActorRole = role;
        uc.tools().ConnectionID = 7;
        uc.tools().CommunicationSign("read", "1");
        items().setEnabled("send", false);

        toolbar.smuiDTM_ToolbarClick("stop");

        SCOPED_TRACE(role);
        EXPECT_EQ(*log, testing::CallLog{"CancelRequests 7"});
        EXPECT_EQ(uc.calls, std::vector<std::string>{"PrintErrorMessages stop=1"});
        EXPECT_FALSE(uc.deviceClass().SmuiStopPressed());
        EXPECT_FALSE(uc.tools().CommunicationSign("read", ""));
        const bool maintenance = role == std::string("maintenance");
        EXPECT_EQ(items().item("send").enabled, maintenance);
        EXPECT_EQ(enabled("cmdHAAutoTravelCalibration", 0), maintenance);
    }
}

// The reload, upload and undo scenarios follow the keys to their commands.
TEST_F(ToolbarTest, AKeyOfNoCommandOrAClickDuringAnAutoActionDoesNothing) {
    toolbar.smuiDTM_ToolbarClick("maximize");
    uc.tools().CurrentAutoAction = 2;
    for (const char* key : {"uploadAll", "uploadCurrent", "send", "undoAll"}) {
        toolbar.smuiDTM_ToolbarClick(key);
    }
    EXPECT_TRUE(uc.calls.empty());
    EXPECT_FALSE(uc.form().control("fraConfirmation", 0).visible());
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

}  // namespace
}  // namespace kt500::presentation
