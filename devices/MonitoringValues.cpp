// ArrangeValues: a monitoring reply's name and value pairs sorted into the
// chart list and the log list, shared by the families over their tables.
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "devices/clsKT520.h"

#include <array>
#include <cstdio>

namespace kt500::devices {

namespace {

// The chart value of a series the user switched off: below every axis.
constexpr std::string_view kHiddenValue = "-500";

}  // namespace

void DeviceClass::arrangeMonitoringValues(std::span<const MonitoringSeries> series,
                                          PageElement deviation) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    const std::vector<std::string> fields = SplitSeparated(tools.MonitoringValues);
    std::vector<const std::string*> values(series.size(), nullptr);
    for (std::size_t i = 0; i + 1 < fields.size(); i += 2) {
        for (std::size_t s = 0; s < series.size(); ++s) {
            if (series[s].name == fields[i]) {
                values[s] = &fields[i + 1];
            }
        }
    }
    std::string chartList;
    std::string logList;
    float setpoint = 0.0F;
    float travel = 0.0F;
    for (std::size_t s = 0; s < series.size(); ++s) {
        if (values[s] == nullptr) {
            continue;
        }
        const std::string& value = *values[s];
        const float number = static_cast<float>(Str2Dbl(fDecimalSep(value, ".")));
        if (series[s].keep == MonitoringKeep::Setpoint) {
            setpoint = number;
        } else if (series[s].keep == MonitoringKeep::Travel) {
            travel = number;
        }
        // A switch not on the page shows its series.
        const form::Control* shown = findElement(series[s].shownBy);
        const bool on = shown == nullptr || shown->value() != 0.0;
        AppendSeparated(chartList, on ? value : std::string(kHiddenValue));
        AppendSeparated(logList, value);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", static_cast<double>(setpoint - travel));
    setElementText(deviation, fDecimalSep(text));
    tools.MonitoringValues = chartList;
    m_strGraphValues = logList;
}

void clsKT520::ArrangeValues() {
    using enum MonitoringKeep;
    // In the order of MonitoringHeaders.
    static constexpr std::array kSeries = {
        MonitoringSeries{"travelSetpoint", {"chkHAMonitoring", 0}, Setpoint},
        MonitoringSeries{"valveTravel", {"chkHAMonitoring", 1}, Travel},
        MonitoringSeries{"inputSignal", {"optHAMonitoring", 0}, None},
        MonitoringSeries{"actuatorPressure", {"optHAMonitoring", 1}, None},
        MonitoringSeries{"pcbTemperature", {"optHAMonitoring", 2}, None},
    };
    arrangeMonitoringValues(kSeries, {"lblHAMonitoringSettings", 15});
}

}  // namespace kt500::devices
