// The simulated device's monitoring, device actions, injected faults and event log.
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <map>

namespace kt500::simulator::testing {
namespace {

constexpr std::int32_t kId = SimulatedControl::kConnectionId;

TEST(SimulatedMonitoringTest, CyclicRepliesFollowTheValveBetweenStartAndStop) {
    SimulatedSession session("KT520_7", false);
    SimulatedControl& control = session.control();
    EXPECT_NEAR(std::stod(*control.deviceValue("valveTravel")), 45.0, 1.0)
        << "the valve starts settled at the device's set point";
    control.inject({"set", "travelSetpoint", "80"});
    EXPECT_TRUE(session.startMonitoring());
    EXPECT_TRUE(session.startMonitoring());  // a second start adds no cycle
    session.clock().advance(15000);
    const std::vector<SinkEvent> cycles = session.sink.replies("monitoringVariables");
    ASSERT_EQ(cycles.size(), 30U);  // one each 500 ms
    // The approach itself is the valve model's; each cycle is one final reply.
    for (const SinkEvent& cycle : cycles) {
        EXPECT_TRUE(cycle.valid && cycle.reply.isFinal) << cycle.text;
        ASSERT_EQ(cycle.reply.items.size(), 5U);
    }
    const auto travel = [](const SinkEvent& cycle) {
        return std::stod(cycle.reply.items[1].value);
    };
    EXPECT_EQ(std::stod(cycles.front().reply.items[0].value), 80.0);
    EXPECT_LT(travel(cycles.front()), 60.0) << "the valve needs time to move";
    EXPECT_NEAR(travel(cycles.back()), 80.0, 0.5);

    control.StopMonitoringRequests(kId);
    session.clock().settle();
    EXPECT_EQ(session.sink.replies("monitoringVariables").size(), 30U) << "no reply after stop";
    EXPECT_EQ(session.clock().pending(), 0U);
    // A sampling rate of the device's own sets the period.
    SimulatedSession safety("PL500_2", false);
    EXPECT_EQ(safety.control().timing().monitoringPeriod,
              std::stol(*safety.control().deviceValue("monitoringSamplingRate")));
}

TEST(SimulatedActionTest, ReadyThenCompleteAfterTheActionsTimeAndOneActionAtATime) {
    for (const char* key : {"KT520_7", "KT540_1.0", "PL500_2"}) {
        SCOPED_TRACE(key);
        SimulatedSession session(key, false);
        ASSERT_TRUE(session.requestAction());
        session.clock().advance(session.control().timing().ready);
        EXPECT_EQ(session.sink.actionEvents(), "ready 1");
        ASSERT_TRUE(session.sendAction(Request("positionControlAutocalibration")));
        EXPECT_EQ(session.control().runningAction(), "positionControlAutocalibration");
        EXPECT_FALSE(session.sendAction(Request("valveTest"))) << "one action at a time";
        session.clock().advance(19999);
        EXPECT_EQ(session.sink.actionEvents(), "ready 1");
        session.clock().advance(1);
        EXPECT_EQ(session.sink.actionEvents(), "ready 1 complete 1");
        EXPECT_TRUE(session.control().runningAction().empty());
        EXPECT_TRUE(session.sink.replies("positionControlAutocalibration").empty());
    }
    SimulatedSession session("KT520_7", false);
    for (const char* unknown : {"noSuchAction", "operationUnit"}) {
        EXPECT_FALSE(session.sendAction(Request(unknown))) << unknown;
    }
    EXPECT_EQ(session.clock().pending(), 0U);
}

TEST(SimulatedActionTest, TestSettingsRenamedStartTheTestForItsTestTime) {
    SimulatedSession session("KT520_7", false);
    ASSERT_TRUE(session.sendAction(session.writeRequest(
        "stepResponseTest",
        {{"testTime", "20"}, {"startSetpoint", "40"}, {"setpointChange", "5"}})));
    EXPECT_EQ(session.control().deviceValue("testTime"), "20");
    session.clock().advance(21999);  // the test time and 2 s to settle at the start
    EXPECT_EQ(session.sink.actionEvents(), "");
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "complete 1");
    // The results, run on the valve, are readable afterwards.
    ASSERT_TRUE(session.post(session.readRequest("stepTestValues")));
    session.clock().settle();
    std::map<std::string, double> values;
    for (const SinkEvent& reply : session.sink.replies("stepTestValues")) {
        for (const MessageItem& item : reply.reply.items) {
            values[item.name] = std::stod(item.value);
        }
    }
    ASSERT_EQ(values.size(), 100U);
    EXPECT_NEAR(values["stepTestTravel00"], 40.0, 0.5);
    EXPECT_NEAR(values["stepTestTravel49"], 45.0, 0.5);
    EXPECT_NEAR(values["stepTestTime49"], 19.6, 0.05);
}

TEST(SimulatedActionTest, ValveAndPneumaticsTestResultsComeFromTheValve) {
    SimulatedSession session("PL500_2", false);
    SimulatedControl& control = session.control();
    const std::string documented = *control.deviceValue("valveTestBreakawayPressure");
    ASSERT_TRUE(session.sendAction(Request("valveTest")));
    session.clock().settle();
    ASSERT_EQ(session.sink.actionEvents(), "complete 1");
    const std::string breakaway = *control.deviceValue("valveTestBreakawayPressure");
    EXPECT_NEAR(std::stod(breakaway), control.dynamics()->valve().breakawayPressure(), 0.2);
    EXPECT_NE(breakaway, documented);
    // After the test the valve is back in control at its former set point.
    session.clock().advance(30000);
    EXPECT_NEAR(std::stod(*control.deviceValue("actualTravel")), 100.0, 1.0);

    ASSERT_TRUE(session.sendAction(Request("pneumaticsTest")));
    control.setNextComplete(false);
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "complete 1 complete 0");
}

