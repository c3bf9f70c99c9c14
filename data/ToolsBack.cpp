#include "data/ToolsBack.h"

#include "data/RoleRules.h"

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

}  // namespace kt500::data
