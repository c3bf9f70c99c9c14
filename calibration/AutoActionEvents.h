// AutoActionEvents: the framework every device action obeys. A page asks
// for the device (PrepareAutoAction, which first releases monitoring); the
// BL answers with the ready event, which starts the action of the page
// that asked; the action ends by itself (complete) or by the page's stop
// (stopped). CurrentAutoAction tells which kind of action owns the device:
// 1 a calibration, 2 a test. While a device action runs, every other action
// button and the toolbar's upload and send are locked; its end gives them
// back by the role's rules.
#pragma once

#include "calibration/DeviceActionLock.h"
#include "calibration/TestActions.h"
#include "devices/IUserControl.h"

#include <string>

namespace kt500::calibration {

class AutomaticCalibrations;

class AutoActionEvents {
public:
    AutoActionEvents(devices::IUserControl& control, DeviceActionLock& lock)
        : m_control(control), m_lock(lock) {}
    void setCalibrations(AutomaticCalibrations& calibrations) { m_calibrations = &calibrations; }
    void setTests(TestActions& tests) { m_tests = &tests; }

    // Stops monitoring when it runs and asks the BL for the device: the
    // empty string when the BL will answer with the ready event, the key
    // "commonCalText4" when it refused.
    std::string PrepareAutoAction();

    void ReadyForAutoAction(bool blReady);
    void AutoActionComplete(bool blSuccess);
    void AutoActionStopped(bool blStopped);

    // The device action has started: the progress shows and every other
    // action is locked.
    void ActionStarted(const char* strProgressKey, const char* strSign);

private:
    [[nodiscard]] AutomaticCalibrations& calibrations() const;
    // A calibration owns the device, or an automatic one still runs in it.
    [[nodiscard]] bool calibrationRuns() const;
    void TestFailed();

    devices::IUserControl& m_control;
    DeviceActionLock& m_lock;
    AutomaticCalibrations* m_calibrations = nullptr;
    TestActions* m_tests = nullptr;
};

}  // namespace kt500::calibration
