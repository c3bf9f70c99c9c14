// A page may show a value in another scale than the device keeps it
// (seconds of milliseconds held, percent of a fraction held). The value
// check and the page's rounding both work from that scale.
#pragma once

#include <string>

namespace kt500::devices {
class DeviceClass;
}

namespace kt500::data {

// How many of the device's units one unit the page shows is worth: the
// class's write form of "1" (1000 for seconds shown of milliseconds held);
// 1 when the class writes the value as shown.
[[nodiscard]] double DeviceScale(devices::DeviceClass& deviceClass, const std::string& strTag);

// The decimals a page value needs to show a device value of intDecimals
// whole: three more for seconds shown of milliseconds held, two fewer
// (never below 0) for percent shown of a fraction held.
[[nodiscard]] int PageDecimals(double dblScale, int intDecimals);

}  // namespace kt500::data
