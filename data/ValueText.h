// ValueText: the texts in which a page shows a number that the BL sent with
// a point. Pure functions, free of the form and of the locale: the decimal
// sign is given.
#pragma once

#include <string>
#include <string_view>

namespace kt500::data {

// strValue (with "." or "," as decimal sign) rounded half away from zero to
// intDecimals places, with strDecimalSign and no grouping. A text that holds
// no number is a type mismatch (std::invalid_argument).
[[nodiscard]] std::string RoundedText(std::string_view strValue, int intDecimals,
                                      std::string_view strDecimalSign);

// A number text in its shortest form: trailing zeros of the fraction and a
// bare decimal sign dropped ("1.50" -> "1.5", "100,0" -> "100"). Any other
// text comes back as it is.
[[nodiscard]] std::string ShortestText(std::string_view strNumber);

}  // namespace kt500::data
