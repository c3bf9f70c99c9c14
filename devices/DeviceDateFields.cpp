#include "devices/DeviceDateFields.h"

#include "devices/Encodings.h"

namespace kt500::devices {

namespace {

form::Control& element(const form::Form& form, PageElement where) {
    return form.control(where.array, where.index);
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void PutDeviceDate(form::Form& form, const DateFields& fields, std::int16_t intDay,
                   std::int16_t intMonth, std::int16_t intYear) {
    element(form, fields.day).setListIndex(intDay >= 1 ? intDay - 1 : 1);
    element(form, fields.month).setListIndex(intMonth >= 1 ? intMonth - 1 : 1);
    element(form, fields.year).setText(std::to_string(intYear));
}

std::string ReadDeviceDate(const form::Form& form, const DateFields& fields, bool blChecked) {
    const std::string day = std::to_string(element(form, fields.day).listIndex() + 1);
    const std::string month = std::to_string(element(form, fields.month).listIndex() + 1);
    const std::string year = element(form, fields.year).text();
    if (blChecked) {
        const std::string yearText = trimmed(year);
        if (yearText.size() != 4 || !IsNum(yearText)) {
            return "invalid";
        }
        // What a device can hold: 1900 plus one byte.
        const std::int32_t number = ToInt32(yearText);
        if (number < 1900 || number >= 2156) {
            return "invalid";
        }
    }
    return day + "." + month + "." + year;
}

}  // namespace kt500::devices
