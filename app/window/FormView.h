// The form as widgets: the user control at its fixed extents, every control
// of the form a widget in its container, in form order. The view observes
// the form and mirrors every property change to the widget at once; the
// widgets turn what the user does into the form's events through the logic
// gate. A control created at run time (a chart of a session) gets its
// widget when it enters the form, and loses it when it leaves.
//
// The tree's pane can be widened with the handle between it and the page
// (a splitter): the tree grows, and what lies right of it moves by as much;
// the form's own measures stay as the logic set them. The pane is never
// narrower than the tree's longest caption. A field's tool tip adds what
// the parameter document says of its value (the hint source).
#pragma once

#include "app/window/IconStore.h"
#include "app/window/LogicGate.h"
#include "app/window/TwipScale.h"
#include "app/window/WidgetBinding.h"
#include "form/Form.h"

#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <string>

class QAction;

namespace kt500::window {

class FormView final : public QWidget {
public:
    // timeStampFormat: what a page's time stamp shows, "%1" the time.
    FormView(form::Form& form, IconStore& icons, LogicGate& gate, TwipScale scale,
             QWidget* parent = nullptr, QString timeStampFormat = QStringLiteral("%1"));
    ~FormView() override;
    FormView(const FormView&) = delete;
    FormView& operator=(const FormView&) = delete;

    // The widget of a control; nullptr for a control without one.
    [[nodiscard]] QWidget* widgetOf(const form::Control& control) const;
    // The action of a toolbar item of smuiDTM; nullptr when none.
    [[nodiscard]] QAction* toolbarAction(const std::string& key) const;
    [[nodiscard]] form::Form& form() const noexcept { return m_form; }
    [[nodiscard]] const TwipScale& scale() const noexcept { return m_scale; }
    [[nodiscard]] LogicGate& gate() const noexcept { return m_context.gate; }

    // The text that a control's tool tip adds to its own: what the
    // parameter document says of its Tag. Re-applies every tool tip.
    using HintSource = std::function<QString(const form::Control& control)>;
    void setHintSource(HintSource source);

    // The device's type number and its model name: the model labels of the
    // pages show the name where the device reports the number.
    void setDeviceModel(const QString& typeId, const QString& modelName);

    // The letters that Alt already opens elsewhere (the menu bar's): the
    // buttons of a page take mnemonics of other letters, each once on
    // its page.
    void setReservedMnemonics(const QString& letters);

    // The pixels the tree's pane is wider than the form says; never below
    // minimumTreeExtra(). Emits nothing: the window asks when it saves.
    [[nodiscard]] int treeExtra() const noexcept { return m_treeExtra; }
    void setTreeExtra(int pixels);
    // The widening that the tree's longest caption needs.
    [[nodiscard]] int minimumTreeExtra() const;
    // The handle that widens the tree's pane; hidden with the tree.
    [[nodiscard]] QWidget* splitHandle() const noexcept { return m_splitHandle; }
    // Where a control's widget stands: its form measures, moved or widened
    // by the tree's pane.
    [[nodiscard]] QRect placed(const form::Control& control) const;

private:
    void build(form::Control& control);
    // Builds a control once, its container first: the start-up moves shared
    // controls onto pages that the form declares after them.
    void buildAfterContainer(form::Control& control);
    void onChange(const form::PropertyChange& change);
    void mirrorCommon(form::Control& control, QWidget& widget, form::PropertyId id);
    void mirrorUserControl(form::PropertyId id);
    // A change of the device date's day or month list, which have no
    // widget, redraws the date editor of the year's row.
    void mirrorDatePart(const form::Control& control, const form::PropertyChange& change);
    [[nodiscard]] QWidget* containerWidget(const form::Control& control) const;
    void applyToolTip(const form::Control& control, QWidget& widget);
    // Tab goes through each page's fields in reading order: by rows from
    // the top, in a row from the left.
    void orderTabs();
    // Gives the buttons on a page (a frame on the user control, or the user
    // control itself) their mnemonics anew.
    void assignMnemonics(const form::Control* page);
    // Places the widgets on a page again: a row shown or hidden moves the
    // rows below it.
    void placeRows(const form::Control& page);
    // Places the charts in a container again: a control shown or hidden
    // there changes the room they take.
    void placeCharts(const form::Control& container);
    // Places every widget of the user control again and sizes the view.
    void relayout();
    [[nodiscard]] bool treeShown() const;

    form::Form& m_form;
    TwipScale m_scale;
    ViewContext m_context;
    std::map<const form::Control*, std::unique_ptr<WidgetBinding>> m_bindings;
    std::size_t m_observer = 0;
    bool m_busyCursor = false;
    HintSource m_hints;
    int m_treeExtra = 0;
    QWidget* m_splitHandle = nullptr;
    const form::Control* m_tree = nullptr;
    QString m_reservedMnemonics;
};

}  // namespace kt500::window
