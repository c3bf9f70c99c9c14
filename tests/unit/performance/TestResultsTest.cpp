#include "performance/TestResults.h"

#include "presentation/Graphs.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <string>

namespace kt500::performance {
namespace {

using testing::TestUserControl;

// One reply item as the BL sends it, or with `inDataSet` a parameter of a
// data set (value and unit in attributes).
struct ReplyItem {
    ReplyItem(const std::string& name, const std::string& text, bool inDataSet = false)
        : document(std::move(*xml::Document::parse(
                                  inDataSet ? "<parameter name='" + name + "' value='" + text +
                                                  "' unit='bar' synchronised='1'/>"
                                            : "<item name='" + name + "'><floatVal>" + text +
                                                  "</floatVal></item>")
                                  .document)) {}
    xml::Node node() { return document.root(); }
    xml::Document document;
};

struct TestResultsTest : ::testing::Test {
    TestResultsTest() {
        uc.tools().Language = "9999";
        uc.tools().OnlineConf = true;
        uc.tools().ActorRole = "operator";
        uc.tools().CurrentAutoAction = 4;
        // The family's charts, on which the curves are drawn.
        graphs.PlaceAllCharts();
    }
    void add(const std::string& name, const std::string& text) {
        ReplyItem item(name, text);
        results.AddStepTestValuePair(item.node());
    }
    // The two series of a step from 40 to `end` at sample 10, sample 49 of
    // the time series first or last.
    void step(bool timesFirst, const char* end = "50.0") {
        const auto series = [&](bool times, bool last) {
            for (int i = last ? 49 : 0; i < (last ? 50 : 49); ++i) {
                char number[12];
                std::snprintf(number, sizeof number, "%02d", i);
                if (times) {
                    add(std::string("stepTestTime") + number, std::to_string(0.2 * i));
                } else {
                    add(std::string("stepTestTravel") + number, i < 10 ? "40.0" : end);
                }
            }
        };
        series(timesFirst, false);
        series(!timesFirst, false);
        series(timesFirst, true);
        series(!timesFirst, true);
    }

    TestUserControl uc{testing::SessionOf("KT520_7", true, "operator")};
    presentation::Graphs graphs{uc};
    TestResults results{uc};
};

TEST_F(TestResultsTest, TheSecondSeriesToReachItsLastSampleDrawsTheStepInEitherOrder) {
    for (const bool timesFirst : {true, false}) {
        SCOPED_TRACE(timesFirst ? "times first" : "travels first");
        uc.tools().StepTestFlag = false;
        uc.tools().CurrentAutoAction = 4;
        uc.tools().StepEndPoint = 50.0F;
        uc.form().control("lblHAStepTest", 3).setCaption("old");
        step(timesFirst);
        EXPECT_EQ(uc.tools().CurrentAutoAction, 0);
        EXPECT_EQ(uc.form().control("lblHAStepTest", 3).caption(), "2.0");
        EXPECT_FLOAT_EQ(results.arrStepTest[0][0], 0.1F);  // time 0 drawn at 0.1
        EXPECT_FLOAT_EQ(results.arrStepTest[49][1], 50.0F);
        const form::ChartModel& chart = uc.form().control("pesgoStepTest").chart();
        EXPECT_DOUBLE_EQ(chart.y(0, 49), 50.0);
        EXPECT_FLOAT_EQ(static_cast<float>(chart.x(0, 10)), 2.0F);
    }
    form::ToolbarModel& toolbar = uc.form().control("smuiDTM", 1).toolbar();
    EXPECT_TRUE(toolbar.item("uploadCurrent").enabled);
    EXPECT_TRUE(toolbar.item("send").enabled);
}

TEST_F(TestResultsTest, TheLastSampleOfOneSeriesOnlySetsTheFlag) {
    uc.tools().StepTestFlag = false;
    add("stepTestTime49", "9.8");
    EXPECT_TRUE(uc.tools().StepTestFlag);
    EXPECT_EQ(uc.tools().CurrentAutoAction, 4);  // the chart waits
}

TEST_F(TestResultsTest, AStepThatDidNotMoveKeepsTheOldFigures) {
    uc.tools().StepEndPoint = 50.0F;
    uc.form().control("lblHAStepTest", 3).setCaption("1.2");
    step(true, "40.0");
    EXPECT_EQ(uc.tools().CurrentAutoAction, 0);
    EXPECT_EQ(uc.form().control("lblHAStepTest", 3).caption(), "1.2");
}

TEST_F(TestResultsTest, BadItemsFail) {
    EXPECT_THROW(add("stepTestTime50", "1"), std::out_of_range);
    EXPECT_THROW(add("stepTestTime", "1"), std::invalid_argument);
    EXPECT_THROW(add("stepTestTimeX1", "1"), std::invalid_argument);
    EXPECT_THROW(add("stepTestTime01", "abc"), std::invalid_argument);
    EXPECT_THROW(add("stepTestTime01", ""), std::invalid_argument);
}

TEST_F(TestResultsTest, AHysteresisSampleOfZeroIsDrawnAndKeptAtATenth) {
    uc.tools().HysteresisTestFlag = true;  // the set points came first
    ReplyItem item("hysteresisTestTravel49", "0");
    results.AddHysteresisTestValuePair(item.node());
    EXPECT_FLOAT_EQ(results.arrHysteresisTest[49][1], 0.1F);
    EXPECT_EQ(uc.tools().CurrentAutoAction, 0);
}

}  // namespace
}  // namespace kt500::performance

