// The trends: samples into the arrays, completion by two halves, the
// running time axis of each family, and what reaches the charts.
#include "monitoring/Trends.h"

#include "devices/DeviceClass.h"
#include "presentation/Graphs.h"
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
    return "<item name=\"" + name + "\" unit=\"%\"><floatVal>" + text + "</floatVal></item>";
}
std::string series(const std::string& prefix, const std::vector<std::string>& values) {
    std::string body;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string number = (i < 10 ? "0" : "") + std::to_string(i);
        body += item(prefix + number, values[i]);
    }
    return body;
}
std::vector<std::string> repeat(const std::string& value, int count = 20) {
    return std::vector<std::string>(static_cast<std::size_t>(count), value);
}
std::vector<std::string> rising(int count = 20) {
    std::vector<std::string> values;
    for (int i = 0; i < count; ++i) {
        values.push_back(std::to_string(40 + i));
    }
    return values;
}

// A session of a device key with the trend charts built.
struct TrendsTest : ::testing::Test {
    void open(const std::string& key) {
        uc = std::make_unique<TestUserControl>(testing::SessionOf(key));
        graphs = std::make_unique<presentation::Graphs>(*uc);
        // The five trend charts as the chart layer builds them.
        using presentation::ChartBuilder;
        for (const ChartBuilder builder :
             {ChartBuilder::TravelDeviation, ChartBuilder::BreakawayPressure,
              ChartBuilder::LeakageSignal, ChartBuilder::TravelVsTime, ChartBuilder::LoadFactor}) {
            const presentation::ChartSetup& setup = presentation::SetupOf(builder);
            form::Control& made = graphs->CreatePegoChart(std::string(setup.name), nullptr);
            graphs->BuildChart(made, builder, setup.points);
        }
    }
    using Add = void (Trends::*)(xml::Node, bool);
    void feed(Add add, const std::string& body, bool blInit = false) {
        const Items items(body);
        for (const xml::Node& node : items.all()) {
            (uc->trends.*add)(node, blInit);
        }
    }
    form::ChartModel& chart(std::string_view name) { return uc->form().control(name).chart(); }
    // The value of a field by its tag on the family's pages.
    void setField(const std::string& tag, const std::string& text) {
        for (form::Control* control : uc->form().controls()) {
            if (control->tag() == tag && control->kind() == form::ControlKind::TextBox) {
                control->setText(text);
            }
        }
    }
    void selectActuatorType(int intItemData) {
        uc->values.FillMappedParams();
        for (form::Control* control : uc->form().controls()) {
            if (control->tag() == "actuatorType" && control->kind() == form::ControlKind::ComboBox) {
                for (int i = 0; i < control->listCount(); ++i) {
                    if (control->itemData(i) == intItemData) {
                        control->setListIndex(i);
                    }
                }
            }
        }
    }

    std::unique_ptr<TestUserControl> uc;
    std::unique_ptr<presentation::Graphs> graphs;
};

// Values first, then time steps, are in the scenario trend_charts_kt520.
TEST_F(TrendsTest, LoadFactorDrawsWhenTheTimeStepsComeFirst) {
    open("KT520_7");
    selectActuatorType(1);
    feed(&Trends::AddLoadFactorValuePair, series("loadFactorTime", repeat("12")));
    EXPECT_EQ(chart(kLoadFactorChart).y(0, 0), 0.0);
    feed(&Trends::AddLoadFactorValuePair, series("loadFactorVal", repeat("70")));
    EXPECT_EQ(chart(kLoadFactorChart).y(0, 0), 70.0);
    EXPECT_EQ(chart(kLoadFactorChart).pointLabel(0), "-240");
}

TEST_F(TrendsTest, LoadFactorBelowRevisionTwoFillsTheTimeButNeverDraws) {
    open("KT520_7");
    uc->tools().DeviceRevision = "1";
    feed(&Trends::AddLoadFactorValuePair,
         series("loadFactorVal", rising()) + series("loadFactorTime", repeat("1.5")));
    EXPECT_EQ(chart(kLoadFactorChart).y(0, 3), 0.0);
    EXPECT_EQ(uc->deviceClass().trendTime("LoadFactorTime"), "30.0");
    EXPECT_EQ(uc->trends.arrLoadFactor.at(1, 0), -30.0F);
}

TEST_F(TrendsTest, LoadFactorByActuatorTypeAndSupplyPressure) {
    open("KT520_7");
    const std::string reading =
        series("loadFactorVal", repeat("3")) + series("loadFactorTime", repeat("1"));
    // Actuator type 0: never drawn.
    selectActuatorType(0);
    feed(&Trends::AddLoadFactorValuePair, reading);
    EXPECT_EQ(chart(kLoadFactorChart).y(0, 0), 0.0);

    // Type 2: the value over the supply pressure in percent; a supply
    // pressure of 0 or none leaves the chart as it is.
    selectActuatorType(2);
    for (const char* pressure : {"0", ""}) {
        setField("supplyPressure", pressure);
        uc->tools().LoadFactorFlag = false;
        feed(&Trends::AddLoadFactorValuePair, reading);
        EXPECT_EQ(chart(kLoadFactorChart).y(0, 0), 0.0) << '"' << pressure << '"';
    }
    setField("supplyPressure", "6");
    uc->tools().LoadFactorFlag = false;
    feed(&Trends::AddLoadFactorValuePair, reading);
    EXPECT_EQ(chart(kLoadFactorChart).y(0, 0), 50.0);
    EXPECT_EQ(chart(kLoadFactorChart).pointLabel(19), "-1");

    // The update command works the stored trend over with the page's pressure.
    setField("supplyPressure", "4");
    uc->trends.cmdHALoadFactorUpdate_Click();
    EXPECT_EQ(chart(kLoadFactorChart).y(0, 0), 75.0);
    EXPECT_EQ(uc->form().control("txtLoadFactor", 0).foreColor(), devices::ColorRefused);
}