TEST(SimulatedActionTest, StopEndsTheActionOrARefusedStopLetsItRunOn) {
    SimulatedSession session("PL500_2", false);
    EXPECT_FALSE(session.stopAction()) << "nothing to stop";
    ASSERT_TRUE(session.sendAction(Request("valveTest")));
    session.clock().advance(5000);
    ASSERT_TRUE(session.stopAction());
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "stopped 1");
    EXPECT_TRUE(session.control().runningAction().empty());

    SimulatedSession refused("KT520_7", false);
    ASSERT_TRUE(refused.sendAction(Request("automaticPrestageTrim")));  // 15 s
    refused.clock().advance(10000);
    refused.control().setNextStopped(false);
    ASSERT_TRUE(refused.stopAction());
    refused.clock().advance(300);
    EXPECT_EQ(refused.sink.actionEvents(), "stopped 0");
    refused.clock().advance(4999);  // the time it had left
    EXPECT_EQ(refused.sink.actionEvents(), "stopped 0");
    refused.clock().advance(1);
    EXPECT_EQ(refused.sink.actionEvents(), "stopped 0 complete 1");
}

TEST(SimulatedActionTest, InjectedOutcomesApplyOnceEach) {
    SimulatedSession session("KT540_1.0", false);
    SimulatedControl& control = session.control();
    control.setNextRequestAccepted(false);
    EXPECT_FALSE(session.requestAction());
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "") << "a refused request brings no event";

    ASSERT_TRUE(session.requestAction());
    control.setNextReady(false);  // decided when the event goes out
    session.clock().settle();
    ASSERT_TRUE(session.requestAction());
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "ready 0 ready 1");

    control.setNextComplete(false);
    ASSERT_TRUE(session.sendAction(Request("automaticTravelCalibration")));
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "ready 0 ready 1 complete 0");

    control.refuseNext();
    EXPECT_FALSE(session.sendAction(Request("automaticTravelCalibration")));
    EXPECT_TRUE(session.sendAction(Request("automaticTravelCalibration")));
    EXPECT_FALSE(session.sendAction("<dtm/>"));

    bool success = false;
    control.setNextCalibrationMode(false);
    control.SetCalibrationMode(true, success);
    EXPECT_FALSE(success || control.calibrationMode());
    control.SetCalibrationMode(true, success);
    EXPECT_TRUE(success && control.calibrationMode());
}

