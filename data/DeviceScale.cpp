#include "data/DeviceScale.h"

#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <algorithm>
#include <cmath>

namespace kt500::data {

double DeviceScale(devices::DeviceClass& deviceClass, const std::string& strTag) {
    const std::string one = deviceClass.FormatValues(strTag, "1", "write");
    if (one.empty() || !devices::IsNum(one)) {
        return 1.0;
    }
    const double scale = devices::Str2Dbl(devices::fDecimalSep(one, "."));
    return scale > 0.0 ? scale : 1.0;
}

int PageDecimals(double dblScale, int intDecimals) {
    if (dblScale == 1.0) {
        return intDecimals;
    }
    return std::max(0, intDecimals + static_cast<int>(std::ceil(std::log10(dblScale) - 1e-9)));
}

}  // namespace kt500::data
