#include "app/window/TwipScale.h"

#include "form/Control.h"

namespace kt500::window {

QRect TwipScale::rect(const form::Control& control) const {
    // Edges are rounded, not sizes, so that neighbours that touch in twips
    // touch in pixels too.
    const int left = pixels(control.left());
    const int top = pixels(control.top());
    return {left, top, pixels(control.left() + control.width()) - left,
            pixels(control.top() + control.height()) - top};
}

}  // namespace kt500::window
