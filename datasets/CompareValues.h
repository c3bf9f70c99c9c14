// The rule of the compare page: which values of one parameter count as
// different. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::datasets {

// The tolerance as the user typed it ("0.5" or "0,5"); nothing for text that
// is no number of 0 or more. An empty field is 0: exact.
[[nodiscard]] std::optional<double> ReadTolerance(std::string_view strText);

// Whether the values that are present (nothing: the source holds none)
// differ. Numbers (blNumeric) differ when two are further apart than
// dblTolerance, or when one reads as a number and the other does not; text
// is compared exactly. Fewer than two values never differ.
[[nodiscard]] bool ValuesDiffer(const std::vector<std::optional<std::string>>& values,
                                bool blNumeric, double dblTolerance);

}  // namespace kt500::datasets
