#include "app/window/TwipScale.h"

#include "form/Control.h"
#include "form/RowLayout.h"

namespace kt500::window {

QRect TwipScale::rect(const form::Control& control) const {
    return rect(form::Rect{control.left(), control.top(), control.width(), control.height()});
}

QRect TwipScale::rect(const form::Rect& twips) const {
    // Edges are rounded, not sizes, so that neighbours that touch in twips
    // touch in pixels too.
    const int left = pixels(twips.left);
    const int top = pixels(twips.top);
    return {left, top, pixels(twips.right()) - left, pixels(twips.bottom()) - top};
}

}  // namespace kt500::window
