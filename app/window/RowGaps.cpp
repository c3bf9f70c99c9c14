#include "app/window/RowGaps.h"

#include "app/window/DateRows.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kt500::window {

namespace {

struct Band {
    int top;
    int bottom;
};

bool Shows(const form::Control& control) {
    return !control.has(form::PropertyId::Visible) || control.visible();
}

}  // namespace

const form::Control* RowPageOf(const form::Control& control) {
    const form::Control* page = control.container();
    if (page == nullptr || page->kind() != form::ControlKind::Frame ||
        page->container() != nullptr || page->form() == nullptr) {
        return nullptr;
    }
    for (const form::Control* child : page->form()->children(page)) {
        if (child->rowPart()) {
            return page;
        }
    }
    return nullptr;
}

int RowGapShift(const form::Form& form, const form::Control& control) {
    const form::Control* page = RowPageOf(control);
    if (page == nullptr) {
        return 0;
    }
    const std::vector<form::Control*> children = form.children(page);
    // The rows' part of the page ends with its last row.
    int rowsBottom = 0;
    for (const form::Control* child : children) {
        if (child->rowPart()) {
            rowsBottom = std::max(rowsBottom, child->top() + child->height());
        }
    }
    if (control.top() >= rowsBottom) {
        return 0;
    }
    // The day's and month's rows of the device date are drawn by the
    // date's row: they give their room as hidden rows do.
    const std::vector<TwipBand> dateParts = DatePartBands(form, *page);
    const auto drawnElsewhere = [&dateParts](const Band& band) {
        return std::any_of(dateParts.begin(), dateParts.end(), [&band](const TwipBand& part) {
            return part.top < band.bottom && band.top < part.bottom;
        });
    };
    std::vector<Band> shown;
    std::vector<Band> hidden;
    for (const form::Control* child : children) {
        if (child->top() >= rowsBottom) {
            continue;
        }
        const Band band{child->top(), child->top() + child->height()};
        (Shows(*child) && !(child->rowPart() && drawnElsewhere(band)) ? shown : hidden)
            .push_back(band);
    }
    // A hidden band that nothing shown crosses gives up its room down to
    // the next shown control below it.
    std::vector<Band> removed;
    for (const Band& band : hidden) {
        const bool crossed = std::any_of(shown.begin(), shown.end(), [&](const Band& s) {
            return s.top < band.bottom && band.top < s.bottom;
        });
        if (crossed) {
            continue;
        }
        int next = rowsBottom;
        bool below = false;
        for (const Band& s : shown) {
            if (s.top >= band.bottom && s.top <= next) {
                next = s.top;
                below = true;
            }
        }
        if (below) {
            removed.push_back({band.top, next});
        }
    }
    std::sort(removed.begin(), removed.end(),
              [](const Band& a, const Band& b) { return a.top < b.top; });
    int shift = 0;
    int covered = 0;  // the lowest edge of the removed room counted so far
    for (const Band& band : removed) {
        if (band.bottom > control.top()) {
            break;
        }
        const int from = std::max(band.top, covered);
        if (band.bottom > from) {
            shift += band.bottom - from;
            covered = band.bottom;
        }
    }
    return shift;
}

}  // namespace kt500::window
