#include "app/window/ChartFit.h"

#include "form/Control.h"
#include "form/Form.h"

#include <algorithm>
#include <vector>

namespace kt500::window {

namespace {

form::Rect RectOf(const form::Control& control) {
    return {control.left(), control.top(), control.width(), control.height()};
}

bool Overlap(const form::Rect& a, const form::Rect& b) {
    return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

long long Area(const form::Rect& r) {
    return r.width > 0 && r.height > 0 ? static_cast<long long>(r.width) * r.height : 0;
}

}  // namespace

form::Rect FittedChartRect(const form::Form& form, const form::Control& chart) {
    const form::Rect placed = RectOf(chart);
    const form::Control* frame = chart.container();
    if (frame == nullptr) {
        return placed;
    }
    // Inside the frame's border.
    const form::Rect inside{placed.left, placed.top,
                            std::min(placed.right(), frame->width() - kFrameBorder) - placed.left,
                            std::min(placed.bottom(), frame->height() - kFrameBorder) - placed.top};
    if (Area(inside) == 0) {
        return {placed.left, placed.top, 0, 0};
    }
    // The shown controls in the way, each grown by the clearance.
    const int c = kChartClearance;
    std::vector<form::Rect> blocks;
    for (const form::Control* other : form.children(frame)) {
        if (other == &chart || other->kind() == form::ControlKind::Chart || !other->visible()) {
            continue;
        }
        const form::Rect in = RectOf(*other);
        const form::Rect grown{in.left - c, in.top - c, in.width + 2 * c, in.height + 2 * c};
        if (in.width > 0 && in.height > 0 && Overlap(inside, grown)) {
            blocks.push_back(grown);
        }
    }
    if (blocks.empty()) {
        return inside;
    }
    // The largest free rectangle: its left, right and top edges lie on the
    // placed rectangle's or on a block's; its bottom is the nearest block
    // below across its width. Pages hold a few dozen controls at most.
    std::vector<int> lefts{inside.left};
    std::vector<int> rights{inside.right()};
    std::vector<int> tops{inside.top};
    for (const form::Rect& b : blocks) {
        lefts.push_back(std::max(inside.left, b.right()));
        rights.push_back(std::min(inside.right(), b.left));
        tops.push_back(std::max(inside.top, b.bottom()));
    }
    form::Rect best{placed.left, placed.top, 0, 0};
    for (const int left : lefts) {
        for (const int right : rights) {
            if (right <= left) {
                continue;
            }
            for (const int top : tops) {
                int bottom = inside.bottom();
                for (const form::Rect& b : blocks) {
                    if (b.left < right && left < b.right() && b.bottom() > top) {
                        bottom = std::min(bottom, std::max(top, b.top));
                    }
                }
                const form::Rect candidate{left, top, right - left, bottom - top};
                if (Area(candidate) > Area(best)) {
                    best = candidate;
                }
            }
        }
    }
    return best;
}

}  // namespace kt500::window
