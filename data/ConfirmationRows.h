// ConfirmationRows: the removals from lsvConfirmation that the request and
// the reply side share. A row's sub-item 4 is the frame tag of its page;
// the request group is that tag less the family prefix.
#pragma once

#include "data/GroupFields.h"
#include "form/Form.h"

#include <optional>
#include <string_view>

namespace kt500::data {

// Drops the rows that the read of a request group answers for
// (GroupFields): pending edits give way when their values are read again;
// rows of other groups shown on the group's page stay.
void RemoveGroupRows(const form::Form& form, const GroupFields& read);

// Drops the row of parameter strName (sub-item 3): the value it stood for
// is no longer what the field holds.
void RemoveParameterRow(const form::Form& form, std::string_view strName);

// Drops every checked row: what a completed write has taken.
void RemoveCheckedRows(const form::Form& form);

// True when a row stands for parameter strName, with blChecked only a row
// ticked (true) or not (false).
[[nodiscard]] bool HasRow(const form::Form& form, std::string_view strName,
                          std::optional<bool> blChecked = std::nullopt);

// True when a checked row stands for parameter strName: the user confirmed
// its new value.
[[nodiscard]] bool HasCheckedRow(const form::Form& form, std::string_view strName);

// True when a checked row of parameter strName has equal old and new values:
// a row that "Add all values" made from the data set, not an edit.
[[nodiscard]] bool HasCheckedDataSetRow(const form::Form& form, std::string_view strName);

}  // namespace kt500::data
