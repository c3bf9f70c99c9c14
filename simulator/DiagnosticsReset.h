// What a reset of the diagnostics clears in the simulated device: a write
// of a "reset..." group zeroes the histories, counters or log behind it,
// and the device notes the reset in its event log, as a real device does.
#pragma once

#include <string>

namespace kt500::simulator {

class DeviceState;

class DiagnosticsReset {
public:
    // Clears what the reset group stands for; False for a group that is no
    // reset of this device. The event log then holds the reset as its newest
    // entry (a cleared log holds only that).
    static bool Apply(DeviceState& device, const std::string& strGroup, double dblSessionHours);
};

}  // namespace kt500::simulator
