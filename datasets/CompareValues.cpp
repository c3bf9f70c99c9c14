#include "datasets/CompareValues.h"

#include <charconv>
#include <cmath>

namespace kt500::datasets {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<double> number(std::string_view text) {
    std::string value(trimmed(text));
    for (char& c : value) {
        if (c == ',') {
            c = '.';
        }
    }
    if (!value.empty() && value.front() == '+') {
        value.erase(0, 1);
    }
    double result = 0.0;
    const char* end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, result);
    if (value.empty() || error != std::errc() || stop != end || !std::isfinite(result)) {
        return std::nullopt;
    }
    return result;
}

}  // namespace

std::optional<double> ReadTolerance(std::string_view strText) {
    if (trimmed(strText).empty()) {
        return 0.0;
    }
    const std::optional<double> value = number(strText);
    if (!value || *value < 0.0) {
        return std::nullopt;
    }
    return value;
}

bool ValuesDiffer(const std::vector<std::optional<std::string>>& values, bool blNumeric,
                  double dblTolerance) {
    const std::string* first = nullptr;
    for (const std::optional<std::string>& value : values) {
        if (!value) {
            continue;
        }
        if (first == nullptr) {
            first = &*value;
            continue;
        }
        if (!blNumeric) {
            if (*value != *first) {
                return true;
            }
            continue;
        }
        const std::optional<double> a = number(*first);
        const std::optional<double> b = number(*value);
        if (!a || !b) {
            if (a.has_value() != b.has_value() || trimmed(*first) != trimmed(*value)) {
                return true;
            }
            continue;
        }
        // Every pair against the first is enough only for exact values; with
        // a tolerance, the spread of all of them counts.
        if (std::fabs(*a - *b) > dblTolerance) {
            return true;
        }
    }
    if (blNumeric && dblTolerance > 0.0) {
        std::optional<double> low;
        std::optional<double> high;
        for (const std::optional<std::string>& value : values) {
            if (const std::optional<double> n = value ? number(*value) : std::nullopt) {
                low = low ? std::min(*low, *n) : *n;
                high = high ? std::max(*high, *n) : *n;
            }
        }
        return low && high && *high - *low > dblTolerance;
    }
    return false;
}

}  // namespace kt500::datasets
