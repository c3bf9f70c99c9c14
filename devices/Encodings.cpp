#include "devices/Encodings.h"

#include <QLocale>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace kt500::devices {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number in at least intDigits digits, the sign in front of them: -1 in
// four digits is "-0001".
std::string padded(std::int32_t value, int intDigits) {
    char text[16];
    const long long magnitude = value < 0 ? -static_cast<long long>(value) : value;
    std::snprintf(text, sizeof text, "%s%0*lld", value < 0 ? "-" : "", intDigits, magnitude);
    return text;
}

// year "-" two-digit period "-" four-digit number.
std::string formatNumber(std::int32_t year, std::int32_t period, std::int32_t serial) {
    return std::to_string(year) + "-" + padded(period, 2) + "-" + padded(serial, 4);
}

}  // namespace

std::string DecodeDeviceID(std::int32_t lngDevID) {
    if (lngDevID == 0) {
        return std::string(NoNumber);
    }
    const std::int32_t serial = lngDevID % 10000;
    const std::int32_t n = lngDevID / 10000;
    if (n < INT16_MIN || n > INT16_MAX) {
        throw std::overflow_error("Overflow: device identifier " + std::to_string(lngDevID));
    }
    std::int32_t month = n % 12;
    std::int32_t year = n / 12 + 1996;
    if (month == 0) {
        month = 12;
        year = n / 12 + 1995;
    }
    return formatNumber(year, month, serial);
}

std::string DecodeSerNro(std::int32_t lngSerNro) {
    if (lngSerNro == 0 || lngSerNro == -32768) {
        return std::string(NoNumber);
    }
    const std::int32_t serial = lngSerNro % 10000;
    const std::int32_t n = lngSerNro / 10000;
    std::int32_t week = n % 52;
    std::int32_t year = n / 52 + 1996;
    if (week == 0) {
        week = 52;
        year -= 1;
    }
    return formatNumber(year, week, serial);
}

std::int32_t EnCodeSerNro(std::string_view NroStr) {
    if (NroStr == NoNumber) {
        return 0;
    }
    const auto firstDash = NroStr.find('-');
    if (firstDash != 4) {
        return -1;
    }
    const std::string_view rest = NroStr.substr(firstDash + 1);
    const auto secondDash = rest.find('-');
    if (secondDash != 1 && secondDash != 2) {
        return -1;
    }
    const std::string_view yearText = NroStr.substr(0, firstDash);
    const std::string_view weekText = rest.substr(0, secondDash);
    const std::string_view serialText = rest.substr(secondDash + 1);
    if (serialText.size() != 4) {
        return -1;
    }
    if (!IsNum(yearText) || !IsNum(weekText) || !IsNum(serialText)) {
        return -1;
    }
    const double year = std::trunc(Str2Dbl(yearText));
    const double week = Str2Dbl(weekText);
    const double serial = Str2Dbl(serialText);
    if (year < 1996 || year > 2027 || week < 1 || week > 52 || serial < 0 || serial > 9999) {
        return -1;
    }
    return ((static_cast<std::int32_t>(year) - 1996) * 52 + static_cast<std::int32_t>(week)) *
               10000 +
           static_cast<std::int32_t>(serial);
}

bool IsSerialNumber(std::string_view strParameter) noexcept {
    return strParameter == "kt500SerialNumber" || strParameter == "deviceSerialNumber";
}

bool IsNum(std::string_view Number) {
    std::size_t position = !Number.empty() && Number.front() == '-' ? 1 : 0;
    bool separatorSeen = false;
    bool followsSeparator = false;
    for (; position < Number.size(); ++position) {
        const char c = Number[position];
        if (separatorSeen) {
            followsSeparator = true;
        }
        if (c == '.' || c == ',') {
            if (separatorSeen) {
                return false;
            }
            separatorSeen = true;
            followsSeparator = false;
        } else if (!isDigit(c)) {
            return false;
        }
    }
    return !separatorSeen || followsSeparator;
}

