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

    [[nodiscard]] const ValveModel& valve() const noexcept { return m_valve; }

private:
    ValveModel m_valve;
    VirtualClock::Milliseconds m_time = 0;
};

}  // namespace kt500::simulator
