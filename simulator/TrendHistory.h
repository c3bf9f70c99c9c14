// The histories the simulated device keeps as a session runs: every full
// sampling interval of the virtual clock since the last sample of a trend
// adds one sample, taken from the valve model's running state when the
// trend is read. Load factor: the actuator pressure the valve needs to hold
// its travel, in percent of the supply pressure; travel deviation: set
// point less travel; breakaway pressure and leakage signal on the safety
// valve controller; travel versus time: the hours spent in each tenth of
// the travel. The oldest sample falls out at the front.
#pragma once

#include <map>
#include <string>

namespace kt500::simulator {

class DeviceState;
class ValveModel;

class TrendHistory {
public:
    // Hours between two samples of a trend.
    static constexpr double kSampleHours = 0.1;

    // Whether a group is one of the trends the device keeps.
    [[nodiscard]] static bool Keeps(const std::string& strGroup);

    // Brings the trend behind a group up to the session's hours before the
    // group is read; other groups are left alone.
    void catchUp(DeviceState& device, const ValveModel& valve, const std::string& strGroup,
                 double dblSessionHours);

private:
    // The session hours of each trend's last sample.
    std::map<std::string, double> m_lastSample;
};

}  // namespace kt500::simulator
