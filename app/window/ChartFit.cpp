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

bool Shown(const form::Control& control) {
    return !control.has(form::PropertyId::Visible) || control.visible();
}

// The placed rectangle grown upwards over the free room above it: up to
// the lowest shown control above it across its width, or to the frame's
// first row.
form::Rect GrownUp(const form::Form& form, const form::Control& chart, form::Rect placed) {
    int ceiling = kFrameTop;
    for (const form::Control* other : form.children(chart.container())) {
        if (other == &chart || other->kind() == form::ControlKind::Chart || !Shown(*other)) {
            continue;
        }
        const form::Rect in = RectOf(*other);
        if (in.width <= 0 || in.height <= 0 || in.right() <= placed.left ||
            placed.right() <= in.left || in.top >= placed.top) {
            continue;
        }
        ceiling = std::max(ceiling, in.bottom() + kChartClearance);
    }
    if (ceiling < placed.top) {
        placed.height += placed.top - ceiling;
        placed.top = ceiling;
    }
    return placed;
}

}  // namespace

form::Rect FittedChartRect(const form::Form& form, const form::Control& chart) {
    const form::Control* frame = chart.container();
    if (frame == nullptr) {
        return RectOf(chart);
    }
    const form::Rect placed = GrownUp(form, chart, RectOf(chart));
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
        if (other == &chart || other->kind() == form::ControlKind::Chart || !Shown(*other)) {
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
