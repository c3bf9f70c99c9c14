// Undo: takes back the pending edits of one page or of every page that
// counts for undo, from the page snapshots and the parameter document.
#pragma once

#include "devices/IUserControl.h"

#include <string>

namespace kt500::datasets {

class Undo {
public:
    explicit Undo(devices::IUserControl& control) : m_control(control) {}

    // Drops the confirmation rows of a page, after putting the document's
    // value back on each field they name.
    void ClearPageChanges(const std::string& strFrame);
    // Restores every page marked offline "1" in the tree description and
    // drops its rows; the current page stays current.
    void UndoAllPages();

private:
    devices::IUserControl& m_control;
};

}  // namespace kt500::datasets
