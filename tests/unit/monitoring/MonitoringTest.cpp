#include "monitoring/Monitoring.h"

#include "devices/Encodings.h"
#include "devices/SeparatedList.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <fstream>
#include <string>

namespace kt500::monitoring {
namespace {

using form::ChartAxisId;
using testing::TestUserControl;

TEST(MonitoringLogValues, TwoDecimalsInTheMachinesSignAndBadValuesRefused) {
    EXPECT_EQ(LogValues({"45", "0.5", "-1.005", "12,25"}, "."), ";45.00;0.50;-1.00;12.25;");
    EXPECT_EQ(LogValues({"1234567.5"}, ","), ";1234567,50;");  // no grouping
    EXPECT_EQ(LogValues({}, "."), ";");
    for (const char* bad : {"abc", "", "-", "1.2.3", "12a", " "}) {
        EXPECT_THROW((void)LogValues({"1", bad}, "."), std::invalid_argument) << '"' << bad << '"';
    }
}

TEST(MonitoringDayCount, CountsLocalDaysFromTheChartsDayZero) {
    EXPECT_DOUBLE_EQ(DayCount(QDateTime(QDate(1899, 12, 31), QTime(0, 0))), 1.0);
    EXPECT_NEAR(DayCount(QDateTime(QDate(2026, 1, 5), QTime(8, 0))), 46027.0 + 1.0 / 3.0, 1e-9);
}

// A KT520 session with its monitoring chart prepared and a clock that the
// test moves.
struct MonitoringTest : ::testing::Test {
    MonitoringTest() {
        graphs.PlaceAllCharts();
        monitoring.PrepareMonitoringGraph();
    }
    static std::string pair(const char* name, const char* value) {
        std::string list;
        devices::AppendSeparated(list, name);
        devices::AppendSeparated(list, value);
        return list;
    }
    // One reply's lists, as ArrangeValues leaves them.
    void reply(const std::string& values) {
        uc.tools().MonitoringValues = values;
        uc.deviceClass().ArrangeValues();
        monitoring.UpdateMonitoringGraph(uc.tools().MonitoringValues, graphValues());
        uc.tools().MonitoringValues.clear();
    }
    std::string graphValues() {
        // The log list: the same values in series order, all of them.
        std::string list;
        for (const char* v : {"45", "44.5", "12", "2.5", "30"}) {
            devices::AppendSeparated(list, v);
        }
        return list;
    }
    std::string all(const char* setpoint = "45") {
        return pair("travelSetpoint", setpoint) + pair("valveTravel", "44.5") +
               pair("inputSignal", "12") + pair("actuatorPressure", "2.5") +
               pair("pcbTemperature", "30");
    }
    form::ChartModel& chart() { return uc.form().control("pegoKT520").chart(); }

