#include "data/ValueText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
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
    std::string text(trimmed(strValue));
    for (char& c : text) {
        c = c == ',' ? '.' : c;
    }
    const char* begin = text.c_str() + (!text.empty() && text.front() == '+' ? 1 : 0);
    const char* end = text.c_str() + text.size();
    double number = 0.0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(number)) {
        throw std::invalid_argument("Type mismatch: '" + std::string(strValue) +
                                    "' is not a number");
    }
    return number;
}

}  // namespace

std::string RoundedText(std::string_view strValue, int intDecimals,
                        std::string_view strDecimalSign) {
    const int decimals = intDecimals < 0 ? 0 : intDecimals;
    const double scale = std::pow(10.0, decimals);
    // Half away from zero; adding 0.0 turns a rounded -0 into 0.
    const double rounded = std::round(parseNumber(strValue) * scale) / scale + 0.0;
    char buffer[64];
    const int length = std::snprintf(buffer, sizeof buffer, "%.*f", decimals, rounded);
    std::string text(buffer, length > 0 ? static_cast<std::size_t>(length) : 0U);
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
