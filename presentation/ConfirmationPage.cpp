#include "presentation/ConfirmationPage.h"

#include "devices/DeviceClass.h"
#include "form/Form.h"

namespace kt500::presentation {

void ShowConfirmationPage(devices::IUserControl& control) {
    devices::DeviceClass& device = control.deviceClass();
    device.HideFrames();
    device.ShowFrame("confirmation1");
    form::Form& form = control.form();
    const int checked = form.control("lsvConfirmation").listView().checkedCount();
    form.control("cmdSend", 8).setEnabled(checked > 0);
}

}  // namespace kt500::presentation
