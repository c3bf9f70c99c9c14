// The event log lists of the three families and the reset of diagnostics.
#include "monitoring/EventLog.h"

#include "devices/DeviceClass.h"
#include "support/ReplyItems.h"
#include "support/TestUserControl.h"
#include "xml/Document.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kt500::monitoring {
namespace {

using testing::TestUserControl;

using Items = testing::ReplyItems;

std::string item(const std::string& name, const std::string& text) {
    return "<item name=\"" + name + "\" unit=\"noUnit\"><stringVal>" + text +
           "</stringVal></item>";
}

struct EventLogTest : ::testing::Test {
    void open(const std::string& key, bool blOnline = true) {
        simulator::SessionOptions options = testing::SessionOf(key, blOnline);
        options.language = "9999";  // the text of every key is the key itself
        uc = std::make_unique<TestUserControl>(options);
        uc->tools().Language = "9999";
    }
    form::ListViewModel& list(int intIndex) {
        return uc->form().control("lsvEventLog", intIndex).listView();
    }
    std::unique_ptr<TestUserControl> uc;
};

TEST_F(EventLogTest, AFirstReadingCreatesTwentyRowsAndANewOneReplacesIt) {
    open("KT520_7");
    const Items first(item("eventLogEvent00", "eventPowerUp") + item("eventLogEvent01", "eventTrip") +
                      item("eventLogTime00", "12.5") + item("eventLogTime01", "3"));
    uc->eventLog.FillEventLog(first.all());
    form::ListViewModel& rows = list(0);
    ASSERT_EQ(rows.count(), 20);
    EXPECT_EQ(rows.row(1).text, "eventPowerUp");
    EXPECT_EQ(rows.row(1).tag, "eventPowerUp");
    EXPECT_EQ(rows.subItem(1, 1), "12.5");
    EXPECT_EQ(rows.row(2).tag, "eventTrip");
    EXPECT_EQ(rows.row(3).text, "");

    // Row 1 of a new reading empties the list first, so that the old
    // second row goes.
    const Items second(item("eventLogEvent00", "eventCalibration") +
                       item("eventLogTime00", "13"));
    uc->eventLog.FillEventLog(second.all());
    EXPECT_EQ(rows.count(), 20);
    EXPECT_EQ(rows.row(1).tag, "eventCalibration");
    EXPECT_EQ(rows.row(2).tag, "");
    EXPECT_EQ(rows.subItem(2, 1), "");
}

TEST_F(EventLogTest, ARowAboveTwentyFailsAloneAndATimeKeepsTheEvent) {
    open("KT520_7");
    const Items items(item("eventLogEvent00", "eventPowerUp") + item("eventLogEvent20", "eventTrip") +
                      item("eventLogTime19", "7"));
    uc->eventLog.FillEventLog(items.all());
    ASSERT_EQ(uc->messages.size(), 1U);
    EXPECT_EQ(uc->messages.front().rfind("FillEventLog: ", 0), 0U);
    EXPECT_EQ(list(0).subItem(20, 1), "7");

    uc->eventLog.AddEventLogEvent("", "", "8.5", 1, 1);
    EXPECT_EQ(list(0).row(1).tag, "eventPowerUp");
    EXPECT_EQ(list(0).subItem(1, 1), "8.5");
}

TEST_F(EventLogTest, DataFileItemsFillRowsWithoutEmptyingTheList) {
    open("KT540_1.0", false);
    devices::DeviceClass& device = uc->deviceClass();
    const Items old(item("eventLogEvent05", "eventTrip"));
    device.AddEventLogFromDataFile(old.all().front(), false);
    const Items parameters(
        "<p name=\"eventLogEvent00\" value=\"eventPowerUp\"/>"
        "<p name=\"eventLogTime00\" value=\"40.5\"/><p name=\"eventLogCount00\" value=\"3\"/>"
        "<p name=\"hartTag\" value=\"x\"/>");
    for (const xml::Node& node : parameters.document.root().childElements("p")) {
        device.AddEventLogFromDataFile(node, true);
    }
    form::ListViewModel& rows = list(1);
    EXPECT_EQ(rows.row(1).tag, "eventPowerUp");
    EXPECT_EQ(rows.subItem(1, 1), "40.5");
    EXPECT_EQ(rows.subItem(1, 2), "3");
    EXPECT_EQ(rows.row(6).tag, "eventTrip") << "offline, row 1 empties nothing";
}

TEST_F(EventLogTest, SafetyValveResetsTheStatisticsThenTheAlarms) {
    open("PL500_2");
    std::vector<std::string> sent;
    uc->sendRequestHook = [&](const std::string& group, const std::string&) {
        sent.push_back(group + " " + uc->deviceClass().ResetingFrame());
    };
    form::Form& form = uc->form();
    form.control("chkPLParams", 5).setValue(1);
    form.control("chkPLParams", 12).setValue(1);
    // The monitoring page's switches are no reset boxes.
    form.control("chkPLParams", 9).setValue(1);
    uc->eventLog.cmdResetDiagnostics_Click();
    EXPECT_EQ(sent, (std::vector<std::string>{"resetEventLog statistics",
                                              "resetBreakawayPressureAlarm alarms"}));
    uc->deviceClass().ClearResetDiagnostics();
    EXPECT_EQ(form.control("chkPLParams", 5).value(), 0.0);
    EXPECT_EQ(form.control("chkPLParams", 12).value(), 0.0);
    EXPECT_EQ(form.control("chkPLParams", 9).value(), 1.0);
}

}  // namespace
}  // namespace kt500::monitoring
