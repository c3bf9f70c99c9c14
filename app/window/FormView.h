// The form as widgets: the user control at its fixed extents, every control
// of the form a widget in its container, in form order. The view observes
// the form and mirrors every property change to the widget at once; the
// widgets turn what the user does into the form's events through the logic
// gate. A control created at run time (a chart of a session) gets its
// widget when it enters the form, and loses it when it leaves.
#pragma once

#include "app/window/IconStore.h"
#include "app/window/LogicGate.h"
#include "app/window/TwipScale.h"
#include "app/window/WidgetBinding.h"
#include "form/Form.h"

#include <QWidget>

#include <map>
#include <memory>

class QAction;

namespace kt500::window {

class FormView final : public QWidget {
public:
    FormView(form::Form& form, IconStore& icons, LogicGate& gate, TwipScale scale,
             QWidget* parent = nullptr);
    ~FormView() override;
    FormView(const FormView&) = delete;
    FormView& operator=(const FormView&) = delete;

    // The widget of a control; nullptr for a control without one.
    [[nodiscard]] QWidget* widgetOf(const form::Control& control) const;
    // The action of a toolbar item of smuiDTM; nullptr when none.
    [[nodiscard]] QAction* toolbarAction(const std::string& key) const;
    [[nodiscard]] form::Form& form() const noexcept { return m_form; }
    [[nodiscard]] const TwipScale& scale() const noexcept { return m_scale; }

private:
    void build(form::Control& control);
    void onChange(const form::PropertyChange& change);
    // Sets the widget's geometry from the control's; a chart fits its page.
    void place(const form::Control& control, QWidget& widget) const;
    void mirrorCommon(form::Control& control, QWidget& widget, form::PropertyId id);
    void mirrorUserControl(form::PropertyId id);
    [[nodiscard]] QWidget* containerWidget(const form::Control& control) const;

    form::Form& m_form;
    TwipScale m_scale;
    ViewContext m_context;
    std::map<const form::Control*, std::unique_ptr<WidgetBinding>> m_bindings;
    std::size_t m_observer = 0;
    bool m_busyCursor = false;
};

}  // namespace kt500::window
