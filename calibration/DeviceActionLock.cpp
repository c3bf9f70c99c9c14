#include "calibration/DeviceActionLock.h"

#include "calibration/CalibrationState.h"

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
constexpr const char* SingleCommands[] = {"cmdPAAutoTravelCalStart", "cmdPAFactoryReset"};

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
    if (!blMonitors) {
        setEnabled("cmdHAMonitoring", {1, 0}, blWatch);
        setEnabled("cmdPAMonitoring", {1, 0}, blValue);
        setEnabled("cmdPLMonitoring", {0, 1}, blWatch);
    }
    setEnabled("cmdPAFlowModification", {0, 1}, blValue);

    // An observer starts no test; a test that runs keeps its stop.
    const bool blObserver = tools.ActorRole == "observer";
    setEnabled("cmdStartTest", {0, 1}, blTestRuns || (blValue && !blObserver));

    // Neither an observer nor an operator resets diagnostics or calibrates.
    if (blObserver || tools.ActorRole == "operator") {
        blValue = false;
    }
    setEnabled("cmdResetDiagnostics", {0, 1, 2, 3}, blValue);
    for (const char* name : CalibrationStarts) {
        setEnabled(name, {0}, blValue);
    }
    for (const char* name : SingleCommands) {
        setEnabled(name, {-1, 0}, blValue);
    }
    setEnabled("cmdPLSetTestSettings", {0, 1}, blValue);
    setEnabled("cmdPLStartTest", {0, 1}, blValue);
}

void DeviceActionLock::EnableTesting(bool blValue) {
    setEnabled("cmdStartTest", {0, 1}, blValue);
    setEnabled("cmdPLSetTestSettings", {0, 1}, blValue);
    setEnabled("cmdPLStartTest", {0, 1}, blValue);
}

}  // namespace kt500::calibration
