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

TEST(TestIntervals, CombineHonoursUnitAndSwitch) {
    EXPECT_EQ(CombineTestInterval("45", 1, 1), 1080.0);
    EXPECT_EQ(CombineTestInterval("45", 0, 1), 45.0);
    EXPECT_EQ(CombineTestInterval("45", 1, 0), 0.0);
    EXPECT_EQ(CombineTestInterval("", 1, 1), 0.0);
    EXPECT_THROW((void)CombineTestInterval("abc", 1, 1), std::invalid_argument);
    EXPECT_THROW((void)SplitTestInterval("12h"), std::invalid_argument);
    // A switch off needs no count at all.
    EXPECT_EQ(CombineTestInterval("abc", 1, 0), 0.0);
}

TEST(TestIntervals, WholeDaysRoundToTheNearestDay) {
    EXPECT_EQ(WholeDays(0.0), 0);
    EXPECT_EQ(WholeDays(11.0), 0);
    EXPECT_EQ(WholeDays(12.0), 1);
    EXPECT_EQ(WholeDays(36.0), 2);
    EXPECT_EQ(WholeDays(1080.0), 45);
}

TEST(TestIntervals, TimeSplitsIntoDaysHoursAndMinutes) {
    const TimeParts parts = SplitTestTime("26.5");
    EXPECT_EQ(parts.days, "1");
    EXPECT_EQ(parts.hours, "2");
    EXPECT_EQ(parts.minutes, "30");
    EXPECT_THROW((void)SplitTestTime("soon"), std::invalid_argument);
}

class TestSchedule : public ::testing::Test {
protected:
    TestSchedule() {
        count = &kt.addField(ControlKind::TextBox, "txtPLParams", 19, "fraPL500", 13,
                             "valveTestInterval");
        unit = &kt.addField(ControlKind::ComboBox, "comPLParams", 14, "fraPL500", 13, "");
        onOff = &kt.addField(ControlKind::ComboBox, "comPLParams", 13, "fraPL500", 13, "");
        timer = &kt.addField(ControlKind::TextBox, "txtPLParams", 41, "fraPL500", 13,
                             "valveTestTimer");
        for (const char* entry : {"h", "d"}) {
            unit->addItem(entry);
        }
        for (const char* entry : {"off", "on"}) {
            onOff->addItem(entry);
        }
    }
    std::string format(const char* id, const char* value, const char* access) {
        return kt.deviceClass().FormatValues(id, value, access);
    }

    TestUserControl kt{SessionOf("PL500_2")};
    form::Control* count = nullptr;
    form::Control* unit = nullptr;
    form::Control* onOff = nullptr;
    form::Control* timer = nullptr;
};

TEST_F(TestSchedule, TheCountFieldShowsTheIntervalInItsUnit) {
    EXPECT_EQ(format("valveTestInterval", "720", "read"), "30");
    EXPECT_EQ(format("valveTestInterval", "30", "read"), "30");
    EXPECT_EQ(format("pneumaticsTestInterval", "0", "read"), "0");
}

TEST_F(TestSchedule, AWriteSendsTheHoursAndTheDaysThePageStandsFor) {
    count->setText("45");
    unit->setListIndex(1);
    onOff->setListIndex(1);
    timer->setText("96");
    EXPECT_EQ(format("valveTestInterval", "45", "write"), "1080");
    EXPECT_EQ(format("valveTestIntervalD", "", "write"), "45");
    EXPECT_EQ(format("valveTestTimerD", "", "write"), "4");

    unit->setListIndex(0);
    EXPECT_EQ(format("valveTestInterval", "45", "write"), "45");
    EXPECT_EQ(format("valveTestIntervalD", "", "write"), "2");

    onOff->setListIndex(0);
    EXPECT_EQ(format("valveTestInterval", "45", "write"), "0");
    EXPECT_EQ(format("valveTestIntervalD", "", "write"), "0");
}

TEST_F(TestSchedule, NoDaysWithoutAValueToTakeThemFrom) {
    unit->setListIndex(1);
    onOff->setListIndex(1);
    for (const char* text : {"", "  ", "abc"}) {
        count->setText(text);
        EXPECT_EQ(format("valveTestIntervalD", "", "write"), "") << '"' << text << '"';
    }
    timer->setText("");
    EXPECT_EQ(format("valveTestTimerD", "", "write"), "");
    // The pneumatics test's fields are not on this form.
    EXPECT_EQ(format("pneumaticsIntervalD", "", "write"), "");
    EXPECT_EQ(format("pneumaticsTimerD", "", "write"), "");
}

TEST(TestScheduleSelectors, EachIntervalOwnsItsUnitAndSwitch) {
    EXPECT_EQ(clsPL500::IntervalOfSelector(14)->hours, "valveTestInterval");
    EXPECT_EQ(clsPL500::IntervalOfSelector(13)->hours, "valveTestInterval");
    EXPECT_EQ(clsPL500::IntervalOfSelector(11)->hours, "pneumaticsTestInterval");
    EXPECT_EQ(clsPL500::IntervalOfSelector(12)->hours, "pneumaticsTestInterval");
    EXPECT_EQ(clsPL500::IntervalOfSelector(17), nullptr);
}

}  // namespace
}  // namespace kt500::devices
