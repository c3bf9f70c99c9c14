// Calibrations: the device actions of the control, as the control owns
// them: the framework's events, the lock of the action buttons, the
// automatic calibrations and the sensor and signal calibrations, and the
// handlers of their pages' buttons.
#pragma once

#include "calibration/AutoActionEvents.h"
#include "calibration/AutomaticCalibrations.h"
#include "calibration/DeviceActionLock.h"
#include "calibration/SensorCalibrations.h"
#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <string>

namespace kt500::calibration {

class Calibrations {
public:
    explicit Calibrations(devices::IUserControl& control);

    void addHandlers(form::EventHandlers& handlers);

    // --- The framework ---
    // The empty string when the BL will answer with the ready event; the
    // translation of "commonCalText4" when it refused.
    std::string PrepareAutoAction();
    void IQDLGuiEvent_ReadyForAutoAction(bool blReady) { m_events.ReadyForAutoAction(blReady); }
    void IQDLGuiEvent_AutoActionComplete(bool blSuccess) { m_events.AutoActionComplete(blSuccess); }
    void IQDLGuiEvent_AutoActionStopped(bool blStopped) { m_events.AutoActionStopped(blStopped); }
    // The reply of a written calibration step, which the device class's
    // Reply hands on while a calibration owns the device.
    void CalibrationValueSet(bool blOk);
    void EnableDeviceActions(bool blValue) { m_lock.EnableDeviceActions(blValue); }
    void EnableTesting(bool blValue) { m_lock.EnableTesting(blValue); }

    [[nodiscard]] AutomaticCalibrations& automatic() noexcept { return m_automatic; }
    // The framework's events, which the performance tests join.
    [[nodiscard]] AutoActionEvents& events() noexcept { return m_events; }
    [[nodiscard]] SensorCalibrations& sensors() noexcept { return m_sensors; }

private:
    devices::IUserControl& m_control;
    DeviceActionLock m_lock;
    AutoActionEvents m_events;
    AutomaticCalibrations m_automatic;
    SensorCalibrations m_sensors;
};

}  // namespace kt500::calibration
