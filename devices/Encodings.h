// The packed forms in which devices hold identification numbers, and the
// locale-free number helpers of the value routing. The BL always writes
// numbers with a point; pages use the decimal symbol of the locale in use.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kt500::devices {

// The result of Str2Dbl for a text that holds no number.
inline constexpr double NoValue = 2141192000.0;
// "No number is set", in both directions of the identification encodings.
inline constexpr std::string_view NoNumber = "0000-00-0000";

// (months since 1996) * 10000 + running number, as "yyyy-mm-nnnn".
[[nodiscard]] std::string DecodeDeviceID(std::int32_t lngDevID);
// (weeks since 1996) * 10000 + running number, as "yyyy-ww-nnnn".
[[nodiscard]] std::string DecodeSerNro(std::int32_t lngSerNro);
// The packed serial number of "yyyy-ww-nnnn"; -1 for a bad text.
[[nodiscard]] std::int32_t EnCodeSerNro(std::string_view NroStr);
// Whether a parameter is a serial number in the packed form of weeks, which
// a page shows and takes as "yyyy-ww-nnnn" (never as a plain number).
[[nodiscard]] bool IsSerialNumber(std::string_view strParameter) noexcept;
// Digits with at most one "." or ",", an optional leading "-"; "" and "-" count.
[[nodiscard]] bool IsNum(std::string_view Number);
// A locale-free parse; NoValue for a text without a number.
[[nodiscard]] double Str2Dbl(std::string_view Num);
// Replaces the decimal signs by the symbol given (or the locale's); "" for
// a symbol that is neither "." nor ",".
[[nodiscard]] std::string fDecimalSep(std::string_view strValue,
                                      std::optional<std::string_view> DecimalSymbol = {});
// The decimal symbol of the locale in use.
[[nodiscard]] std::string MachineDecimalSymbol();

}  // namespace kt500::devices

namespace kt500::devices {

// A text as a whole number of the given width, rounded half to even as the
// language's conversions round; a text that is no number ("", "abc") is a
// type mismatch and a number out of range an overflow (both exceptions).
[[nodiscard]] std::int32_t ToInt32(std::string_view strValue);
[[nodiscard]] std::int16_t ToInt16(std::string_view strValue);
// A number as the shortest text that reads back as the same 32-bit float
// ("1.5", "100", "0.1"): how computed values go out.
[[nodiscard]] std::string SingleText(float sngValue);

}  // namespace kt500::devices
