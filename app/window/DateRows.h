// The device date as one editor. The form keeps the date as the logic has
// it: a day list, a month list and a year box, each in a row of its page.
// The window draws the year's row as one date editor over all three and
// leaves out the rows of the day and the month: their captions are not
// drawn, their changed marks stand at the date's own mark, and the rows
// below close up. The form, the logic and scripts see the three controls
// unchanged.
#pragma once

#include "form/Form.h"

#include <QDate>

#include <string>
#include <vector>

namespace kt500::window {

// The three controls of one device date; a member absent from the page is
// nullptr.
struct DateParts {
    form::Control* day = nullptr;
    form::Control* month = nullptr;
    form::Control* year = nullptr;
};

// The date that member (its day list, month list or year box) belongs to:
// the controls of those looks in the same container.
[[nodiscard]] DateParts DatePartsOf(const form::Form& form, const form::Control& member);

// Where the window draws a control of a page of rows.
enum class DatePlace {
    Own,         // its own place
    Dropped,     // part of a day's or month's row: not drawn
    AtDateMark,  // the changed mark of such a row: drawn at the date's mark
};
[[nodiscard]] DatePlace DatePlaceOf(const form::Form& form, const form::Control& control);
// The date's own mark that a mark of the day's or month's row stands at;
// nullptr when there is none.
[[nodiscard]] const form::Control* DateMarkFor(const form::Form& form,
                                               const form::Control& mark);

// The rows of the day and the month on a page, as bands of twips (top,
// bottom): whatever lies in them is drawn by the date's row.
struct TwipBand {
    int top;
    int bottom;
};
[[nodiscard]] std::vector<TwipBand> DatePartBands(const form::Form& form,
                                                  const form::Control& page);

// The earliest and latest date a device holds (its year is 1900 plus one
// byte).
[[nodiscard]] QDate FirstDeviceDate();
[[nodiscard]] QDate LastDeviceDate();

// The date the three controls hold; an invalid QDate when one is unset or
// the year is no year a device holds. A day past the month's end shows as
// the month's last day.
[[nodiscard]] QDate DateOf(const DateParts& parts);

// What the controls hold for a date: the lists' entries (0-based) and the
// year's text.
struct DateEntries {
    int dayIndex;
    int monthIndex;
    std::string year;
};
[[nodiscard]] DateEntries EntriesOf(const QDate& date);

}  // namespace kt500::window
