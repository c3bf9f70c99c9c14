// The shared steps of the trend axis: the running time row of the trends
// over time and the rounding of a time row, which every family's
// Format*XValues uses in its own order.
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <cstdio>
#include <cstdlib>

namespace kt500::devices {

namespace {

// A number with one decimal, leading digit, no grouping, as FormatNumber
// writes it with the point.
std::string oneDecimal(float sngValue) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", static_cast<double>(sngValue));
    return text;
}

}  // namespace

void DeviceClass::runningTimeAxis(TrendCurve& arrCurve, std::string_view strTimeProperty) {
    float scratch[TrendCurve::kTimeInUse];
    float total = 0.0F;
    for (int i = 0; i < TrendCurve::kTimeInUse; ++i) {
        scratch[i] = arrCurve.at(1, i);
        total -= scratch[i];
    }
    arrCurve.at(1, 0) = total;
    setTrendTime(strTimeProperty, fDecimalSep(oneDecimal(total * -1.0F)));
    for (int i = 1; i < TrendCurve::kTimeInUse; ++i) {
        arrCurve.at(1, i) = scratch[i - 1] + arrCurve.at(1, i - 1);
    }
}

void DeviceClass::roundTimeRow(TrendCurve& arrCurve) {
    for (int i = 0; i < TrendCurve::kTimeInUse; ++i) {
        arrCurve.at(1, i) = std::strtof(oneDecimal(arrCurve.at(1, i)).c_str(), nullptr);
    }
}

bool DeviceClass::holdsEmptySlot(const TrendCurve& arrCurve) {
    for (int i = 0; i < TrendCurve::kTimeInUse; ++i) {
        if (arrCurve.at(0, i) == -1.0F) {
            return true;
        }
    }
    return false;
}

}  // namespace kt500::devices
