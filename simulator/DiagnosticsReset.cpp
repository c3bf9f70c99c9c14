#include "simulator/DiagnosticsReset.h"

#include "simulator/DeviceState.h"
#include "simulator/EventLog.h"

#include <cstdio>
#include <string_view>

namespace kt500::simulator {

namespace {

// One thing a reset clears: a single parameter, or a series of parameters
// with a two-digit number (prefix00 ... prefix19), and the value it takes.
struct Cleared {
    std::string_view name;
    bool series;
    std::string_view value;
};

struct ResetGroup {
    std::string_view group;
    std::initializer_list<Cleared> cleared;
};

const ResetGroup kResets[] = {
    {"resetActuatorFullStrokes", {{"actuatorStrokesSinceReset", false, "0"}}},
    {"resetActuatorReversals", {{"actuatorReversalsSinceReset", false, "0"}}},
    {"resetValveFullStrokes", {{"valveStrokesSinceReset", false, "0"}}},
    {"resetValveReversals", {{"valveReversalsSinceReset", false, "0"}}},
    {"resetTravelDeviationTrend", {{"deviationVal", true, "0"}, {"deviationTime", true, "0"}}},
    {"resetLoadFactorTrend", {{"loadFactorVal", true, "0"}, {"loadFactorTime", true, "0"}}},
    {"resetTravelVsTime", {{"travelVal", true, "0"}, {"elapsedTrendTime", false, "0"}}},
    {"resetBreakawayPressureTrend",
     {{"breakawayPressureVal", true, "0"}, {"breakawayPressureTime", true, "0"}}},
    {"resetLeakageSignalTrend", {{"leakageSignalVal", true, "0"}, {"leakageSignalTime", true, "0"}}},
    {"resetEventLog",
     {{"eventLogEvent", true, ""}, {"eventLogTime", true, "0"}, {"eventLogCount", true, "0"}}},
    {"resetOperationTime", {{"operationTime", false, "0"}}},
    {"resetTripCounter", {{"tripCounter", false, "0"}}},
    {"resetOnlineAlerts",
     {{"travelDeviationAlertCount", false, "0"},
      {"loadFactorAlertCount", false, "0"},
      {"supplyPressureAlertCount", false, "0"},
      {"temperatureAlertCount", false, "0"}}},
};

void clear(DeviceState& device, const std::string& strName, std::string_view strValue) {
    if (device.parameter(strName) != nullptr) {
        device.setValue(strName, std::string(strValue));
    }
}

}  // namespace

bool DiagnosticsReset::Apply(DeviceState& device, const std::string& strGroup,
                             double dblSessionHours) {
    if (strGroup.size() <= 5 || !strGroup.starts_with("reset") ||
        device.group(strGroup) == nullptr) {
        return false;
    }
    for (const ResetGroup& reset : kResets) {
        if (reset.group != strGroup) {
            continue;
        }
        for (const Cleared& cleared : reset.cleared) {
            if (!cleared.series) {
                clear(device, std::string(cleared.name), cleared.value);
                continue;
            }
            for (int index = 0; index < EventLog::kEntries; ++index) {
                char number[8];
                std::snprintf(number, sizeof number, "%02d", index);
                clear(device, std::string(cleared.name) + number, cleared.value);
            }
        }
    }
    // Alarm resets and the rest clear nothing the pages show; every reset
    // is noted in the log.
    EventLog::Record(device, "eventDiagnosticsReset", dblSessionHours);
    return true;
}

}  // namespace kt500::simulator
