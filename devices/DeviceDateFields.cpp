#include "devices/DeviceDateFields.h"

#include "devices/Encodings.h"

namespace kt500::devices {

namespace {

// A field not on the page yet takes no write and reads as empty.
form::Control* element(const form::Form& form, PageElement where) {
    return form.find(where.array, where.index);
}

int selection(const form::Form& form, PageElement where) {
    const form::Control* list = element(form, where);
    return list != nullptr ? list->listIndex() : -1;
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void PutDeviceDate(form::Form& form, const DateFields& fields, std::int16_t intDay,
                   std::int16_t intMonth, std::int16_t intYear) {
    if (form::Control* day = element(form, fields.day)) {
        day->setListIndex(intDay >= 1 ? intDay - 1 : 1);
    }
    if (form::Control* month = element(form, fields.month)) {
        month->setListIndex(intMonth >= 1 ? intMonth - 1 : 1);
    }
    if (form::Control* year = element(form, fields.year)) {
        year->setText(std::to_string(intYear));
    }
}

std::string ReadDeviceDate(const form::Form& form, const DateFields& fields, bool blChecked) {
    const std::string day = std::to_string(selection(form, fields.day) + 1);
    const std::string month = std::to_string(selection(form, fields.month) + 1);
    const form::Control* yearField = element(form, fields.year);
    const std::string year = yearField != nullptr ? yearField->text() : std::string();
    if (blChecked) {
        const std::string yearText = trimmed(year);
        if (yearText.size() != 4 || !IsNum(yearText)) {
            return "invalid";
        }
        // What a device can hold: 1900 plus one byte. Four characters with
        // a decimal sign ("1,99") pass IsNum but are no year: read them
        // locale-free rather than fail.
        const double number = Str2Dbl(yearText);
        if (number < 1900 || number >= 2156) {
            return "invalid";
        }
    }
    return day + "." + month + "." + year;
}

std::vector<std::string> SplitDeviceDate(std::string_view strDate) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t dot = strDate.find('.'); dot != std::string_view::npos;
         dot = strDate.find('.', start)) {
        parts.emplace_back(strDate.substr(start, dot - start));
        start = dot + 1;
    }
    parts.emplace_back(strDate.substr(start));
    return parts;
}

}  // namespace kt500::devices
