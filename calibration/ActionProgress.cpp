#include "calibration/ActionProgress.h"

#include "calibration/CalibrationState.h"
#include "data/RoleRules.h"
#include "data/Uploads.h"

#include <string>

namespace kt500::calibration {

namespace {

form::ToolbarModel& Toolbar(devices::IUserControl& control) {
    return control.form().control("smuiDTM", 1).toolbar();
}

}  // namespace

void LockToolbar(devices::IUserControl& control) {
    data::DisableUploadTools(control.form());
    Toolbar(control).setEnabled("send", false);
}

void ShowActionProgress(devices::IUserControl& control, std::string_view strProgressKey) {
    form::Form& form = control.form();
    form.userControl().setMousePointer(HourglassPointer);
    LockToolbar(control);
    form::Control& text = form.control("lblProgressText");
    std::string key(strProgressKey);
    text.setCaption(control.Translate(key));
    text.setCaptionKey(std::move(key));
    form.control("fraProgress").setVisible(true);
}

void EndActionProgress(devices::IUserControl& control) {
    form::Form& form = control.form();
    form.userControl().setMousePointer(ArrowPointer);
    form::Control& text = form.control("lblProgressText");
    text.setCaptionKey("");
    text.setCaption("");
    form.control("fraProgress").setVisible(false);
}

void UnlockUploadAndSend(devices::IUserControl& control) {
    control.EnableUploadTools();
    Toolbar(control).setEnabled("send", data::Allows(control.tools(), data::Right::Send));
}

void RestoreToolbar(devices::IUserControl& control, bool blKeepSettings) {
    UnlockUploadAndSend(control);
    form::ToolbarModel& toolbar = Toolbar(control);
    if (!blKeepSettings) {
        toolbar.setEnabled("settings", true);
    }
    toolbar.setEnabled("stop", false);
}

void StepAnswered(devices::IUserControl& control, std::string_view strButtons) {
    Toolbar(control).setEnabled("stop", false);
    form::Form& form = control.form();
    form::Control* first = form.find(strButtons, 0);
    if (first == nullptr) {
        first = form.find(strButtons, -1);
    }
    if (first != nullptr) {
        first->setEnabled(true);
    }
}

void ReleaseDevice(devices::IUserControl& control) {
    if (!control.tools().OnlineConf) {
        return;
    }
    RestoreToolbar(control);
    control.EnableDeviceActions(true);
}

}  // namespace kt500::calibration
