// The input signal chart of the flow modification page: the transfer from
// input signal to valve travel of a signal modification curve, drawn for
// the valve direction that the page's list shows. The positioner classes
// differ only in the fields they read it from.
#pragma once

#include "devices/IUserControl.h"
#include "devices/InputSignalVsTravel.h"

#include <span>
#include <string>
#include <string_view>

namespace kt500::devices {

// The chart beside the flow curves on the flow modification page.
inline constexpr std::string_view InputSignalVsTravelChart = "pesgoInputSignalVsTravel";

// Draws the curve (21 points) into the chart. strDirection is the text of
// the direction list, compared with the translations of "risingToOpen" and
// "risingToClose"; any other text leaves the chart alone and gives false.
bool DrawInputSignalVsTravel(IUserControl& control, std::span<const float> arrCurves,
                             const std::string& strDirection, const PositionControl& fields);

}  // namespace kt500::devices
