// The performance tests the simulated devices run on their valve model.
// Each procedure drives the model through its public calls and records what
// a device would record; it computes no key figures that the control
// computes itself (dead time, T63, T98 of a step come from the samples).
// Every procedure leaves the model where the test ended.
#pragma once

#include "simulator/ValveModel.h"

#include <vector>

namespace kt500::simulator {

// Step test: the valve settles at the start set point (approached from the
// side away from the step, so the step meets no backlash), then the set
// point jumps to start + change at time 0 and travel is sampled.
struct StepTestSettings {
    double startSetpoint = 45.0;   // %
    double setpointChange = 10.0;  // %, may be negative
    double testTime = 10.0;        // s, sampleCount samples, one each testTime / sampleCount
    int sampleCount = 50;
};
struct StepSample {
    double time;      // s since the step
    double setpoint;  // %
    double travel;    // %
};
struct StepTestResult {
    double samplePeriod = 0.0;  // s
    std::vector<StepSample> samples;
};

// Hysteresis test: from rest at the start set point the set point goes up
// by the change, down to start - change and back, as one sine period over
// the test time; set point and travel are sampled.
struct HysteresisTestSettings {
    double startSetpoint = 50.0;   // %
    double setpointChange = 10.0;  // %, amplitude
    double testTime = 50.0;        // s, one full period
    int sampleCount = 50;
};
struct HysteresisSample {
    double setpoint;  // %
    double travel;    // %
};
struct HysteresisTestResult {
    std::vector<HysteresisSample> samples;
};

// Valve test: positioner out of the loop, the actuator pressure is ramped
// from vented to the supply pressure and back; the travel shows when the
// valve breaks away and how much pressure friction takes.
struct ValveTestSettings {
    double rampTime = 60.0;  // s, up and down together
    int sampleCount = 50;    // half on the way up, half on the way down
};
struct ValveSample {
    double position;  // %
    double pressure;  // bar
};
struct ValveTestResult {
    double breakawayPressure = 0.0;   // bar at which the vented valve starts to move
    double friction = 0.0;            // bar, half the pressure difference up and down at mid travel
    double fullStrokePressure = 0.0;  // bar at which the valve reached 100 % (supply if never)
    double loadFactor = 0.0;          // %, full stroke pressure of the supply pressure
    std::vector<ValveSample> samples;
};

// Pneumatics test: the vented actuator is filled from the supply, then
// closed off; build-up and leakage are measured.
struct PneumaticsTestSettings {
    double fillTime = 10.0;  // s with the output open to the supply
    double holdTime = 60.0;  // s with the output closed
    int sampleCount = 50;    // spread evenly over fill and hold
};
struct PneumaticsSample {
    double position;  // %
    double pressure;  // bar
    double time;      // s since the fill began
};
struct PneumaticsTestResult {
    double buildUpTime = 0.0;     // s from vented to 90 % of the supply pressure
    double filledPressure = 0.0;  // bar at the end of the fill
    double leakageRate = 0.0;     // bar per minute during the hold
    std::vector<PneumaticsSample> samples;
};

// Each throws std::invalid_argument for settings that give no test (no
// samples, a time that is not positive).
[[nodiscard]] StepTestResult runStepTest(ValveModel& model, const StepTestSettings& settings);
[[nodiscard]] HysteresisTestResult runHysteresisTest(ValveModel& model,
                                                     const HysteresisTestSettings& settings);
[[nodiscard]] ValveTestResult runValveTest(ValveModel& model, const ValveTestSettings& settings);
[[nodiscard]] PneumaticsTestResult runPneumaticsTest(ValveModel& model,
                                                     const PneumaticsTestSettings& settings);

}  // namespace kt500::simulator
