// The simulated device's monitoring, device actions and injected faults.
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <map>

namespace kt500::simulator::testing {
namespace {

constexpr std::int32_t kId = SimulatedControl::kConnectionId;

std::string ActionRequest(const std::string& name) {
    return "<?xml version='1.0'?><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
           "<communicationRequest name='" +
           name + "' access='write'/></dtm>";
}

bool RequestAction(SimulatedSession& session) {
    bool accepted = false;
    session.control().RequestAutoAction(kId, accepted);
    return accepted;
}

bool SendAction(SimulatedSession& session, const std::string& request) {
    bool accepted = false;
    session.control().SendAutoAction(kId, request, 10000, accepted);
    return accepted;
}

bool StopAction(SimulatedSession& session) {
    bool stopping = false;
    session.control().StopAutoAction(kId, stopping);
    return stopping;
}

TEST(SimulatedMonitoringTest, CyclicRepliesBetweenStartAndStop) {
    SimulatedSession session("KT520_7", false);
    bool success = false;
    session.control().StartMonitoringRequests(kId, 0, success);
    EXPECT_TRUE(success);
    session.control().StartMonitoringRequests(kId, 0, success);  // a second start adds no cycle
    session.clock().advance(2000);
    std::vector<SinkEvent> cycles = session.sink.replies("monitoringVariables");
    ASSERT_EQ(cycles.size(), 4U);
    for (const SinkEvent& cycle : cycles) {
        EXPECT_TRUE(cycle.valid);
        EXPECT_TRUE(cycle.reply.isFinal);
        EXPECT_EQ(cycle.reply.responseStatus, "ok");
        ASSERT_EQ(cycle.reply.items.size(), 5U);
        EXPECT_EQ(cycle.reply.items[0].name, "travelSetpoint");
        EXPECT_EQ(cycle.reply.items[3].unit, "barG");
    }
    EXPECT_EQ(cycles[1].time - cycles[0].time, 500);
    session.control().StopMonitoringRequests(kId);
    EXPECT_FALSE(session.control().monitoring());
    session.clock().settle();
    EXPECT_EQ(session.sink.replies("monitoringVariables").size(), 4U) << "no reply after stop";
    EXPECT_EQ(session.clock().pending(), 0U);
}

TEST(SimulatedMonitoringTest, ValuesFollowTheValve) {
    SimulatedSession session("KT520_7", false);
    const double travel = std::stod(*session.control().deviceValue("valveTravel"));
    EXPECT_NEAR(travel, 45.0, 1.0) << "the valve starts settled at the device's set point";
    session.control().inject({"set", "travelSetpoint", "80"});
    bool success = false;
    session.control().StartMonitoringRequests(kId, 0, success);
    session.clock().advance(15000);
    const std::vector<SinkEvent> cycles = session.sink.replies("monitoringVariables");
    ASSERT_EQ(cycles.size(), 30U);
    const auto valveTravel = [](const SinkEvent& cycle) {
        return std::stod(cycle.reply.items[1].value);
    };
    EXPECT_EQ(std::stod(cycles.front().reply.items[0].value), 80.0);
    EXPECT_LT(valveTravel(cycles.front()), 60.0) << "the valve needs time to move";
    EXPECT_NEAR(valveTravel(cycles.back()), 80.0, 0.5);
    for (std::size_t i = 1; i < cycles.size(); ++i) {
        EXPECT_GE(valveTravel(cycles[i]), valveTravel(cycles[i - 1]) - 0.05) << i;
    }
    // A sampling rate of the device's own sets the period.
    SimulatedSession safety("PL500_2", false);
    EXPECT_EQ(safety.control().timing().monitoringPeriod,
              std::stol(*safety.control().deviceValue("monitoringSamplingRate")));
}

TEST(SimulatedMonitoringTest, StopFromInsideTheSinkEndsTheCycles) {
    // The control stops monitoring while handling a cycle's reply.
    SimulatedSession session("KT540_1.0", false);
    bool success = false;
    session.control().StartMonitoringRequests(kId, 0, success);
    session.clock().advance(500);
    session.control().StopMonitoringRequests(kId);
    session.clock().advance(5000);
    EXPECT_EQ(session.sink.replies("monitoringVariables").size(), 1U);
}

TEST(SimulatedActionTest, ReadyThenCompleteAfterTheActionsTime) {
    for (const char* key : {"KT520_7", "KT540_1.0", "PL500_2"}) {
        SimulatedSession session(key, false);
        ASSERT_TRUE(RequestAction(session));
        session.clock().advance(session.control().timing().ready);
        EXPECT_EQ(session.sink.actionEvents(), "ready 1");
        ASSERT_TRUE(SendAction(session, ActionRequest("positionControlAutocalibration")));
        EXPECT_EQ(session.control().runningAction(), "positionControlAutocalibration");
        EXPECT_FALSE(SendAction(session, ActionRequest("valveTest"))) << "one action at a time";
        session.clock().advance(19999);
        EXPECT_EQ(session.sink.actionEvents(), "ready 1");
        session.clock().advance(1);
        EXPECT_EQ(session.sink.actionEvents(), "ready 1 complete 1") << key;
        EXPECT_TRUE(session.control().runningAction().empty());
        EXPECT_TRUE(session.sink.replies("positionControlAutocalibration").empty());
    }
}

TEST(SimulatedActionTest, TestSettingsRenamedStartTheTestForItsTestTime) {
    SimulatedSession session("KT520_7", false);
    const std::string request = session.writeRequest(
        "stepResponseTest", {{"testTime", "20"}, {"startSetpoint", "40"}, {"setpointChange", "5"}});
    ASSERT_TRUE(SendAction(session, request));
    EXPECT_EQ(session.control().deviceValue("testTime"), "20");
    EXPECT_EQ(session.control().actionDuration("stepResponseTest"), 22000);
    session.clock().advance(21999);
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
    const std::string documented = *session.control().deviceValue("valveTestBreakawayPressure");
    ASSERT_TRUE(SendAction(session, ActionRequest("valveTest")));
    session.clock().settle();
    ASSERT_EQ(session.sink.actionEvents(), "complete 1");
    const double breakaway =
        std::stod(*session.control().deviceValue("valveTestBreakawayPressure"));
    EXPECT_NEAR(breakaway, session.control().dynamics()->valve().breakawayPressure(), 0.2);
    EXPECT_NE(*session.control().deviceValue("valveTestBreakawayPressure"), documented);
    // After the test the valve is back in control at its former set point.
    session.clock().advance(30000);
    EXPECT_NEAR(std::stod(*session.control().deviceValue("actualTravel")), 100.0, 1.0);

    ASSERT_TRUE(SendAction(session, ActionRequest("pneumaticsTest")));
    session.control().setNextComplete(false);
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "complete 1 complete 0");
}

TEST(SimulatedActionTest, StopEndsTheActionWithoutACompleteEvent) {
    SimulatedSession session("PL500_2", false);
    EXPECT_FALSE(StopAction(session)) << "nothing to stop";
    ASSERT_TRUE(SendAction(session, ActionRequest("valveTest")));
    session.clock().advance(5000);
    ASSERT_TRUE(StopAction(session));
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "stopped 1");
    EXPECT_TRUE(session.control().runningAction().empty());
}

