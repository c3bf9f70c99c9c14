#include "simulator/EventLog.h"

#include "simulator/DeviceState.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kt500::simulator {

namespace {

std::string entryName(const char* prefix, int index) {
    char name[32];
    std::snprintf(name, sizeof name, "%s%02d", prefix, index);
    return name;
}

}  // namespace

void EventLog::Record(DeviceState& device, const std::string& strEvent, double dblSessionHours) {
    if (!device.parameter(entryName("eventLogEvent", 0)) ||
        !device.parameter(entryName("eventLogTime", 0))) {
        return;
    }
    // A device that counts its events (the PA positioner) gives the new
    // entry the count of the same event's latest entry plus one.
    const bool counted = device.parameter(entryName("eventLogCount", 0)) != nullptr;
    long count = 1;
    for (int index = 0; counted && index < kEntries; ++index) {
        if (device.value(entryName("eventLogEvent", index)).value_or("") == strEvent) {
            count = std::strtol(
                        device.value(entryName("eventLogCount", index)).value_or("0").c_str(),
                        nullptr, 10) +
                    1;
            break;
        }
    }
    for (int index = kEntries - 1; index > 0; --index) {
        for (const char* prefix : {"eventLogEvent", "eventLogTime", "eventLogCount"}) {
            const std::string newer = entryName(prefix, index - 1);
            const std::string older = entryName(prefix, index);
            if (device.parameter(older) != nullptr) {
                device.setValue(older, device.value(newer).value_or(""));
            }
        }
    }
    const std::string hours = device.value("operationTime").value_or("0");
    char time[32];
    std::snprintf(time, sizeof time, "%.1f", std::strtod(hours.c_str(), nullptr) + dblSessionHours);
    device.setValue(entryName("eventLogEvent", 0), strEvent);
    device.setValue(entryName("eventLogTime", 0), time);
    if (counted) {
        device.setValue(entryName("eventLogCount", 0), std::to_string(count));
    }
}

}  // namespace kt500::simulator
