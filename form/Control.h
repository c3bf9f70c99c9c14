// One control of the form: its identity (name, element of a control array,
// kind, container), the properties the system reads and writes, and the
// model of its kind (list entries, tree, list view, toolbar, chart).
//
// A property the kind lacks fails at the call with std::invalid_argument
// naming the control and the property, as a member that a control lacks
// fails in the system's handlers. An index outside a list throws
// std::out_of_range naming the control.
//
// Every write that changes a value is reported to the form's observers.
// Writes raise the events the platform raises for them, and only on a real
// change: Text of a text box raises Change; ListIndex of a list box raises
// Click; Value of a check box raises Click; Value True of an option button
// clears the other options of its container and raises Click. That is why
// the system's handlers ignore their own writes through ConfirmFlag.
#pragma once

#include "form/ChartModel.h"
#include "form/ControlKind.h"
#include "form/FormEvent.h"
#include "form/ListModel.h"
#include "form/ListViewModel.h"
#include "form/Property.h"
#include "form/ToolbarModel.h"
#include "form/TreeModel.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kt500::form {

class Form;

class Control {
public:
    // A control outside a form: tests and the loader's checks. The form
    // creates its own through Form::add.
    Control(ControlKind kind, std::string name, int index = -1);
    ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    // Identity.
    [[nodiscard]] ControlKind kind() const noexcept { return m_kind; }
    [[nodiscard]] const std::string& name() const noexcept { return m_name; }
    [[nodiscard]] int index() const noexcept { return m_index; }
    [[nodiscard]] bool isArrayElement() const noexcept { return m_index >= 0; }
    // "txtHAOperationUnit(2)" for an element, the bare name otherwise.
    [[nodiscard]] std::string displayName() const;
    // The frame (or other control) it lies in; nullptr is the user control.
    [[nodiscard]] Control* container() const noexcept { return m_container; }
    [[nodiscard]] Form* form() const noexcept { return m_form; }

    // Translation keys of Caption (or Text) and ToolTipText; the language
    // service turns them into texts.
    [[nodiscard]] const std::string& captionKey() const noexcept { return m_captionKey; }
    void setCaptionKey(std::string key) { m_captionKey = std::move(key); }
    [[nodiscard]] const std::string& toolTipKey() const noexcept { return m_toolTipKey; }
    void setToolTipKey(std::string key) { m_toolTipKey = std::move(key); }

    // Texts. Text of a list box is the selected entry's text; writing it
    // selects the first entry with that text (none: std::invalid_argument).
    [[nodiscard]] std::string text() const;
    void setText(std::string text);
    [[nodiscard]] const std::string& caption() const;
    void setCaption(std::string caption);
    [[nodiscard]] const std::string& tag() const;
    void setTag(std::string tag);
    [[nodiscard]] const std::string& toolTipText() const;
    void setToolTipText(std::string text);
    [[nodiscard]] const std::string& picture() const;
    void setPicture(std::string imageKey);

    // Appearance and state. Colours are BGR: blue 0xff0000, black 0.
    [[nodiscard]] std::uint32_t foreColor() const;
    void setForeColor(std::uint32_t bgr);
    [[nodiscard]] std::uint32_t backColor() const;
    void setBackColor(std::uint32_t bgr);
    [[nodiscard]] bool visible() const;
    void setVisible(bool visible);
    [[nodiscard]] bool enabled() const;
    void setEnabled(bool enabled);
    [[nodiscard]] int borderStyle() const;
    void setBorderStyle(int style);
    [[nodiscard]] int mousePointer() const;
    void setMousePointer(int pointer);
    // Check box: 0, 1, 2. Option button: 0 or 1, read as False or True by
    // name. Progress bar: between Min and Max.
    [[nodiscard]] double value() const;
    void setValue(double value);
    [[nodiscard]] double min() const;
    void setMin(double min);
    [[nodiscard]] double max() const;
    void setMax(double max);
    // Menu entry mark.
    [[nodiscard]] bool checked() const;
    void setChecked(bool checked);

