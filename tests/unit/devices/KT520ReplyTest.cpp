#include "devices/clsKT520.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace kt500::devices {
namespace {

using testing::TestUserControl;

struct Item {
    std::string name;
    std::string value;
    std::string unit = "noUnit";
};

class KT520Reply : public ::testing::Test {
protected:
    KT520Reply() {
        // Results being read: the closing of a group leaves the toolbar and
        // the cancelled groups alone, so that the reply's own work shows.
        kt.tools().CurrentAutoAction = 4;
        form::TreeModel& tree = kt.form().control("treeNavigation").tree();
        for (const char* key : {"operationUnit", "reset", "resetDiagnostics", "resetAlarms",
                                "monitoringVariables", "alertSettings"}) {
            tree.add("", key, key);
        }
    }
    void reply(const std::string& name, const std::string& access, const std::string& status,
               bool isFinal, const std::string& errorCode = "",
               const std::vector<Item>& items = {}) {
        std::string xml = "<dtm><communicationResponse name='" + name + "' access='" + access +
                          "' responseStatus='" + status + "' isFinal='" + (isFinal ? "1" : "0") +
                          "' errorCode='" + errorCode + "'>";
        for (const Item& item : items) {
            xml += "<item name='" + item.name + "' unit='" + item.unit + "'><floatVal>" +
                   item.value + "</floatVal></item>";
        }
        xml::LoadResult loaded = xml::Document::parse(xml + "</communicationResponse></dtm>");
        ASSERT_TRUE(loaded.ok()) << loaded.message();
        kt.deviceClass().Reply(*loaded.document);
    }
    std::string icon(const std::string& key) {
        return kt.form().control("treeNavigation").tree().node(key).image;
    }
    std::size_t count(const std::string& call) const {
        return static_cast<std::size_t>(std::count(kt.calls.begin(), kt.calls.end(), call));
    }
    bool called(std::string_view prefix) const {
        return std::any_of(kt.calls.begin(), kt.calls.end(),
                           [&](const std::string& c) { return c.starts_with(prefix); });
    }
    std::string T(const std::string& key) { return kt.Translate(key); }
    TestUserControl kt;
};

TEST_F(KT520Reply, ResetNeedsMoreThanFiveCharacters) {
    struct Case {
        const char* name;
        const char* access;
        bool clearsDiagnostics;  // ClearResetDiagnostics is a later member: it fails
        const char* readNode;    // the node that turns "read", or none
    };
    const Case cases[] = {
        {"reset", "write", false, nullptr},
        {"reset", "read", false, nullptr},
        {"resetAlarms", "write", true, nullptr},
        {"resetAlarms", "read", false, "resetDiagnostics"},
        {"alertSettings", "read", false, "alertSettings"},
    };
    for (const Case& c : cases) {
        for (const char* key : {"reset", "resetDiagnostics", "resetAlarms", "alertSettings"}) {
            kt.form().control("treeNavigation").tree().setImage(key, "notRead");
        }
        if (c.clearsDiagnostics) {
            try {
                reply(c.name, c.access, "ok", true);
                ADD_FAILURE() << c.name << " did not clear the diagnostics";
            } catch (const MemberMissing& missing) {
                EXPECT_EQ(missing.member(), "ClearResetDiagnostics");
            }
            continue;
        }
        reply(c.name, c.access, "ok", true);
        for (const char* key : {"reset", "resetDiagnostics", "resetAlarms", "alertSettings"}) {
            const bool read = c.readNode != nullptr && std::string(c.readNode) == key;
            EXPECT_EQ(icon(key), read ? "read" : "notRead") << c.name << " " << key;
        }
    }
}

TEST_F(KT520Reply, ProgressAdvancesPerWrittenItemOrOncePerRead) {
    const std::vector<Item> items = {{"hartTag", "1"}, {"description", "2"}, {"message", "3"}};
    struct Case {
        const char* name;
        const char* access;
        std::size_t steps;
    };
    for (const Case& c : {Case{"operationUnit", "write", 3}, Case{"operationUnit", "read", 1},
                          Case{"monitoringVariables", "read", 0}}) {
        kt.calls.clear();
        reply(c.name, c.access, "ok", false, "", items);
        EXPECT_EQ(count("IncreaseProgress"), c.steps) << c.name << " " << c.access;
    }
}

TEST_F(KT520Reply, ItemsGoToTheirTrendTestOrPage) {
    const std::vector<Item> items = {{"a", "1"}, {"b", "2"}};
    struct Case {
        const char* group;
        bool isFinal;
        std::vector<std::string> expected;
    };
    const auto pairs = [](const std::string& call) {
        return std::vector<std::string>{call + " a", call + " b"};
    };
    const Case cases[] = {
        {"travelDeviation", false, pairs("AddTravelDeviationValuePair")},
        {"loadFactor", false, pairs("AddLoadFactorValuePair")},
        {"travelVsTime", false, pairs("AddTravelVsTimeValuePair")},
        {"stepTestValues", false, pairs("AddStepTestValuePair")},
        {"hysteresisTestValues", false, pairs("AddHysteresisTestValuePair")},
        {"eventLog", false, {"FillEventLog 2"}},
        {"flowModification", false, {}},
        {"flowModification", true, {"UpdateFlowModificationGraph 0"}},
    };
    for (const Case& c : cases) {
        kt.calls.clear();
        reply(c.group, "read", "local", c.isFinal, "", items);
        std::vector<std::string> seen;
        for (const std::string& call : kt.calls) {
            if (call != "IncreaseProgress" && !call.starts_with("SetReadVariables") &&
                !call.starts_with("ClearChangedSigns") && !call.starts_with("UpdateGroup")) {
                seen.push_back(call);
            }
        }
        EXPECT_EQ(seen, c.expected) << c.group;
    }
}

TEST_F(KT520Reply, FailedGroupsAreGatheredAndReportedAtTheFinalReply) {
    // The missing items are marked, and the text ends in a comma.
    reply("operationUnit", "read", "deviceBusy", false, "missingItems",
          {{"hartTag", ""}, {"description", ""}});
    // The same group again adds no second name.
    reply("operationUnit", "read", "deviceBusy", false, "timeout");
    EXPECT_TRUE(kt.deviceClass().CancelledGroups().empty());
    reply("operationUnit", "read", "deviceBusy", true, "timeout");

    EXPECT_EQ(count("ChangeImage hartTag fraKT520 error"), 1U);
    EXPECT_EQ(count("ChangeImage description fraKT520 error"), 1U);
    const std::string group = T("operationUnit");
    EXPECT_EQ(kt.deviceClass().CancelledGroups(), group + " (" + group + ": " + T("hartTag") +
                                                      ", " + T("description") + ",)" +
                                                      std::string(Separator));
    EXPECT_EQ(icon("operationUnit"), "error");
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

    kt.deviceClass().setSmuiStopPressed(false);
    reply("operationUnit", "read", "ok", true);
    EXPECT_EQ(count("SetReadVariables operationUnit 1 read 0"), 1U);
}

TEST_F(KT520Reply, AnEmptyErrorTextGivesAnEntryWithoutParentheses) {
    struct Failing : clsKT520 {
        void fail() { m_blError = true; }
    };
    auto device = std::make_unique<Failing>();
    Failing& failing = *device;
    kt.setDeviceClass(std::move(device));
    failing.fail();
    reply("alertSettings", "read", "ok", true);
    EXPECT_EQ(failing.CancelledGroups(), T("alertSettings") + std::string(Separator));
}

TEST_F(KT520Reply, MonitoringReplies) {
    form::Control& state = kt.form().control("lblHAMonitoringSettings", 6);
    state.setCaption("running");
    const std::vector<Item> items = {{"travelSetpoint", "42.5"}, {"inputSignal", "12", "mA"}};

    // "local" values reach the page and the value list, never the chart.
    kt.tools().MonitoringFlag = true;
    reply("monitoringVariables", "read", "local", true, "", items);
    const std::string sep(Separator);
    EXPECT_EQ(kt.tools().MonitoringValues,
              "travelSetpoint" + sep + "42.5" + sep + "inputSignal" + sep + "12" + sep);
    EXPECT_EQ(state.caption(), "running");
    EXPECT_FALSE(called("UpdateMonitoringGraph"));
    EXPECT_FALSE(called("SetReadVariables"));

    // A failure shows on the tree only.
    reply("monitoringVariables", "read", "deviceBusy", true);
    EXPECT_EQ(icon("monitoringVariables"), "error");
    EXPECT_TRUE(kt.deviceClass().CancelledGroups().empty());

    kt.tools().MonitoringFlag = false;
    reply("monitoringVariables", "read", "ok", true);
    EXPECT_EQ(state.caption(), T("stopped"));

    // The live values are arranged by a later member, which fails clearly.
    kt.tools().MonitoringFlag = true;
    try {
        reply("monitoringVariables", "read", "ok", true, "", items);
        ADD_FAILURE() << "monitoring values were not arranged";
    } catch (const MemberMissing& missing) {
        EXPECT_EQ(missing.member(), "ArrangeValues");
    }
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
        const std::string file = kt.tools().GUIxmlPath + kt.tools().DeviceParameterXml();
        xml::LoadResult loaded = xml::Document::load(file);
        if (!loaded.ok()) {
            throw std::runtime_error(loaded.message());
        }
        kt.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
    }
    void status(const std::string& responseStatus, const std::vector<Item>& items) {
        reply("deviceStatus", "read", responseStatus, true, "", items);
    }
};

