#include "data/ValueText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <stdexcept>

namespace kt500::data {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

double parseNumber(std::string_view strValue) {
    const std::string_view text = trimmed(strValue);
    // The number is read from a copy with "." for ",": on the stack, as a
    // value of a page is short.
    char small[64];
    std::string large;
    char* copy = small;
    if (text.size() > sizeof small) {
        large.resize(text.size());
        copy = large.data();
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        copy[i] = text[i] == ',' ? '.' : text[i];
    }
    const char* begin = copy + (!text.empty() && copy[0] == '+' ? 1 : 0);
    const char* end = copy + text.size();
    double number = 0.0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(number)) {
        throw std::invalid_argument("Type mismatch: '" + std::string(strValue) +
                                    "' is not a number");
    }
    return number;
}

// 10 to the power of the decimals; the powers a double holds exactly come
// from a table.
double powerOfTen(int decimals) {
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                         1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    return decimals < static_cast<int>(std::size(kPowers)) ? kPowers[decimals]
                                                           : std::pow(10.0, decimals);
}

}  // namespace

std::string RoundedText(std::string_view strValue, int intDecimals,
                        std::string_view strDecimalSign) {
    const int decimals = intDecimals < 0 ? 0 : intDecimals;
    const double scale = powerOfTen(decimals);
    // Half away from zero; adding 0.0 turns a rounded -0 into 0.
    const double rounded = std::round(parseNumber(strValue) * scale) / scale + 0.0;
    // Written as "%.*f" writes it; a number too long for the buffer (a
    // huge value with many decimals) goes through snprintf.
    char buffer[128];
    std::string text;
    const auto [last, error] = std::to_chars(buffer, buffer + sizeof buffer, rounded,
                                             std::chars_format::fixed, decimals);
    if (error == std::errc()) {
        text.assign(buffer, last);
    } else {
        const int length = std::snprintf(nullptr, 0, "%.*f", decimals, rounded);
        text.resize(static_cast<std::size_t>(length > 0 ? length : 0));
        std::snprintf(text.data(), text.size() + 1, "%.*f", decimals, rounded);
    }
    const auto point = text.find('.');
    if (point != std::string::npos) {
        text.replace(point, 1, strDecimalSign);
    }
    return text;
}

std::string ShortestText(std::string_view strNumber) {
    std::string text(strNumber);
    const auto sign = text.find_first_of(".,");
    if (sign == std::string::npos || text.find_first_of(".,", sign + 1) != std::string::npos) {
        return text;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (i != sign && !(c >= '0' && c <= '9') && !(i == 0 && c == '-')) {
            return text;
        }
    }
    const auto last = text.find_last_not_of('0');
    text.erase(last + 1);
    if (text.size() == sign + 1) {
        text.erase(sign);
    }
    return text == "-0" ? "0" : text;
}

}  // namespace kt500::data