    // Geometry in twips.
    [[nodiscard]] int left() const;
    [[nodiscard]] int top() const;
    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;
    void setLeft(int left);
    void setTop(int top);
    void setWidth(int width);
    void setHeight(int height);

    // List box entries.
    [[nodiscard]] int listIndex() const;
    void setListIndex(int index);
    [[nodiscard]] int listCount() const;
    [[nodiscard]] int newIndex() const;
    [[nodiscard]] const std::string& list(int index) const;
    void setList(int index, std::string text);
    [[nodiscard]] std::int32_t itemData(int index) const;
    void setItemData(int index, std::int32_t value);
    void addItem(std::string text, int index = -1);
    void removeItem(int index);
    void clear();
    [[nodiscard]] const ListModel& listModel() const;

    // Timer: Enabled runs it; the form counts time and raises Timer.
    [[nodiscard]] int interval() const;
    void setInterval(int milliseconds);

    // File lists.
    [[nodiscard]] const std::string& drive() const;
    void setDrive(std::string drive);
    [[nodiscard]] const std::string& path() const;
    void setPath(std::string path);
    [[nodiscard]] const std::string& pattern() const;
    void setPattern(std::string pattern);
    [[nodiscard]] const std::string& fileName() const;
    void setFileName(std::string fileName);

    // The model of the kind; another kind throws std::invalid_argument.
    [[nodiscard]] TreeModel& tree();
    [[nodiscard]] const TreeModel& tree() const;
    [[nodiscard]] ListViewModel& listView();
    [[nodiscard]] const ListViewModel& listView() const;
    [[nodiscard]] ToolbarModel& toolbar();
    [[nodiscard]] const ToolbarModel& toolbar() const;
    [[nodiscard]] ChartModel& chart();
    [[nodiscard]] const ChartModel& chart() const;

    // By name, for scripts: "Text", "ForeColor", "List(2)", "ItemData(0)".
    // Bare "List" and "ItemData" mean the selected entry. Values print as
    // the system holds them: numbers in decimal, Booleans True or False.
    [[nodiscard]] bool has(PropertyId id) const noexcept;
    [[nodiscard]] std::string get(std::string_view property) const;
    void set(std::string_view property, std::string_view value);

    // Time a running timer has counted towards its next tick (the form's).
    [[nodiscard]] int timerElapsed() const noexcept { return m_timerElapsed; }

    // How the window draws the control, beside its properties: the logic
    // neither reads nor writes it, and scripts do not see it. A switch is a
    // list box of an off and an on entry, drawn as a check box; a grouped
    // value is a count shown with digit grouping; a model label shows the
    // device's model name where the device reports its type number. The
    // device date's day list, month list and year box (DateDay, DateMonth,
    // Date) are drawn as one date editor in the year's row.
    enum class Look { Plain, Switch, Grouped, Model, DateDay, DateMonth, Date };
    [[nodiscard]] Look look() const noexcept { return m_look; }
    void setLook(Look look) noexcept { m_look = look; }
    // Whether the control is part of a row of a <rows> block: the window
    // closes the gap that a hidden row leaves by moving the rows below it up.
    [[nodiscard]] bool rowPart() const noexcept { return m_rowPart; }
    void setRowPart(bool rowPart) noexcept { m_rowPart = rowPart; }

private:
    friend class Form;
    struct State;

    void require(PropertyId id) const;
    void changed(PropertyId id, std::string_view key = {}, int item = -1);
    void raiseImplicit(EventKind kind);
    // Another option of the group was chosen: off, with no Click.
    void clearOption();
    ChangeSink modelSink(PropertyId id);

    ControlKind m_kind;
    std::string m_name;
    int m_index;
    Control* m_container = nullptr;
    Form* m_form = nullptr;
    std::uint64_t m_sequence = 0;  // the place in the form order, set by the form
    // The Tag of any kind, for the form's index of tags.
    [[nodiscard]] const std::string& storedTag() const noexcept;
    std::string m_captionKey;
    std::string m_toolTipKey;
    int m_timerElapsed = 0;
    Look m_look = Look::Plain;
    bool m_rowPart = false;
    std::unique_ptr<State> m_state;
};

}  // namespace kt500::form
