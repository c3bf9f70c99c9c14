#include "performance/StepKeyFigures.h"

#include "simulator/ValveModel.h"
#include "simulator/ValveTests.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace kt500::performance {
namespace {

using devices::TestCurve;

// A recorded step as the device reports it: 32-bit floats.
TestCurve CurveOf(const simulator::StepTestResult& result) {
    TestCurve curve{};
    for (std::size_t i = 0; i < curve.size(); ++i) {
        curve[i] = {static_cast<float>(result.samples[i].time),
                    static_cast<float>(result.samples[i].travel)};
    }
    return curve;
}

std::optional<StepKeyFigures> FiguresOf(const TestCurve& curve, float setpoint) {
    return ComputeStepKeyFigures(curve, curve[0][1], setpoint, curve[49][1], 50.0F);
}

// A curve sampled every 0.2 s: the travel at start until sample `moveAt`,
// then at end.
TestCurve Jump(float start, float end, int moveAt) {
    TestCurve curve{};
    for (int i = 0; i < 50; ++i) {
        curve[static_cast<std::size_t>(i)] = {0.2F * static_cast<float>(i),
                                              i < moveAt ? start : end};
    }
    return curve;
}

// A lag T behind a dead time Td crosses the fraction f of its step at
// Td + T ln(1 / (1 - f)); the figures lie within one sample period after it.
TEST(StepKeyFigures, MatchTheValveModelsDeadTimeAndTimeConstant) {
    struct Case {
        double deadTime, timeConstant, deadBand, start, change, testTime;
    };
    for (const Case c :
         {Case{0.6, 1.5, 0.2, 45.0, 10.0, 20.0}, Case{0.0, 0.5, 0.0, 20.0, 50.0, 8.0},
          Case{2.0, 3.0, 1.0, 10.0, 80.0, 40.0}, Case{1.0, 2.0, 0.5, 70.0, -30.0, 25.0},
          Case{0.3, 0.4, 2.0, 90.0, -5.0, 5.0}, Case{1.0, 0.3, 0.4, 30.0, 20.0, 5.0}}) {
        SCOPED_TRACE(::testing::Message() << "dead time " << c.deadTime << ", time constant "
                                          << c.timeConstant << ", step " << c.change);
        simulator::ValveModel model(simulator::ValveModel::Parameters{
            .deadTime = c.deadTime, .timeConstant = c.timeConstant, .deadBand = c.deadBand});
        const auto result = simulator::runStepTest(
            model, simulator::StepTestSettings{c.start, c.change, c.testTime, 50});
        const auto figures =
            FiguresOf(CurveOf(result), static_cast<float>(c.start + c.change));
        ASSERT_TRUE(figures.has_value());
        const double period = result.samplePeriod;
        const auto crossing = [&](double fraction) {
            return c.deadTime + c.timeConstant * std::log(1.0 / (1.0 - fraction));
        };
        const std::pair<float, double> checks[] = {{figures->deadTime, crossing(0.02)},
                                                   {figures->settling63, crossing(0.63)},
                                                   {figures->settling98, crossing(0.98)}};
        for (const auto& [figure, truth] : checks) {
            EXPECT_GE(figure, truth - 1e-4);
            EXPECT_LE(figure, truth + period + 1e-4);
        }
    }
}

TEST(StepKeyFigures, AStepThatDidNotMoveEnoughHasNone) {
    // The end equal to the start.
    EXPECT_FALSE(FiguresOf(Jump(45.0F, 45.0F, 5), 55.0F).has_value());
    // A step of 10 that moved 1.9 reached less than a fifth; 2.0 is enough.
    EXPECT_FALSE(FiguresOf(Jump(45.0F, 46.9F, 5), 55.0F).has_value());
    EXPECT_TRUE(FiguresOf(Jump(45.0F, 47.0F, 5), 55.0F).has_value());
    // Smaller than 0.01, whatever was asked.
    EXPECT_FALSE(FiguresOf(Jump(45.0F, 45.005F, 5), 45.006F).has_value());
    // A dead time of 0: the travel had moved at the first sample.
    TestCurve early = Jump(45.0F, 55.0F, 1);
    early[1][0] = 0.0F;
    EXPECT_FALSE(FiguresOf(early, 55.0F).has_value());
}

TEST(StepKeyFigures, RisingAndFallingStepsReadTheFirstSampleBeyondEachLevel) {
    // A travel that moves by 2, 5, 8 and 10 of a step of 10 at samples 5 to 8.
    TestCurve rising = Jump(40.0F, 50.0F, 8);
    TestCurve falling = Jump(60.0F, 50.0F, 8);
    const float moves[] = {2.0F, 5.0F, 8.0F};
    for (int k = 0; k < 3; ++k) {
        rising[static_cast<std::size_t>(5 + k)][1] = 40.0F + moves[k];
        falling[static_cast<std::size_t>(5 + k)][1] = 60.0F - moves[k];
    }
    for (const auto& [curve, setpoint] :
         {std::pair{rising, 50.0F}, std::pair{falling, 50.0F}}) {
        const auto figures = FiguresOf(curve, setpoint);
        ASSERT_TRUE(figures.has_value());
        EXPECT_FLOAT_EQ(figures->deadTime, 1.0F);    // sample 5, past 2 %
        EXPECT_FLOAT_EQ(figures->settling63, 1.4F);  // sample 7, past 63 %
        EXPECT_FLOAT_EQ(figures->settling98, 1.6F);  // sample 8, inside 2 % of the end
    }
}

// A rising step ignores a blip that falls back; a falling step takes the
// first sample beyond the band whatever follows.
TEST(StepKeyFigures, ABlipBeyondTheBandCountsOnlyOnAFallingStep) {
    for (const auto& [start, end, blip, samples, deadTime] :
         {std::tuple{40.0F, 50.0F, 41.0F, 3, 4.0F}, {60.0F, 50.0F, 59.0F, 1, 1.0F}}) {
        TestCurve curve = Jump(start, end, 20);
        for (int i = 5; i < 5 + samples; ++i) {
            curve[static_cast<std::size_t>(i)][1] = blip;
        }
        const auto figures = FiguresOf(curve, 50.0F);
        ASSERT_TRUE(figures.has_value());
        EXPECT_FLOAT_EQ(figures->deadTime, deadTime) << start;
    }
}

TEST(StepKeyFigures, ATravelThatNeverSettlesReadsTheLastSample) {
    TestCurve curve = Jump(40.0F, 50.0F, 49);
    const auto figures = FiguresOf(curve, 50.0F);
    ASSERT_TRUE(figures.has_value());
    EXPECT_FLOAT_EQ(figures->deadTime, 9.8F);
    EXPECT_FLOAT_EQ(figures->settling63, 9.8F);
    EXPECT_FLOAT_EQ(figures->settling98, 9.8F);
}

}  // namespace
}  // namespace kt500::performance
