#include "simulator/ValveModel.h"
#include "simulator/ValveTests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace kt500::simulator {
namespace {

using Parameters = ValveModel::Parameters;

// The step's samples; that they cross 2, 63 and 98 % of the step where a lag
// behind a dead time does is checked with the key figures of the step test.
TEST(ValveStep, SamplesSpanTheTestTimeAndTheWholeChange) {
    struct Case {
        double deadBand, start, change, testTime;
    };
    for (const Case c : {Case{0.2, 45.0, 10.0, 20.0}, Case{1.0, 10.0, 80.0, 40.0},
                         Case{0.5, 70.0, -30.0, 25.0}, Case{2.0, 90.0, -5.0, 5.0}}) {
        SCOPED_TRACE(c.change);
        ValveModel model(Parameters{.deadTime = 0.6, .timeConstant = 0.5, .deadBand = c.deadBand});
        const auto result = runStepTest(model, StepTestSettings{c.start, c.change, c.testTime, 50});
        ASSERT_EQ(result.samples.size(), 50u);
        EXPECT_DOUBLE_EQ(result.samplePeriod, c.testTime / 50);
        // The travel moves by the set point change, whatever the dead band.
        EXPECT_NEAR(result.samples.back().travel - result.samples.front().travel, c.change, 1e-3);
    }
}

// Travel at the given set point on the branch between two samples where the
// set point crosses it in the given direction, linear between the samples.
double travelAtSetpoint(const HysteresisTestResult& result, double setpoint, bool rising) {
    for (std::size_t k = 0; k + 1 < result.samples.size(); ++k) {
        const auto& a = result.samples[k];
        const auto& b = result.samples[k + 1];
        const bool crosses = rising ? (a.setpoint <= setpoint && b.setpoint > setpoint)
                                    : (a.setpoint >= setpoint && b.setpoint < setpoint);
        if (crosses) {
            const double f = (setpoint - a.setpoint) / (b.setpoint - a.setpoint);
            return a.travel + f * (b.travel - a.travel);
        }
    }
    ADD_FAILURE() << "the set point never crosses " << setpoint;
    return 0.0;
}

// On a ramp of slope s the travel trails by half the dead band plus
// s (Td + T); with that lag taken off, the loop is the dead band wide.
TEST(ValveHysteresis, LoopWidthIsTheDeadBand) {
    for (const double deadBand : {0.0, 0.5, 1.0, 2.5}) {
        ValveModel model(Parameters{.deadTime = 0.5, .timeConstant = 1.5, .deadBand = deadBand});
        const HysteresisTestSettings settings{50.0, 10.0, 2000.0, 50};
        const auto result = runHysteresisTest(model, settings);
        ASSERT_EQ(result.samples.size(), 50u);
        // One sine period from the start value, rising first.
        EXPECT_DOUBLE_EQ(result.samples[0].setpoint, 50.0);
        const auto [lo, hi] = std::minmax_element(
            result.samples.begin(), result.samples.end(),
            [](const auto& a, const auto& b) { return a.setpoint < b.setpoint; });
        EXPECT_NEAR(hi->setpoint - lo->setpoint, 20.0, 0.1);
        EXPECT_LT(hi, lo);
        const double level = 55.0;  // sine at 30 degrees: slope cos(30 deg) of the peak slope
        const double slope =
            settings.setpointChange * 2.0 * M_PI / settings.testTime * std::cos(M_PI / 6.0);
        const double lagWidth = 2.0 * slope * (0.5 + 1.5);
        const double width =
            travelAtSetpoint(result, level, false) - travelAtSetpoint(result, level, true);
        EXPECT_NEAR(width - lagWidth, deadBand, 0.005) << "dead band " << deadBand;
    }
}

// Breakaway at spring preload plus friction; a supply below spring end plus
// friction never reaches full stroke.
TEST(ValveBreakaway, ValveTestFindsSpringPreloadPlusFriction) {
    struct Case {
        double low, high, friction, supply;
    };
    for (const Case c : {Case{1.0, 3.0, 0.15, 4.5}, Case{0.4, 1.2, 0.0, 6.0},
                         Case{2.0, 4.0, 0.8, 5.5}, Case{1.0, 3.0, 0.2, 2.2}}) {
        SCOPED_TRACE(c.supply);
        ValveModel model(Parameters{.friction = c.friction,
                                    .springRangeLow = c.low,
                                    .springRangeHigh = c.high,
                                    .supplyPressure = c.supply});
        const auto result = runValveTest(model, ValveTestSettings{});
        // The ramp walks in steps of supply / 20000: the figures are that exact.
        const double resolution = c.supply / 20000.0 + 1e-9;
        const double fullStroke = std::min(c.high + c.friction, c.supply);
        EXPECT_NEAR(result.breakawayPressure, c.low + c.friction, resolution);
        EXPECT_NEAR(result.fullStrokePressure, fullStroke, resolution);
        EXPECT_NEAR(result.loadFactor, fullStroke / c.supply * 100.0, 0.01);
        const double reach = (c.supply - c.friction - c.low) / (c.high - c.low) * 100.0;
        if (reach >= 100.0) {  // friction is read at mid travel, on the way up and down
            EXPECT_NEAR(result.friction, c.friction, resolution);
        }
        ASSERT_EQ(result.samples.size(), 50u);
        for (std::size_t k = 0; k < result.samples.size(); ++k) {
            const auto& s = result.samples[k];
            EXPECT_GT(s.pressure, 0.0);  // 0 would read as a missing sample
            EXPECT_LE(s.position, reach + 1e-9);
            if (k < 25 && s.pressure < c.low + c.friction) {
                EXPECT_EQ(s.position, 0.0) << "below the breakaway pressure on the way up";
            }
        }
    }
}

TEST(ValvePneumatics, BuildUpAndLeakageAgreeWithSupplyPressure) {
    // Leakage 0.3 bar per minute at supply pressure.
    Parameters p{.supplyPressure = 5.0, .fillTimeConstant = 0.8, .leakage = 0.3};
    ValveModel model(p);
    const PneumaticsTestSettings settings{10.0, 60.0, 50};
    const auto result = runPneumaticsTest(model, settings);
    // Filling from the supply through a fixed restriction: 90 % after ln 10 time constants.
    EXPECT_NEAR(result.buildUpTime, 0.8 * std::log(10.0), 0.01);
    EXPECT_LE(result.filledPressure, 5.0);
    EXPECT_GT(result.filledPressure, 5.0 * (1.0 - 1e-5));
    // Leakage falls with the pressure; over a minute from full it loses just
    // under the leakage figure.
    EXPECT_GT(result.leakageRate, 0.28);
    EXPECT_LT(result.leakageRate, 0.3);
    ASSERT_EQ(result.samples.size(), 50u);
    EXPECT_DOUBLE_EQ(result.samples.back().pressure, model.actuatorPressure());
    EXPECT_EQ(result.samples[4].position, 100.0);  // 7 s into the 10 s fill
    // Each sample keeps its time: equal spans over fill and hold.
    EXPECT_DOUBLE_EQ(result.samples[4].time, 7.0);
    EXPECT_DOUBLE_EQ(result.samples.back().time, 70.0);

    p.leakage = 0.0;  // a tight actuator holds its pressure
    ValveModel tight(p);
    const auto held = runPneumaticsTest(tight, settings);
    EXPECT_DOUBLE_EQ(held.leakageRate, 0.0);
    EXPECT_DOUBLE_EQ(held.samples.back().pressure, held.filledPressure);
}

// Many set point changes, pressures and parameter sets, and a supply too low
// for the spring: the travel never leaves 0..100 % nor the pressure 0..supply.
TEST(ValveBounds, TravelAndPressureStayInRange) {
    std::uint32_t state = 12345u;
    const auto next = [&state] {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) / double(1u << 24);
    };
    for (const double supply : {1.5, 2.5, 4.5, 7.0}) {
        ValveModel model(Parameters{.deadBand = 0.8, .friction = 0.4, .supplyPressure = supply});
        for (int i = 0; i < 400; ++i) {
            const double r = next();
            if (i % 7 == 0) {
                model.holdActuatorPressure(-2.0 + 12.0 * next());
            } else if (i % 11 == 0) {
                model.fillActuator();
            } else if (i % 13 == 0) {
                model.isolateActuator();
            } else {
                model.setInputCurrent(2.0 + 20.0 * r);
            }
            model.advance(3.0 * next());
            ASSERT_TRUE(model.travel() >= 0.0 && model.travel() <= 100.0) << model.travel();
            ASSERT_TRUE(model.actuatorPressure() >= 0.0 && model.actuatorPressure() <= supply)
                << model.actuatorPressure();
            ASSERT_TRUE(model.inputCurrent() >= 4.0 && model.inputCurrent() <= 20.0)
                << model.inputCurrent();
        }
        for (const auto& s : runValveTest(model, ValveTestSettings{}).samples) {
            EXPECT_LE(s.pressure, supply);
            EXPECT_LE(s.position, 100.0);
        }
    }
}

