// The safety valve controller's test schedule: an interval as a count, its
// unit and a switch on the page, hours and whole days on the wire.
#include "devices/TestIntervals.h"
#include "devices/clsPL500.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::devices {
namespace {

using form::ControlKind;
using testing::SessionOf;
using testing::TestUserControl;

TEST(TestIntervals, SplitAndCombineAreInverse) {
    struct Row {
        const char* hours;
        const char* count;
        int unit;
        int onOff;
        double combined;  // what the parts stand for again
    };
    const Row rows[] = {
        {"720", "30", 1, 1, 720.0}, {"36", "36", 0, 1, 36.0}, {"24", "1", 1, 1, 24.0},
        {"0", "0", 0, 0, 0.0},      {"", "0", 0, 0, 0.0},     {"719,6", "30", 1, 1, 720.0},
    };
    for (const Row& row : rows) {
        const IntervalParts parts = SplitTestInterval(row.hours);
        EXPECT_EQ(parts.count, row.count) << row.hours;
        EXPECT_EQ(parts.unitIndex, row.unit) << row.hours;
        EXPECT_EQ(parts.switchIndex, row.onOff) << row.hours;
        EXPECT_EQ(CombineTestInterval(parts.count, parts.unitIndex, parts.switchIndex),
                  row.combined)
            << row.hours;
    }
}

TEST(TestIntervals, CombineHonoursUnitAndSwitchAndDaysRoundToTheNearest) {
    EXPECT_EQ(CombineTestInterval("45", 1, 1), 1080.0);
    EXPECT_EQ(CombineTestInterval("45", 0, 1), 45.0);
    EXPECT_EQ(CombineTestInterval("45", 1, 0), 0.0);
    EXPECT_EQ(CombineTestInterval("", 1, 1), 0.0);
    EXPECT_THROW((void)CombineTestInterval("abc", 1, 1), std::invalid_argument);
    EXPECT_THROW((void)SplitTestInterval("12h"), std::invalid_argument);
    EXPECT_EQ(CombineTestInterval("abc", 1, 0), 0.0);  // a switch off needs no count
    for (const auto& [hours, days] :
         {std::pair{0.0, 0}, {11.0, 0}, {12.0, 1}, {36.0, 2}, {1080.0, 45}}) {
        EXPECT_EQ(WholeDays(hours), days) << hours;
    }
    const TimeParts parts = SplitTestTime("26.5");
    EXPECT_EQ(parts.days + " " + parts.hours + " " + parts.minutes, "1 2 30");
    EXPECT_THROW((void)SplitTestTime("soon"), std::invalid_argument);
}

// The reads and writes of the schedule are in the scenario pl500_test_schedule.
TEST(TestSchedule, NoDaysWithoutAValueToTakeThemFrom) {
    TestUserControl kt{SessionOf("PL500_2")};
    form::Control& count =
        kt.addField(ControlKind::TextBox, "txtPLParams", 19, "fraPL500", 13, "valveTestInterval");
    form::Control& timer =
        kt.addField(ControlKind::TextBox, "txtPLParams", 41, "fraPL500", 13, "valveTestTimer");
    for (const int selector : {14, 13}) {  // unit in days, switch on
        form::Control& list =
            kt.addField(ControlKind::ComboBox, "comPLParams", selector, "fraPL500", 13, "");
        list.addItem("first");
        list.addItem("second");
        list.setListIndex(1);
    }
    const auto days = [&kt](const char* id) {
        return kt.deviceClass().FormatValues(id, "", "write");
    };
    for (const char* text : {"", "  ", "abc"}) {
        count.setText(text);
        EXPECT_EQ(days("valveTestIntervalD"), "") << '"' << text << '"';
    }
    timer.setText("");
    EXPECT_EQ(days("valveTestTimerD"), "");
    // The pneumatics test's fields are not on this form.
    EXPECT_EQ(days("pneumaticsIntervalD"), "");
    EXPECT_EQ(days("pneumaticsTimerD"), "");
    for (const auto& [selector, hours] : {std::pair{14, "valveTestInterval"},
                                          {13, "valveTestInterval"},
                                          {11, "pneumaticsTestInterval"},
                                          {12, "pneumaticsTestInterval"}}) {
        EXPECT_EQ(clsPL500::IntervalOfSelector(selector)->hours, hours) << selector;
    }
    EXPECT_EQ(clsPL500::IntervalOfSelector(17), nullptr);
}

}  // namespace
}  // namespace kt500::devices
