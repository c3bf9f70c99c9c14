// EventHandlers: the control's handlers by control name and event kind, as
// the system names them ("cmdSend_Click", "txtHAOperationUnit_LostFocus").
// One handler serves every element of a control array; it reads the
// element from the event. Each subsystem adds its own handlers, so the
// control's event sink is one lookup.
#pragma once

#include "form/FormEvent.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace kt500::form {

using Handler = std::function<void(FormEvent& event)>;

class EventHandlers {
public:
    // Adds the handler of a control's event; a second handler for the same
    // control and event is a mistake of the program (std::logic_error).
    void add(std::string_view strControl, EventKind kind, Handler handler);

    // The handler of the event's control, or nullptr.
    [[nodiscard]] const Handler* find(const FormEvent& event) const;
    // "NAME_Event": the name under which a failure of the handler is shown.
    [[nodiscard]] static std::string handlerName(const FormEvent& event);

private:
    std::map<std::pair<std::string, EventKind>, Handler, std::less<>> m_handlers;
};

}  // namespace kt500::form
