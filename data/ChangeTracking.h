// ChangeTracking: what the pages remember of a user's edits: the
// validation of an edited value, the confirmation rows that count as
// changed, the page snapshots to compare with and restore from, and the
// tree icons of the pages.
#pragma once

#include "devices/IUserControl.h"

#include <optional>
#include <string>

namespace kt500::data {

class ChangeTracking {
public:
    explicit ChangeTracking(devices::IUserControl& control) : m_control(control) {}

    // Validates an edited text field against its parameter's limits, type
    // and decimals. A refused value turns red with the "error" mark and is
    // shown in a message; a good one gets the changed mark. A field without
    // a Tag is not validated (False); an empty text is good.
    bool CheckValue(form::Control& control);
    // The value field strTag of page strFrame had in the current page's
    // snapshot; "" when there is no snapshot or no such field.
    std::string GetOldValue(const std::string& strTag, const std::string& strFrame);
    // Takes the snapshot of every page the class saves, in the order of the
    // fields that RestoreOldValues puts back.
    void SaveOldValues();
    // True for an item the class never writes as a normal parameter, or
    // when a confirmation row of this check state names it.
    bool CheckIfValueChanged(const std::string& strName, bool blChecked);
    // Puts one field (strTag given) or every field of a page back from the snapshot.
    void RestoreOldValues(const std::string& strFrame, const std::string& strTag);
    // Removes the confirmation row whose text is strItem.
    void RemoveSpecialCaseItem(const std::string& strItem);
    // Gives a navigation node the image of a state word; "changed" is
    // ignored while a read shows its progress.
    void ChangeTreeIcon(const std::string& str_name, const std::string& str_access);

private:
    // The message that refuses the field's text, or nothing when the check
    // takes it; shows nothing and colours nothing.
    [[nodiscard]] std::optional<std::string> Refusal(const form::Control& control);

    devices::IUserControl& m_control;
};

// After a write of strRequestGroup has been taken: the snapshot of its page
// takes what each field shows now, so that an undo goes back to what the
// device (offline the data set) holds, not to what it held before the
// write. A field with a row in the confirmation list, or a refused (red)
// one, keeps its snapshot value.
void KeepWrittenValues(devices::IUserControl& control, const std::string& strRequestGroup);

}  // namespace kt500::data
