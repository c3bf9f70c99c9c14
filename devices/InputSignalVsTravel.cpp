#include "devices/InputSignalVsTravel.h"

#include <stdexcept>

namespace kt500::devices {

namespace {

// The exact ends would lie on the plot's frame: 0 is drawn at 0.3, 100 at 99.
float insidePlot(float value) {
    if (value == 0.0F) {
        return 0.3F;
    }
    if (value == 100.0F) {
        return 99.0F;
    }
    return value;
}

bool isSet(float value) {
    return value != NoSingle;
}

}  // namespace

std::array<CurvePoint, 15> InputSignalVsTravelPoints(std::span<const float> curve,
                                                     const PositionControl& fields,
                                                     ValveDirection direction) {
    if (curve.size() < 21) {
        throw std::out_of_range("Subscript out of range: the curve holds fewer than 21 points");
    }
    const bool toOpen = direction == ValveDirection::RisingToOpen;
    std::array<float, 11> x{};
    std::array<float, 11> y{};
    for (int i = 0; i <= 10; ++i) {
        const auto step = static_cast<float>(i);
        if (!isSet(fields.e6) || fields.e6 <= 0.0F) {
            x[i] = 10.0F * step;
        } else if (toOpen) {
            x[i] = (100.0F - fields.e6) * step / 10.0F + fields.e6;
        } else {
            x[i] = (100.0F - fields.e6) * step / 10.0F;
        }
        if (isSet(fields.e3) && isSet(fields.e4) && fields.e3 >= 0.0F && fields.e4 >= 0.0F) {
            x[i] = x[i] / 100.0F * (fields.e4 - fields.e3) + fields.e3;
        }
        const float c = curve[static_cast<std::size_t>(2 * i)];
        if (!isSet(fields.e5) || fields.e5 <= 0.0F) {
            y[i] = c;
        } else {
            y[i] = (100.0F - fields.e5) * c / 100.0F + fields.e5;
        }
    }
    std::array<CurvePoint, 15> points{};
    for (int i = 0; i <= 10; ++i) {
        // Rising to close runs the travel backwards over the input.
        const float travel = toOpen ? y[i] : y[10 - i];
        points[static_cast<std::size_t>(i + 2)] = {insidePlot(x[i]), insidePlot(travel)};
    }
    const bool cut =
        fields.e5 > 0.0F || fields.e6 > 0.0F || (fields.e5 == 0.0F && fields.e6 == 0.0F);
    const float x2 = points[2].x;
    const float x12 = points[12].x;
    if (toOpen) {
        if (cut) {
            points[0] = {0.3F, 0.3F};
            points[1] = {x2, 0.3F};
        }
        points[13] = {x12, 99.0F};
        points[14] = {100.0F, 99.0F};
    } else {
        points[0] = {0.3F, 99.0F};
        points[1] = {x2, 99.0F};
        if (cut) {
            points[13] = {x12, 0.3F};
            points[14] = {100.0F, 0.3F};
        }
    }
    return points;
}

}  // namespace kt500::devices
