#include "calibration/AutoActionEvents.h"

#include "calibration/ActionProgress.h"
#include "calibration/AutomaticCalibrations.h"
#include "calibration/CalibrationState.h"
#include "devices/MemberMissing.h"

#include <stdexcept>

namespace kt500::calibration {

namespace {

// The monitoring pages that are no longer current once monitoring stops.
constexpr const char* MonitoringNodes[] = {"monitoringVariables", "inputSignal",
                                           "travelSetpointAndActualTravel", "actuatorPressure",
                                           "pcbTemperature"};

void CaptionTestButtons(devices::IUserControl& control) {
    PageWriter page(control);
    for (const int element : {0, 1}) {
        page.caption("cmdStartTest", element, "start");
        page.caption("cmdPLStartTest", element, "startIndividualTest");
    }
}

}  // namespace

AutomaticCalibrations& AutoActionEvents::calibrations() const {
    if (m_calibrations == nullptr) {
        throw std::logic_error("AutoActionEvents: no calibrations connected");
    }
    return *m_calibrations;
}

std::string AutoActionEvents::PrepareAutoAction() {
    session::clsTools& tools = m_control.tools();
    services::IDtmControl& bl = m_control.control();
    if (tools.MonitoringFlag) {
        if (form::Control* state = m_control.form().find("lblHAMonitoringSettings", 6)) {
            state->setCaption("Stopped");
        }
        bl.StopMonitoringRequests(tools.ConnectionID);
        tools.MonitoringFlag = false;
        for (const char* node : MonitoringNodes) {
            m_control.ChangeTreeIcon(node, "notRead");
        }
    }
    bool blAccepted = false;
    bl.RequestAutoAction(tools.ConnectionID, blAccepted);
    return blAccepted ? std::string() : std::string("commonCalText4");
}

void AutoActionEvents::ActionStarted(const char* strProgressKey, const char* strSign) {
    m_control.tools().CommunicationSign(strSign, "1");
    ShowActionProgress(m_control, strProgressKey);
    m_lock.EnableDeviceActions(false);
}

void AutoActionEvents::ReadyForAutoAction(bool blReady) {
    switch (m_control.tools().CurrentAutoAction) {
        case Action::Calibration:
            if (blReady) {
                calibrations().StartAutoCalibration();
            } else {
                calibrations().AutoCalibrationNotReady();
            }
            break;
        case Action::Test:
            // The tests bring their own start.
            if (m_tests == nullptr) {
                throw devices::MemberMissing(blReady ? "StartTestAction" : "TestNotReady");
            }
            if (blReady) {
                m_tests->StartTestAction();
            } else {
                m_tests->TestNotReady();
            }
            break;
        default:
            // The user cancelled while the device made ready.
            break;
    }
}

void AutoActionEvents::TestFailed() {
    session::clsTools& tools = m_control.tools();
    for (const char* action : {"write", "test", "read"}) {
        tools.CommunicationSign(action, "0");
    }
    m_control.ShowMsg(m_control.Translate("testInfo"), m_control.Translate("commonTestText1"));
    tools.TestStep = 0;
    CaptionTestButtons(m_control);
    tools.CurrentAutoAction = Action::None;
    EndActionProgress(m_control);
    RestoreToolbar(m_control, true);
}

bool AutoActionEvents::calibrationRuns() const {
    const session::clsTools& tools = m_control.tools();
    if (tools.CurrentAutoAction == Action::Calibration) {
        return true;
    }
    // New session data put the action members back while the device went
    // on with an automatic calibration: its end still closes the page.
    return tools.CurrentAutoAction == Action::None && tools.CalibrationStep == Step::Running &&
           (tools.CurrentCalibration == Code::AutoTravel ||
            tools.CurrentCalibration == Code::AutoPrestageTrim);
}

void AutoActionEvents::AutoActionComplete(bool blSuccess) {
    session::clsTools& tools = m_control.tools();
    const std::int16_t action = calibrationRuns() ? Action::Calibration : tools.CurrentAutoAction;
    if (action == Action::Test) {
        if (blSuccess) {
            // The read of the test's results comes with the tests.
            if (m_tests == nullptr) {
                throw devices::MemberMissing("StepTestValues");
            }
            m_tests->TestCompleted();
        } else {
            TestFailed();
        }
    } else if (action == Action::Calibration) {
        calibrations().Completed(blSuccess);
    }

    if (tools.CurrentAutoAction == Action::Test) {
        tools.CommunicationSign("test", "0");
    } else if (action == Action::Calibration) {
        // The result stays on the page until the user presses "ok".
        tools.CalibrationStep = Step::Finished;
        tools.CommunicationSign("calibration", "0");
        UnlockUploadAndSend(m_control);
        EndActionProgress(m_control);
    }
    if (action == Action::Calibration || action == Action::Test) {
        m_lock.EnableDeviceActions(true);
    }
}

void AutoActionEvents::AutoActionStopped(bool blStopped) {
    session::clsTools& tools = m_control.tools();
    const std::int16_t action = calibrationRuns() ? Action::Calibration : tools.CurrentAutoAction;
    if (!blStopped) {
        // The action goes on.
        if (action == Action::Calibration) {
            calibrations().StopRefused();
        } else if (action == Action::Test) {
            m_control.ShowMsg(m_control.Translate("testInfo"),
                              m_control.Translate("commonTestText2"));
        }
        return;
    }
    if (action == Action::Calibration) {
        calibrations().Stopped();
        tools.CalibrationStep = Step::Finished;
        tools.CommunicationSign("calibration", "0");
    } else if (action == Action::Test) {
        tools.CurrentAutoAction = Action::None;
        m_control.ShowMsg(m_control.Translate("testInfo"), m_control.Translate("testStopped"));
        CaptionTestButtons(m_control);
        tools.CommunicationSign("test", "0");
    }
    EndActionProgress(m_control);
    RestoreToolbar(m_control);
    m_lock.EnableDeviceActions(true);
}

}  // namespace kt500::calibration
