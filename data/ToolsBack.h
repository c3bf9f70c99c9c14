// The toolbar and the page commands once no request is out any more: the
// same whether the last reply closed the request or the BL refused it.
#pragma once

#include "devices/IUserControl.h"

namespace kt500::data {

// "stop" off, "uploadCurrent" on, "send" and "settings" on unless the role
// is "observer", and the page commands that wait for communication given
// back with their role rules.
void GiveToolsBack(devices::IUserControl& control);

}  // namespace kt500::data
