#include "simulator/ValveTests.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace kt500::simulator {

namespace {

constexpr double FullTravel = 100.0;
constexpr double MidTravel = 50.0;
// Fine steps of a pressure ramp: the breakaway and friction figures are
// exact to the supply pressure divided by this.
constexpr int RampResolution = 20000;
// Fine steps of the pneumatics test between two samples.
constexpr int FillResolution = 200;

void requireSettings(bool condition, const char* test, const char* message) {
    if (!condition) {
        throw std::invalid_argument(std::string(test) + ": " + message);
    }
}

void requireTime(double seconds, const char* test, const char* name) {
    requireSettings(std::isfinite(seconds) && seconds > 0.0, test,
                    (std::string(name) + " is not a positive time").c_str());
}

// Long enough for the lag to die out to a few millionths of a step.
double settlingTime(const ValveModel& model) {
    return model.parameters().deadTime + 12.0 * model.parameters().timeConstant;
}

// Brings the valve to rest at the set point, coming from the side given by
// direction (+1 from below, -1 from above), so that the positioner's dead
// band is taken up in that direction.
void settleAt(ValveModel& model, double setpoint, int direction) {
    const double approach = model.parameters().deadBand + 1.0;
    model.setSetpoint(std::clamp(setpoint - direction * approach, 0.0, FullTravel));
    model.advance(settlingTime(model));
    model.setSetpoint(setpoint);
    model.advance(settlingTime(model));
}

}  // namespace

StepTestResult runStepTest(ValveModel& model, const StepTestSettings& settings) {
    constexpr const char* Test = "step test";
    requireTime(settings.testTime, Test, "test time");
    requireSettings(settings.sampleCount >= 2, Test, "fewer than two samples");
    requireSettings(std::isfinite(settings.startSetpoint) && std::isfinite(settings.setpointChange),
                    Test, "a set point is not a number");
    const double start = std::clamp(settings.startSetpoint, 0.0, FullTravel);
    const double end = std::clamp(start + settings.setpointChange, 0.0, FullTravel);
    settleAt(model, start, end >= start ? 1 : -1);

    StepTestResult result;
    result.samplePeriod = settings.testTime / settings.sampleCount;
    result.samples.reserve(static_cast<std::size_t>(settings.sampleCount));
    model.setSetpoint(end);
    for (int k = 0; k < settings.sampleCount; ++k) {
        if (k > 0) {
            model.advance(result.samplePeriod);
        }
        result.samples.push_back({k * result.samplePeriod, model.setpoint(), model.travel()});
    }
    return result;
}

HysteresisTestResult runHysteresisTest(ValveModel& model, const HysteresisTestSettings& settings) {
    constexpr const char* Test = "hysteresis test";
    requireTime(settings.testTime, Test, "test time");
    requireSettings(settings.sampleCount >= 2, Test, "fewer than two samples");
    requireSettings(std::isfinite(settings.startSetpoint) && std::isfinite(settings.setpointChange),
                    Test, "a set point is not a number");
    const double start = std::clamp(settings.startSetpoint, 0.0, FullTravel);
    const auto setpointAt = [&](double time) {
        const double phase = 2.0 * std::numbers::pi * time / settings.testTime;
        return std::clamp(start + settings.setpointChange * std::sin(phase), 0.0, FullTravel);
    };
    // The sine goes up first: start on the rising side of the loop.
    settleAt(model, start, 1);

    // The set point is changed in steps far shorter than the lag, each set
    // to the sine's value in the middle of the step, so that holding it for
    // the step adds no lag of its own.
    const double period = settings.testTime / settings.sampleCount;
    const double finestStep = std::min(period, model.parameters().timeConstant) / 50.0;
    const int substeps = static_cast<int>(std::ceil(period / finestStep));
    const double substep = period / substeps;

    HysteresisTestResult result;
    result.samples.reserve(static_cast<std::size_t>(settings.sampleCount));
    for (int k = 0; k < settings.sampleCount; ++k) {
        const double sampleTime = k * period;
        result.samples.push_back({setpointAt(sampleTime), model.travel()});
        for (int i = 0; i < substeps; ++i) {
            model.setSetpoint(setpointAt(sampleTime + (i + 0.5) * substep));
            model.advance(substep);
        }
    }
    return result;
}