namespace kt500::performance {
namespace {

struct PressureTestsTest : ::testing::Test {
    PressureTestsTest() {
        uc.tools().Language = "9999";
        uc.tools().OnlineConf = true;
        uc.tools().CurrentAutoAction = 4;
        graphs.PlaceAllCharts();
    }
    // The valve test's curve from a data set: positions 0, 2, 4, ..., the
    // pressures 1.00, 1.01, ... with the given samples missing (0).
    void valveCurve(std::initializer_list<int> missing) {
        for (int i = 0; i < 50; ++i) {
            char number[3];
            std::snprintf(number, sizeof number, "%02d", i);
            const bool gap = std::find(missing.begin(), missing.end(), i) != missing.end();
            ReplyItem position(std::string("valveTestPos") + number, std::to_string(2 * i), true);
            ReplyItem pressure(std::string("valveTestVal") + number,
                               gap ? "0" : std::to_string(1.0 + 0.01 * i), true);
            results.AddValveTestValuePair(position.node(), true);
            results.AddValveTestValuePair(pressure.node(), true);
        }
    }

    TestUserControl uc{testing::SessionOf("PL500_2", true)};
    presentation::Graphs graphs{uc};
    TestResults results{uc};
};

TEST_F(PressureTestsTest, ADataSetsCurveIsClosedAndDrawnWithItsLimitsAndLine) {
    valveCurve({0, 1, 2, 30});
    ASSERT_EQ(std::count(uc.calls.begin(), uc.calls.end(), "UpdateValveTestGraph"), 1);
    results.UpdateValveTestGraph(results.arrValveTest);
    EXPECT_EQ(uc.tools().CurrentAutoAction, 0);
    // The first three take the first recorded sample; sample 30 repeats 29.
    EXPECT_FLOAT_EQ(results.arrValveTest[0][1], results.arrValveTest[3][1]);
    EXPECT_FLOAT_EQ(results.arrValveTest[0][0], 6.0F);
    EXPECT_FLOAT_EQ(results.arrValveTest[30][1], results.arrValveTest[29][1]);
    EXPECT_FLOAT_EQ(results.arrValveTest[30][0], 58.0F);
    const form::ChartModel& chart = uc.form().control("pesgoValveTest").chart();
    EXPECT_NEAR(chart.y(0, 10), 1.10, 1e-6);
    EXPECT_DOUBLE_EQ(chart.y(1, 0), chart.y(1, 49));  // a level line
    EXPECT_DOUBLE_EQ(chart.option("VertLineAnnotation", -1),
                     chart.option("ManualMaxX", 100.0));
}

TEST_F(PressureTestsTest, PressuresArriveInTheUnitThePageShows) {
    uc.addField(form::ControlKind::Label, "lblPLParamTitle", 990, "fraPL500", 14,
                "PLactuatorPressureUnit")
        .setCaption("psiG");
    ASSERT_EQ(uc.FetchUnitName("actuatorPressure"), "psiG");
    valveCurve({});
    const float expected = std::stof(uc.ConvertUnit("1.1", "barG", "psiG"));
    EXPECT_NEAR(results.arrValveTest[10][1], expected, 1e-3);
    EXPECT_GT(results.arrValveTest[10][1], 10.0F);
}

TEST_F(PressureTestsTest, AScalarGoesToItsPageAndABadItemIsShownUnderTheMembersName) {
    ReplyItem loadFactor("valveTestLoadFactorKeyFigure", "57.3");
    results.AddValveTestValuePair(loadFactor.node(), false);
    EXPECT_EQ(uc.form().control("lblPLParams", 26).caption(), "57.3");
    ReplyItem bad("pneumaticsTestVal50", "1.0");
    results.AddPneumaticsTestValuePair(bad.node(), false);
    ASSERT_FALSE(uc.messages.empty());
    EXPECT_EQ(uc.messages.back().rfind("AddPneumaticsTestValuePair", 0), 0u);
}

}  // namespace
}  // namespace kt500::performance
