// How `expect` compares the value a target holds with the value a script
// expects. Numbers compare numerically (the expected side may be decimal or
// 0x hexadecimal: "255" and "0xff" both match 255); Booleans compare without
// regard to case, and 1 and 0 stand for True and False; anything else is
// compared as exact text. Pure, for tests and the fuzz target.
#pragma once

#include <optional>
#include <string_view>

namespace kt500::app {

// A decimal number as the system prints it: sign, digits, optional
// fraction and exponent. Nothing for anything else.
[[nodiscard]] std::optional<double> DecimalOf(std::string_view text) noexcept;
// A decimal number or 0x hexadecimal (with an optional minus sign).
[[nodiscard]] std::optional<double> ExpectedNumberOf(std::string_view text) noexcept;
// The same text without regard to case (ASCII), as names and Booleans compare.
[[nodiscard]] bool EqualsNoCase(std::string_view a, std::string_view b) noexcept;
// Whether the actual value is the expected one under the rules above.
[[nodiscard]] bool ValuesMatch(std::string_view expected, std::string_view actual) noexcept;

}  // namespace kt500::app
