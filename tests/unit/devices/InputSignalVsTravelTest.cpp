#include "devices/InputSignalVsTravel.h"
#include "devices/InputSignalVsTravelChart.h"
#include "devices/clsKT520.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

#include <array>

namespace kt500::devices {
namespace {

// The linear curve: row r holds r * 5 %.
std::array<float, 21> linear() {
    std::array<float, 21> curve{};
    for (int r = 0; r <= 20; ++r) {
        curve[r] = static_cast<float>(5 * r);
    }
    return curve;
}

struct Expected {
    int point;
    float x;
    float y;
};

TEST(InputSignalVsTravelPoints, EndsStayInsideThePlot) {
    constexpr float NV = NoSingle;
    constexpr ValveDirection Open = ValveDirection::RisingToOpen;
    constexpr ValveDirection Close = ValveDirection::RisingToClose;
    const std::array<float, 21> curve = linear();
    const auto check = [&curve](const char* what, PositionControl fields, ValveDirection direction,
                                std::vector<Expected> expected) {
        const auto points = InputSignalVsTravelPoints(curve, fields, direction);
        for (const Expected& e : expected) {
            EXPECT_FLOAT_EQ(points[e.point].x, e.x) << what << " P" << e.point;
            EXPECT_FLOAT_EQ(points[e.point].y, e.y) << what << " P" << e.point;
        }
    };
    check(
        "full range, rising to open", {NV, NV, 0, 0}, Open,
        {{0, 0.3F, 0.3F}, {2, 0.3F, 0.3F}, {7, 50, 50}, {12, 99, 99}, {13, 99, 99}, {14, 100, 99}});
    check("split range ending just below 100", {0, 99.9999F, 0, 0}, Open,
          {{2, 0.3F, 0.3F}, {12, 99.9999F, 99}});
    check("split range 20 to 60", {20, 60, 0, 0}, Open,
          {{2, 20, 0.3F}, {7, 40, 50}, {12, 60, 99}, {14, 100, 99}});
    check("unset cut-offs count as cut, rising to close", {NV, NV, NV, NV}, Close,
          {{0, 0.3F, 99}, {2, 0.3F, 99}, {3, 10, 90}, {12, 99, 0.3F}, {14, 100, 0.3F}});
    check("cut-offs scale both axes", {NV, NV, 10, 20}, Open,
          {{0, 0.3F, 0.3F}, {2, 20, 10}, {7, 60, 55}, {12, 99, 99}});
    check("cut-off of the input axis rising to close", {NV, NV, 0, 20}, Close,
          {{2, 0.3F, 99}, {12, 80, 0.3F}, {13, 80, 0.3F}});
    check("negative cut-offs: no lead-in", {NV, NV, -1, -1}, Open,
          {{0, 0, 0}, {1, 0, 0}, {13, 99, 99}});
    check("negative cut-offs: no lead-out", {NV, NV, -1, -1}, Close,
          {{0, 0.3F, 99}, {13, 0, 0}, {14, 0, 0}});
}

TEST(InputSignalVsTravelPoints, OnlyEverySecondCurvePointIsDrawn) {
    std::array<float, 21> curve = linear();
    curve[1] = 77.0F;
    curve[4] = 33.0F;
    const auto points =
        InputSignalVsTravelPoints(curve, {NoSingle, NoSingle, 0, 0}, ValveDirection::RisingToOpen);
    EXPECT_FLOAT_EQ(points[3].y, 10.0F);
    EXPECT_FLOAT_EQ(points[4].y, 33.0F);
}

TEST(InputSignalVsTravelGraph, FillsTheChartFromThePage) {
    testing::TestUserControl kt;
    form::Control& direction = test::fieldOf(kt, form::ControlKind::ComboBox,
                                             "comHAValveRelatedConfiguration", 2, "fraKT520", 8);
    direction.clear();
    direction.addItem("sideways");
    direction.addItem(kt.Translate("risingToOpen"));
    direction.addItem(kt.Translate("risingToClose"));
    // A blank split range low is not set: no scaling of the input axis.
    for (const int index : {3, 4, 5, 6}) {
        test::fieldOf(kt, form::ControlKind::TextBox, "txtHAPositionControl", index)
            .setText(index == 4 ? "80" : "");
    }
    const std::array<float, 21> curve = linear();
    // An unknown direction leaves the chart alone.
    direction.setListIndex(0);
    EXPECT_FALSE(kt.deviceClass().UpdateInputSignalVsTravelGraph(curve));
    const form::ChartModel& chart = kt.form().control(InputSignalVsTravelChart).chart();
    for (const auto& [entry, startTravel] : {std::pair{1, 0.3F}, {2, 99.0F}}) {
        direction.setListIndex(entry);
        EXPECT_TRUE(kt.deviceClass().UpdateInputSignalVsTravelGraph(curve));
        ASSERT_EQ(chart.points(), 15);
        EXPECT_FLOAT_EQ(static_cast<float>(chart.y(0, 0)), startTravel);
        EXPECT_DOUBLE_EQ(chart.x(0, 12), 99.0);
        EXPECT_DOUBLE_EQ(chart.y(0, 7), 50.0);
    }
    EXPECT_DOUBLE_EQ(chart.option("PEactions", -1), 0.0);
}

TEST(InputSignalVsTravelGraph, ThePaClassReadsItsWorkingRange) {
    testing::TestUserControl kt(testing::SessionOf("KT540_1.0"));
    form::Control& direction = test::fieldOf(kt, form::ControlKind::ComboBox,
                                             "comPAInputSignalDirection", 2, "fraKT540", 8);
    direction.clear();
    direction.addItem(kt.Translate("risingToOpen"));
    // Travel limit low 20 %: the travel axis starts there; tight shut-off
    // 10 %: the input axis starts there.
    test::fieldOf(kt, form::ControlKind::TextBox, "txtPAWorkingRangeConfiguration", 0).setText("20");
    test::fieldOf(kt, form::ControlKind::TextBox, "txtPAWorkingRangeConfiguration", 2).setText("10");
    direction.setListIndex(0);
    ASSERT_TRUE(kt.deviceClass().UpdateInputSignalVsTravelGraph(linear()));
    const form::ChartModel& chart = kt.form().control(InputSignalVsTravelChart).chart();
    ASSERT_EQ(chart.points(), 15);
    EXPECT_FLOAT_EQ(static_cast<float>(chart.x(0, 2)), 10.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(chart.y(0, 2)), 20.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(chart.x(0, 7)), 55.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(chart.y(0, 7)), 60.0F);
    direction.setListIndex(-1);
    EXPECT_FALSE(kt.deviceClass().UpdateInputSignalVsTravelGraph(linear()));
}

}  // namespace
}  // namespace kt500::devices
