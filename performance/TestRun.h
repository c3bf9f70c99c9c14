// TestRun: the life of a performance test. The start button of the KT520
// (cmdStartTest 1) and KT540 (cmdStartTest 0) pages runs the test chosen in
// the test list, the safety valve controller's buttons (cmdPLStartTest 0
// the valve test, 1 the pneumatics test) their own; a press while a test
// runs stops it. The device is asked for with the action framework; its
// ready event starts the test (StartTestAction) or ends it (TestNotReady),
// and a test that completed well has its recorded values read back.
//
//   TestStep, CurrentAutoAction   means                       leaves by
//   0, 0                          idle                        start pressed
//   1, 2                          device made ready, running  not ready, complete,
//                                                             stopped, stop pressed
//   0, 4                          results are read            the curve drawn
#pragma once

#include "calibration/AutoActionEvents.h"
#include "calibration/TestActions.h"
#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <string>

namespace kt500::performance {

class TestRun final : public calibration::TestActions {
public:
    TestRun(devices::IUserControl& control, calibration::AutoActionEvents& events)
        : m_control(control), m_events(events) {}

    void addHandlers(form::EventHandlers& handlers);

    // The start (or stop) of the step or hysteresis test.
    void cmdStartTest_Click(int Index);
    // The start (or stop) of the valve (0) or pneumatics (1) test.
    void cmdPLStartTest_Click(int Index);
    // Writes the valve test's (1) or the pneumatics test's (0) settings
    // that stand ticked in the confirmation list; with none it says so and
    // writes nothing.
    void cmdPLSetTestSettings_Click(int Index);

    // --- The framework's events ---
    void StartTestAction() override;
    void TestNotReady() override;
    void TestCompleted() override;

    // The exact requests of the safety valve controller's two tests.
    static constexpr const char* PneumaticsTestRequest =
        "<?xml version='1.0'?><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
        "<communicationRequest name='pneumaticsTest' access='write'/></dtm>";
    static constexpr const char* ValveTestRequest =
        "<?xml version='1.0'?><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
        "<communicationRequest name='valveTest' access='write'/></dtm>";

private:
    // A press while a test runs: the device is asked to stop.
    void StopTest(bool blSafetyValve, int Index);
    // Asks the BL for the device; on a refusal the page goes back to idle.
    void RequestDevice(const char* strButtons, int Index, const char* strIdleCaption);
    [[nodiscard]] bool Ask(const std::string& strKey);
    // Whether a ticked row of the confirmation list holds a setting of the group.
    [[nodiscard]] bool HoldsConfirmedChange(const std::string& strGroup);
    void Caption(const char* strButtons, int Index, const char* strKey);

    devices::IUserControl& m_control;
    calibration::AutoActionEvents& m_events;
};

}  // namespace kt500::performance
