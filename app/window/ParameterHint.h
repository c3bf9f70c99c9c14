// The tool tip of a field: what the parameter document says of the value
// that the field shows, so that the user knows the allowed input before
// typing it: the range and its unit, the unit on the page when it differs,
// the decimals, or the longest text.
#pragma once

#include "app/window/FrameTexts.h"

#include <QString>

#include <string>

namespace kt500::window {

// What the parameter document holds for one parameter (its attributes).
struct ParameterFacts {
    std::string type;      // "floatVal", "integerVal", "stringVal", ...
    std::string minVal;    // lowest value, or empty
    std::string maxVal;    // highest value (the longest text for a string), or empty
    std::string unit;      // the unit of the limits, "noUnit" for none
    std::string decimals;  // decimals shown, empty for none
    std::string pageUnit;  // the unit the page shows the value in, "noUnit" or empty for none
};

// One line for each fact that the parameter has; empty when it has none.
[[nodiscard]] QString ParameterHint(const ParameterFacts& facts, const FrameTexts& texts);

}  // namespace kt500::window
