// The events a form raises: what the user (or a script playing the user)
// did, and the ticks of timers. The form hands each one, synchronously, to
// the one event sink the host has set.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kt500::form {

class Control;

enum class EventKind {
    Click,  // command, check box, option, label, image, menu; list box selection
    DblClick,
    Change,    // text box text, list box text
    KeyPress,  // keyAscii: the handler may set it to 0 to swallow the key
    GotFocus,
    LostFocus,
    ItemCheck,     // list view row check box: item is the 1-based row
    NodeClick,     // tree node: key
    ToolbarClick,  // toolbar item: key
    Timer,         // a tick of an enabled timer
    Resize,        // the user control's extents changed
    MouseDown,     // button: 1 left, 2 right (chart popups)
    ZoomIn,        // a chart started a zoom
    ZoomOut,       // a chart's zoom ended
};

struct FormEvent {
    EventKind kind = EventKind::Click;
    Control* control = nullptr;  // the user control for Resize
    int keyAscii = 0;
    int button = 0;
    std::string key;
    int item = -1;
};

// Receives every event. A handler may raise further events and change any
// property; they are delivered at once, inside the call.
using EventSink = std::function<void(FormEvent& event)>;

// "Click", "KeyPress", ... as the handlers are named after them.
[[nodiscard]] std::string_view eventName(EventKind kind) noexcept;

}  // namespace kt500::form
