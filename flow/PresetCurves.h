// The preset flow curves that the curve list offers: ten tables of 21
// points (rows 0 to 20, 5 % apart), each from 0 to 100. "Custom" is in the
// list too but has no table.
#pragma once

#include "flow/CurveTable.h"

#include <span>
#include <string_view>

namespace kt500::flow {

// The names of the curve list in list order: the empty entry, the ten
// presets, "Custom".
[[nodiscard]] std::span<const std::string_view> CurveListNames();

// The table of a preset by its name; nothing for "Custom", "" or an
// unknown name.
[[nodiscard]] const CurveRowList* PresetCurve(std::string_view strName);

}  // namespace kt500::flow
