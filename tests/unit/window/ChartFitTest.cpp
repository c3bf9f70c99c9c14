#include "app/window/ChartFit.h"

#include "form/Control.h"
#include "form/Form.h"
#include "presentation/Graphs.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::window {
namespace {

form::Rect RectOf(const form::Control& c) { return {c.left(), c.top(), c.width(), c.height()}; }

bool Overlap(const form::Rect& a, const form::Rect& b) {
    return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

// Every chart of every family, placed by the session's table, is drawn
// inside its frame, clear of every shown control of its page, and keeps
// most of its width or height.
TEST(ChartFitTest, EveryPlacedChartStaysInItsFrameAndCoversNothing) {
    for (const char* type : {"KT520_7", "KT540_1.0", "PL500_1", "PL500_2"}) {
        testing::TestUserControl uc(testing::SessionOf(type));
        presentation::Graphs graphs(uc);
        graphs.PlaceAllCharts();
        for (const form::Control* chart : uc.form().controls()) {
            if (chart->kind() != form::ControlKind::Chart || chart->container() == nullptr ||
                chart->container()->container() != nullptr) {
                continue;
            }
            const std::string name = std::string(type) + " " + chart->displayName();
            const form::Control& frame = *chart->container();
            const form::Rect fitted = FittedChartRect(uc.form(), *chart);
            EXPECT_GE(fitted.left, 0) << name;
            EXPECT_LE(fitted.right(), frame.width()) << name;
            EXPECT_LE(fitted.bottom(), frame.height()) << name;
            // A chart still worth the name: a third of the frame each way.
            EXPECT_GE(fitted.width, frame.width() / 3) << name;
            EXPECT_GE(fitted.height, frame.height() / 3) << name;
            for (const form::Control* other : uc.form().children(&frame)) {
                if (other->kind() != form::ControlKind::Chart && other->visible()) {
                    EXPECT_FALSE(Overlap(fitted, RectOf(*other)))
                        << name << " covers " << other->displayName();
                }
            }
        }
    }
}

// The largest free part of the placed rectangle wins; a chart with nothing
// in its way only ends at the frame's border.
TEST(ChartFitTest, TheLargestFreePartWins) {
    form::Form form;
    form::Control& frame = form.add(form::ControlKind::Frame, "fraPage", 0);
    frame.setWidth(8000);
    frame.setHeight(6000);
    form::Control& chart = form.add(form::ControlKind::Chart, "pegoTrend", -1);
    form.setContainer(chart, &frame);
    chart.setLeft(200);
    chart.setTop(1000);
    chart.setWidth(7500);
    chart.setHeight(6000);
    EXPECT_EQ(FittedChartRect(form, chart).bottom(), 6000 - kFrameBorder);
    EXPECT_EQ(FittedChartRect(form, chart).right(), 7700);

    // A time stamp under the chart: the chart ends above it.
    form::Control& stamp = form.add(form::ControlKind::Label, "lblTimeStamp", 0);
    form.setContainer(stamp, &frame);
    stamp.setLeft(240);
    stamp.setTop(5400);
    stamp.setWidth(7400);
    stamp.setHeight(255);
    EXPECT_EQ(FittedChartRect(form, chart).bottom(), 5400 - kChartClearance);

    // A column of fields at the left, as tall as the chart: the chart moves
    // right of it rather than shrinking to a strip.
    form::Control& fields = form.add(form::ControlKind::TextBox, "txtPoints", 0);
    form.setContainer(fields, &frame);
    fields.setLeft(240);
    fields.setTop(1100);
    fields.setWidth(2500);
    fields.setHeight(4000);
    const form::Rect fitted = FittedChartRect(form, chart);
    EXPECT_EQ(fitted.left, 2740 + kChartClearance);
    EXPECT_EQ(fitted.top, kFrameTop);  // the free room above is the chart's
    // A hidden control is in nobody's way.
    fields.setVisible(false);
    EXPECT_EQ(FittedChartRect(form, chart).left, 200);
}

// The free room between a page's fields and its chart goes to the chart:
// it grows up to the lowest field above it across its width, and the
// fields keep their places.
TEST(ChartFitTest, TheChartTakesTheFreeRoomAboveIt) {
    form::Form form;
    form::Control& frame = form.add(form::ControlKind::Frame, "fraPage", 0);
    frame.setWidth(8000);
    frame.setHeight(6000);
    form::Control& chart = form.add(form::ControlKind::Chart, "pegoTrend", -1, &frame);
    chart.setLeft(200);
    chart.setTop(2500);
    chart.setWidth(7500);
    chart.setHeight(3000);
    // Two rows of fields above it, the second one hidden.
    form::Control& first = form.add(form::ControlKind::TextBox, "txtRow", 0, &frame);
    form::Control& second = form.add(form::ControlKind::TextBox, "txtRow", 1, &frame);
    for (form::Control* row : {&first, &second}) {
        row->setLeft(3960);
        row->setWidth(2400);
        row->setHeight(315);
    }
    first.setTop(360);
    second.setTop(735);
    second.setVisible(false);
    form::Rect fitted = FittedChartRect(form, chart);
    EXPECT_EQ(fitted.top, 675 + kChartClearance);
    EXPECT_EQ(fitted.bottom(), 5500);
    EXPECT_EQ(fitted.left, 200);
    second.setVisible(true);
    EXPECT_EQ(FittedChartRect(form, chart).top, 1050 + kChartClearance);
    // A field beside the chart's width is in nobody's way: the chart grows
    // up to the frame's first row.
    for (form::Control* row : {&first, &second}) {
        row->setLeft(7800);
        row->setWidth(150);
    }
    fitted = FittedChartRect(form, chart);
    EXPECT_EQ(fitted.top, kFrameTop);
    EXPECT_EQ(fitted.right(), 7700);
    // A chart placed above the first row stays where it is.
    chart.setTop(200);
    EXPECT_EQ(FittedChartRect(form, chart).top, 200);
}

}  // namespace
}  // namespace kt500::window
