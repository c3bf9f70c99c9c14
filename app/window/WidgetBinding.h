// The widget of one control of the form, and the mirror between them: every
// property change of the control is written to the widget at once, with the
// widget's signals blocked, and what the user does with the widget becomes
// the control's event through the logic gate. The logic never sees a widget.
#pragma once

#include "app/window/IconStore.h"
#include "app/window/LogicGate.h"
#include "app/window/TwipScale.h"
#include "form/Form.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <string>
#include <string_view>

namespace kt500::window {

// What every widget of a form view shares.
struct ViewContext {
    form::Form& form;
    const TwipScale& scale;
    IconStore& icons;
    LogicGate& gate;
    // What a page's time stamp says it is: "Last read: %1" in the session's
    // language.
    QString timeStampFormat = QStringLiteral("%1");
    // The device's type number as the device reports it, and the model
    // name a model label shows for it.
    QString modelId;
    QString modelName;
};

// A count with its digits grouped by threes (a narrow space between the
// groups, in every language); any other text as it is.
[[nodiscard]] QString GroupedDigits(const QString& text);

class WidgetBinding {
public:
    WidgetBinding(form::Control& control, ViewContext& context)
        : m_control(control), m_context(context) {}
    virtual ~WidgetBinding() = default;
    WidgetBinding(const WidgetBinding&) = delete;
    WidgetBinding& operator=(const WidgetBinding&) = delete;

    [[nodiscard]] form::Control& control() const noexcept { return m_control; }
    // The widget, or nullptr for a control that shows none (timers, menus).
    [[nodiscard]] virtual QWidget* widget() const = 0;
    // Writes one property of the control to the widget. The geometry,
    // Visible, Enabled, ToolTipText and Container are the view's.
    virtual void mirror(form::PropertyId id, std::string_view key, int item) = 0;
    // Writes every property of the kind, as at creation.
    virtual void mirrorAll() = 0;

protected:
    // Raises an event of the control through the gate.
    void deliver(std::function<void()> call) { m_context.gate.run(std::move(call)); }
    // The colours of the control on the widget: ForeColor as the text, and
    // BackColor as the field's ground (text boxes, lists) or, when set away
    // from white, as a label's ground.
    void applyColors(QWidget& widget, bool fieldGround) const {
        applyColors(widget, fieldGround, m_control);
    }
    // The same with the colours of another control (a widget that draws
    // several controls shows the colours of the one that matters most).
    void applyColors(QWidget& widget, bool fieldGround, const form::Control& source) const;

    form::Control& m_control;
    ViewContext& m_context;
};

// A widget for the control inside parent; nullptr parent for a control
// without a widget.
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeBinding(form::Control& control,
                                                         ViewContext& context, QWidget* parent);

// The kinds' factories, each in the file of its widgets; nullptr when the
// kind is not theirs.
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeFieldBinding(form::Control& control,
                                                              ViewContext& context,
                                                              QWidget* parent);
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeItemViewBinding(form::Control& control,
                                                                 ViewContext& context,
                                                                 QWidget* parent);
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeToolbarBinding(form::Control& control,
                                                                ViewContext& context,
                                                                QWidget* parent);
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeChartBinding(form::Control& control,
                                                              ViewContext& context,
                                                              QWidget* parent);
// The file list of the file page as a file chooser (FileChooserBinding.cpp).
// The device date's year box as one date editor over the day, month and
// year (DateEditBinding.cpp).
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeDateEditBinding(form::Control& control,
                                                                 ViewContext& context,
                                                                 QWidget* parent);
[[nodiscard]] std::unique_ptr<WidgetBinding> MakeFileChooserBinding(form::Control& control,
                                                                    ViewContext& context,
                                                                    QWidget* parent);

// A text of the form (UTF-8) as Qt's.
[[nodiscard]] inline QString Qs(const std::string& text) {
    return QString::fromStdString(text);
}

// 0xBBGGRR as the system holds colours, as a Qt colour.
[[nodiscard]] QColor ColorOf(std::uint32_t bgr);

}  // namespace kt500::window
