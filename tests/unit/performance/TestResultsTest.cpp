#include "performance/TestResults.h"

#include "presentation/Graphs.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace kt500::performance {
namespace {

using testing::TestUserControl;

// One reply item as the BL sends it: <item name="..."><floatVal>text</floatVal></item>.
struct ReplyItem {
    explicit ReplyItem(const std::string& name, const std::string& text) {
        document = std::move(xml::Document::parse("<item name='" + name + "'><floatVal>" +
                                                  text + "</floatVal></item>")
                                 .document);
    }
    xml::Node node() { return document->root(); }
    std::optional<xml::Document> document;
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
    // The two series of a step from 40 to 50 at sample 10, sample 49 of the
    // time series first or last.
    void step(bool timesFirst) {
        const auto series = [this](bool times, bool last) {
            for (int i = last ? 49 : 0; i < (last ? 50 : 49); ++i) {
                char number[3];
                std::snprintf(number, sizeof number, "%02d", i);
                if (times) {
                    add(std::string("stepTestTime") + number, std::to_string(0.2 * i));
                } else {
                    add(std::string("stepTestTravel") + number, i < 10 ? "40.0" : "50.0");
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

TEST_F(TestResultsTest, AnEndEqualToTheStartKeepsTheOldFigures) {
    uc.tools().StepEndPoint = 50.0F;
    uc.form().control("lblHAStepTest", 3).setCaption("1.2");
    for (int i = 0; i < 50; ++i) {
        char number[3];
        std::snprintf(number, sizeof number, "%02d", i);
        add(std::string("stepTestTime") + number, std::to_string(0.2 * i));
        add(std::string("stepTestTravel") + number, "45");
    }
    EXPECT_EQ(uc.tools().CurrentAutoAction, 0);
    EXPECT_EQ(uc.form().control("lblHAStepTest", 3).caption(), "1.2");
}

TEST_F(TestResultsTest, BadItemsFail) {
    // A sample past the last one, a name without a sample, a text that is no number.
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
