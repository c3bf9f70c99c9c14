#include "app/window/FormView.h"

#include "app/window/ChartFit.h"

#include <QAction>
#include <QApplication>
#include <QSignalBlocker>
#include <QToolBar>

namespace kt500::window {

namespace {

using form::ControlKind;
using form::PropertyId;

constexpr int kHourglass = 11;

}  // namespace

FormView::FormView(form::Form& form, IconStore& icons, LogicGate& gate, TwipScale scale,
                   QWidget* parent)
    : QWidget(parent), m_form(form), m_scale(scale), m_context{form, m_scale, icons, gate} {
    setObjectName(QStringLiteral("RavikKT500"));
    setFixedSize(m_scale.pixels(form::Form::kUserControlWidth),
                 m_scale.pixels(form::Form::kUserControlHeight));
    for (form::Control* control : form.controls()) {
        build(*control);
    }
    // The progress frame lies over the foot of the pages, which the later
    // family files declare: it stays on top of them.
    if (const form::Control* progress = form.find("fraProgress")) {
        if (QWidget* widget = widgetOf(*progress)) {
            widget->raise();
        }
    }
    mirrorUserControl(PropertyId::MousePointer);
    m_observer = form.addObserver([this](const form::PropertyChange& change) { onChange(change); });
}

FormView::~FormView() {
    m_form.removeObserver(m_observer);
    if (m_busyCursor) {
        QApplication::restoreOverrideCursor();
    }
}

QWidget* FormView::containerWidget(const form::Control& control) const {
    if (control.container() == nullptr) {
        return const_cast<FormView*>(this);
    }
    return widgetOf(*control.container());
}

QWidget* FormView::widgetOf(const form::Control& control) const {
    const auto found = m_bindings.find(&control);
    return found == m_bindings.end() ? nullptr : found->second->widget();
}

QAction* FormView::toolbarAction(const std::string& key) const {
    const form::Control* toolbar = m_form.find("smuiDTM", 1);
    QWidget* widget = toolbar == nullptr ? nullptr : widgetOf(*toolbar);
    return widget == nullptr ? nullptr : widget->findChild<QAction*>(QString::fromStdString(key));
}

void FormView::build(form::Control& control) {
    auto binding = MakeBinding(control, m_context, containerWidget(control));
    QWidget* widget = binding->widget();
    WidgetBinding& bound = *m_bindings.emplace(&control, std::move(binding)).first->second;
    if (widget == nullptr) {
        return;
    }
    const QSignalBlocker blocker(widget);
    place(control, *widget);
    bound.mirrorAll();
    mirrorCommon(control, *widget, PropertyId::Enabled);
    mirrorCommon(control, *widget, PropertyId::ToolTipText);
    mirrorCommon(control, *widget, PropertyId::Visible);
}

void FormView::place(const form::Control& control, QWidget& widget) const {
    widget.setGeometry(control.kind() == form::ControlKind::Chart
                           ? m_scale.rect(FittedChartRect(m_form, control))
                           : m_scale.rect(control));
}

void FormView::mirrorCommon(form::Control& control, QWidget& widget, PropertyId id) {
    switch (id) {
        case PropertyId::Left:
        case PropertyId::Top:
        case PropertyId::Width:
        case PropertyId::Height:
            place(control, widget);
            break;
        case PropertyId::Visible:
            if (control.has(PropertyId::Visible)) {
                widget.setVisible(control.visible());
            }
            break;
        case PropertyId::Enabled:
            if (control.has(PropertyId::Enabled)) {
                widget.setEnabled(control.enabled());
            }
            break;
        case PropertyId::ToolTipText:
            if (control.has(PropertyId::ToolTipText)) {
                widget.setToolTip(QString::fromStdString(control.toolTipText()));
            }
            break;
        case PropertyId::Container:
            if (QWidget* parent = containerWidget(control); parent != widget.parentWidget()) {
                widget.setParent(parent);
                place(control, widget);
                widget.setVisible(control.visible());
            }
            break;
        default:
            break;
    }
}

void FormView::mirrorUserControl(PropertyId id) {
    const form::Control& user = m_form.userControl();
    if (id == PropertyId::MousePointer) {
        const bool busy = user.mousePointer() == kHourglass;
        if (busy && !m_busyCursor) {
            QApplication::setOverrideCursor(Qt::BusyCursor);
        } else if (!busy && m_busyCursor) {
            QApplication::restoreOverrideCursor();
        }
        m_busyCursor = busy;
    } else if (id == PropertyId::Visible) {
        setVisible(user.visible());
    }
}

void FormView::onChange(const form::PropertyChange& change) {
    form::Control& control = change.control;
    if (&control == &m_form.userControl()) {
        mirrorUserControl(change.property);
        return;
    }
    const auto found = m_bindings.find(&control);
    if (found == m_bindings.end()) {
        build(control);  // a control created at run time
        return;
    }
    WidgetBinding& binding = *found->second;
    QWidget* widget = binding.widget();
    if (change.property == PropertyId::Name) {  // leaving the form
        delete widget;
        m_bindings.erase(found);
        return;
    }
    if (widget == nullptr) {
        return;
    }
    const QSignalBlocker blocker(widget);
    mirrorCommon(control, *widget, change.property);
    binding.mirror(change.property, change.key, change.item);
}

}  // namespace kt500::window
