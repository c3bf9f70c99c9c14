// The two-part values of the safety valve controller's test schedule. The
// device keeps a test interval and the time to the next test in hours; the
// pages show an interval as a count with its unit and a switch, and the time
// to the next test as days, hours and minutes.
#pragma once

#include <string>
#include <string_view>

namespace kt500::devices {

struct IntervalParts {
    std::string count;  // in the unit below
    int unitIndex;      // 0 hours, 1 days
    int switchIndex;    // 0 the test is off (interval 0), 1 on
};

struct TimeParts {
    std::string days;
    std::string hours;
    std::string minutes;
};

// An interval in hours (the BL's text, "." or ","): whole days count in
// days, anything else in hours. An empty text is an interval of 0.
[[nodiscard]] IntervalParts SplitTestInterval(std::string_view strHours);
// A time in hours as whole days, hours and minutes; minutes are rounded.
[[nodiscard]] TimeParts SplitTestTime(std::string_view strHours);
// The interval in hours that a count, its unit (0 hours, 1 days) and the
// switch (0 off) stand for: the switch off or an empty count is 0. A count
// that is no number fails.
[[nodiscard]] double CombineTestInterval(std::string_view strCount, int unitIndex,
                                         int switchIndex);
// The whole days of a number of hours (rounded to the nearest day), as the
// device keeps them beside the hours.
[[nodiscard]] long long WholeDays(double hours);

}  // namespace kt500::devices