// The values a monitoring reply shows: after a new set point the travel
// closes in on it without ever moving away, and the pressure rises with it.
TEST(ValveMonitoring, ValuesMoveTowardsANewSetpoint) {
    ValveModel model(Parameters{.deadTime = 0.4, .timeConstant = 1.0, .deadBand = 0.2});
    model.setInputCurrent(8.0);  // 25 %
    EXPECT_DOUBLE_EQ(model.setpoint(), 25.0);
    model.advance(20.0);
    const double pressureBefore = model.actuatorPressure();
    model.setSetpoint(75.0);
    double gap = std::abs(model.setpoint() - model.travel());
    for (int i = 0; i < 150; ++i) {
        model.advance(0.1);
        const double now = std::abs(model.setpoint() - model.travel());
        ASSERT_LE(now, gap + 1e-12);
        gap = now;
    }
    EXPECT_LE(gap, 0.1 + 1e-3);  // half the dead band, after 14 time constants
    EXPECT_GT(model.actuatorPressure(), pressureBefore);
    // The end positions are reached exactly, dead band or not.
    for (const double end : {100.0, 0.0}) {
        model.setSetpoint(end);
        model.advance(30.0);
        EXPECT_NEAR(model.travel(), end, 1e-9);
    }
}

TEST(ValveParameters, ParametersAndSettingsThatMakeNoValveOrNoTestAreRefused) {
    using Change = void (*)(Parameters&);
    for (const Change change : std::initializer_list<Change>{
             [](auto& p) { p.timeConstant = 0.0; }, [](auto& p) { p.deadTime = -0.1; },
             [](auto& p) { p.springRangeHigh = p.springRangeLow; },
             [](auto& p) { p.friction = p.springRangeLow; },  // spring could not close it
             [](auto& p) { p.supplyPressure = NAN; }}) {
        Parameters p;
        change(p);
        EXPECT_THROW(ValveModel{p}, std::invalid_argument);
    }
    ValveModel model;
    EXPECT_THROW(model.advance(-1.0), std::invalid_argument);
    EXPECT_THROW(model.setSetpoint(NAN), std::invalid_argument);
    for (const StepTestSettings& bad :
         {StepTestSettings{45, 10, 0.0, 50}, StepTestSettings{45, 10, 10.0, 1},
          StepTestSettings{NAN, 10, 10.0, 50}}) {
        EXPECT_THROW((void)runStepTest(model, bad), std::invalid_argument);
    }
}

}  // namespace
}  // namespace kt500::simulator
