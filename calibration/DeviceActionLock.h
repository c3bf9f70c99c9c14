// DeviceActionLock: the one place of the rules that say which action
// buttons of the pages may be pressed. Communication that takes the device
// (an upload, a send, a device action) locks them and gives them back when
// it ends; the role of the session then decides what comes back: an
// "operator" runs the tests of the KT520 and KT540 pages but resets no
// diagnostics and calibrates nothing, an "observer" in addition starts no
// test. Monitoring and the test buttons stay usable while a test runs, so
// that the test can be watched and stopped.
#pragma once

#include "devices/IUserControl.h"

namespace kt500::calibration {

class DeviceActionLock {
public:
    explicit DeviceActionLock(devices::IUserControl& control) : m_control(control) {}

    // The lock (False) or release (True) of every action button, by role.
    void EnableDeviceActions(bool blValue);
    // The test commands of every family: cmdStartTest, cmdPLSetTestSettings
    // and cmdPLStartTest, elements 0 and 1.
    void EnableTesting(bool blValue);

private:
    void setEnabled(const char* strName, std::initializer_list<int> elements, bool blValue);

    devices::IUserControl& m_control;
};

}  // namespace kt500::calibration
