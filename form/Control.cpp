#include "form/Control.h"
#include "form/Assign.h"

#include "form/Form.h"

#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>

namespace kt500::form {

struct Control::State {
    std::string text;
    std::string caption;
    std::string tag;
    std::string toolTipText;
    std::string picture;
    std::uint32_t foreColor = 0;
    std::uint32_t backColor = 0xFFFFFF;
    bool visible = true;
    bool enabled = true;
    bool checked = false;
    int borderStyle = 0;
    int mousePointer = 0;
    double value = 0.0;
    double min = 0.0;
    double max = 100.0;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    int interval = 0;
    std::string drive = "c:";
    std::string path;
    std::string pattern = "*.*";
    std::string fileName;
    std::optional<ListModel> list;
    std::optional<TreeModel> tree;
    std::optional<ListViewModel> listView;
    std::optional<ToolbarModel> toolbar;
    std::optional<ChartModel> chart;
};

Control::Control(ControlKind kind, std::string name, int index)
    : m_kind(kind), m_name(std::move(name)), m_index(index), m_state(std::make_unique<State>()) {
    if (m_index < -1) {
        throw std::invalid_argument(m_name + ": control array index " + std::to_string(index) +
                                    " is negative");
    }
    State& s = *m_state;
    switch (kind) {
        case ControlKind::ComboBox:
            s.list.emplace(displayName());
            break;
        case ControlKind::TreeView:
            s.tree.emplace(displayName(), modelSink(PropertyId::Nodes));
            break;
        case ControlKind::ListView:
            s.listView.emplace(displayName(), modelSink(PropertyId::ListItems));
            break;
        case ControlKind::Toolbar:
            s.toolbar.emplace(displayName(), modelSink(PropertyId::Buttons));
            break;
        case ControlKind::Chart:
            s.chart.emplace(displayName(), modelSink(PropertyId::ChartData));
            break;
        case ControlKind::TextBox:
        case ControlKind::Frame:
            s.borderStyle = 1;
            break;
        case ControlKind::UserControl:
            s.width = Form::kUserControlWidth;
            s.height = Form::kUserControlHeight;
            break;
        default:
            break;
    }
    if (kind == ControlKind::Timer) {
        s.enabled = false;
    }
}

Control::~Control() = default;

std::string Control::displayName() const {
    return m_index < 0 ? m_name : m_name + "(" + std::to_string(m_index) + ")";
}

ChangeSink Control::modelSink(PropertyId) {
    return [this](PropertyId id, std::string_view key, int item) { changed(id, key, item); };
}

bool Control::has(PropertyId id) const noexcept {
    return kindHasProperty(m_kind, id);
}

void Control::require(PropertyId id) const {
    if (!has(id)) {
        throw std::invalid_argument(displayName() + ": a control of kind '" +
                                    std::string(kindWord(m_kind)) + "' has no property '" +
                                    std::string(propertyName(id)) + "'");
    }
}

void Control::changed(PropertyId id, std::string_view key, int item) {
    if (m_form != nullptr) {
        m_form->notify(PropertyChange{*this, id, key, item});
    }
}

void Control::raiseImplicit(EventKind kind) {
    if (m_form != nullptr) {
        FormEvent event;
        event.kind = kind;
        event.control = this;
        m_form->raise(event);
    }
}

// ---- texts

std::string Control::text() const {
    require(PropertyId::Text);
    if (m_kind == ControlKind::ComboBox) {
        const ListModel& l = *m_state->list;
        return l.listIndex() < 0 ? std::string() : l.text(l.listIndex());
    }
    return m_state->text;
}

void Control::setText(std::string text) {
    require(PropertyId::Text);
    if (m_kind == ControlKind::ComboBox) {
        const int found = m_state->list->findText(text);
        if (found < 0) {
            throw std::invalid_argument(displayName() + ": no entry '" + text + "' in the list");
        }
        setListIndex(found);
        return;
    }
    if (assign(m_state->text, std::move(text))) {
        changed(PropertyId::Text);
        if (m_kind == ControlKind::TextBox) {
            raiseImplicit(EventKind::Change);
        }
    }
}

#define KT500_STRING_PROPERTY(getter, setter, field, id) \
    const std::string& Control::getter() const {         \
        require(PropertyId::id);                         \
        return m_state->field;                           \
    }                                                    \
    void Control::setter(std::string value) {            \
        require(PropertyId::id);                         \
        if (assign(m_state->field, std::move(value))) {  \
            changed(PropertyId::id);                     \
        }                                                \
    }

KT500_STRING_PROPERTY(caption, setCaption, caption, Caption)

const std::string& Control::storedTag() const noexcept {
    return m_state->tag;
}

const std::string& Control::tag() const {
    require(PropertyId::Tag);
    return m_state->tag;
}

void Control::setTag(std::string value) {
    require(PropertyId::Tag);
    std::string former = m_state->tag;
    if (assign(m_state->tag, std::move(value))) {
        if (m_form != nullptr) {
            m_form->retag(*this, former);
        }
        changed(PropertyId::Tag);
    }
}

KT500_STRING_PROPERTY(toolTipText, setToolTipText, toolTipText, ToolTipText)
KT500_STRING_PROPERTY(picture, setPicture, picture, Picture)
KT500_STRING_PROPERTY(drive, setDrive, drive, Drive)
KT500_STRING_PROPERTY(path, setPath, path, Path)
KT500_STRING_PROPERTY(pattern, setPattern, pattern, Pattern)
KT500_STRING_PROPERTY(fileName, setFileName, fileName, FileName)
#undef KT500_STRING_PROPERTY

#define KT500_PLAIN_PROPERTY(type, getter, setter, field, id) \
    type Control::getter() const {                            \
        require(PropertyId::id);                              \
        return m_state->field;                                \
    }                                                         \
    void Control::setter(type value) {                        \
        require(PropertyId::id);                              \
        if (assign(m_state->field, value)) {                  \
            changed(PropertyId::id);                          \
        }                                                     \
    }

KT500_PLAIN_PROPERTY(std::uint32_t, foreColor, setForeColor, foreColor, ForeColor)
KT500_PLAIN_PROPERTY(std::uint32_t, backColor, setBackColor, backColor, BackColor)
KT500_PLAIN_PROPERTY(bool, visible, setVisible, visible, Visible)
KT500_PLAIN_PROPERTY(int, borderStyle, setBorderStyle, borderStyle, BorderStyle)
KT500_PLAIN_PROPERTY(int, mousePointer, setMousePointer, mousePointer, MousePointer)
KT500_PLAIN_PROPERTY(bool, checked, setChecked, checked, Checked)
KT500_PLAIN_PROPERTY(int, left, setLeft, left, Left)
KT500_PLAIN_PROPERTY(int, top, setTop, top, Top)
KT500_PLAIN_PROPERTY(int, width, setWidth, width, Width)
KT500_PLAIN_PROPERTY(int, height, setHeight, height, Height)
#undef KT500_PLAIN_PROPERTY

// ---- state with rules

bool Control::enabled() const {
    require(PropertyId::Enabled);
    return m_state->enabled;
}

void Control::setEnabled(bool enabled) {
    require(PropertyId::Enabled);
    if (assign(m_state->enabled, enabled)) {
        // A timer started again counts a whole interval.
        m_timerElapsed = 0;
        changed(PropertyId::Enabled);
    }
}

int Control::interval() const {
    require(PropertyId::Interval);
    return m_state->interval;
}

void Control::setInterval(int milliseconds) {
    require(PropertyId::Interval);
    if (milliseconds < 0) {
        throw std::invalid_argument(displayName() + ": Interval cannot be negative");
    }
    if (assign(m_state->interval, milliseconds)) {
        m_timerElapsed = 0;
        changed(PropertyId::Interval);
    }
}

double Control::value() const {
    require(PropertyId::Value);
    return m_state->value;
}

void Control::setValue(double value) {
    require(PropertyId::Value);
    switch (m_kind) {
        case ControlKind::CheckBox:
            if (value != 0.0 && value != 1.0 && value != 2.0) {
                throw std::invalid_argument(displayName() +
                                            ": Value of a check box is 0, 1 or 2, not " +
                                            formatNumber(value));
            }
            break;
        case ControlKind::OptionButton:
            value = value != 0.0 ? 1.0 : 0.0;
            break;
        default:
            if (value < m_state->min || value > m_state->max) {
                throw std::invalid_argument(displayName() + ": Value " + formatNumber(value) +
                                            " is outside Min " + formatNumber(m_state->min) +
                                            " to Max " + formatNumber(m_state->max));
            }
            break;
    }
    if (!assign(m_state->value, value)) {
        return;
    }
    changed(PropertyId::Value);
    if (m_kind == ControlKind::CheckBox) {
        raiseImplicit(EventKind::Click);
    } else if (m_kind == ControlKind::OptionButton && value != 0.0) {
        if (m_form != nullptr) {
            m_form->optionSelected(*this);
        }
        raiseImplicit(EventKind::Click);
    }
}

void Control::clearOption() {
    if (m_state->value != 0.0) {
        m_state->value = 0.0;
        changed(PropertyId::Value);
    }
}

double Control::min() const {
    require(PropertyId::Min);
    return m_state->min;
}

void Control::setMin(double min) {
    require(PropertyId::Min);
    if (min > m_state->max) {
        throw std::invalid_argument(displayName() + ": Min " + formatNumber(min) +
                                    " is above Max " + formatNumber(m_state->max));
    }
    if (assign(m_state->min, min)) {
        changed(PropertyId::Min);
        if (m_state->value < min) {
            m_state->value = min;
            changed(PropertyId::Value);
        }
    }
}

double Control::max() const {
    require(PropertyId::Max);
    return m_state->max;
}

void Control::setMax(double max) {
    require(PropertyId::Max);
    if (max < m_state->min) {
        throw std::invalid_argument(displayName() + ": Max " + formatNumber(max) +
                                    " is below Min " + formatNumber(m_state->min));
    }
    if (assign(m_state->max, max)) {
        changed(PropertyId::Max);
        if (m_state->value > max) {
            m_state->value = max;
            changed(PropertyId::Value);
        }
    }
}

// ---- list box

const ListModel& Control::listModel() const {
    require(PropertyId::ListIndex);
    return *m_state->list;
}

int Control::listIndex() const {
    return listModel().listIndex();
}
int Control::listCount() const {
    return listModel().count();
}
int Control::newIndex() const {
    return listModel().newIndex();
}
const std::string& Control::list(int index) const {
    return listModel().text(index);
}
std::int32_t Control::itemData(int index) const {
    return listModel().itemData(index);
}

void Control::setListIndex(int index) {
    require(PropertyId::ListIndex);
    if (m_state->list->listIndex() == index) {
        return;
    }
    m_state->list->setListIndex(index);
    changed(PropertyId::ListIndex);
    raiseImplicit(EventKind::Click);
}

void Control::setList(int index, std::string text) {
    require(PropertyId::List);
    if (m_state->list->text(index) != text) {
        m_state->list->setText(index, std::move(text));
        changed(PropertyId::List, {}, index);
    }
}

void Control::setItemData(int index, std::int32_t value) {
    require(PropertyId::ItemData);
    if (m_state->list->itemData(index) != value) {
        m_state->list->setItemData(index, value);
        changed(PropertyId::ItemData, {}, index);
    }
}

void Control::addItem(std::string text, int index) {
    require(PropertyId::List);
    const int added = m_state->list->add(std::move(text), index);
    changed(PropertyId::List, {}, added);
}

void Control::removeItem(int index) {
    require(PropertyId::List);
    const int before = m_state->list->listIndex();
    m_state->list->remove(index);
    changed(PropertyId::List, {}, -1);
    if (before != m_state->list->listIndex()) {
        changed(PropertyId::ListIndex);
    }
}

void Control::clear() {
    require(PropertyId::List);
    if (m_state->list->count() == 0) {
        return;
    }
    const bool hadSelection = m_state->list->listIndex() >= 0;
    m_state->list->clear();
    changed(PropertyId::List, {}, -1);
    if (hadSelection) {
        changed(PropertyId::ListIndex);
    }
}

// ---- models

#define KT500_MODEL_ACCESS(type, getter, field, id) \
    type& Control::getter() {                       \
        require(PropertyId::id);                    \
        return *m_state->field;                     \
    }                                               \
    const type& Control::getter() const {           \
        require(PropertyId::id);                    \
        return *m_state->field;                     \
    }

KT500_MODEL_ACCESS(TreeModel, tree, tree, Nodes)
KT500_MODEL_ACCESS(ListViewModel, listView, listView, ListItems)
KT500_MODEL_ACCESS(ToolbarModel, toolbar, toolbar, Buttons)
KT500_MODEL_ACCESS(ChartModel, chart, chart, ChartData)
#undef KT500_MODEL_ACCESS

}  // namespace kt500::form
