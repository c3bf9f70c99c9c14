#include "app/ScriptCompare.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

namespace kt500::app {

namespace {

// True and False by name, in any case.
std::optional<bool> booleanWord(std::string_view text) noexcept {
    if (EqualsNoCase(text, "True")) {
        return true;
    }
    if (EqualsNoCase(text, "False")) {
        return false;
    }
    return std::nullopt;
}

// A Boolean word, or 1 and 0.
std::optional<bool> booleanOf(std::string_view text) noexcept {
    if (text == "1") {
        return true;
    }
    if (text == "0") {
        return false;
    }
    return booleanWord(text);
}

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

}  // namespace

bool EqualsNoCase(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

std::optional<double> DecimalOf(std::string_view text) noexcept {
    // Checked by hand first: from_chars would take "inf", "nan" and hex floats.
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    std::size_t digits = 0;
    while (at < text.size() && isDigit(text[at])) {
        ++at;
        ++digits;
    }
    if (at < text.size() && text[at] == '.') {
        ++at;
        while (at < text.size() && isDigit(text[at])) {
            ++at;
            ++digits;
        }
    }
    if (digits == 0) {
        return std::nullopt;
    }
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
            ++at;
        }
        std::size_t exponentDigits = 0;
        while (at < text.size() && isDigit(text[at])) {
            ++at;
            ++exponentDigits;
        }
        if (exponentDigits == 0) {
            return std::nullopt;
        }
    }
    if (at != text.size()) {
        return std::nullopt;
    }
    std::string_view number = text;
    if (number.front() == '+') {
        number.remove_prefix(1);
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc() || end != number.data() + number.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> ExpectedNumberOf(std::string_view text) noexcept {
    std::string_view digits = text;
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative) {
        digits.remove_prefix(1);
    }
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        digits.remove_prefix(2);
        std::uint64_t value = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error != std::errc() || end != digits.data() + digits.size()) {
            return std::nullopt;
        }
        const auto number = static_cast<double>(value);
        return negative ? -number : number;
    }
    return DecimalOf(text);
}

bool ValuesMatch(std::string_view expected, std::string_view actual) noexcept {
    const auto actualNumber = DecimalOf(actual);
    if (actualNumber) {
        if (const auto expectedNumber = ExpectedNumberOf(expected)) {
            return *expectedNumber == *actualNumber;
        }
    }
    // A Boolean on either side by name makes it a Boolean comparison; 1
    // and 0 then stand for True and False.
    if (booleanWord(actual) || booleanWord(expected)) {
        const auto a = booleanOf(actual);
        const auto e = booleanOf(expected);
        if (a && e) {
            return *a == *e;
        }
    }
    return expected == actual;
}

}  // namespace kt500::app