// The other injections (set, status, reply, lock, unlock, a failure with
// missing items) are shown by the scenarios and the KT520 end-to-end test.
TEST(SimulatedFaultTest, FailAndRefuseApplyToTheNextRequestOnly) {
    SimulatedSession session("KT520_7", false);
    SimulatedControl& control = session.control();
    control.inject({"fail", "operationUnit"});
    control.inject({"fail", "positionerInformation", "deviceBusy"});
    for (const char* group : {"operationUnit", "positionerInformation", "operationUnit"}) {
        ASSERT_TRUE(session.post(session.readRequest(group)));
    }
    session.clock().settle();
    const std::vector<SinkEvent> first = session.sink.replies("operationUnit");
    ASSERT_EQ(first.size(), 2U);
    EXPECT_TRUE(first[0].valid && first[0].reply.isFinal) << first[0].text;
    EXPECT_EQ(first[0].reply.responseStatus + " " + first[0].reply.errorCode,
              "failed communicationFailed");
    EXPECT_EQ(first[1].reply.responseStatus, "ok");
    EXPECT_EQ(session.sink.single("positionerInformation").errorCode, "deviceBusy");

    control.inject({"refuse"});
    EXPECT_FALSE(session.post(session.readRequest("operationUnit")));
    EXPECT_TRUE(session.post(session.readRequest("operationUnit")));
    for (const std::string bad :
         {"", "explode", "ready 2", "fail", "refuse now", "set x", "set noSuchParameter 1"}) {
        EXPECT_THROW(control.inject(Words(bad)), std::invalid_argument) << bad;
    }
}

TEST(SimulatedFaultTest, CloseConnectionDropsEverythingPending) {
    SimulatedSession session("KT520_7");
    session.post(session.readRequest("operationUnit"));
    session.startMonitoring();
    session.requestAction();
    session.sendAction(Request("valveTest"));
    session.control().inject({"reply", "<x/>"});
    ASSERT_GT(session.clock().pending(), 4U);
    bool success = false;
    session.control().CloseConnection(kId, success);
    EXPECT_TRUE(success);
    EXPECT_EQ(session.clock().pending(), 0U);
    EXPECT_TRUE(session.sink.events.empty());
}

TEST(SimulatedEventLogTest, WritesAndCalibrationsJoinTheLogNewestFirst) {
    SimulatedSession session("KT520_7");
    SimulatedControl& control = session.control();
    const std::string oldest = *control.deviceValue("eventLogEvent18");
    const std::string newest = *control.deviceValue("eventLogEvent00");
    const double hours = std::stod(*control.deviceValue("operationTime"));

    ASSERT_TRUE(session.post(session.writeRequest("operationUnit", {{"description", "Bypass"}})));
    session.clock().settle();
    EXPECT_EQ(control.deviceValue("eventLogEvent00"), "eventConfigurationChanged");
    EXPECT_EQ(control.deviceValue("eventLogEvent01"), newest);
    EXPECT_EQ(control.deviceValue("eventLogEvent19"), oldest);  // the oldest fell out
    EXPECT_NEAR(std::stod(*control.deviceValue("eventLogTime00")), hours, 0.11);

    // A refused write changes nothing in the device, so the log stays.
    ASSERT_TRUE(session.post(session.writeRequest("operationUnit", {{"deviceDay", "31"}})));
    session.clock().settle();
    EXPECT_EQ(control.deviceValue("eventLogEvent01"), newest);

    ASSERT_TRUE(session.requestAction());
    session.clock().advance(control.timing().ready);
    ASSERT_TRUE(session.sendAction(Request("automaticTravelCalibration")));
    session.clock().advance(60000);
    EXPECT_EQ(control.deviceValue("eventLogEvent00"), "eventCalibration");
    EXPECT_EQ(control.deviceValue("eventLogEvent01"), "eventConfigurationChanged");
    EXPECT_GE(std::stod(*control.deviceValue("eventLogTime00")),
              std::stod(*control.deviceValue("eventLogTime01")));
}

TEST(SimulatedEventLogTest, EachEventKeepsItsCountAndANewOneCountsOnFromItsLatest) {
    SimulatedSession session("KT540_1.0");
    SimulatedControl& control = session.control();
    const std::string newestCount = *control.deviceValue("eventLogCount00");
    int latest = 0;  // the newest entry of a configuration change
    while (control.deviceValue("eventLogEvent0" + std::to_string(latest)) !=
           "eventConfigurationChanged") {
        ASSERT_LT(++latest, 9);
    }
    const long changes = std::stol(*control.deviceValue("eventLogCount0" + std::to_string(latest)));

    ASSERT_TRUE(session.post(session.writeRequest("operationUnit", {{"description", "Bypass"}})));
    session.clock().settle();
    EXPECT_EQ(control.deviceValue("eventLogEvent00"), "eventConfigurationChanged");
    EXPECT_EQ(control.deviceValue("eventLogCount00"), std::to_string(changes + 1));
    EXPECT_EQ(control.deviceValue("eventLogCount01"), newestCount);
    EXPECT_EQ(control.deviceValue("eventLogCount0" + std::to_string(latest + 1)),
              std::to_string(changes));
}

}  // namespace
}  // namespace kt500::simulator::testing
