// The replies of the HART positioner's class. A failed group's report and
// its node are in the scenario upload, the listing of missing items in the
// end-to-end test of the app.
#include "devices/clsKT520.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace kt500::devices {
namespace {

class KT520Reply : public test::ReplyTest {
protected:
    KT520Reply()
        : ReplyTest("KT520_7", {"operationUnit", "reset", "resetDiagnostics", "resetAlarms",
                                "monitoringVariables", "alertSettings"}) {}
    std::size_t count(const std::string& call) const {
        return static_cast<std::size_t>(std::count(kt.calls.begin(), kt.calls.end(), call));
    }
    std::string T(const std::string& key) { return kt.Translate(key); }
};

TEST_F(KT520Reply, ResetNeedsMoreThanFiveCharacters) {
    // The reply's name and access, and the node that turns "read", if any.
    const std::tuple<std::string, const char*, std::string> cases[] = {
        {"reset", "write", ""},
        {"reset", "read", ""},
        {"resetAlarms", "read", "resetDiagnostics"},
        {"alertSettings", "read", "alertSettings"},
    };
    const char* keys[] = {"reset", "resetDiagnostics", "resetAlarms", "alertSettings"};
    for (const auto& [name, access, readNode] : cases) {
        for (const char* key : keys) {
            kt.form().control("treeNavigation").tree().setImage(key, "notRead");
        }
        reply(name, access, "ok", true);
        for (const char* key : keys) {
            EXPECT_EQ(icon(key), readNode == key ? "read" : "notRead") << name << " " << key;
        }
    }
    // A written reset clears the reset boxes; "reset" alone does not.
    form::Control& box = kt.form().control("chkResetDiagnostics", 7);
    box.setValue(1);
    reply("reset", "write", "ok", true);
    EXPECT_EQ(box.value(), 1.0);
    reply("resetAlarms", "write", "ok", true);
    EXPECT_EQ(box.value(), 0.0);
}

TEST_F(KT520Reply, ProgressAdvancesPerWrittenItemOrOncePerRead) {
    const std::vector<Item> items = {{"hartTag", "1"}, {"description", "2"}, {"message", "3"}};
    for (const auto& [name, access, steps] : {std::tuple{"operationUnit", "write", 3U},
                                              {"operationUnit", "read", 1U},
                                              {"monitoringVariables", "read", 0U}}) {
        kt.calls.clear();
        reply(name, access, "ok", false, "", items);
        EXPECT_EQ(count("IncreaseProgress"), steps) << name << " " << access;
    }
}

TEST_F(KT520Reply, ItemsGoToTheirTrendTestOrPage) {
    const auto pairs = [](const std::string& call) {
        return std::vector<std::string>{call + " a", call + " b"};
    };
    const std::tuple<const char*, bool, std::vector<std::string>> cases[] = {
        {"travelDeviation", false, pairs("AddTravelDeviationValuePair")},
        {"loadFactor", false, pairs("AddLoadFactorValuePair")},
        {"travelVsTime", false, pairs("AddTravelVsTimeValuePair")},
        {"stepTestValues", false, pairs("AddStepTestValuePair")},
        {"hysteresisTestValues", false, pairs("AddHysteresisTestValuePair")},
        {"eventLog", false, {"FillEventLog 2"}},
        {"flowModification", false, {}},
        {"flowModification", true, {"UpdateFlowModificationGraph 0"}},
    };
    for (const auto& [group, isFinal, expected] : cases) {
        kt.calls.clear();
        reply(group, "read", "local", isFinal, "", {{"a", "1"}, {"b", "2"}});
        EXPECT_EQ(work(), expected) << group;
    }
}

TEST_F(KT520Reply, FailedGroupsAreGatheredAndReportedAtTheFinalReply) {
    // The missing items are marked, and the text ends in a comma.
    reply("operationUnit", "read", "deviceBusy", false, "missingItems",
          {{"hartTag", ""}, {"description", ""}});
    // The report says why, each error code once.
    reply("operationUnit", "read", "deviceBusy", false, "timeout");
    EXPECT_TRUE(kt.deviceClass().CancelledGroups().empty());
    reply("operationUnit", "read", "deviceBusy", true, "timeout");

    EXPECT_EQ(count("ChangeImage hartTag fraKT520 error"), 1U);
    EXPECT_EQ(count("ChangeImage description fraKT520 error"), 1U);
    EXPECT_EQ(kt.deviceClass().CancelledGroups(),
              T("operationUnit") + " (" + T("missingItems") + ": " + T("hartTag") + ", " +
                  T("description") + ",, " + T("timeout") + ")" + std::string(Separator));
    EXPECT_EQ(count("SetReadVariables operationUnit 1 read 1"), 1U);
    EXPECT_EQ(kt.form().userControl().mousePointer(), 1);

    // The next sequence starts clean.
    reply("alertSettings", "read", "ok", true);
    EXPECT_EQ(count("SetReadVariables alertSettings 1 read 0"), 1U);
}

TEST_F(KT520Reply, AStoppedSequenceIsNotReported) {
    kt.deviceClass().setSmuiStopPressed(true);
    reply("operationUnit", "read", "deviceBusy", true, "timeout");
    EXPECT_TRUE(kt.deviceClass().CancelledGroups().empty());
    EXPECT_FALSE(called("SetReadVariables"));
    EXPECT_NE(icon("operationUnit"), "error");
}

TEST_F(KT520Reply, AnEmptyErrorTextGivesAnEntryWithoutParentheses) {
    struct Failing : clsKT520 {
        Failing() { m_blError = true; }
    };
    kt.setDeviceClass(std::make_unique<Failing>());
    reply("alertSettings", "read", "ok", true);
    EXPECT_EQ(kt.deviceClass().CancelledGroups(), T("alertSettings") + std::string(Separator));
}

// A good reply's chart point and the stopped label are in the scenario
// monitoring_kt520.
TEST_F(KT520Reply, MonitoringRepliesLocalOnThePageAFailureOnTheTreeOnly) {
    form::Control& state = kt.form().control("lblHAMonitoringSettings", 6);
    state.setCaption("running");
    kt.tools().MonitoringFlag = true;
    reply("monitoringVariables", "read", "local", true, "",
          {{"travelSetpoint", "42.5"}, {"inputSignal", "12", "mA"}});
    const std::string sep(Separator);
    EXPECT_EQ(kt.tools().MonitoringValues,
              "travelSetpoint" + sep + "42.5" + sep + "inputSignal" + sep + "12" + sep);
    EXPECT_EQ(state.caption(), "running");
    EXPECT_FALSE(called("UpdateMonitoringGraph") || called("SetReadVariables"));
    reply("monitoringVariables", "read", "deviceBusy", true);
    EXPECT_EQ(icon("monitoringVariables"), "error");
    EXPECT_TRUE(kt.deviceClass().CancelledGroups().empty());
}

TEST_F(KT520Reply, CalibrationAndDebugTrace) {
    kt.tools().CurrentAutoAction = 1;
    kt.tools().DebugLevel = 2;
    reply("automaticTravelCalibration", "write", "ok", false);
    reply("automaticTravelCalibration", "write", "local", false);
    EXPECT_EQ(count("CalibrationValueSet 1"), 1U);
    EXPECT_EQ(count("CalibrationValueSet 0"), 1U);
    ASSERT_EQ(kt.messages.size(), 2U);
    EXPECT_TRUE(kt.messages[0].starts_with("Debug level 2: XML from BL: <"));
}

class KT520DeviceStatus : public KT520Reply {
protected:
    KT520DeviceStatus() {
        kt.tools().CurrentAutoAction = 0;
        test::LoadGuiInit(kt);
    }
    void status(const std::string& responseStatus, const std::vector<Item>& items) {
        reply("deviceStatus", "read", responseStatus, true, "", items);
    }
};

// A good status reply reaching tree, groups and header is in the scenario "time".
TEST_F(KT520DeviceStatus, AFailedStatusReplyMakesEveryStatusUnknown) {
    status("deviceBusy", {{"statusTravelDeviation", "1"}});
    EXPECT_EQ(kt.calls, std::vector<std::string>{"UnKnownStatus"});
}

TEST_F(KT520DeviceStatus, RevisionSevenDeviationAlertFollowsTheSoftwareRevision) {
    // The device's revision, the reply's items and the alert after it
    // (none: left as it was).
    const std::tuple<const char*, std::vector<Item>, std::optional<bool>> cases[] = {
        {"7", {{"swRevision", " "}, {"travelSetpoint", "0"}}, false},
        {"7", {{"swRevision", ""}, {"travelSetpoint", "12,5"}}, true},
        {"7", {{"swRevision", "7"}, {"travelSetpoint", " "}}, false},
        {"7", {{"swRevision", "7"}, {"travelSetpoint", "0.0004"}}, false},
        {"7", {{"swRevision", "7"}, {"travelSetpoint", "0.002"}}, true},
        {"7", {{"swRevision", "6"}, {"travelSetpoint", "0"}}, true},
        // Until "swRevision" has come the kept text is empty, so not "7".
        {"7", {{"travelSetpoint", "0"}, {"swRevision", ""}}, true},
        {"6", {{"swRevision", ""}, {"travelSetpoint", "0"}}, std::nullopt},
    };
    for (const auto& [revision, items, alert] : cases) {
        kt.tools().DeviceRevision = revision;
        for (const bool before : {false, true}) {
            kt.tools().ShowDeviationAlert = before;
            status("ok", items);
            EXPECT_EQ(kt.tools().ShowDeviationAlert, alert.value_or(before))
                << revision << " " << items[0].name << "=" << items[0].value << " "
                << items.back().value;
        }
    }
}

}  // namespace
}  // namespace kt500::devices