TEST(SimulatedActionTest, RefusedStopLetsTheActionRunOnForTheTimeItHadLeft) {
    SimulatedSession session("KT520_7", false);
    ASSERT_TRUE(SendAction(session, ActionRequest("automaticPrestageTrim")));  // 15 s
    session.clock().advance(10000);
    session.control().setNextStopped(false);
    ASSERT_TRUE(StopAction(session));
    session.clock().advance(300);
    EXPECT_EQ(session.sink.actionEvents(), "stopped 0");
    session.clock().advance(4999);
    EXPECT_EQ(session.sink.actionEvents(), "stopped 0");
    session.clock().advance(1);
    EXPECT_EQ(session.sink.actionEvents(), "stopped 0 complete 1");
}

TEST(SimulatedActionTest, InjectedOutcomesApplyOnceEach) {
    SimulatedSession session("KT540_1.0", false);
    session.control().setNextRequestAccepted(false);
    EXPECT_FALSE(RequestAction(session));
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "") << "a refused request brings no event";

    ASSERT_TRUE(RequestAction(session));
    session.control().setNextReady(false);  // decided when the event goes out
    session.clock().settle();
    ASSERT_TRUE(RequestAction(session));
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "ready 0 ready 1");

    session.control().setNextComplete(false);
    ASSERT_TRUE(SendAction(session, ActionRequest("automaticTravelCalibration")));
    session.clock().settle();
    EXPECT_EQ(session.sink.actionEvents(), "ready 0 ready 1 complete 0");

    session.control().refuseNext();
    EXPECT_FALSE(SendAction(session, ActionRequest("automaticTravelCalibration")));
    EXPECT_TRUE(SendAction(session, ActionRequest("automaticTravelCalibration")));
    EXPECT_FALSE(SendAction(session, "<dtm/>"));

    bool success = false;
    session.control().setNextCalibrationMode(false);
    session.control().SetCalibrationMode(true, success);
    EXPECT_FALSE(success);
    session.control().SetCalibrationMode(true, success);
    EXPECT_TRUE(success);
    EXPECT_TRUE(session.control().calibrationMode());
    session.control().SetCalibrationMode(false, success);
    EXPECT_TRUE(success);
    EXPECT_FALSE(session.control().calibrationMode());
}

TEST(SimulatedActionTest, UnknownActionsAreRefused) {
    SimulatedSession session("KT520_7", false);
    EXPECT_FALSE(SendAction(session, ActionRequest("noSuchAction")));
    EXPECT_FALSE(SendAction(session, ActionRequest("operationUnit")));
    EXPECT_EQ(session.clock().pending(), 0U);
}

