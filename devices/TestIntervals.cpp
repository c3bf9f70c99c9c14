#include "devices/TestIntervals.h"

#include "devices/Encodings.h"

#include <cmath>
#include <stdexcept>

namespace kt500::devices {

namespace {

double hoursOf(std::string_view strHours) {
    if (strHours.find_first_not_of(' ') == std::string_view::npos) {
        return 0.0;
    }
    if (!IsNum(strHours)) {
        throw std::invalid_argument("Type mismatch: '" + std::string(strHours) +
                                    "' is not a number of hours");
    }
    return std::abs(Str2Dbl(strHours));
}

std::string whole(double value) {
    return std::to_string(static_cast<long long>(value));
}

}  // namespace

IntervalParts SplitTestInterval(std::string_view strHours) {
    const double hours = std::round(hoursOf(strHours));
    if (hours == 0.0) {
        return {"0", 0, 0};
    }
    if (std::fmod(hours, 24.0) == 0.0) {
        return {whole(hours / 24.0), 1, 1};
    }
    return {whole(hours), 0, 1};
}

TimeParts SplitTestTime(std::string_view strHours) {
    const long long minutesTotal = std::llround(hoursOf(strHours) * 60.0);
    return {std::to_string(minutesTotal / (24 * 60)), std::to_string(minutesTotal / 60 % 24),
            std::to_string(minutesTotal % 60)};
}

double CombineTestInterval(std::string_view strCount, int unitIndex, int switchIndex) {
    if (switchIndex == 0) {
        return 0.0;
    }
    const double count = hoursOf(strCount);
    return unitIndex == 1 ? count * 24.0 : count;
}

long long WholeDays(double hours) {
    return std::llround(hours / 24.0);
}

}  // namespace kt500::devices
