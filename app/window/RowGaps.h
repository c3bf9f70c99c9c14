// The gap a hidden row leaves on a page of rows. The loader places the rows
// of a page at a fixed pitch, and the logic hides the rows a device lacks;
// the window moves what lies below such a row up by the room it took, so a
// page never shows a hole between its fields. Only the part of a page that
// holds rows closes up: the charts, buttons and time stamp under the rows
// stay where the form puts them, and the form's measures stay as they are.
#pragma once

#include "form/Form.h"

namespace kt500::window {

// How far, in twips, the window draws the control above the place the form
// gives it: the room of the hidden rows above it on its page. 0 for a
// control that is not on a page of rows or lies below its rows.
[[nodiscard]] int RowGapShift(const form::Form& form, const form::Control& control);

// The page whose rows the control closes up with: its container when that
// is a page (a frame on the user control) holding rows, else nullptr.
[[nodiscard]] const form::Control* RowPageOf(const form::Control& control);

}  // namespace kt500::window
