#include "simulator/DeviceDynamics.h"

#include "simulator/ValveTests.h"

#include <cmath>
#include <cstdio>
#include <functional>
#include <algorithm>
#include <map>

namespace kt500::simulator {

namespace {

// The valve settles for this long before the session starts.
constexpr double kSettleSeconds = 30.0;

std::optional<double> NumberOf(const std::optional<std::string>& text) {
    if (!text || text->empty()) {
        return std::nullopt;
    }
    try {
        std::size_t used = 0;
        const double number = std::stod(*text, &used);
        return used == text->size() && std::isfinite(number) ? std::optional<double>(number)
                                                             : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string Text(double number, int decimals = 2) {
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, number);
    return buffer;
}

// The name of a series item: "stepTestTravel" and 7 give "stepTestTravel07".
std::string SeriesItem(const std::string& series, std::size_t index) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02zu", index);
    return series + buffer;
}

void SetIfPresent(DeviceState& device, const std::string& name, const std::string& value) {
    if (device.parameter(name) != nullptr) {
        device.setValue(name, value);
    }
}

// The set point the valve holds: the family's set point parameter, else the
// travel it reports.
std::optional<double> StartSetpoint(const DeviceState& device) {
    for (const char* name : {"travelSetpoint", "setpoint", "actualTravel", "valveTravel"}) {
        if (const std::optional<double> value = NumberOf(device.value(name))) {
            return value;
        }
    }
    return std::nullopt;
}

}  // namespace

DeviceDynamics::DeviceDynamics(const DeviceState& device, VirtualClock::Milliseconds now)
    : m_time(now) {
    if (const std::optional<double> supply = NumberOf(device.value("supplyPressure"));
        supply && *supply > 0) {
        ValveModel::Parameters parameters = m_valve.parameters();
        parameters.supplyPressure = *supply;
        try {
            m_valve.setParameters(parameters);
        } catch (const std::invalid_argument&) {
            // A supply that cannot drive the valve: the model keeps its own.
        }
    }
    m_valve.setSetpoint(StartSetpoint(device).value_or(50.0));
    m_valve.advance(kSettleSeconds);
}

void DeviceDynamics::advanceTo(VirtualClock::Milliseconds now) {
    if (now > m_time) {
        m_valve.advance(static_cast<double>(now - m_time) / 1000.0);
        m_time = now;
    }
}

std::optional<std::string> DeviceDynamics::value(const std::string& parameter) const {
    using Reading = std::function<double(const ValveModel&)>;
    static const std::map<std::string, Reading, std::less<>> readings = {
        {"travelSetpoint", [](const ValveModel& v) { return v.setpoint(); }},
        {"setpoint", [](const ValveModel& v) { return v.setpoint(); }},
        {"valveTravel", [](const ValveModel& v) { return v.travel(); }},
        {"actualTravel", [](const ValveModel& v) { return v.travel(); }},
        {"positioningValue", [](const ValveModel& v) { return v.travel(); }},
        {"outputValue", [](const ValveModel& v) { return v.travel(); }},
        {"leakageSignal", [](const ValveModel& v) { return v.leakageSignal(); }},
    };
    // The readings that go through a sensor the technician calibrates.
    if (parameter == "actuatorPressure") {
        return Text(m_valve.actuatorPressure() * m_trims.pressureGain);
    }
    if (parameter == "inputSignal") {
        return Text(inputReading());
    }
    if (parameter == "pcbTemperature") {
        return Text(m_valve.temperature() + m_trims.temperatureOffset);
    }
    const auto found = readings.find(parameter);
    if (found == readings.end()) {
        return std::nullopt;
    }
    return Text(found->second(m_valve));
}

bool DeviceDynamics::apply(const std::string& parameter, const std::string& value) {
    const std::optional<double> number = NumberOf(value);
    if (!number) {
        return false;
    }
    if (parameter == "travelSetpoint" || parameter == "setpoint") {
        m_valve.setSetpoint(*number);
        return true;
    }
    if (parameter == "inputSignal") {
        m_valve.setInputCurrent(*number);
        return true;
    }
    if (parameter == "supplyPressure" && *number > 0) {
        ValveModel::Parameters parameters = m_valve.parameters();
        parameters.supplyPressure = *number;
        try {
            m_valve.setParameters(parameters);
        } catch (const std::invalid_argument&) {
            return false;
        }
        return true;
    }
    return false;
}

void DeviceDynamics::runTest(const std::string& action, DeviceState& device) {
    const double setpointBefore = m_valve.setpoint();
    const double testTime = NumberOf(device.value("testTime")).value_or(10.0);
    const double start = NumberOf(device.value("startSetpoint")).value_or(45.0);
    const double change = NumberOf(device.value("setpointChange")).value_or(10.0);
    if (action == "positionControlAutocalibration" || action == "automaticTravelCalibration") {
        findEndStops();
        return;
    }
    if (action == "automaticPrestageTrim") {
        trimPrestage();
        return;
    }
    try {
        if (action == "stepResponseTest") {
            const StepTestResult result = runStepTest(m_valve, {start, change, testTime, 50});
            for (std::size_t i = 0; i < result.samples.size(); ++i) {
                const StepSample& sample = result.samples[i];
                SetIfPresent(device, SeriesItem("stepTestTime", i), Text(sample.time, 1));
                SetIfPresent(device, SeriesItem("stepTestTravel", i), Text(sample.travel, 2));
                SetIfPresent(device, SeriesItem("lastSpOrTime", i), Text(sample.time, 1));
                SetIfPresent(device, SeriesItem("lastPosition", i), Text(sample.travel, 2));
            }
        } else if (action == "hysteresisTest") {
            const HysteresisTestResult result =
                runHysteresisTest(m_valve, {start, change, testTime, 50});
            for (std::size_t i = 0; i < result.samples.size(); ++i) {
                const HysteresisSample& sample = result.samples[i];
                SetIfPresent(device, SeriesItem("hysteresisTestSetpoint", i),
                             Text(sample.setpoint, 1));
                SetIfPresent(device, SeriesItem("hysteresisTestTravel", i), Text(sample.travel, 1));
                SetIfPresent(device, SeriesItem("lastSpOrTime", i), Text(sample.setpoint, 1));
                SetIfPresent(device, SeriesItem("lastPosition", i), Text(sample.travel, 1));
            }
        } else if (action == "valveTest") {
            const ValveTestResult result = runValveTest(m_valve, {});
            for (std::size_t i = 0; i < result.samples.size(); ++i) {
                SetIfPresent(device, SeriesItem("valveTestPos", i),
                             Text(result.samples[i].position, 1));
                SetIfPresent(device, SeriesItem("valveTestVal", i),
                             Text(result.samples[i].pressure));
            }
            SetIfPresent(device, "valveTestBreakawayPressure", Text(result.breakawayPressure));
            SetIfPresent(device, "valveTestLoadFactorKeyFigure", Text(result.loadFactor, 1));
        } else if (action == "pneumaticsTest") {
            const PneumaticsTestResult result = runPneumaticsTest(m_valve, {});
            for (std::size_t i = 0; i < result.samples.size(); ++i) {
                // The pneumatics curve is the actuator pressure over the
                // test's time: the position series carries each sample's
                // second, as the chart's axis reads it.
                SetIfPresent(device, SeriesItem("pneumaticsTestPos", i),
                             Text(result.samples[i].time, 1));
                SetIfPresent(device, SeriesItem("pneumaticsTestVal", i),
                             Text(result.samples[i].pressure));
            }
        }
    } catch (const std::invalid_argument&) {
        // Settings that give no test leave the former results.
    }
    // Back in control at the set point the valve had before the test.
    m_valve.setSetpoint(setpointBefore);
}

}  // namespace kt500::simulator

