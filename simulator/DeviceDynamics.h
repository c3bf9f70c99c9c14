// The moving part of the simulated device: the valve model behind the
// parameters that a real positioner measures (set point, travel, actuator
// pressure, input signal, temperature, leakage), kept in step with the
// virtual clock, and the performance tests run on it, whose samples become
// the device's values of the test result groups.
#pragma once

#include "simulator/DeviceState.h"
#include "simulator/ValveModel.h"
#include "simulator/VirtualClock.h"

#include <optional>
#include <string>

namespace kt500::simulator {

class DeviceDynamics {
public:
    // Takes the valve's set point and supply pressure from the device's
    // values and lets the valve settle there before the session's time 0.
    DeviceDynamics(const DeviceState& device, VirtualClock::Milliseconds now);

    // Moves the valve on to the clock's time.
    void advanceTo(VirtualClock::Milliseconds now);
    // The measured value of a parameter, or nothing when the valve does not
    // give it.
    [[nodiscard]] std::optional<std::string> value(const std::string& parameter) const;
    // A value the device received: set point, input signal and supply
    // pressure move the valve. False when the parameter does not act on it.
    bool apply(const std::string& parameter, const std::string& value);
    // Runs the test of a device action on the valve and writes its samples
    // into the device's result parameters; other actions change nothing.
    void runTest(const std::string& action, DeviceState& device);

    // A calibration the device received as a write of its group with these
    // values: a reference measured by the technician becomes what the sensor
    // reads from now on. False when the group is no calibration.
    bool calibrate(const std::string& group, const DeviceState& device);
    // What the device learnt about itself that no parameter shows: the
    // end stops of the last travel calibration ("travelEndStopLow",
    // "travelEndStopHigh", % of the valve's travel), the prestage's
    // "deadBand" (%), and the sensor corrections ("inputSignalOffset",
    // "inputSignalGain", "pressureSensorGain", "temperatureOffset",
    // "analogOutputOffset", "analogOutputGain"). Nothing for other names.
    [[nodiscard]] std::optional<std::string> internalValue(const std::string& name) const;
    // Gives the valve another make-up: "deadTime", "timeConstant" (s),
    // "friction" (bar) or "deadBand" (%). False for other names; a value
    // that makes no valve throws std::invalid_argument.
    bool setValveParameter(const std::string& name, const std::string& value);

    [[nodiscard]] const ValveModel& valve() const noexcept { return m_valve; }

private:
    // The corrections of the sensors; a fresh device reads the valve as it is.
    struct SensorTrims {
        double inputOffset = 0.0;  // mA
        double inputGain = 1.0;    // about 4 mA
        double pressureGain = 1.0;
        double temperatureOffset = 0.0;  // degrees Celsius
        double outputOffset = 0.0;       // mA of the position transmitter
        double outputGain = 1.0;
        double endStopLow = 0.0;
        double endStopHigh = 100.0;
    };
    // The travel calibration strokes the valve to both ends and keeps where
    // it stopped; the prestage trim halves the dead band down to its best.
    void findEndStops();
    void trimPrestage();
    [[nodiscard]] double inputReading() const;

    ValveModel m_valve;
    SensorTrims m_trims;
    VirtualClock::Milliseconds m_time = 0;
};

}  // namespace kt500::simulator
