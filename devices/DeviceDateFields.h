// The device date on a page: a day selector, a month selector (both
// 0-based list indices) and a year text. The HART classes keep it on their
// operation unit page; the PROFIBUS class has no device date.
#pragma once

#include "devices/DeviceClass.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::devices {

// A missing day or month (below 1) selects entry 1, not 0: the fixed behaviour.
void PutDeviceDate(form::Form& form, const DateFields& fields, std::int16_t intDay,
                   std::int16_t intMonth, std::int16_t intYear);
// day "." month "." year; with blChecked "invalid" for an empty field or a
// year that a device cannot hold (four digits, 1900 to 2155).
[[nodiscard]] std::string ReadDeviceDate(const form::Form& form, const DateFields& fields,
                                         bool blChecked);

// "d.m.yyyy" as its parts between the dots; anything else gives fewer or more.
[[nodiscard]] std::vector<std::string> SplitDeviceDate(std::string_view strDate);

}  // namespace kt500::devices
