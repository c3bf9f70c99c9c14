#include "data/ToolsBack.h"

#include "devices/DeviceClass.h"

namespace kt500::data {

void GiveToolsBack(devices::IUserControl& control) {
    form::ToolbarModel& toolbar = control.form().control("smuiDTM", 1).toolbar();
    toolbar.setEnabled("stop", false);
    toolbar.setEnabled("uploadCurrent", true);
    if (control.tools().ActorRole != "observer") {
        toolbar.setEnabled("send", true);
        toolbar.setEnabled("settings", true);
    }
    control.EnableDeviceActions(true);
}

void CloseBusyState(devices::IUserControl& control, const std::string& strAccessType) {
    session::clsTools& tools = control.tools();
    form::Form& form = control.form();
    tools.ShowProgressbar = false;
    form.control("ProgressBar1").setVisible(false);
    form.control("fraProgress").setVisible(false);
    control.deviceClass().PrintErrorMessages();
    GiveToolsBack(control);
    form.userControl().setMousePointer(0);
    tools.ReadGroup = false;
    tools.CommunicationSign(strAccessType, "0");
}

}  // namespace kt500::data
