// Where a chart is drawn on its page. The chart placement gives a chart its
// rectangle from the frame's measures; on our pages that rectangle can
// reach past the frame's lower edge and over the page's own fields, time
// stamp and buttons. The window draws the chart in the largest part of that
// rectangle that stays inside the frame and clear of every other shown
// control of the frame, so nothing on the page is covered and the chart's
// axes are never cut. The form keeps the placement's values.
#pragma once

#include "form/RowLayout.h"

namespace kt500::form {
class Control;
class Form;
}  // namespace kt500::form

namespace kt500::window {

// Twips kept free between the chart and a control it gives way to, and
// inside the frame's border.
inline constexpr int kChartClearance = 60;
inline constexpr int kFrameBorder = 120;
// The top of a frame's first row: a chart never grows above it.
inline constexpr int kFrameTop = 360;

// The chart's rectangle in twips, fitted as told above: the largest free
// rectangle within the placed one.
[[nodiscard]] form::Rect FittedChartRect(const form::Form& form, const form::Control& chart);

}  // namespace kt500::window
