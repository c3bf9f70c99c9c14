#include "form/FormEvent.h"

namespace kt500::form {

std::string_view eventName(EventKind kind) noexcept {
    switch (kind) {
        case EventKind::Click:
            return "Click";
        case EventKind::DblClick:
            return "DblClick";
        case EventKind::Change:
            return "Change";
        case EventKind::KeyPress:
            return "KeyPress";
        case EventKind::GotFocus:
            return "GotFocus";
        case EventKind::LostFocus:
            return "LostFocus";
        case EventKind::ItemCheck:
            return "ItemCheck";
        case EventKind::NodeClick:
            return "NodeClick";
        case EventKind::ToolbarClick:
            return "ToolbarClick";
        case EventKind::Timer:
            return "Timer";
        case EventKind::Resize:
            return "Resize";
        case EventKind::MouseDown:
            return "MouseDown";
        case EventKind::ZoomIn:
            return "ZoomIn";
        case EventKind::ZoomOut:
            return "ZoomOut";
    }
    return "?";
}

}  // namespace kt500::form
