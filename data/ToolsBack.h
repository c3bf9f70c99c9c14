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

}  // namespace kt500::data