ValveTestResult runValveTest(ValveModel& model, const ValveTestSettings& settings) {
    constexpr const char* Test = "valve test";
    requireTime(settings.rampTime, Test, "ramp time");
    requireSettings(settings.sampleCount >= 2, Test, "fewer than two samples");
    const double supply = model.supplyPressure();
    const int upSamples = (settings.sampleCount + 1) / 2;
    const int downSamples = settings.sampleCount - upSamples;
    const double fineStep = supply / RampResolution;
    const double fineTime = settings.rampTime / 2.0 / RampResolution;

    ValveTestResult result;
    result.samples.reserve(static_cast<std::size_t>(settings.sampleCount));
    model.holdActuatorPressure(0.0);
    model.advance(fineTime);

    // Walks the pressure to `to` in fine steps; `watch` sees each step.
    const auto ramp = [&](double from, double to, auto&& watch) {
        const int steps = std::max(1, static_cast<int>(std::ceil(std::abs(to - from) / fineStep)));
        for (int i = 1; i <= steps; ++i) {
            model.holdActuatorPressure(from + (to - from) * i / steps);
            model.advance(fineTime);
            watch();
        }
    };

    // Up: samples in the middle of each of upSamples pressure bands, so that
    // no sample has the pressure 0, which the control takes for a gap.
    double midUp = 0.0;
    double midDown = 0.0;
    const auto watchUp = [&] {
        const double pressure = model.actuatorPressure();
        if (result.breakawayPressure == 0.0 && model.travel() > 0.0) {
            result.breakawayPressure = pressure;
        }
        if (midUp == 0.0 && model.travel() >= MidTravel) {
            midUp = pressure;
        }
        if (result.fullStrokePressure == 0.0 && model.travel() >= FullTravel) {
            result.fullStrokePressure = pressure;
        }
    };
    double pressure = 0.0;
    for (int k = 0; k < upSamples; ++k) {
        const double next = supply * (k + 0.5) / upSamples;
        ramp(pressure, next, watchUp);
        pressure = next;
        result.samples.push_back({model.travel(), model.actuatorPressure()});
    }
    ramp(pressure, supply, watchUp);
    pressure = supply;

    const auto watchDown = [&] {
        if (midDown == 0.0 && model.travel() <= MidTravel) {
            midDown = model.actuatorPressure();
        }
    };
    for (int k = 0; k < downSamples; ++k) {
        const double next = supply * (1.0 - (k + 0.5) / downSamples);
        ramp(pressure, next, watchDown);
        pressure = next;
        result.samples.push_back({model.travel(), model.actuatorPressure()});
    }
    ramp(pressure, 0.0, watchDown);

    if (midUp > 0.0 && midDown > 0.0) {
        result.friction = (midUp - midDown) / 2.0;
    }
    if (result.fullStrokePressure == 0.0) {
        result.fullStrokePressure = supply;
    }
    result.loadFactor = result.fullStrokePressure / supply * FullTravel;
    return result;
}

PneumaticsTestResult runPneumaticsTest(ValveModel& model, const PneumaticsTestSettings& settings) {
    constexpr const char* Test = "pneumatics test";
    requireTime(settings.fillTime, Test, "fill time");
    requireTime(settings.holdTime, Test, "hold time");
    requireSettings(settings.sampleCount >= 2, Test, "fewer than two samples");
    const double supply = model.supplyPressure();
    const double total = settings.fillTime + settings.holdTime;
    const double fineTime = total / settings.sampleCount / FillResolution;

    PneumaticsTestResult result;
    result.samples.reserve(static_cast<std::size_t>(settings.sampleCount));
    model.holdActuatorPressure(0.0);
    model.advance(fineTime);
    model.fillActuator();

    double elapsed = 0.0;
    bool filling = true;
    double pressureAtIsolation = 0.0;
    const double buildUpLevel = 0.9 * supply;
    // Samples at the end of each of sampleCount equal spans, so that none
    // falls on the vented start.
    for (int k = 1; k <= settings.sampleCount; ++k) {
        const double sampleTime = total * k / settings.sampleCount;
        while (elapsed < sampleTime) {
            double dt = std::min(fineTime, sampleTime - elapsed);
            if (filling) {
                dt = std::min(dt, settings.fillTime - elapsed);
            }
            if (dt <= 0.0) {
                break;  // rounding left nothing of this span
            }
            const double before = model.actuatorPressure();
            model.advance(dt);
            const double after = model.actuatorPressure();
            if (filling && result.buildUpTime == 0.0 && after >= buildUpLevel) {
                // Linear between the two fine steps.
                result.buildUpTime = elapsed + dt * (buildUpLevel - before) / (after - before);
            }
            elapsed += dt;
            if (filling && elapsed >= settings.fillTime) {
                filling = false;
                pressureAtIsolation = after;
                model.isolateActuator();
            }
        }
        result.samples.push_back({model.travel(), model.actuatorPressure(), sampleTime});
    }
    result.filledPressure = pressureAtIsolation;
    result.leakageRate =
        (pressureAtIsolation - model.actuatorPressure()) / settings.holdTime * 60.0;
    return result;
}

}  // namespace kt500::simulator