double Str2Dbl(std::string_view Num) {
    std::string_view text = Num;
    if (text.empty() || text == "-") {
        return NoValue;
    }
    while (!text.empty() && !isDigit(text.front()) && text.front() != '.' && text.front() != ',' &&
           text.front() != '-') {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return NoValue;
    }
    const bool negative = text.front() == '-';
    if (negative) {
        text.remove_prefix(1);
    }
    int k = 0;
    while (k < static_cast<int>(text.size()) && isDigit(text[static_cast<std::size_t>(k)])) {
        ++k;
    }
    double value = 0.0;
    bool markSeen = false;
    std::size_t i = 0;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (isDigit(c)) {
            value += (c - '0') * std::pow(10.0, k - 1);
            --k;
        } else if (c == '.' || c == ',') {
            if (markSeen) {
                break;
            }
            markSeen = true;
        } else if (c == 'e' || c == 'E') {
            std::string_view exponentText = text.substr(i + 1);
            bool exponentNegative = false;
            if (!exponentText.empty() &&
                (exponentText.front() == '-' || exponentText.front() == '+')) {
                exponentNegative = exponentText.front() == '-';
                exponentText.remove_prefix(1);
            }
            int digits = 0;
            while (digits < static_cast<int>(exponentText.size()) &&
                   isDigit(exponentText[static_cast<std::size_t>(digits)])) {
                ++digits;
            }
            double exponent = 0.0;
            for (int d = 0; d < digits; ++d) {
                exponent += (exponentText[static_cast<std::size_t>(d)] - '0') *
                            std::pow(10.0, digits - 1 - d);
            }
            value *= std::pow(10.0, exponentNegative ? -exponent : exponent);
            break;
        } else {
            break;
        }
    }
    return negative ? -value : value;
}

std::string MachineDecimalSymbol() {
    // Asked for every value shown or logged: the symbol is read again only
    // when the default locale is another one than at the last call.
    thread_local QLocale known;
    thread_local std::string symbol = known.decimalPoint().toStdString();
    const QLocale current;
    if (current != known) {
        known = current;
        symbol = current.decimalPoint().toStdString();
    }
    return symbol;
}

std::string fDecimalSep(std::string_view strValue, std::optional<std::string_view> DecimalSymbol) {
    const std::string symbol =
        DecimalSymbol ? std::string(DecimalSymbol->substr(0, 1)) : MachineDecimalSymbol();
    std::string result(strValue);
    if (symbol == ".") {
        for (char& c : result) {
            c = c == ',' ? '.' : c;
        }
        return result;
    }
    if (symbol == ",") {
        for (char& c : result) {
            c = c == '.' ? ',' : c;
        }
        return result;
    }
    return {};
}

}  // namespace kt500::devices

namespace kt500::devices {

namespace {

double wholeNumber(std::string_view strValue, double lowest, double highest) {
    std::string text(strValue);
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(' ');
    if (first == std::string::npos) {
        throw std::invalid_argument("Type mismatch: '' is not a number");
    }
    text = text.substr(first, last - first + 1);
    // Locale-free: the BL and the pages' integer fields carry no grouping.
    double number = 0.0;
    const char* begin = text.c_str() + (text[0] == '+' ? 1 : 0);
    const auto [end, error] = std::from_chars(begin, text.c_str() + text.size(), number);
    if (error != std::errc() || end != text.c_str() + text.size() || !std::isfinite(number)) {
        throw std::invalid_argument("Type mismatch: '" + text + "' is not a number");
    }
    const double rounded = std::nearbyint(number);  // half to even
    if (rounded < lowest || rounded > highest) {
        throw std::overflow_error("Overflow: " + text);
    }
    return rounded;
}

}  // namespace

std::int32_t ToInt32(std::string_view strValue) {
    return static_cast<std::int32_t>(wholeNumber(strValue, INT32_MIN, INT32_MAX));
}

std::int16_t ToInt16(std::string_view strValue) {
    return static_cast<std::int16_t>(wholeNumber(strValue, INT16_MIN, INT16_MAX));
}

std::string SingleText(float sngValue) {
    if (sngValue == 0.0F) {
        return "0";  // also for -0
    }
    char text[64];
    const auto result = std::to_chars(text, text + sizeof text, sngValue, std::chars_format::fixed);
    return std::string(text, result.ptr);
}

}  // namespace kt500::devices
