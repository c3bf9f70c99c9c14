// The device's own event log: twenty entries, newest first, in the
// parameters eventLogEvent00..19 (a translation key each) and
// eventLogTime00..19 (operating hours). What happens to the simulated
// device in a session (a configuration written, a calibration finished)
// joins the log, so that the log and the session tell the same story.
#pragma once

#include <string>

namespace kt500::simulator {

class DeviceState;

class EventLog {
public:
    static constexpr int kEntries = 20;

    // Adds an event at entry 00 and moves the others one down; the oldest
    // falls out. The time is the device's operating hours plus the hours
    // the session has run. A device without an event log keeps nothing.
    static void Record(DeviceState& device, const std::string& strEvent, double dblSessionHours);
};

}  // namespace kt500::simulator
