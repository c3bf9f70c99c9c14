#include "data/ToolsBack.h"

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

}  // namespace kt500::data
