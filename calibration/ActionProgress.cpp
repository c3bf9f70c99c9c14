#include "calibration/ActionProgress.h"

#include "calibration/CalibrationState.h"

#include <string>

namespace kt500::calibration {

namespace {

form::ToolbarModel& Toolbar(devices::IUserControl& control) {
    return control.form().control("smuiDTM", 1).toolbar();
}

}  // namespace

void ShowActionProgress(devices::IUserControl& control, std::string_view strProgressKey) {
    form::Form& form = control.form();
    form.userControl().setMousePointer(HourglassPointer);
    form::ToolbarModel& toolbar = Toolbar(control);
    toolbar.setEnabled("uploadCurrent", false);
    toolbar.setEnabled("send", false);
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
    form::ToolbarModel& toolbar = Toolbar(control);
    toolbar.setEnabled("uploadCurrent", true);
    if (control.tools().ActorRole != "observer") {
        toolbar.setEnabled("send", true);
    }
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
