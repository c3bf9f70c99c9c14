// The toolbar and the page commands once no request is out any more: the
// same whether the last reply closed the request, the BL refused it or the
// user stopped it.
#pragma once

#include "devices/IUserControl.h"

namespace kt500::data {

// "stop" off; "uploadCurrent", "send" and "settings" on as far as the role
// and the mode allow them (RoleRules), and the page commands that wait for
// communication given back with the same rules.
void GiveToolsBack(devices::IUserControl& control);

// The busy state ends once no request is out: the progress bar and its
// frame hidden, the errors gathered on the way shown, the tools given back,
// the pointer normal, the communication sign of strAccessType dark.
void CloseBusyState(devices::IUserControl& control, const std::string& strAccessType);

}  // namespace kt500::data
