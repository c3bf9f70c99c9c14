#include "calibration/DeviceActionLock.h"

#include "calibration/CalibrationState.h"
#include "data/RoleRules.h"

namespace kt500::calibration {

namespace {

// The buttons that start a calibration or a reset of the device (element 0
// of each, both of the PL500 test commands).
constexpr const char* CalibrationStarts[] = {
    "cmdHAAutoTravelCalibration",      "cmdHAInputSignalMeasurementCalibration",
    "cmdHAPositionTransmitterCalibration", "cmdHAPressureSensorCalibration",
    "cmdHATemperatureSensorCalibration", "cmdPAPositionSensorCalibration",
    "cmdPAPressureSensorCalibration",  "cmdPATemperatureSensorCalibration",
    "cmdPLAutocalibration"};

}  // namespace

void DeviceActionLock::setEnabled(const char* strName, std::initializer_list<int> elements,
                                  bool blValue) {
    form::Form& form = m_control.form();
    for (const int element : elements) {
        if (form::Control* command = form.find(strName, element)) {
            command->setEnabled(blValue);
        }
    }
}

void DeviceActionLock::EnableDeviceActions(bool blValue) {
    const session::clsTools& tools = m_control.tools();
    const bool blTestRuns = tools.CurrentAutoAction == Action::Test;

    setEnabled("cmdHALoadFactorUpdate", {-1, 0}, blValue);
    setEnabled("cmdHAFlowModification", {0, 1}, blValue);
    // A running test keeps its stop and the monitoring of its travel; a
    // running monitor keeps its own commands as they are.
    const bool blWatch = blTestRuns || blValue;
    const bool blMonitors = tools.MonitoringFlag && !blTestRuns;
    // Monitoring needs the device online.
    if (!blMonitors) {
        const bool blOnline = data::Allows(tools, data::Right::Monitoring);
        setEnabled("cmdHAMonitoring", {1, 0}, blWatch && blOnline);
        setEnabled("cmdPAMonitoring", {1, 0}, blValue && blOnline);
        setEnabled("cmdPLMonitoring", {0, 1}, blWatch && blOnline);
    }
    setEnabled("cmdPAFlowModification", {0, 1}, blValue);

    // What the role and the mode withhold stays off (data::RoleRules, the
    // one table of them); a test that runs keeps its stop.
    const bool blTests = blValue && data::Allows(tools, data::Right::Test);
    const bool blPLTests = blValue && data::Allows(tools, data::Right::PLTest);
    setEnabled("cmdStartTest", {0, 1}, blTestRuns || blTests);
    setEnabled("cmdPLSetTestSettings", {0, 1}, blPLTests);
    setEnabled("cmdPLStartTest", {0, 1}, blPLTests);
    setEnabled("cmdResetDiagnostics", {0, 1, 2, 3, 4},
               blValue && data::Allows(tools, data::Right::ResetDiagnostics));
    const bool blCalibrations = blValue && data::Allows(tools, data::Right::Calibration);
    for (const char* name : CalibrationStarts) {
        setEnabled(name, {0}, blCalibrations);
    }
    setEnabled("cmdPAAutoTravelCalStart", {-1, 0}, blCalibrations);
    setEnabled("cmdPAFactoryReset", {-1, 0},
               blValue && data::Allows(tools, data::Right::FactoryReset));
}

void DeviceActionLock::EnableTesting(bool blValue) {
    for (const data::Right right : {data::Right::Test, data::Right::PLTest}) {
        data::EnableCommands(m_control.form(), m_control.tools(), right, blValue);
    }
}

}  // namespace kt500::calibration
