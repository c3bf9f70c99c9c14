#include "form/Form.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <vector>

namespace kt500::form {

namespace {

std::string displayName(std::string_view name, int index) {
    return index < 0 ? std::string(name) : std::string(name) + "(" + std::to_string(index) + ")";
}

}  // namespace

// ---- ControlArray

bool ControlArray::isArray() const noexcept {
    return !m_elements.empty() && m_elements.begin()->first >= 0;
}

std::vector<int> ControlArray::indices() const {
    std::vector<int> result;
    result.reserve(m_elements.size());
    for (const auto& [index, control] : m_elements) {
        result.push_back(index);
    }
    return result;
}

Control* ControlArray::find(int index) const noexcept {
    const auto it = m_elements.find(index);
    return it == m_elements.end() ? nullptr : it->second;
}

Control& ControlArray::operator[](int index) const {
    if (Control* c = find(index)) {
        return *c;
    }
    throw std::out_of_range("no control " + displayName(m_name, index) + " in the form");
}

// ---- Form

Form::Form() : m_userControl(std::make_unique<Control>(ControlKind::UserControl, "UserControl")) {
    m_userControl->m_form = this;
}

Form::~Form() = default;

Control& Form::add(ControlKind kind, std::string name, int index, Control* container) {
    if (kind == ControlKind::UserControl) {
        throw std::invalid_argument(name + ": the user control cannot be added to a form");
    }
    if (name.empty()) {
        throw std::invalid_argument("a control needs a name");
    }
    if (container != nullptr && container->m_form != this) {
        throw std::invalid_argument(displayName(name, index) + ": its container " +
                                    container->displayName() + " is not in this form");
    }
    if (const ControlArray* existing = findArray(name)) {
        if (existing->find(index) != nullptr) {
            throw std::invalid_argument("control " + displayName(name, index) +
                                        " is already in the form");
        }
        if (existing->isArray() != (index >= 0)) {
            throw std::invalid_argument(
                displayName(name, index) + ": " + name +
                (existing->isArray() ? " is a control array" : " is not a control array"));
        }
    }
    auto owned = std::make_unique<Control>(kind, name, index);
    Control& control = *owned;
    control.m_form = this;
    control.m_container = container;
    m_owned.push_back(std::move(owned));
    control.m_sequence = m_nextSequence++;
    m_order.push_back(&control);
    m_tagged[control.storedTag()].push_back(&control);
    auto [it, inserted] = m_arrays.try_emplace(name, name);
    it->second.m_elements.emplace(index, &control);
    // The view makes the widget of a control created at run time.
    notify(PropertyChange{control, PropertyId::Container, {}, -1});
    return control;
}

void Form::remove(Control& control) {
    if (control.m_form != this || &control == m_userControl.get()) {
        throw std::invalid_argument(control.displayName() + " is not a control of this form");
    }
    if (std::any_of(m_order.begin(), m_order.end(),
                    [&](const Control* c) { return c->m_container == &control; })) {
        throw std::invalid_argument(control.displayName() + " still contains controls");
    }
    if (m_focused == &control) {
        m_focused = nullptr;
    }
    notify(PropertyChange{control, PropertyId::Name, {}, -1});
    const auto array = m_arrays.find(control.name());
    array->second.m_elements.erase(control.index());
    if (array->second.m_elements.empty()) {
        m_arrays.erase(array);
    }
    std::erase(m_order, &control);
    if (const auto tagged = m_tagged.find(control.storedTag()); tagged != m_tagged.end()) {
        std::erase(tagged->second, &control);
        if (tagged->second.empty()) {
            m_tagged.erase(tagged);
        }
    }
    std::erase_if(m_owned, [&](const auto& owned) { return owned.get() == &control; });
}

const std::vector<Control*>& Form::tagged(std::string_view tag) const {
    static const std::vector<Control*> none;
    const auto it = m_tagged.find(tag);
    return it == m_tagged.end() ? none : it->second;
}

void Form::retag(Control& control, const std::string& former) {
    if (&control == m_userControl.get()) {
        return;
    }
    if (const auto old = m_tagged.find(former); old != m_tagged.end()) {
        std::erase(old->second, &control);
        if (old->second.empty()) {
            m_tagged.erase(old);
        }
    }
    std::vector<Control*>& same = m_tagged[control.storedTag()];
    const auto at = std::upper_bound(same.begin(), same.end(), control.m_sequence,
                                     [](std::uint64_t sequence, const Control* other) {
                                         return sequence < other->m_sequence;
                                     });
    same.insert(at, &control);
}

const ControlArray* Form::findArray(std::string_view name) const noexcept {
    const auto it = m_arrays.find(name);
    return it == m_arrays.end() ? nullptr : &it->second;
}

std::vector<Control*> Form::elements(std::string_view name) const {
    std::vector<Control*> result;
    if (const ControlArray* controls = findArray(name)) {
        for (const int index : controls->indices()) {
            result.push_back(controls->find(index));
        }
    }
    return result;
}

const ControlArray& Form::array(std::string_view name) const {
    if (const ControlArray* a = findArray(name)) {
        return *a;
    }
    throw std::out_of_range("no control " + std::string(name) + " in the form");
}

Control* Form::find(std::string_view name, int index) const noexcept {
    const ControlArray* a = findArray(name);
    return a == nullptr ? nullptr : a->find(index);
}

Control& Form::control(std::string_view name, int index) const {
    if (Control* c = find(name, index)) {
        return *c;
    }
    const ControlArray* a = findArray(name);
    if (a != nullptr && a->isArray() && index < 0) {
        throw std::out_of_range(std::string(name) + " is a control array: name an element");
    }
    throw std::out_of_range("no control " + displayName(name, index) + " in the form");
}

std::vector<Control*> Form::children(const Control* container) const {
    std::vector<Control*> result;
    for (Control* c : m_order) {
        if (c->m_container == container) {
            result.push_back(c);
        }
    }
    return result;
}

bool Form::isInside(const Control& control, const Control& container) noexcept {
    for (const Control* c = control.m_container; c != nullptr; c = c->m_container) {
        if (c == &container) {
            return true;
        }
    }
    return false;
}

void Form::setContainer(Control& control, Control* container) {
    if (container != nullptr) {
        if (container->m_form != this) {
            throw std::invalid_argument(control.displayName() + ": container " +
                                        container->displayName() + " is not in this form");
        }
        if (container == &control || isInside(*container, control)) {
            throw std::invalid_argument(control.displayName() + " cannot lie inside " +
                                        container->displayName());
        }
    }
    if (control.m_container != container) {
        control.m_container = container;
        control.changed(PropertyId::Container);
    }
}

// ---- events

void Form::setEventSink(EventSink sink) {
    m_sink = std::move(sink);
}

void Form::raise(FormEvent& event) {
    // A copy, so that a handler may replace the sink while it runs.
    const EventSink sink = m_sink;
    if (sink) {
        sink(event);
    }
}

namespace {

FormEvent makeEvent(EventKind kind, Control& control) {
    FormEvent event;
    event.kind = kind;
    event.control = &control;
    return event;
}

}  // namespace

void Form::raiseClick(Control& control) {
    FormEvent e = makeEvent(EventKind::Click, control);
    raise(e);
}

void Form::raiseDblClick(Control& control) {
    FormEvent e = makeEvent(EventKind::DblClick, control);
    raise(e);
}

void Form::raiseChange(Control& control) {
    FormEvent e = makeEvent(EventKind::Change, control);
    raise(e);
}

int Form::raiseKeyPress(Control& control, int keyAscii) {
    FormEvent e = makeEvent(EventKind::KeyPress, control);
    e.keyAscii = keyAscii;
    raise(e);
    return e.keyAscii;
}

void Form::raiseGotFocus(Control& control) {
    m_focused = &control;
    FormEvent e = makeEvent(EventKind::GotFocus, control);
    raise(e);
}

void Form::raiseLostFocus(Control& control) {
    FormEvent e = makeEvent(EventKind::LostFocus, control);
    raise(e);
    if (m_focused == &control) {
        m_focused = nullptr;
    }
}

void Form::raiseItemCheck(Control& listView, int row, bool checked) {
    listView.listView().setChecked(row, checked);
    FormEvent e = makeEvent(EventKind::ItemCheck, listView);
    e.item = row;
    raise(e);
}

void Form::raiseNodeClick(Control& tree, std::string_view nodeKey) {
    // A click selects the node, then raises NodeClick, as the tree view does.
    (void)tree.tree().node(nodeKey);
    tree.tree().select(nodeKey);
    FormEvent e = makeEvent(EventKind::NodeClick, tree);
    e.key = std::string(nodeKey);
    raise(e);
}

void Form::raiseToolbarClick(Control& toolbar, std::string_view itemKey) {
    (void)toolbar.toolbar().item(itemKey);
    FormEvent e = makeEvent(EventKind::ToolbarClick, toolbar);
    e.key = std::string(itemKey);
    raise(e);
}

void Form::raiseMouseDown(Control& control, int button) {
    FormEvent e = makeEvent(EventKind::MouseDown, control);
    e.button = button;
    raise(e);
}

void Form::raiseZoom(Control& chart, bool zoomIn) {
    FormEvent e = makeEvent(zoomIn ? EventKind::ZoomIn : EventKind::ZoomOut, chart);
    raise(e);
}

void Form::raiseResize() {
    FormEvent e = makeEvent(EventKind::Resize, *m_userControl);
    raise(e);
}

// ---- timers

namespace {

bool running(const Control* c) {
    return c->kind() == ControlKind::Timer && c->enabled() && c->interval() > 0;
}

}  // namespace

std::optional<int> Form::nextTimerTick() const {
    std::optional<int> next;
    for (const Control* c : m_order) {
        if (running(c)) {
            const int due = c->interval() - c->timerElapsed();
            if (!next || due < *next) {
                next = due;
            }
        }
    }
    return next;
}

void Form::advanceTimers(int milliseconds) {
    int left = milliseconds;
    while (left > 0) {
        const std::optional<int> next = nextTimerTick();
        const int step = next ? std::min(*next, left) : left;
        std::vector<Control*> due;
        for (Control* c : m_order) {
            if (running(c)) {
                c->m_timerElapsed += step;
                if (c->m_timerElapsed >= c->interval()) {
                    c->m_timerElapsed = 0;
                    due.push_back(c);
                }
            }
        }
        left -= step;
        // In form order; a handler may stop a later timer before its turn.
        for (Control* c : due) {
            if (std::find(m_order.begin(), m_order.end(), c) != m_order.end() && running(c)) {
                FormEvent e = makeEvent(EventKind::Timer, *c);
                raise(e);
            }
        }
        if (!next) {
            break;
        }
    }
}

// ---- observers

std::size_t Form::addObserver(PropertyObserver observer) {
    const std::size_t id = m_nextObserver++;
    m_observers.emplace(id, std::move(observer));
    return id;
}

void Form::removeObserver(std::size_t id) {
    m_observers.erase(id);
}

void Form::notify(const PropertyChange& change) {
    if (m_observers.empty()) {
        return;
    }
    // The observers of this moment, by id: one may add or remove observers.
    // One removed before its turn is no longer called; each is called
    // through a copy, so that it may remove itself. Few observers watch a
    // form: their ids stay on the stack.
    constexpr std::size_t kOnStack = 8;
    std::array<std::size_t, kOnStack> few{};
    std::vector<std::size_t> many;
    std::span<const std::size_t> ids;
    if (m_observers.size() <= kOnStack) {
        std::size_t count = 0;
        for (const auto& entry : m_observers) {
            few[count++] = entry.first;
        }
        ids = std::span<const std::size_t>(few.data(), count);
    } else {
        for (const auto& entry : m_observers) {
            many.push_back(entry.first);
        }
        ids = many;
    }
    for (const std::size_t id : ids) {
        const auto found = m_observers.find(id);
        if (found != m_observers.end()) {
            const PropertyObserver observer = found->second;
            observer(change);
        }
    }
}

void Form::optionSelected(Control& option) {
    for (Control* c : m_order) {
        if (c != &option && c->kind() == ControlKind::OptionButton &&
            c->m_container == option.m_container) {
            c->clearOption();
        }
    }
}

}  // namespace kt500::form
