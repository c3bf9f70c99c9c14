#include "data/ToolsBack.h"

#include "data/RoleRules.h"
#include "devices/DeviceClass.h"

namespace kt500::data {

void GiveToolsBack(devices::IUserControl& control) {
    const session::clsTools& tools = control.tools();
    form::ToolbarModel& toolbar = control.form().control("smuiDTM", 1).toolbar();
    toolbar.setEnabled("stop", false);
    toolbar.setEnabled("uploadCurrent", Allows(tools, Right::Upload));
    toolbar.setEnabled("send", Allows(tools, Right::Send));
    toolbar.setEnabled("settings", Allows(tools, Right::Settings));
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
