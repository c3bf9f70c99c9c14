// The replies of the PROFIBUS positioner and the safety valve controller:
// where they differ from the HART positioner's. The closing of the groups
// on the toolbar and the reading of whole pages are in the scenarios
// kt540_pages and pl500_pages.
#include "devices/clsKT540.h"
#include "devices/clsPL500.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kt500::devices {
namespace {

class FamilyReply : public test::ReplyTest {
protected:
    explicit FamilyReply(const std::string& key = "KT540_1.0")
        : ReplyTest(key, {"alertSettings", "valveMetersAndLimits", "operationMode", "resetAlarms",
                          "resetStatistics", "general", "valveTest"}) {}
    // Chooses the test of the test settings page (0 step, 1 hysteresis, ...).
    void selectTest(int test) {
        form::Control& list =
            test::fieldOf(kt, form::ControlKind::ComboBox, "comTestType", 0, "fraKT540", 19);
        list.clear();
        for (int entry = 0; entry < 4; ++entry) {
            list.addItem("test " + std::to_string(entry));
            list.setItemData(list.newIndex(), entry);
        }
        list.setListIndex(test);
    }
};

class KT540Reply : public FamilyReply {};

TEST_F(KT540Reply, TheTestGroupSplitsItsCurvesByTheSelectedTest) {
    const std::vector<Item> items = {
        {"testResult", "0"}, {"lastPosition00", "45"}, {"lastSpOrTime00", "0.2"}};
    const std::pair<int, std::vector<std::string>> cases[] = {
        {0, {"AddStepTestValuePair lastPosition00", "AddStepTestValuePair lastSpOrTime00"}},
        {1,
         {"AddHysteresisTestValuePair lastPosition00",
          "AddHysteresisTestValuePair lastSpOrTime00"}},
        {2, {}},
    };
    for (const auto& [test, expected] : cases) {
        selectTest(test);
        kt.calls.clear();
        reply("testValues", "read", "ok", false, "", items);
        EXPECT_EQ(work(), expected) << test;
    }
}

TEST_F(KT540Reply, TheMeterGroupsMarkTheAlertSettingsRead) {
    kt.tools().OnlineConf = true;
    reply("valveMetersAndLimits", "read", "ok", false);
    EXPECT_NE(icon("alertSettings"), "read");
    reply("valveMetersAndLimits", "read", "ok", true);
    EXPECT_EQ(icon("alertSettings"), "read");
    EXPECT_EQ(icon("valveMetersAndLimits"), "read");
}

TEST_F(KT540Reply, AReportedTargetModeShowsTheDeviceSign) {
    form::Control& sign = kt.form().control("imgPAOperationMode2", 0);
    sign.setVisible(false);
    reply("operationMode", "read", "ok", true, "", {{"outputValueLimit", "90"}});
    EXPECT_FALSE(sign.visible());
    reply("operationMode", "read", "ok", true, "", {{"targetMode", "16"}});
    EXPECT_TRUE(sign.visible());
}

TEST_F(KT540Reply, StoppedMonitoringShowsOnTheStateLabel) {
    kt.tools().MonitoringFlag = false;
    reply("monitoringVariables", "read", "ok", true);
    EXPECT_EQ(kt.form().control("lblPAMonValue", 6).caption(), kt.Translate("Stopped"));
}

TEST_F(KT540Reply, ThePositioningValueDecidesTheDeviationAlert) {
    test::LoadGuiInit(kt);
    const std::pair<const char*, bool> cases[] = {
        {"12.5", true}, {"0.0004", false}, {"-0.002", true}, {"NaN", false},
        {"+Inf", false}, {"-Inf", false}, {" ", false}};
    for (const auto& [value, shown] : cases) {
        kt.tools().ShowDeviationAlert = !shown;
        reply("deviceStatus", "read", "ok", true, "", {{"positioningValue", value}});
        EXPECT_EQ(kt.tools().ShowDeviationAlert, shown) << value;
    }
    kt.calls.clear();
    reply("deviceStatus", "read", "deviceBusy", true);
    EXPECT_TRUE(called("UnKnownStatus"));
}

class KT540TargetMode : public FamilyReply {
protected:
    void choose(int mode) {
        form::Control& list = kt.form().control("comPATargetMode", 0);
        if (list.listCount() == 0) {
            for (const char* entry : {"auto", "manual", "cascade"}) {
                list.addItem(entry);
            }
        }
        list.setListIndex(mode);
        static_cast<clsKT540&>(kt.deviceClass()).TargetModeChanged();
    }
    bool enabled(const char* name, int index) {
        return kt.form().control(name, index).enabled();
    }
    bool visible(const char* name, int index) {
        return kt.form().control(name, index).visible();
    }
};

TEST_F(KT540TargetMode, EachModeArrangesThePage) {
    struct Row {
        int mode;
        bool range, rcas, unit, quality;
    };
    for (const Row& row : {Row{1, false, false, false, true}, Row{2, true, true, true, false},
                           Row{0, true, false, true, false}}) {
        choose(row.mode);
        EXPECT_EQ(enabled("txtPAOperationMode", 0), row.range) << row.mode;
        EXPECT_EQ(enabled("txtPAOperationMode", 1), row.range) << row.mode;
        EXPECT_EQ(visible("txtPAOperationMode", 2), row.rcas) << row.mode;
        EXPECT_EQ(enabled("comPATargetMode", 1), row.unit) << row.mode;
        EXPECT_EQ(enabled("comPATargetMode", 2), row.quality) << row.mode;
        for (int sign = 0; sign < 3; ++sign) {
            EXPECT_EQ(visible("imgPAOperationMode1", sign), sign == row.mode) << row.mode;
        }
        EXPECT_EQ(kt.tools().LastTargetMode, row.mode);
    }
}

TEST_F(KT540TargetMode, TheAnswerFiveKeepsThePage) {
    choose(0);
    kt.bl().headlessDialogs()->queueAnswer(5);
    choose(2);
    EXPECT_FALSE(visible("txtPAOperationMode", 2));
    EXPECT_TRUE(visible("imgPAOperationMode1", 0));
    EXPECT_EQ(kt.tools().LastTargetMode, 2);
}

class PL500Reply : public FamilyReply, public ::testing::WithParamInterface<const char*> {
protected:
    PL500Reply() : FamilyReply(GetParam()) {}
    clsPL500& pl() { return static_cast<clsPL500&>(kt.deviceClass()); }
};

TEST_P(PL500Reply, TestGroupsFillTheScheduleBeforeTheCurve) {
    pl().SetDeviceRevisionChanges();
    for (const char* group : {"valveTest", "pneumaticsTest"}) {
        const std::string prefix = group == std::string("valveTest") ? "valveTest" : "pneumatics";
        const std::string pair = group == std::string("valveTest") ? "AddValveTestValuePair"
                                                                    : "AddPneumaticsTestValuePair";
        kt.calls.clear();
        reply(group, "read", "ok", true, "",
              {{prefix + "TestPos00", "1"}, {std::string(group) + "Interval", "48"}});
        EXPECT_EQ(work(), (std::vector<std::string>{pair + " " + prefix + "TestPos00",
                                                    "EnableTestKeyFigures 1"}))
            << group;
    }
    // The interval reached its two-part field: 48 hours are two days.
    EXPECT_EQ(kt.form().control("txtPLParams", 19).text(), "2");
    EXPECT_EQ(kt.form().control("txtPLParams", 23).text(), "2");
}

TEST_P(PL500Reply, AResetMarksThePageThatRanIt) {
    kt.tools().OnlineConf = true;
    for (const auto& [frame, node, other] :
         {std::tuple{"alarms", "resetAlarms", "resetStatistics"},
          {"statistics", "resetStatistics", "resetAlarms"}}) {
        pl().setResetingFrame(frame);
        for (const char* key : {"resetAlarms", "resetStatistics"}) {
            kt.form().control("treeNavigation").tree().setImage(key, "notRead");
        }
        // The written reset clears the page's boxes and marks the page.
        kt.form().control("chkPLParams", 11).setValue(1);
        reply("resetLeakageAlarm", "write", "ok", true);
        EXPECT_EQ(kt.form().control("chkPLParams", 11).value(), 0.0);
        EXPECT_EQ(icon(node), "read") << frame;
        EXPECT_EQ(icon(other), "notRead") << frame;
    }
}

TEST_P(PL500Reply, AnInvalidSelectionClosesTheGroupUnreported) {
    reply("general", "write", "failed", true, "hartCmdErrInvalidSelection");
    EXPECT_TRUE(kt.deviceClass().CancelledGroups().empty());
    EXPECT_TRUE(called("SetReadVariables general 1 write 1"));
    EXPECT_EQ(icon("general"), "error");

    // Any other failure is reported with its reason.
    reply("general", "write", "failed", true, "deviceBusy");
    EXPECT_EQ(kt.deviceClass().CancelledGroups(),
              kt.Translate("general") + " (" + kt.Translate("deviceBusy") + ")" +
                  std::string(Separator));
}

TEST_P(PL500Reply, ATakenTargetModeResetsTheSelection) {
    form::Control& actual = kt.form().control("comPLActualMode");
    actual.setForeColor(ColorSynchronised);
    reply("general", "read", "ok", true, "", {{"safetyAction", "0"}});
    EXPECT_FALSE(called("ResetTargetMode"));
    reply("general", "read", "ok", true, "", {{"targetMode", "1"}});
    EXPECT_TRUE(called("ResetTargetMode"));
    EXPECT_EQ(actual.foreColor(), ColorChanged);
    for (form::Control* mark : kt.form().elements("imgPLChanged")) {
        if (mark->tag() == "actualMode") {
            EXPECT_TRUE(mark->visible());
        }
    }
}

TEST_P(PL500Reply, StoppedMonitoringShowsOnTheStateLabel) {
    kt.tools().MonitoringFlag = false;
    reply("monitoringVariables", "read", "ok", true);
    EXPECT_EQ(kt.form().control("lblPLParams", 11).caption(), kt.Translate("stopped"));
}

INSTANTIATE_TEST_SUITE_P(Revisions, PL500Reply, ::testing::Values("PL500_1", "PL500_2"));

}  // namespace
}  // namespace kt500::devices
