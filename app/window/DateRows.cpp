#include "app/window/DateRows.h"

#include <algorithm>
#include <cctype>

namespace kt500::window {

namespace {

using Look = form::Control::Look;

bool IsPartLook(Look look) {
    return look == Look::DateDay || look == Look::DateMonth;
}

bool InBand(const form::Control& control, const TwipBand& band) {
    return control.top() < band.bottom && band.top < control.top() + control.height();
}

TwipBand BandOf(const form::Control& control) {
    return {control.top(), control.top() + control.height()};
}

// The date's year box beside a control of a day's or month's row.
const form::Control* YearBeside(const form::Form& form, const form::Control& control) {
    for (const form::Control* sibling : form.children(control.container())) {
        if (sibling->look() == Look::Date) {
            return sibling;
        }
    }
    return nullptr;
}

}  // namespace

DateParts DatePartsOf(const form::Form& form, const form::Control& member) {
    DateParts parts;
    for (form::Control* sibling : form.children(member.container())) {
        switch (sibling->look()) {
            case Look::DateDay:
                parts.day = sibling;
                break;
            case Look::DateMonth:
                parts.month = sibling;
                break;
            case Look::Date:
                parts.year = sibling;
                break;
            default:
                break;
        }
    }
    return parts;
}

std::vector<TwipBand> DatePartBands(const form::Form& form, const form::Control& page) {
    std::vector<TwipBand> bands;
    for (const form::Control* child : form.children(&page)) {
        if (child->rowPart() && IsPartLook(child->look())) {
            bands.push_back(BandOf(*child));
        }
    }
    return bands;
}

DatePlace DatePlaceOf(const form::Form& form, const form::Control& control) {
    if (!control.rowPart() || control.container() == nullptr) {
        return DatePlace::Own;
    }
    for (const TwipBand& band : DatePartBands(form, *control.container())) {
        if (InBand(control, band)) {
            return control.kind() == form::ControlKind::Image ? DatePlace::AtDateMark
                                                              : DatePlace::Dropped;
        }
    }
    return DatePlace::Own;
}

const form::Control* DateMarkFor(const form::Form& form, const form::Control& mark) {
    const form::Control* year = YearBeside(form, mark);
    if (year == nullptr) {
        return nullptr;
    }
    const TwipBand band = BandOf(*year);
    for (const form::Control* sibling : form.children(mark.container())) {
        if (sibling->rowPart() && sibling->kind() == form::ControlKind::Image &&
            InBand(*sibling, band)) {
            return sibling;
        }
    }
    return nullptr;
}

QDate FirstDeviceDate() {
    return {1900, 1, 1};
}

QDate LastDeviceDate() {
    return {2155, 12, 31};
}

QDate DateOf(const DateParts& parts) {
    if (parts.day == nullptr || parts.month == nullptr || parts.year == nullptr) {
        return {};
    }
    const int day = parts.day->listIndex() + 1;
    const int month = parts.month->listIndex() + 1;
    std::string year = parts.year->text();
    year.erase(0, year.find_first_not_of(' '));
    year.erase(year.find_last_not_of(' ') + 1);
    if (day < 1 || month < 1 || month > 12 || year.size() != 4 ||
        !std::all_of(year.begin(), year.end(),
                     [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; })) {
        return {};
    }
    const QDate first(std::stoi(year), month, 1);
    if (!first.isValid() || first < FirstDeviceDate() || first > LastDeviceDate()) {
        return {};
    }
    return first.addDays(std::min(day, first.daysInMonth()) - 1);
}

DateEntries EntriesOf(const QDate& date) {
    return {date.day() - 1, date.month() - 1, std::to_string(date.year())};
}

}  // namespace kt500::window
