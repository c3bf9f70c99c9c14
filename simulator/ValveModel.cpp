#include "simulator/ValveModel.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace kt500::simulator {

namespace {

constexpr double FullTravel = 100.0;

void requireFinite(double value, const char* name) {
    if (!std::isfinite(value)) {
        throw std::invalid_argument(std::string("valve model: ") + name + " is not a number");
    }
}

void require(bool condition, const char* message) {
    if (!condition) {
        throw std::invalid_argument(std::string("valve model: ") + message);
    }
}

}  // namespace

ValveModel::ValveModel() : ValveModel(Parameters{}) {}

ValveModel::ValveModel(const Parameters& parameters) : m_parameters(parameters) {
    validate(parameters);
}

void ValveModel::validate(const Parameters& p) const {
    for (auto [value, name] : {std::pair{p.deadTime, "dead time"},
                               {p.timeConstant, "time constant"},
                               {p.deadBand, "dead band"},
                               {p.friction, "friction"},
                               {p.springRangeLow, "spring range low"},
                               {p.springRangeHigh, "spring range high"},
                               {p.supplyPressure, "supply pressure"},
                               {p.temperature, "temperature"},
                               {p.fillTimeConstant, "fill time constant"},
                               {p.leakage, "leakage"}}) {
        requireFinite(value, name);
    }
    require(p.deadTime >= 0.0, "dead time is negative");
    require(p.timeConstant > 0.0, "time constant is not positive");
    require(p.deadBand >= 0.0 && p.deadBand < FullTravel, "dead band is outside 0..100 %");
    require(p.friction >= 0.0, "friction is negative");
    // The spring has to close the valve against friction, or a vented valve
    // would stay open.
    require(p.springRangeLow > p.friction, "spring range low does not exceed the friction");
    require(p.springRangeHigh > p.springRangeLow, "spring range high is not above low");
    require(p.supplyPressure > 0.0, "supply pressure is not positive");
    require(p.fillTimeConstant > 0.0, "fill time constant is not positive");
    require(p.leakage >= 0.0, "leakage is negative");
}

void ValveModel::setParameters(const Parameters& parameters) {
    validate(parameters);
    m_parameters = parameters;
    m_heldPressure = std::clamp(m_heldPressure, 0.0, m_parameters.supplyPressure);
    applyPressure(std::clamp(m_pressure, 0.0, m_parameters.supplyPressure));
}

void ValveModel::setSetpoint(double percent) {
    requireFinite(percent, "set point");
    const double value = std::clamp(percent, 0.0, FullTravel);
    if (m_drive != Drive::Positioner) {
        // The positioner takes over where the valve stands, with nothing of an
        // earlier set point still on its way.
        m_drive = Drive::Positioner;
        m_history.clear();
        m_delayedSetpoint = m_travel;
        m_target = m_travel;
        m_reference = m_travel;
    }
    m_setpoint = value;
    m_history.push_back({m_time, value});
}

void ValveModel::setInputCurrent(double milliampere) {
    requireFinite(milliampere, "input current");
    setSetpoint((milliampere - 4.0) / 16.0 * FullTravel);
}

double ValveModel::inputCurrent() const noexcept {
    return 4.0 + 16.0 * m_setpoint / FullTravel;
}

void ValveModel::holdActuatorPressure(double bar) {
    requireFinite(bar, "actuator pressure");
    m_drive = Drive::HoldPressure;
    m_heldPressure = std::clamp(bar, 0.0, m_parameters.supplyPressure);
    applyPressure(m_heldPressure);
}

void ValveModel::fillActuator() {
    m_drive = Drive::Fill;
}

void ValveModel::isolateActuator() {
    m_drive = Drive::Isolated;
}

double ValveModel::leakageSignal() const noexcept {
    return m_parameters.leakage / m_parameters.supplyPressure * FullTravel;
}

double ValveModel::springPressure(double travelPercent) const noexcept {
    return m_parameters.springRangeLow +
           (m_parameters.springRangeHigh - m_parameters.springRangeLow) * travelPercent /
               FullTravel;
}

double ValveModel::breakawayPressure() const noexcept {
    return m_parameters.springRangeLow + m_parameters.friction;
}

void ValveModel::advance(double seconds) {
    requireFinite(seconds, "time step");
    require(seconds >= 0.0, "time step is negative");
    const double end = m_time + seconds;
    // Set point changes reach the positioner after the dead time; split the
    // step there so that each change acts from its own instant.
    while (!m_history.empty() && m_history.front().time + m_parameters.deadTime <= end) {
        const double due = m_history.front().time + m_parameters.deadTime;
        if (due > m_time) {
            step(due - m_time);
            m_time = due;
        }
        m_delayedSetpoint = m_history.front().value;
        m_history.pop_front();
        if (m_drive == Drive::Positioner) {
            applyDeadBand();
        }
    }
    if (end > m_time) {
        step(end - m_time);
    }
    m_time = end;
}

void ValveModel::applyDeadBand() {
    // The end positions are reached exactly: the positioner opens fully at
    // 100 % and closes fully at 0 %, whatever its dead band.
    const double halfBand = m_parameters.deadBand / 2.0;
    if (m_delayedSetpoint >= FullTravel || m_delayedSetpoint <= 0.0) {
        m_target = m_delayedSetpoint;
    } else if (m_delayedSetpoint > m_target + halfBand) {
        m_target = m_delayedSetpoint - halfBand;
    } else if (m_delayedSetpoint < m_target - halfBand) {
        m_target = m_delayedSetpoint + halfBand;
    }
}

void ValveModel::step(double seconds) {
    const double supply = m_parameters.supplyPressure;
    switch (m_drive) {
        case Drive::Positioner: {
            if (m_target > m_reference) {
                m_direction = 1;
            } else if (m_target < m_reference) {
                m_direction = -1;
            }
            m_reference = m_target +
                          (m_reference - m_target) * std::exp(-seconds / m_parameters.timeConstant);
            // The pressure that holds the spring at the reference travel and
            // overcomes friction in the direction of motion.
            const double pressure =
                springPressure(m_reference) + m_direction * m_parameters.friction;
            applyPressure(std::clamp(pressure, 0.0, supply));
            break;
        }
        case Drive::HoldPressure:
            applyPressure(m_heldPressure);
            break;
        case Drive::Fill:
            applyPressure(supply + (m_pressure - supply) *
                                       std::exp(-seconds / m_parameters.fillTimeConstant));
            break;
        case Drive::Isolated:
            // Leakage through an orifice, taken as proportional to the pressure.
            applyPressure(m_pressure * std::exp(-m_parameters.leakage / 60.0 / supply * seconds));
            break;
    }
}

void ValveModel::applyPressure(double bar) {
    // Stick-slip: the travel stays until the pressure differs from the spring
    // pressure at that travel by more than friction; then it moves to where
    // the remaining difference is exactly friction.
    m_pressure = bar;
    const double span = m_parameters.springRangeHigh - m_parameters.springRangeLow;
    const double friction = m_parameters.friction;
    double travel = m_travel;
    if (bar > springPressure(m_travel) + friction) {
        travel = (bar - friction - m_parameters.springRangeLow) / span * FullTravel;
    } else if (bar < springPressure(m_travel) - friction) {
        travel = (bar + friction - m_parameters.springRangeLow) / span * FullTravel;
    }
    m_travel = std::clamp(travel, 0.0, FullTravel);
}

}  // namespace kt500::simulator
