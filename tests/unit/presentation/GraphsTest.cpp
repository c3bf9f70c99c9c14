#include "presentation/Graphs.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace kt500::presentation {
namespace {

using form::ChartAxisId;
using testing::TestUserControl;

struct GraphsTest : ::testing::TestWithParam<const char*> {
    GraphsTest() : uc(testing::SessionOf(GetParam())) {}
    TestUserControl uc;
    Graphs graphs{uc};
};

// Every row of the placement table: the chart sits in its frame element,
// sized from the frame by the margins, and is set up by its builder.
TEST_P(GraphsTest, EveryChartOfTheTableSitsInItsFrameWithTheMarginsOfItsRow) {
    const std::string type = uc.tools().DeviceType;
    std::set<std::string_view> onForm;
    for (const ChartPlacement& row : PlacementsOf(type)) {
        if (uc.form().find(SetupOf(row.builder).name) != nullptr) {
            onForm.insert(SetupOf(row.builder).name);
        }
    }
    graphs.PlaceAllCharts();
    const std::string_view frames = PlacementFrameArray(type);
    for (const ChartPlacement& row : PlacementsOf(type)) {
        const ChartSetup& setup = SetupOf(row.builder);
        SCOPED_TRACE(std::string(setup.name));
        const form::Control& frame = uc.form().control(frames, row.frameElement);
        const form::Control& chart = uc.form().control(setup.name);
        EXPECT_EQ(chart.container(), &frame);
        EXPECT_EQ(chart.left(), row.left);
        EXPECT_EQ(chart.top(), row.top);
        EXPECT_EQ(chart.width(), frame.width() - row.widthMargin);
        EXPECT_EQ(chart.height(), frame.height() - row.heightMargin);
        EXPECT_EQ(chart.chart().scientific(), setup.pesgo);
        EXPECT_EQ(chart.chart().subsets(), setup.subsets);
        EXPECT_EQ(chart.chart().option("GraphBackColor"), kGraphBackColor);
        if (!setup.xAxisKey.empty()) {
            EXPECT_EQ(chart.chart().axis(ChartAxisId::X).label, uc.Translate(std::string(setup.xAxisKey)));
        }
    }
    // The flow page's two charts share their place: the flow curves show.
    if (const form::Control* flow = uc.form().find("pegoFlowModification")) {
        EXPECT_TRUE(flow->visible());
        EXPECT_FALSE(uc.form().control("pesgoInputSignalVsTravel").visible());
    }
    // Only the charts the session created go at its end; a chart of the
    // form stays.
    graphs.RemoveDeviceCharts();
    EXPECT_TRUE(graphs.sessionCharts().empty());
    for (const ChartPlacement& row : PlacementsOf(type)) {
        const std::string_view name = SetupOf(row.builder).name;
        EXPECT_EQ(uc.form().find(name) != nullptr, onForm.contains(name)) << name;
    }
    EXPECT_THROW(graphs.DestroyChart("pegoLoadFactor"), std::invalid_argument);
}

INSTANTIATE_TEST_SUITE_P(Families, GraphsTest,
                         ::testing::Values("KT520_7", "KT540_1.0", "PL500_1", "PL500_2"));

TEST(GraphsTables, TheValveAndPneumaticsChartsEachOnTheirOwnTestPageAndOnlyTheFamilyKeysChooseRows) {
    for (const char* type : {"PL500_1", "PL500_2"}) {
        for (const ChartPlacement& row : PlacementsOf(type)) {
            if (row.builder == ChartBuilder::ValveTest) {
                EXPECT_EQ(row.frameElement, 13) << type;
            }
            if (row.builder == ChartBuilder::PneumaticsTest) {
                EXPECT_EQ(row.frameElement, 14) << type;
            }
        }
    }
    EXPECT_EQ(PlacementsOf("KT520_7").data(), PlacementsOf("KTQ500_PT_6").data());
    EXPECT_EQ(PlacementsOf("KT540_1.0").front().frameElement, 15);
    EXPECT_EQ(PlacementFrameArray("PL500_2"), "fraPL500");
    EXPECT_EQ(PlacementFrameArray("kt540_1.0"), "fraKT520");  // compared case-sensitively
    // PL500_2's valve chart is the taller one.
    EXPECT_EQ(PlacementsOf("PL500_1").back().heightMargin, 400);
    EXPECT_EQ(PlacementsOf("PL500_2").back().heightMargin, 1000);
}

struct GraphBuilders : ::testing::Test {
    TestUserControl uc{testing::SessionOf("KT520_7")};
    Graphs graphs{uc};
    form::ChartModel& build(ChartBuilder builder, int points = 0) {
        form::Control& chart = graphs.CreatePegoChart("pegoUnderTest", nullptr);
        graphs.BuildChart(chart, builder, points);
        return chart.chart();
    }
};

// The flow chart has a point per curve point and waits for its page to show it.
TEST_F(GraphBuilders, TheFlowChartTakesItsPointsAndStaysHidden) {
    const form::ChartModel& flow = build(ChartBuilder::FlowModification, 21);
    EXPECT_EQ(flow.points(), 21);
    EXPECT_EQ(flow.pointLabel(20), "20");
    EXPECT_FALSE(uc.form().control("pegoUnderTest").visible());
}

TEST_F(GraphBuilders, TheMonitoringChartComparesTheLastSeriesOnTheRightAndFollowsTheLanguage) {
    form::Control& chart = graphs.MonitoringChart(0);
    graphs.BuildMonitoringGraph(chart, uc.deviceClass().MonitoringHeaders(), 1, 2500);
    const form::ChartModel& model = chart.chart();
    EXPECT_EQ(model.subsets(), 5);
    EXPECT_EQ(model.points(), 0);
    EXPECT_EQ(model.option("RYAxisComparisonSubsets"), 3);  // input signal and after
    EXPECT_EQ(model.option("DateTimeMode"), 1);
    EXPECT_EQ(model.option("UseDataPoints"), 1);
    EXPECT_EQ(model.subsetLabel(0), uc.Translate("travelSetpoint"));
    EXPECT_EQ(model.axis(ChartAxisId::X).label, uc.Translate("time"));
    EXPECT_TRUE(chart.visible());

    const std::string english = model.subsetLabel(0);
    uc.tools().Language = "1031";
    graphs.TranslateGraphs();
    EXPECT_EQ(model.subsetLabel(0), uc.Translate("travelSetpoint"));
    EXPECT_NE(model.subsetLabel(0), english);
    EXPECT_THROW((void)graphs.MonitoringChart(3), std::out_of_range);
}

TEST_F(GraphBuilders, TheUndoZoomItemIsOfferedOnlyWhileTheChartIsZoomed) {
    form::Control& chart = uc.form().control("pegoKT520");
    form::Control& undo = uc.form().control("mnuPopupItem", 1);
    graphs.Chart_MouseDown(chart, 2);
    EXPECT_FALSE(undo.enabled());
    EXPECT_EQ(graphs.popupChart(), &chart);

    graphs.Chart_ZoomIn(chart);
    EXPECT_EQ(chart.tag(), "zoomOutTT");
    EXPECT_EQ(chart.toolTipText(), uc.Translate("zoomOutTT"));
    graphs.Chart_MouseDown(chart, 1);  // the left button opens nothing
    EXPECT_FALSE(undo.enabled());
    graphs.Chart_MouseDown(chart, 2);
    EXPECT_TRUE(undo.enabled());

    graphs.Chart_ZoomOut(chart);
    EXPECT_EQ(chart.tag(), "");
    EXPECT_EQ(chart.toolTipText(), "");
    EXPECT_FALSE(undo.enabled());
}

}  // namespace
}  // namespace kt500::presentation
