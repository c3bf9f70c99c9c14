// The confirmation page (confirmation1): the rows of lsvConfirmation with
// the send, reached from the toolbar's send and from the apply of the flow
// modification page.
#pragma once

#include "devices/IUserControl.h"

namespace kt500::presentation {

// Hides the pages, shows the confirmation page and enables its send
// (cmdSend 8) when a row is ticked.
void ShowConfirmationPage(devices::IUserControl& control);

}  // namespace kt500::presentation
