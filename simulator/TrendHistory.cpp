#include "simulator/TrendHistory.h"

#include "simulator/DeviceState.h"
#include "simulator/ValveModel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>

namespace kt500::simulator {

namespace {

constexpr int kSamples = 20;
constexpr int kTravelBands = 10;
// The leakage signal of a revision 1 device is raw: percent over this.
constexpr double kLeakageScale = 30.32;

std::string numbered(std::string_view strPrefix, int index) {
    char name[64];
    std::snprintf(name, sizeof name, "%.*s%02d", static_cast<int>(strPrefix.size()),
                  strPrefix.data(), index);
    return name;
}

std::string text(double value, int decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

double number(const DeviceState& device, const std::string& strName) {
    return std::strtod(device.value(strName).value_or("0").c_str(), nullptr);
}

// One trend over time: its value and time series and the sample.
struct TimeTrend {
    std::string_view group;
    std::string_view values;
    std::string_view times;
    int decimals;
    std::function<double(const DeviceState&, const ValveModel&)> sample;
};

double loadFactor(const DeviceState&, const ValveModel& valve) {
    const double needed = valve.springPressure(valve.travel()) + valve.parameters().friction;
    return needed / valve.supplyPressure() * 100.0;
}

double leakage(const DeviceState& device, const ValveModel& valve) {
    const ParameterInfo* parameter = device.parameter("leakageSignalVal19");
    const bool raw = parameter != nullptr && parameter->unit != "%";
    return raw ? valve.leakageSignal() / kLeakageScale : valve.leakageSignal();
}

const TimeTrend kTrends[] = {
    {"travelDeviation", "deviationVal", "deviationTime", 2,
     [](const DeviceState&, const ValveModel& v) { return v.setpoint() - v.travel(); }},
    {"loadFactor", "loadFactorVal", "loadFactorTime", 1, loadFactor},
    {"loadFactorTrend", "loadFactorVal", "loadFactorTime", 1, loadFactor},
    {"breakawayPressureTrend", "breakawayPressureVal", "breakawayPressureTime", 2,
     [](const DeviceState&, const ValveModel& v) { return v.breakawayPressure(); }},
    {"leakageSignalTrend", "leakageSignalVal", "leakageSignalTime", 3, leakage},
};

// Moves the samples one place towards the front and puts the new one last.
// A time row of steps gets the step; a time row of ages (the PROFIBUS
// positioner's, all at or below 0) grows older and the new sample is 0 old.
void push(DeviceState& device, const TimeTrend& trend, double value, double step) {
    const std::string last = numbered(trend.times, kSamples - 1);
    const bool ages = number(device, last) <= 0.0;
    for (int index = 0; index + 1 < kSamples; ++index) {
        device.setValue(numbered(trend.values, index),
                        device.value(numbered(trend.values, index + 1)).value_or("0"));
        const double time = number(device, numbered(trend.times, index + 1));
        device.setValue(numbered(trend.times, index), text(ages ? time - step : time, 1));
    }
    device.setValue(numbered(trend.values, kSamples - 1), text(value, trend.decimals));
    device.setValue(last, text(ages ? 0.0 : step, 1));
}

}  // namespace

bool TrendHistory::Keeps(const std::string& strGroup) {
    if (strGroup == "travelVsTime") {
        return true;
    }
    for (const TimeTrend& trend : kTrends) {
        if (trend.group == strGroup) {
            return true;
        }
    }
    return false;
}

void TrendHistory::catchUp(DeviceState& device, const ValveModel& valve,
                           const std::string& strGroup, double dblSessionHours) {
    double& last = m_lastSample[strGroup];
    const int due = static_cast<int>(std::floor((dblSessionHours - last) / kSampleHours));
    if (due <= 0) {
        return;
    }
    last += due * kSampleHours;
    if (strGroup == "travelVsTime") {
        // Hours in each tenth of the travel, where the device kept them in hours.
        const ParameterInfo* band = device.parameter(numbered("travelVal", 0));
        if (band == nullptr || band->unit != "h") {
            return;
        }
        const double hours = due * kSampleHours;
        const int tenth = std::clamp(static_cast<int>(valve.travel() / 10.0), 0, kTravelBands - 1);
        const std::string name = numbered("travelVal", tenth);
        device.setValue(name, text(number(device, name) + hours, 1));
        device.setValue("elapsedTrendTime", text(number(device, "elapsedTrendTime") + hours, 1));
        return;
    }
    for (const TimeTrend& trend : kTrends) {
        if (trend.group != strGroup || device.parameter(numbered(trend.values, 0)) == nullptr) {
            continue;
        }
        const double value = trend.sample(device, valve);
        for (int sample = 0; sample < std::min(due, kSamples); ++sample) {
            push(device, trend, value, kSampleHours);
        }
    }
}

}  // namespace kt500::simulator