    TestUserControl uc{testing::SessionOf("KT520_7")};
    presentation::Graphs graphs{uc};
    QDateTime clock{QDate(2026, 1, 5), QTime(8, 0)};
    Monitoring monitoring{uc, graphs, [this] { return clock; }};
};

// Start, stop and leaving the page are in the monitoring scenarios.
TEST_F(MonitoringTest, ChoosingTheMonitoringPageAgainKeepsItRunning) {
    monitoring.cmdMonitoring_Click(0);
    monitoring.PageChanging("monitoringVariables");
    EXPECT_TRUE(uc.tools().MonitoringFlag);
    EXPECT_EQ(uc.form().control("cmdHAMonitoring", 0).tag(), "stop");
}

TEST_F(MonitoringTest, EachReplyIsOnePointAndASwitchedOffSeriesReadsMinus500) {
    monitoring.cmdMonitoring_Click(0);
    reply(all());
    uc.form().control("chkHAMonitoring", 1).setValue(0);  // travel off
    clock = clock.addMSecs(500);
    reply(all("60.25"));
    ASSERT_EQ(chart().points(), 2);
    EXPECT_EQ(chart().y(0, 1), 60.25);
    EXPECT_EQ(chart().y(1, 0), 44.5);
    EXPECT_EQ(chart().y(1, 1), -500.0);
    EXPECT_EQ(chart().y(2, 1), 12.0);           // input signal is the option chosen
    EXPECT_EQ(chart().y(3, 1), -500.0);         // the other two right-axis series are off
    EXPECT_EQ(chart().x(4, 1), DayCount(clock));
    // The deviation: set point less travel.
    EXPECT_EQ(uc.form().control("lblHAMonitoringSettings", 15).caption(),
              devices::fDecimalSep("15.75"));
}

TEST_F(MonitoringTest, TheWindowMovesByItsStepWhenAPointPassesItsEnd) {
    monitoring.cmdMonitoring_Click(0);
    const double start = monitoring.windowStart();
    EXPECT_NEAR(monitoring.windowEnd() - start, kWindowWidth, 1e-9);
    clock = clock.addSecs(179);
    reply(all());
    EXPECT_EQ(monitoring.windowStart(), start);
    clock = clock.addSecs(2);
    reply(all());
    EXPECT_NEAR(monitoring.windowEnd(), start + kWindowWidth + kWindowStep, 1e-9);
    EXPECT_NEAR(monitoring.windowStart(), monitoring.windowEnd() - kWindowWidth, 1e-9);
    EXPECT_EQ(chart().axis(ChartAxisId::X).manualMax, monitoring.windowEnd());
    EXPECT_EQ(chart().option("ZoomMinX"), monitoring.windowStart());
}

TEST_F(MonitoringTest, TheRightAxisOfThePressureGoesThroughThePageUnit) {
    monitoring.SetRightAxis("pcbTemperature");
    EXPECT_EQ(chart().axis(ChartAxisId::RightY).manualMax, 90.0);
    EXPECT_EQ(chart().axis(ChartAxisId::RightY).manualMin, -45.0);
    monitoring.SetRightAxis("inputSignal");
    EXPECT_EQ(chart().axis(ChartAxisId::RightY).label, "mA");
    EXPECT_EQ(chart().axis(ChartAxisId::RightY).manualMax, 21.0);
    uc.form().control("lblHAMonitoringSettings", 1).setCaption("psiG");
    monitoring.SetRightAxis("actuatorPressure");
    EXPECT_EQ(chart().axis(ChartAxisId::RightY).label, "psiG");
    EXPECT_NEAR(chart().axis(ChartAxisId::RightY).manualMax, 116.03, 0.01);
    monitoring.SetRightAxis("noSuchOption");
    EXPECT_EQ(chart().axis(ChartAxisId::RightY).label, "psiG");
}

// The log's lines as they grow are in the monitoring scenarios.
TEST_F(MonitoringTest, ANewLogReplacesTheOldFile) {
    QTemporaryDir folder;
    const std::string path = folder.filePath("Monitoring.log").toStdString();
    uc.form().control("txtFileName").setText(path);
    monitoring.StartMonitorLog();
    monitoring.cmdMonitoring_Click(0);
    reply(all());
    monitoring.StartMonitorLog();
    std::ifstream again(path);
    int count = 0;
    for (std::string line; std::getline(again, line);) {
        ++count;
    }
    EXPECT_EQ(count, 2);
}

// The other families' replies: the chart list in the order of the class's
// headers whatever the reply's order, -500 for a series switched off.
std::string Pairs(std::initializer_list<std::pair<const char*, const char*>> pairs) {
    std::string list;
    for (const auto& [name, value] : pairs) {
        devices::AppendSeparated(list, name);
        devices::AppendSeparated(list, value);
    }
    return list;
}

std::vector<std::string> Arranged(TestUserControl& uc, const std::string& values) {
    uc.tools().MonitoringValues = values;
    uc.deviceClass().ArrangeValues();
    std::vector<std::string> fields = devices::SplitSeparated(uc.tools().MonitoringValues);
    // Every entry ends with the separator: the split leaves one empty field.
    if (!fields.empty() && fields.back().empty()) {
        fields.pop_back();
    }
    return fields;
}

TEST(MonitoringArrangeValues, TheProfibusPositionersSeriesInHeaderOrderWithItsDeviation) {
    TestUserControl uc{testing::SessionOf("KT540_1.0")};
    const std::string reply =
        Pairs({{"pcbTemperature", "31"}, {"valveTravel", "44.5"}, {"setpoint", "45"},
               {"actuatorPressure", "2.05"}, {"positioningValue", "44.6"}, {"outputValue", "44.7"}});
    EXPECT_EQ(Arranged(uc, reply),
              (std::vector<std::string>{"45", "44.7", "44.6", "44.5", "2.05", "31"}));
    EXPECT_EQ(uc.form().control("lblPAMonValue", 6).caption(), "0.50");
    EXPECT_EQ(uc.deviceClass().MonitoringHeaders(),
              "setpoint outputValue positioningValue valveTravel actuatorPressure pcbTemperature ");
}

TEST(MonitoringArrangeValues, TheSafetyValveControllersSwitchesHideTheirSeries) {
    TestUserControl uc{testing::SessionOf("PL500_2")};
    const std::string reply = Pairs({{"leakageSignal", "0.36"}, {"actualTravel", "100"},
                                     {"actuatorPressure", "3.15"}, {"pcbTemperature", "31"}});
    EXPECT_EQ(Arranged(uc, reply), (std::vector<std::string>{"100", "0.36", "3.15", "31"}));
    uc.form().control("chkPLParams", 10).setValue(0);
    EXPECT_EQ(Arranged(uc, reply), (std::vector<std::string>{"100", "-500", "3.15", "31"}));
    uc.form().control("chkPLParams", 9).setValue(0);
    EXPECT_EQ(Arranged(uc, reply), (std::vector<std::string>{"-500", "-500", "3.15", "31"}));
    // A series the reply lacks is left out, not shown as 0.
    EXPECT_EQ(Arranged(uc, Pairs({{"actuatorPressure", "3"}})), (std::vector<std::string>{"3"}));
    // The log's header: the time and the four series, the pressure in the
    // data set's unit.
    const std::string headers = uc.deviceClass().MonitorLogHeaders();
    EXPECT_EQ(std::count(headers.begin(), headers.end(), ';'), 4) << headers;
    EXPECT_NE(headers.find("[barG]"), std::string::npos) << headers;
}

}  // namespace
}  // namespace kt500::monitoring
