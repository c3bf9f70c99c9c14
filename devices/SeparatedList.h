// The lists of the family held in one string: MonitoringValues,
// SavedFrames, CancelledGroups, the special case lists, page snapshots and
// the item and value strings of requests. Each element is followed by the
// separator, the character with code 164 ("¤"), kept in UTF-8 like every
// text of the system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kt500::devices {

inline constexpr std::string_view Separator = "\xC2\xA4";

// Appends strField and a separator.
inline void AppendSeparated(std::string& strList, std::string_view strField) {
    strList.append(strField);
    strList.append(Separator);
}

// The fields between the separators. A list that ends in a separator gives
// a last empty field, as a split does; an empty list gives one empty field.
[[nodiscard]] inline std::vector<std::string> SplitSeparated(std::string_view strList) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = strList.find(Separator, start);
        if (end == std::string_view::npos) {
            fields.emplace_back(strList.substr(start));
            return fields;
        }
        fields.emplace_back(strList.substr(start, end - start));
        start = end + Separator.size();
    }
}

// Whether strItem is one of the list's elements.
[[nodiscard]] inline bool InSeparated(std::string_view strList, std::string_view strItem) {
    for (const std::string& field : SplitSeparated(strList)) {
        if (field == strItem) {
            return true;
        }
    }
    return false;
}

}  // namespace kt500::devices
