// The physical valve behind the simulated devices: a positioner that drives
// the actuator pressure, a spring-return actuator with friction, and the
// valve travel that results. Plain C++, no Qt, no I/O, no randomness: the
// model moves only when advance() is called, so the same calls give the same
// values every time.
//
// Chain in positioner control (setSetpoint / setInputCurrent):
//   set point -> dead time -> dead band of the positioner -> first-order lag
//   -> actuator pressure = spring pressure of that travel +/- friction
//   -> travel (through friction: stick-slip on the pressure)
// With enough supply the travel follows the lagged set point exactly; the
// pressure shows the friction as a jump of 2 x friction at each reversal.
// When the supply cannot reach the pressure, the travel stops short.
//
// Units: travel and set point in % (0..100), pressures in bar gauge, times in
// seconds, temperature in degrees Celsius, input signal in mA (4..20).
#pragma once

#include <deque>

namespace kt500::simulator {

class ValveModel {
public:
    struct Parameters {
        double deadTime = 0.6;          // s from a set point change to the first reaction
        double timeConstant = 1.5;      // s, first-order lag of positioner and actuator
        double deadBand = 0.2;          // %, set point change the positioner ignores
        double friction = 0.15;         // bar: the pressure that friction holds against
        double springRangeLow = 1.0;    // bar at which the valve leaves 0 % (no friction)
        double springRangeHigh = 3.0;   // bar at which the valve reaches 100 % (no friction)
        double supplyPressure = 4.5;    // bar, the most the actuator can get
        double temperature = 31.0;      // degrees Celsius of the electronics
        double fillTimeConstant = 0.8;  // s, actuator filled from the supply, output fully open
        double leakage = 0.02;          // bar per minute lost at supply pressure, output closed
    };

    // Starts at rest: set point 0 %, travel 0 %, actuator vented.
    // Throws std::invalid_argument for parameters that make no valve.
    explicit ValveModel(const Parameters& parameters);
    ValveModel();

    [[nodiscard]] const Parameters& parameters() const noexcept { return m_parameters; }
    // Takes new parameters and keeps the state (travel, pressure, time).
    void setParameters(const Parameters& parameters);

    // Positioner in control; clamped to 0..100 %.
    void setSetpoint(double percent);
    // The same through the 4..20 mA input signal.
    void setInputCurrent(double milliampere);
    // Positioner output controls the pressure to this value at once (clamped
    // to 0..supply); the travel follows through friction. Valve test.
    void holdActuatorPressure(double bar);
    // Output fully open to the supply: the pressure builds up with the fill
    // time constant. Pneumatics test.
    void fillActuator();
    // Output closed: the pressure only falls by leakage. Pneumatics test.
    void isolateActuator();

    // Moves the model on by this many seconds (>= 0).
    void advance(double seconds);

    [[nodiscard]] double time() const noexcept { return m_time; }
    [[nodiscard]] double setpoint() const noexcept { return m_setpoint; }
    [[nodiscard]] double travel() const noexcept { return m_travel; }
    [[nodiscard]] double actuatorPressure() const noexcept { return m_pressure; }
    [[nodiscard]] double supplyPressure() const noexcept { return m_parameters.supplyPressure; }
    [[nodiscard]] double temperature() const noexcept { return m_parameters.temperature; }
    [[nodiscard]] double inputCurrent() const noexcept;
    // Leakage as % of the supply pressure lost per minute.
    [[nodiscard]] double leakageSignal() const noexcept;

    // What the parameters imply: spring pressure of a travel without friction,
    // and the pressure at which the vented valve breaks away.
    [[nodiscard]] double springPressure(double travelPercent) const noexcept;
    [[nodiscard]] double breakawayPressure() const noexcept;

private:
    enum class Drive { Positioner, HoldPressure, Fill, Isolated };
    struct SetpointChange {
        double time;
        double value;
    };

    void validate(const Parameters& parameters) const;
    void step(double seconds);  // no set point change takes effect inside
    void applyDeadBand();       // the delayed set point moves the target
    void applyPressure(double bar);

    Parameters m_parameters;
    Drive m_drive = Drive::Positioner;
    double m_time = 0.0;
    double m_setpoint = 0.0;
    std::deque<SetpointChange> m_history;  // set point changes not yet past the dead time
    double m_delayedSetpoint = 0.0;        // set point as seen after the dead time
    double m_target = 0.0;                 // after the dead band
    double m_reference = 0.0;              // after the lag: where the positioner puts the valve
    int m_direction = 1;                   // +1 opening, -1 closing: side friction acts on
    double m_heldPressure = 0.0;
    double m_pressure = 0.0;
    double m_travel = 0.0;
};

}  // namespace kt500::simulator