namespace kt500::simulator {

double DeviceDynamics::inputReading() const {
    return 4.0 + m_trims.inputGain * (m_valve.inputCurrent() + m_trims.inputOffset - 4.0);
}

void DeviceDynamics::findEndStops() {
    const double setpointBefore = m_valve.setpoint();
    // Long enough for the lag and the dead time to settle at each end.
    constexpr double kStrokeSeconds = 20.0;
    m_valve.setSetpoint(0.0);
    m_valve.advance(kStrokeSeconds);
    const double low = m_valve.travel();
    m_valve.setSetpoint(100.0);
    m_valve.advance(kStrokeSeconds);
    const double high = m_valve.travel();
    m_valve.setSetpoint(setpointBefore);
    m_valve.advance(kStrokeSeconds);
    m_trims.endStopLow = low;
    m_trims.endStopHigh = high;
}

void DeviceDynamics::trimPrestage() {
    ValveModel::Parameters parameters = m_valve.parameters();
    constexpr double kBestDeadBand = 0.05;
    parameters.deadBand = std::max(kBestDeadBand, parameters.deadBand / 2.0);
    m_valve.setParameters(parameters);
}

bool DeviceDynamics::calibrate(const std::string& group, const DeviceState& device) {
    const auto reference = [&device](const char* parameter) {
        return NumberOf(device.value(parameter));
    };
    if (group == "trimLoopCurrentZero") {
        // The loop's true current, as the technician's meter shows it.
        if (const auto measured = reference("measuredLoopCurrent")) {
            m_trims.inputGain = 1.0;
            m_trims.inputOffset = *measured - m_valve.inputCurrent();
        }
        return true;
    }
    if (group == "trimLoopCurrentSpan") {
        const double span = m_valve.inputCurrent() + m_trims.inputOffset - 4.0;
        if (const auto measured = reference("measuredLoopCurrent"); measured && span != 0.0) {
            m_trims.inputGain = (*measured - 4.0) / span;
        }
        return true;
    }
    if (group == "temperatureSensorCalibration" || group == "temperatureSensorCal") {
        if (const auto measured = reference("measuredTemperature")) {
            m_trims.temperatureOffset = *measured - m_valve.temperature();
        }
        return true;
    }
    if (group == "pressureSensorCalibration3" || group == "pressureSensorCalibrationSpan") {
        // The span reference is applied at the supply port.
        const double supply = m_valve.parameters().supplyPressure;
        if (const auto span = reference("pressureSpan"); span && supply > 0.0) {
            m_trims.pressureGain = *span / supply;
        }
        return true;
    }
    if (group == "pressureSensorCalibration1" || group == "pressureSensorCalibration2" ||
        group == "pressureSensorCalibrationZero") {
        // Zero and middle point: the sensor of the model has no error there.
        return true;
    }
    if (group == "trimAnalogChannelZero" || group == "trimAnalogChannelGain") {
        const double point = group == "trimAnalogChannelZero" ? 4.0 : 20.0;
        if (const auto measured = reference("measuredAnalogOutput")) {
            if (point == 4.0) {
                m_trims.outputOffset += point - *measured;
            } else if (*measured > 4.0) {
                m_trims.outputGain *= (point - 4.0) / (*measured - 4.0);
            }
        }
        return true;
    }
    return group == "enterFixedAnalogChannelMode" || group == "exitFixedAnalogChannelMode";
}

bool DeviceDynamics::setValveParameter(const std::string& name, const std::string& value) {
    ValveModel::Parameters parameters = m_valve.parameters();
    double* field = name == "deadTime"       ? &parameters.deadTime
                    : name == "timeConstant" ? &parameters.timeConstant
                    : name == "friction"     ? &parameters.friction
                    : name == "deadBand"     ? &parameters.deadBand
                                             : nullptr;
    if (field == nullptr) {
        return false;
    }
    const std::optional<double> number = NumberOf(value);
    if (!number) {
        throw std::invalid_argument("'" + value + "' is no number for the valve's " + name);
    }
    *field = *number;
    m_valve.setParameters(parameters);
    return true;
}

std::optional<std::string> DeviceDynamics::internalValue(const std::string& name) const {
    const std::map<std::string, double, std::less<>> values = {
        {"travelEndStopLow", m_trims.endStopLow},
        {"travelEndStopHigh", m_trims.endStopHigh},
        {"deadBand", m_valve.parameters().deadBand},
        {"deadTime", m_valve.parameters().deadTime},
        {"timeConstant", m_valve.parameters().timeConstant},
        {"friction", m_valve.parameters().friction},
        {"inputSignalOffset", m_trims.inputOffset},
        {"inputSignalGain", m_trims.inputGain},
        {"pressureSensorGain", m_trims.pressureGain},
        {"temperatureOffset", m_trims.temperatureOffset},
        {"analogOutputOffset", m_trims.outputOffset},
        {"analogOutputGain", m_trims.outputGain},
    };
    const auto found = values.find(name);
    if (found == values.end()) {
        return std::nullopt;
    }
    return Text(found->second, 3);
}

}  // namespace kt500::simulator
