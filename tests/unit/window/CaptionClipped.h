// Whether a page's widgets are drawn whole: no caption cut off, none over its
// frame's edge or over another.
#pragma once

#include "app/window/FormView.h"

#include <QAbstractButton>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QWidget>

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace kt500::window {

inline bool Clipped(const QWidget& widget) {
    const QFontMetrics metrics = widget.fontMetrics();
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return !label->wordWrap() && !label->text().isEmpty() &&
               metrics.horizontalAdvance(label->text()) > label->contentsRect().width();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return !button->text().isEmpty() && button->sizeHint().width() > button->width();
    }
    if (const auto* frame = qobject_cast<const QGroupBox*>(&widget)) {
        return metrics.horizontalAdvance(frame->title()) > frame->width();
    }
    return false;
}

// Every widget the page shows is whole, inside its frame and over no other.
inline void ExpectPageWhole(FormView& view, const form::Control& page) {
    QWidget* pageWidget = view.widgetOf(page);
    std::map<QWidget*, std::vector<QWidget*>> shownIn;
    for (const form::Control* control : view.form().controls()) {
        QWidget* w = view.widgetOf(*control);
        if (w == nullptr || !form::Form::isInside(*control, page) ||
            !w->isVisibleTo(pageWidget)) {
            continue;
        }
        const std::string name = page.tag() + ": " + control->displayName();
        EXPECT_FALSE(Clipped(*w)) << name << " is cut off";
        if (QWidget* parent = w->parentWidget(); parent != nullptr && parent != &view) {
            EXPECT_TRUE(parent->rect().contains(w->geometry())) << name << " leaves its frame";
        }
        for (QWidget* other : shownIn[w->parentWidget()]) {
            EXPECT_FALSE(other->geometry().intersects(w->geometry()))
                << name << " overlaps " << other->objectName().toStdString();
        }
        shownIn[w->parentWidget()].push_back(w);
    }
}

}  // namespace kt500::window
