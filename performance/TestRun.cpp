#include "performance/TestRun.h"

#include "calibration/ActionProgress.h"
#include "calibration/CalibrationState.h"
#include "calibration/PageWriter.h"
#include "data/ConfirmationRows.h"
#include "devices/DeviceClass.h"

namespace kt500::performance {

namespace {

namespace Action = calibration::Action;
using form::EventKind;

constexpr std::int16_t kStepTest = 1;
constexpr std::int16_t kHysteresisTest = 2;
constexpr std::int16_t kPneumaticsTest = 3;
constexpr std::int16_t kValveTest = 4;

constexpr std::int32_t kTestTimeout = 5000;

}  // namespace

void TestRun::addHandlers(form::EventHandlers& handlers) {
    const form::Form& form = m_control.form();
    if (form.findArray("cmdStartTest") != nullptr) {
        handlers.add("cmdStartTest", EventKind::Click,
                     [this](form::FormEvent& event) { cmdStartTest_Click(event.control->index()); });
    }
    if (form.findArray("cmdPLStartTest") != nullptr) {
        handlers.add("cmdPLStartTest", EventKind::Click, [this](form::FormEvent& event) {
            cmdPLStartTest_Click(event.control->index());
        });
    }
    if (form.findArray("cmdPLSetTestSettings") != nullptr) {
        handlers.add("cmdPLSetTestSettings", EventKind::Click, [this](form::FormEvent& event) {
            cmdPLSetTestSettings_Click(event.control->index());
        });
    }
}

void TestRun::Caption(const char* strButtons, int Index, const char* strKey) {
    calibration::PageWriter(m_control).caption(strButtons, Index, strKey);
}

bool TestRun::Ask(const std::string& strKey) {
    int result = 0;
    m_control.dialogs().ShowMessage(0, 4, services::ButtonNo, m_control.Translate("startTest"),
                                    m_control.Translate(strKey), m_control.buttonPressed(),
                                    result);
    return m_control.buttonPressed() == services::ButtonYes;
}

void TestRun::RequestDevice(const char* strButtons, int Index, const char* strIdleCaption) {
    if (m_events.PrepareAutoAction().empty()) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    m_control.ShowMsg(m_control.Translate("testing"), m_control.Translate("commonCalText4"));
    tools.TestStep = 0;
    Caption(strButtons, Index, strIdleCaption);
    tools.CurrentAutoAction = Action::None;
}

void TestRun::cmdStartTest_Click(int Index) {
    session::clsTools& tools = m_control.tools();
    devices::DeviceClass& device = m_control.deviceClass();
    tools.CurrentTest = device.SelectedTest();
    if (tools.TestStep != 0) {
        StopTest(false, Index);
        return;
    }
    if (!device.CheckTestParameters()) {
        return;
    }
    if (!Ask("stepTestText1")) {
        return;
    }
    if (Index == 1) {
        // The HART positioner moves the valve: the user is told so.
        m_control.ShowMsg(m_control.Translate("testing"), m_control.Translate("stepTestText2"));
    }
    tools.TestStep = 1;
    Caption("cmdStartTest", Index, "stop");
    tools.CurrentAutoAction = Action::Test;
    tools.StepEndPoint = device.CurrentStepEndPoint();
    RequestDevice("cmdStartTest", Index, "start");
}

void TestRun::cmdPLStartTest_Click(int Index) {
    session::clsTools& tools = m_control.tools();
    tools.CurrentTest = Index == 0 ? kValveTest : kPneumaticsTest;
    if (tools.TestStep != 0) {
        StopTest(true, Index);
        return;
    }
    if (!Ask(Index == 0 ? "valveTestText" : "pneumaticsTestText")) {
        return;
    }
    tools.TestStep = 1;
    Caption("cmdPLStartTest", Index, "stop");
    tools.CurrentAutoAction = Action::Test;
    RequestDevice("cmdPLStartTest", Index, "startIndividualTest");
}

void TestRun::StopTest(bool blSafetyValve, int Index) {
    session::clsTools& tools = m_control.tools();
    bool blStopping = false;
    m_control.control().StopAutoAction(tools.ConnectionID, blStopping);
    if (!blStopping) {
        m_control.ShowMsg(m_control.Translate("testInfo"), m_control.Translate("commonTestText2"));
        return;
    }
    // The stopped event has the final word.
    tools.TestStep = 0;
    Caption(blSafetyValve ? "cmdPLStartTest" : "cmdStartTest", Index,
            blSafetyValve ? "startIndividualTest" : "start");
    tools.CommunicationSign("test", "0");
    if (!blSafetyValve) {
        tools.CommunicationSign("write", "0");
    }
    calibration::RestoreToolbar(m_control);
    calibration::EndActionProgress(m_control);
    if (!blSafetyValve) {
        m_control.EnableDeviceActions(true);
    }
}

void TestRun::StartTestAction() {
    session::clsTools& tools = m_control.tools();
    if (tools.CurrentTest == kStepTest || tools.CurrentTest == kHysteresisTest) {
        // The request road sends the settings as the test's own request.
        m_control.SendRequest("testSettings", "write");
        m_events.ActionStarted("progressTesting", "test");
        return;
    }
    const bool valve = tools.CurrentTest == kValveTest;
    bool blAccepted = false;
    m_control.control().SendAutoAction(tools.ConnectionID,
                                       valve ? ValveTestRequest : PneumaticsTestRequest,
                                       kTestTimeout, blAccepted);
    if (blAccepted) {
        m_events.ActionStarted("progressTesting", "test");
        // The other actions are locked; the running test's button is its stop.
        if (form::Control* stop = m_control.form().find("cmdPLStartTest", valve ? 0 : 1)) {
            stop->setEnabled(true);
        }
        return;
    }
    // The device did not take the test: the page is idle again.
    tools.CommunicationSign("test", "0");
    calibration::EndActionProgress(m_control);
    calibration::UnlockUploadAndSend(m_control);
    Caption("cmdPLStartTest", valve ? 0 : 1, "startIndividualTest");
    tools.TestStep = 0;
    tools.CurrentAutoAction = Action::None;
}

void TestRun::TestNotReady() {
    session::clsTools& tools = m_control.tools();
    m_control.ShowMsg(m_control.Translate("testInfo"), m_control.Translate("commonTestText3"));
    tools.TestStep = 0;
    for (const int element : {0, 1}) {
        Caption("cmdStartTest", element, "start");
        Caption("cmdPLStartTest", element, "startIndividualTest");
    }
    tools.CurrentAutoAction = Action::None;
}

void TestRun::TestCompleted() {
    session::clsTools& tools = m_control.tools();
    devices::DeviceClass& device = m_control.deviceClass();
    tools.CurrentAutoAction = Action::TestResults;
    tools.CommunicationSign("write", "0");
    tools.CommunicationSign("test", "0");
    std::string group;
    switch (tools.CurrentTest) {
        case kStepTest:
            group = device.StepTestValues();
            tools.StepTestFlag = false;
            break;
        case kHysteresisTest:
            group = device.HysteresisTestValues();
            tools.HysteresisTestFlag = false;
            break;
        case kPneumaticsTest:
            group = "pneumaticsTest";
            tools.PneumaticsTestFlag = false;
            Caption("cmdPLStartTest", 1, "startIndividualTest");
            break;
        case kValveTest:
            group = "valveTest";
            tools.ValveTestFlag = false;
            Caption("cmdPLStartTest", 0, "startIndividualTest");
            break;
        default:
            break;
    }
    calibration::EndActionProgress(m_control);
    if (!group.empty()) {
        m_control.SetProgressBar(group, "progressReading");
        m_control.SendRequest(group, "read");
    }
    tools.TestStep = 0;
    for (const int element : {0, 1}) {
        Caption("cmdStartTest", element, "start");
    }
}

bool TestRun::HoldsConfirmedChange(const std::string& strGroup) {
    const xml::Node group = m_control.RequestGroupByName(strGroup);
    if (!group) {
        return false;
    }
    // A part the class derives from another setting (the schedule's days)
    // has no row of its own: its source's row stands for it.
    for (const xml::Node& included : group.childElements("includedParam")) {
        if (data::HasCheckedRow(m_control.form(), included.attribute("name"))) {
            return true;
        }
    }
    return false;
}

void TestRun::cmdPLSetTestSettings_Click(int Index) {
    session::clsTools& tools = m_control.tools();
    const std::string group = Index == 1 ? "valveTest" : "pneumaticsTest";
    // Only confirmed changes are written: with no ticked row for a setting
    // of the group there is nothing to write, and the device is not asked.
    if (!HoldsConfirmedChange(group)) {
        m_control.ShowMsg(m_control.Translate("setTestSettings"),
                          m_control.Translate("noConfirmedChanges"));
        return;
    }
    // The write's progress, as a download's.
    tools.ShowProgressbar = true;
    m_control.SetProgressBar("download", "progressSending");
    m_control.form().control("fraProgress").setVisible(true);
    m_control.SendRequest(group, "write");
}

}  // namespace kt500::performance
