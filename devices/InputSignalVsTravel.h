// The transfer from input signal to valve travel as the flow modification
// page draws it: eleven points of the signal modification curve, scaled to
// the split range and the travel limits of the position control, with lead-in
// and lead-out points that keep the line inside the plot. Pure: no page, no
// chart.
#pragma once

#include <array>
#include <span>

namespace kt500::devices {

enum class ValveDirection { RisingToOpen, RisingToClose };

// The position control fields the curve depends on (elements 3 to 6 of the
// page, as 32-bit floats; a field that is not set holds NoSingle).
struct PositionControl {
    float e3 = 0.0F;  // split range low
    float e4 = 0.0F;  // split range high
    float e5 = 0.0F;  // travel cut-off of the travel axis
    float e6 = 0.0F;  // cut-off of the input axis
};

// The no-value constant as a 32-bit float: the field is not set.
inline constexpr float NoSingle = 2141191936.0F;

struct CurvePoint {
    float x = 0.0F;
    float y = 0.0F;
};

// The 15 points of the chart from the first row of the curve table (21
// points; every second one is used).
[[nodiscard]] std::array<CurvePoint, 15> InputSignalVsTravelPoints(std::span<const float> curve,
                                                                   const PositionControl& fields,
                                                                   ValveDirection direction);

}  // namespace kt500::devices
