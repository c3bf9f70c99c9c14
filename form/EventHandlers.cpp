#include "form/EventHandlers.h"

#include "form/Control.h"

#include <stdexcept>

namespace kt500::form {

void EventHandlers::add(std::string_view strControl, EventKind kind, Handler handler) {
    const auto [entry, added] =
        m_handlers.try_emplace({std::string(strControl), kind}, std::move(handler));
    if (!added) {
        throw std::logic_error("a second handler for " + std::string(strControl) + "_" +
                               std::string(eventName(kind)));
    }
}

const Handler* EventHandlers::find(const FormEvent& event) const {
    if (event.control == nullptr) {
        return nullptr;
    }
    const auto entry = m_handlers.find(std::pair{event.control->name(), event.kind});
    return entry == m_handlers.end() ? nullptr : &entry->second;
}

std::string EventHandlers::handlerName(const FormEvent& event) {
    const std::string control = event.control == nullptr ? "UserControl" : event.control->name();
    return control + "_" + std::string(eventName(event.kind));
}

}  // namespace kt500::form