TEST(SimulatedFaultTest, FailRefuseAndInjectedEvents) {
    SimulatedSession session("KT520_7", false);
    SimulatedControl& control = session.control();
    control.inject({"fail", "operationUnit"});
    control.inject({"fail", "positionerInformation", "deviceBusy"});
    control.inject({"fail", "alertSettings", "missingItems"});
    ASSERT_TRUE(session.post(session.readRequest("operationUnit")));
    ASSERT_TRUE(session.post(session.readRequest("positionerInformation")));
    ASSERT_TRUE(session.post(session.readRequest("alertSettings")));
    ASSERT_TRUE(session.post(session.readRequest("operationUnit")));
    session.clock().settle();
    const std::vector<SinkEvent> first = session.sink.replies("operationUnit");
    ASSERT_EQ(first.size(), 2U);
    EXPECT_EQ(first[0].reply.responseStatus, "failed");
    EXPECT_EQ(first[0].reply.errorCode, "communicationFailed");
    EXPECT_TRUE(first[0].reply.isFinal);
    EXPECT_EQ(first[1].reply.responseStatus, "ok") << "only the next request fails";
    EXPECT_EQ(session.sink.replies("positionerInformation")[0].reply.errorCode, "deviceBusy");
    const SinkEvent missing = session.sink.replies("alertSettings")[0];
    EXPECT_EQ(missing.reply.errorCode, "missingItems");
    EXPECT_FALSE(missing.reply.items.empty()) << "the missing items are listed";
    for (const SinkEvent& event : session.sink.events) {
        EXPECT_TRUE(event.valid) << event.text;
    }

    control.inject({"refuse"});
    EXPECT_FALSE(session.post(session.readRequest("operationUnit")));
    EXPECT_TRUE(session.post(session.readRequest("operationUnit")));

    control.inject({"set", "hartTag", "FV-9"});
    EXPECT_EQ(control.deviceValue("hartTag"), "FV-9");
    EXPECT_EQ(session.dataSet("hartTag", "value"), "PV-101");
    EXPECT_THROW(control.inject({"set", "noSuchParameter", "1"}), std::invalid_argument);

    session.clock().settle();
    session.sink.events.clear();
    control.inject({"status", "statusTravelDeviation", "1"});
    control.inject({"reply", "<raw>as it stands</raw>"});
    control.inject({"lock"});
    control.inject({"unlock"});
    EXPECT_EQ(session.clock().advance(0), 4U) << "injected events are due at once";

    ASSERT_EQ(session.sink.events.size(), 4U);
    EXPECT_EQ(session.sink.events[0].reply.name, "deviceStatus");
    ASSERT_EQ(session.sink.events[0].reply.items.size(), 1U);
    EXPECT_EQ(session.sink.events[0].reply.items[0].value, "1");
    EXPECT_TRUE(session.sink.events[0].valid);
    EXPECT_EQ(session.sink.events[1].text, "<raw>as it stands</raw>");
    EXPECT_EQ(session.sink.events[2].kind, "lock");
    EXPECT_EQ(session.sink.events[3].kind, "unlock");

    for (const std::vector<std::string>& bad : std::vector<std::vector<std::string>>{
             {}, {"explode"}, {"ready", "2"}, {"fail"}, {"refuse", "now"}, {"set", "x"}}) {
        EXPECT_THROW(control.inject(bad), std::invalid_argument);
    }
}

TEST(SimulatedFaultTest, CloseConnectionDropsEverythingPending) {
    SimulatedSession session("KT520_7");
    bool success = false;
    session.post(session.readRequest("operationUnit"));
    session.control().StartMonitoringRequests(kId, 0, success);
    RequestAction(session);
    SendAction(session, ActionRequest("valveTest"));
    session.control().inject({"reply", "<x/>"});
    ASSERT_GT(session.clock().pending(), 4U);
    session.control().CloseConnection(kId, success);
    EXPECT_TRUE(success);
    EXPECT_EQ(session.clock().pending(), 0U);
    EXPECT_EQ(session.clock().settle(), 0U);
    EXPECT_TRUE(session.sink.events.empty());
}

}  // namespace
}  // namespace kt500::simulator::testing

namespace kt500::simulator::testing {
namespace {

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

    ASSERT_TRUE(RequestAction(session));
    session.clock().advance(control.timing().ready);
    ASSERT_TRUE(SendAction(session, ActionRequest("automaticTravelCalibration")));
    session.clock().advance(60000);
    EXPECT_EQ(control.deviceValue("eventLogEvent00"), "eventCalibration");
    EXPECT_EQ(control.deviceValue("eventLogEvent01"), "eventConfigurationChanged");
    EXPECT_GE(std::stod(*control.deviceValue("eventLogTime00")),
              std::stod(*control.deviceValue("eventLogTime01")));
}

}  // namespace
}  // namespace kt500::simulator::testing