// The shares of a reading are in the scenario trend_charts_kt520.
TEST_F(TrendsTest, TravelVsTimeWithAllTimeStepsZeroIsFlat) {
    open("KT520_7");
    form::ChartModel& drawn = chart(kTravelVsTimeChart);
    feed(&Trends::AddTravelVsTimeValuePair, series("travelVal", {"10", "30", "60", "0", "0", "0", "0", "0", "0", "0"}));
    ASSERT_EQ(drawn.option("ManualMaxY"), 60.0);
    feed(&Trends::AddTravelVsTimeValuePair, series("travelVal", repeat("0", 10)));
    for (int point = 0; point < 10; ++point) {
        EXPECT_EQ(drawn.y(0, point), 0.0);
    }
    EXPECT_EQ(drawn.option("ManualMaxY"), 0.0);
}

TEST_F(TrendsTest, BadItemsFailAloneUnderTheMembersName) {
    open("KT520_7");
    feed(&Trends::AddLoadFactorValuePair,
         item("loadFactorVal22", "5") + item("loadFactorVal03", "abc") +
             item("loadFactorVal04", "7") + item("loadFactorTime", "1") +
             item("loadFactorVal21", "9"));
    ASSERT_EQ(uc->messages.size(), 3U);
    for (const std::string& message : uc->messages) {
        EXPECT_EQ(message.rfind("AddLoadFactorValuePair: ", 0), 0U) << message;
    }
    EXPECT_EQ(uc->trends.arrLoadFactor.at(0, 4), 7.0F);
    EXPECT_EQ(uc->trends.arrLoadFactor.at(0, 21), 9.0F) << "22 entries, 20 in use";
    uc->messages.clear();
    feed(&Trends::AddTravelVsTimeValuePair, item("travelVal10", "5"));
    EXPECT_EQ(uc->messages.size(), 1U);
}

TEST_F(TrendsTest, LeakageIsScaledFromTheDocumentAlwaysAndFromTheDeviceOnRevisionOne) {
    open("PL500_2");
    const auto first = [&](bool blInit) {
        uc->tools().DeviationFlag = false;
        if (blInit) {
            Items items("<p name=\"leakageSignalVal00\" value=\"2\"/>");
            uc->trends.AddLeakageSignalValuePair(items.document.root().firstChildElement(), true);
        } else {
            feed(&Trends::AddLeakageSignalValuePair, item("leakageSignalVal00", "2"));
        }
        return uc->trends.arrLeakageSignal.at(0, 0);
    };
    EXPECT_FLOAT_EQ(first(true), 60.64F);
    EXPECT_FLOAT_EQ(first(false), 2.0F);
    uc->tools().DeviceRevision = "1";
    EXPECT_FLOAT_EQ(first(false), 60.64F);
    // The time steps are never scaled.
    feed(&Trends::AddLeakageSignalValuePair, item("leakageSignalTime00", "2"));
    EXPECT_FLOAT_EQ(uc->trends.arrLeakageSignal.at(1, 0), 2.0F);
}

TEST_F(TrendsTest, SafetyValveTrendsWaitForAWholeRowAfterEachDrawing) {
    open("PL500_2");
    feed(&Trends::AddBreakawayPressureValuePair,
         item("breakawayPressureLimitHigh", "4.5") + item("breakawayPressureLimitLow", "1.5") +
             series("breakawayPressureVal", repeat("2")) +
             series("breakawayPressureTime", repeat("1")));
    form::ChartModel& drawn = chart(kBreakawayPressureChart);
    EXPECT_EQ(drawn.y(0, 0), 2.0);
    EXPECT_EQ(drawn.y(1, 0), 4.5);
    EXPECT_EQ(drawn.y(2, 0), 1.5);
    EXPECT_EQ(uc->trends.arrBreakawayPressure.at(0, 0), -1.0F) << "refilled";
    EXPECT_FALSE(uc->tools().DeviationFlag);

    // A second reading with a value missing is not drawn.
    std::vector<std::string> partial = repeat("3", 19);
    feed(&Trends::AddBreakawayPressureValuePair,
         series("breakawayPressureTime", repeat("1")) + item("breakawayPressureVal19", "3"));
    EXPECT_EQ(drawn.y(0, 0), 2.0);
    // The two trends share their flag: it stays set for the next run.
    EXPECT_TRUE(uc->tools().DeviationFlag);
}

}  // namespace
}  // namespace kt500::monitoring
