// The form: every control of the user control in form order (the order of
// the form files, depth first, then controls added at run time), found by
// name and control-array index; containers; the user control's own
// members; the event sink; the observers of property changes; the timers.
//
// The logic reads and writes only this model. The Qt view builds widgets
// from it, mirrors every change the observers report, and raises the user's
// events here; the headless script runner raises the same events.
#pragma once

#include "form/Control.h"
#include "form/FormEvent.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::form {

// One change of one property: the control, the property, and for a
// collection the item's key (tree node, toolbar item) or number (list view
// row, list entry), "" and -1 otherwise. Valid during the call only.
struct PropertyChange {
    Control& control;
    PropertyId property;
    std::string_view key;
    int item = -1;
};
using PropertyObserver = std::function<void(const PropertyChange& change)>;

// The elements of one control array, or the one control of a plain name.
class ControlArray {
public:
    explicit ControlArray(std::string name) : m_name(std::move(name)) {}

    [[nodiscard]] const std::string& name() const noexcept { return m_name; }
    // False for a plain control (index -1).
    [[nodiscard]] bool isArray() const noexcept;
    [[nodiscard]] std::size_t count() const noexcept { return m_elements.size(); }
    // Indices in ascending order; they may have gaps.
    [[nodiscard]] std::vector<int> indices() const;
    // Throws std::out_of_range naming the array and the index.
    [[nodiscard]] Control& operator[](int index) const;
    [[nodiscard]] Control* find(int index) const noexcept;

private:
    friend class Form;
    std::string m_name;
    std::map<int, Control*> m_elements;
};

class Form {
public:
    // The user control's fixed extents, in twips.
    static constexpr int kUserControlWidth = 11430;
    static constexpr int kUserControlHeight = 8085;

    Form();
    ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    // Adds a control at the end of the form order, inside container (nullptr:
    // the user control), and reports it to the observers as a change of its
    // Container. A name and index already present, or a name used
    // both as an array and as a plain control, throws std::invalid_argument.
    Control& add(ControlKind kind, std::string name, int index = -1, Control* container = nullptr);
    // Removes a control that contains none (a chart at release), reported
    // to the observers as a change of its Name just before it goes.
    void remove(Control& control);

    // Throws std::out_of_range naming the control ("txtX(2)").
    [[nodiscard]] Control& control(std::string_view name, int index = -1) const;
    [[nodiscard]] Control* find(std::string_view name, int index = -1) const noexcept;
    [[nodiscard]] const ControlArray& array(std::string_view name) const;
    [[nodiscard]] const ControlArray* findArray(std::string_view name) const noexcept;
    // Every element of a control array, or the plain control, in index
    // order; empty when the form holds no control of that name.
    [[nodiscard]] std::vector<Control*> elements(std::string_view name) const;

    // Every control in form order; the walk of FetchValueByTag.
    [[nodiscard]] const std::vector<Control*>& controls() const noexcept { return m_order; }
    // The controls whose Tag is tag, in form order: the walk of controls()
    // narrowed to one tag, without visiting the others. Kept as tags change.
    [[nodiscard]] const std::vector<Control*>& tagged(std::string_view tag) const;
    // Direct children of a container in form order (nullptr: the user control's).
    [[nodiscard]] std::vector<Control*> children(const Control* container) const;
    // Whether control lies in container, directly or through frames within.
    [[nodiscard]] static bool isInside(const Control& control, const Control& container) noexcept;
    void setContainer(Control& control, Control* container);

    // The user control itself: MousePointer, Width, Height, Visible.
    [[nodiscard]] Control& userControl() noexcept { return *m_userControl; }
    [[nodiscard]] const Control& userControl() const noexcept { return *m_userControl; }

    // Events. Delivered synchronously to the sink; none is set: dropped.
    void setEventSink(EventSink sink);
    void raise(FormEvent& event);
    void raiseClick(Control& control);
    void raiseDblClick(Control& control);
    void raiseChange(Control& control);
    // Returns the key code after the handler: 0 when it swallowed the key.
    int raiseKeyPress(Control& control, int keyAscii);
    void raiseGotFocus(Control& control);
    void raiseLostFocus(Control& control);
    // The control that holds the focus, from its GotFocus to its LostFocus;
    // none between. Only the user edits the control that has the focus: a
    // write into any other control is the program's own.
    [[nodiscard]] const Control* focused() const noexcept { return m_focused; }
    // Sets the row's check box first, as the list view does, then raises.
    void raiseItemCheck(Control& listView, int row, bool checked);
    // Selects the node first, as the tree view does; an unknown key throws.
    void raiseNodeClick(Control& tree, std::string_view nodeKey);
    void raiseToolbarClick(Control& toolbar, std::string_view itemKey);
    void raiseMouseDown(Control& control, int button);
    void raiseZoom(Control& chart, bool zoomIn);
    void raiseResize();

    // Timers: advances every running timer by the time given and raises one
    // Timer event per interval elapsed, earliest first.
    void advanceTimers(int milliseconds);
    // Milliseconds until the next tick of a running timer; none when no timer runs.
    [[nodiscard]] std::optional<int> nextTimerTick() const;

    // Observers of property changes; the id removes one again.
    std::size_t addObserver(PropertyObserver observer);
    void removeObserver(std::size_t id);

private:
    friend class Control;
    void notify(const PropertyChange& change);
    void optionSelected(Control& option);
    void retag(Control& control, const std::string& former);
    Control* m_focused = nullptr;

    std::vector<std::unique_ptr<Control>> m_owned;
    std::vector<Control*> m_order;
    std::uint64_t m_nextSequence = 0;
    std::map<std::string, std::vector<Control*>, std::less<>> m_tagged;
    std::map<std::string, ControlArray, std::less<>> m_arrays;
    std::unique_ptr<Control> m_userControl;
    EventSink m_sink;
    std::map<std::size_t, PropertyObserver> m_observers;
    std::size_t m_nextObserver = 1;
};

}  // namespace kt500::form