TEST_F(KT520DeviceStatus, EachItemUpdatesTheTreeThenTheParentsAndHeaderUnlessItFailed) {
    status("deviceBusy", {{"travelSetpoint", "1"}});
    EXPECT_EQ(kt.calls, std::vector<std::string>{"UnKnownStatus"});
    kt.calls.clear();
    status("ok", {{"statusTravelDeviation", "1"}, {"statusMemoryError", "0"}});
    EXPECT_EQ(kt.calls,
              (std::vector<std::string>{"UpdateStatusTree statusTravelDeviation",
                                        "UpdateStatusTree statusMemoryError",
                                        "UpdateStatusParentNodes", "UpdateHeaderStatus"}));
}

TEST_F(KT520DeviceStatus, RevisionSevenDeviationAlertFollowsTheSoftwareRevision) {
    struct Case {
        const char* revision;
        std::vector<Item> items;
        std::optional<bool> alert;  // none: left as it was
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        kt.tools().DeviceRevision = c.revision;
        for (const bool before : {false, true}) {
            kt.tools().ShowDeviationAlert = before;
            status("ok", c.items);
            EXPECT_EQ(kt.tools().ShowDeviationAlert, c.alert.value_or(before))
                << c.revision << " " << c.items[0].name << "=" << c.items[0].value << " "
                << c.items.back().value;
        }
    }
}

}  // namespace
}  // namespace kt500::devices
