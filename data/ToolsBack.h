// The toolbar and the page commands once no request is out any more: the
// same whether the last reply closed the request or the BL refused it.
#pragma once

#include "devices/IUserControl.h"

namespace kt500::data {

// "stop" off, "uploadCurrent" on, "send" and "settings" on unless the role
// is "observer", and the page commands that wait for communication given
// back with their role rules.
void GiveToolsBack(devices::IUserControl& control);

// The busy state ends once no request is out: the progress bar and its
// frame hidden, the errors gathered on the way shown, the tools given back,
// the pointer normal, the communication sign of strAccessType dark.
void CloseBusyState(devices::IUserControl& control, const std::string& strAccessType);

}  // namespace kt500::data
