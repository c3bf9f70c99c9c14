// Whether a widget's caption is cut off: a label's text, a button's caption
// or a frame's title wider than the widget shows.
#pragma once

#include <QAbstractButton>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QWidget>

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

}  // namespace kt500::window
