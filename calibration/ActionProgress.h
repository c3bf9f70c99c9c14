// ActionProgress: what every device action shows while it runs and puts
// back when it ends: the progress text and frame, the mouse pointer, and
// the toolbar's upload and send, which stay locked while an action owns
// the device.
#pragma once

#include "devices/IUserControl.h"

#include <string_view>

namespace kt500::calibration {

// An action owns the device: the toolbar's "send" and its whole upload band
// ("uploadCurrent", "uploadAll", ...) locked, the same on every family.
void LockToolbar(devices::IUserControl& control);
// The action has the device: hourglass, progress text and frame shown, the
// toolbar locked.
void ShowActionProgress(devices::IUserControl& control, std::string_view strProgressKey);
// Arrow pointer, progress text emptied and its frame hidden.
void EndActionProgress(devices::IUserControl& control);
// The toolbar after a calibration: the upload band as the mode and the
// GUIInit document offer it, and "send" as the role allows it.
void UnlockUploadAndSend(devices::IUserControl& control);
// The toolbar after a stopped action or a failed test: as above, "settings"
// too unless blKeepSettings, and "stop" disabled.
void RestoreToolbar(devices::IUserControl& control, bool blKeepSettings = false);
// A written calibration step was answered: nothing is pending ("stop" off),
// but the procedure still owns the device, so the toolbar's upload and send
// stay locked; the page's own first button works again.
void StepAnswered(devices::IUserControl& control, std::string_view strButtons);
// A calibration gives the device back: online, the toolbar and the action
// buttons come back by the role's rules.
void ReleaseDevice(devices::IUserControl& control);

}  // namespace kt500::calibration
