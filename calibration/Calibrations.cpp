#include "calibration/Calibrations.h"

#include "calibration/ActionProgress.h"
#include "calibration/CalibrationState.h"

namespace kt500::calibration {

Calibrations::Calibrations(devices::IUserControl& control)
    : m_control(control),
      m_lock(control),
      m_events(control, m_lock),
      m_automatic(control, m_events),
      m_sensors(control) {
    m_events.setCalibrations(m_automatic);
}

void Calibrations::addHandlers(form::EventHandlers& handlers) {
    m_automatic.addHandlers(handlers);
    m_sensors.addHandlers(handlers);
}

std::string Calibrations::PrepareAutoAction() {
    const std::string refusal = m_events.PrepareAutoAction();
    return refusal.empty() ? refusal : m_control.Translate(refusal);
}

void Calibrations::CalibrationValueSet(bool blOk) {
    session::clsTools& tools = m_control.tools();
    tools.CommunicationSign("write", "0");
    if (tools.CurrentCalibration == Code::ManualPrestageTrim) {
        m_automatic.ManualTrimWritten(blOk);
    } else {
        m_sensors.Replied(blOk);
    }
    EndActionProgress(m_control);
    tools.CommunicationSign("calibration", "0");
}

}  // namespace kt500::calibration
