// ArrangeValues: a monitoring reply's name and value pairs sorted into the
// chart list and the log list, shared by the families over their tables.
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "devices/clsKT520.h"
#include "devices/clsKT540.h"
#include "devices/clsPL500.h"

#include <array>
#include <cstdio>
#include <span>
#include <string>

namespace kt500::devices {

namespace {

// The chart value of a series the user switched off: below every axis.
constexpr std::string_view kHiddenValue = "-500";

// The log's header line: each title in double quotes, joined by ";".
std::string QuotedColumns(std::span<const std::string> columns) {
    std::string line;
    for (const std::string& column : columns) {
        line += (line.empty() ? "\"" : ";\"") + column + "\"";
    }
    return line;
}

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

// The PROFIBUS positioner: its set point against the valve's travel gives
// the deviation in the page's top corner; the check boxes 0 to 3 switch the
// four travel-like series (element 4 is UseDataPoints), the options the
// right-hand axis. The page holds no switch yet, so every series shows.
void clsKT540::ArrangeValues() {
    using enum MonitoringKeep;
    static constexpr std::array kSeries = {
        MonitoringSeries{"setpoint", {"chkPAMonitoring", 0}, Setpoint},
        MonitoringSeries{"outputValue", {"chkPAMonitoring", 1}, None},
        MonitoringSeries{"positioningValue", {"chkPAMonitoring", 2}, None},
        MonitoringSeries{"valveTravel", {"chkPAMonitoring", 3}, Travel},
        MonitoringSeries{"actuatorPressure", {"optPAMonitoring", 0}, None},
        MonitoringSeries{"pcbTemperature", {"optPAMonitoring", 1}, None},
    };
    arrangeMonitoringValues(kSeries, {"lblPAMonValue", 6});
}

// The log's columns follow the series, each with the data set's unit (the
// monitoring page has no unit labels of its own).
std::string clsKT540::MonitorLogHeaders() {
    IUserControl& control = userControl();
    const std::string columns[] = {
        control.Translate("time"),
        control.Translate("setpoint") + " [%]",
        control.Translate("outputValue") + " [%]",
        control.Translate("positioningValue") + " [%]",
        control.Translate("valveTravel") + " [%]",
        control.Translate("actuatorPressure") + " [" + control.ParameterNodeByName("actuatorPressure").attribute("unit") + "]",
        control.Translate("pcbTemperature") + " [" + control.ParameterNodeByName("pcbTemperature").attribute("unit") + "]",
    };
    return QuotedColumns(columns);
}

// The safety valve controller: the monitoring page's check boxes 9 and 10
// switch the travel and the leakage signal, the options the right-hand
// axis. It has no set point, so there is no deviation to show.
void clsPL500::ArrangeValues() {
    using enum MonitoringKeep;
    static constexpr std::array kSeries = {
        MonitoringSeries{"actualTravel", {"chkPLParams", 9}, None},
        MonitoringSeries{"leakageSignal", {"chkPLParams", 10}, None},
        MonitoringSeries{"actuatorPressure", {"optPLParams", 0}, None},
        MonitoringSeries{"pcbTemperature", {"optPLParams", 1}, None},
    };
    arrangeMonitoringValues(kSeries, {});
}

std::string clsPL500::MonitorLogHeaders() {
    IUserControl& control = userControl();
    const std::string columns[] = {
        control.Translate("time"),
        control.Translate("actualTravel") + " [%]",
        control.Translate("leakageSignal") + " [%]",
        control.Translate("actuatorPressure") + " [" + control.ParameterNodeByName("actuatorPressure").attribute("unit") + "]",
        control.Translate("pcbTemperature") + " [" + control.ParameterNodeByName("pcbTemperature").attribute("unit") + "]",
    };
    return QuotedColumns(columns);
}

}  // namespace kt500::devices
