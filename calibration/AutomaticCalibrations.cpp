#include "calibration/AutomaticCalibrations.h"

#include "calibration/ActionProgress.h"
#include "calibration/AutoActionEvents.h"
#include "calibration/CalibrationState.h"
#include "data/Requests.h"

namespace kt500::calibration {

namespace {

constexpr std::int32_t AutoActionTimeout = 10000;

// The manual prestage trim's page.
constexpr ControlRef ManualPrompt{"lblHAManualPrestageTrim", 0};
constexpr const char* ManualButtons = "cmdManualPrestageTrim";

}  // namespace

const AutomaticProcedure& TravelCalibration() {
    static const AutomaticProcedure procedure{
        Code::AutoTravel,
        "automaticTravelCalText",
        "automaticTravelCalibration",
        "positionControlAutocalibration",
        {{{"lblHAAutomaticTravelCal"},
          {"cmdHAAutoTravelCalibration", 0},
          {"cmdHAAutoTravelCalibration", 1}},
         {{"lblPAAutomaticTravelCal"}, {"cmdPAAutoTravelCalStart"}, {}},
         {{"lblPLParamTitle", 44}, {"cmdPLAutocalibration", 0}, {}}}};
    return procedure;
}

const AutomaticProcedure& PrestageTrim() {
    static const AutomaticProcedure procedure{
        Code::AutoPrestageTrim,
        "automaticPrestageTrimText",
        "automaticPrestageTrim",
        "automaticPrestageTrim",
        {{{"lblHAAutomaticPrestageTrim"},
          {"cmdHAAutomaticPrestageTrim", 0},
          {"cmdHAAutomaticPrestageTrim", 1}}}};
    return procedure;
}

std::string AutomaticCalibrations::key(const AutomaticProcedure& procedure, char number) {
    std::string text(procedure.keyPrefix);
    text.push_back(number);
    return text;
}

const AutomaticProcedure& AutomaticCalibrations::running() const {
    return m_control.tools().CurrentCalibration == Code::AutoTravel ? TravelCalibration()
                                                                     : PrestageTrim();
}

void AutomaticCalibrations::showResult(const AutomaticProcedure& procedure,
                                       std::string_view strKey) {
    for (const AutomaticPage& page : procedure.pages) {
        m_page.say(page.label, strKey);
        m_page.say(page.first, "ok");
        if (!page.second.name.empty()) {
            m_page.show(page.second, false);
        }
    }
}

void AutomaticCalibrations::stop(const AutomaticPage& page) {
    session::clsTools& tools = m_control.tools();
    bool blStopping = false;
    m_control.control().StopAutoAction(tools.ConnectionID, blStopping);
    if (!blStopping) {
        m_page.say(page.label, "commonCalText3");
    }
}

// The KT520 pages: start asks for confirmation, the second button asks the
// BL for the device, the first button then stops, and "ok" resets.
//
//   step          first button                         second button
//   0 idle        confirm: "cancel", second shown -> 1  -
//   1 confirming  back to idle                    -> 0  PrepareAutoAction
//   2 running     StopAutoAction                        -
//   3 finished    back to idle                    -> 0  -
void AutomaticCalibrations::TwoButtonClick(const AutomaticProcedure& procedure, int element) {
    session::clsTools& tools = m_control.tools();
    const AutomaticPage& page = procedure.pages.front();
    if (element == 1) {
        if (tools.CalibrationStep != Step::Confirming) {
            return;
        }
        const std::string refusal = m_events.PrepareAutoAction();
        if (!refusal.empty()) {
            m_page.say(page.label, refusal);
            m_page.say(page.first, "ok");
            m_page.show(page.second, false);
            tools.CalibrationStep = Step::Finished;
            // Nothing runs: the toolbar is back as after an action's end.
            UnlockUploadAndSend(m_control);
        }
        return;
    }
    switch (tools.CalibrationStep) {
        case Step::Idle:
            tools.CurrentAutoAction = Action::Calibration;
            tools.CurrentCalibration = procedure.code;
            // The calibration owns the device from here: the toolbar drops
            // its clicks, so it shows them locked.
            LockToolbar(m_control);
            m_page.say(page.label, key(procedure, '2'));
            m_page.say(page.first, "cancel");
            m_page.show(page.second, true);
            tools.CalibrationStep = Step::Confirming;
            break;
        case Step::Confirming:
        case Step::Finished:
            m_page.say(page.label, key(procedure, '1'));
            m_page.say(page.first, "start");
            m_page.show(page.second, false);
            tools.CalibrationStep = Step::Idle;
            tools.CurrentAutoAction = Action::None;
            ReleaseDevice(m_control);
            break;
        default:
            stop(page);
            break;
    }
}

// The KT540 and PL500 pages: one button that starts at once, stops while
// the action runs (it reads "cancel" until the device is ready) and resets
// after the result.
void AutomaticCalibrations::OneButtonClick(const AutomaticProcedure& procedure,
                                           std::size_t intPage) {
    session::clsTools& tools = m_control.tools();
    const AutomaticPage* page = &procedure.pages.at(intPage);
    switch (tools.CalibrationStep) {
        case Step::Idle: {
            tools.CurrentAutoAction = Action::Calibration;
            tools.CurrentCalibration = procedure.code;
            tools.CalibrationStep = Step::Running;
            m_page.say(page->first, "cancel");
            // Locked while the device makes ready, as while it runs.
            LockToolbar(m_control);
            const std::string refusal = m_events.PrepareAutoAction();
            if (!refusal.empty()) {
                m_page.say(page->label, refusal);
                m_page.say(page->first, "ok");
                tools.CalibrationStep = Step::Finished;
                UnlockUploadAndSend(m_control);
            }
            break;
        }
        case Step::Finished:
            m_page.say(page->label, key(procedure, '1'));
            m_page.say(page->first, "start");
            tools.CalibrationStep = Step::Idle;
            tools.CurrentAutoAction = Action::None;
            ReleaseDevice(m_control);
            break;
        default:
            stop(*page);
            break;
    }
}

void AutomaticCalibrations::StartAutoCalibration() {
    session::clsTools& tools = m_control.tools();
    const std::int32_t code = tools.CurrentCalibration;
    const AutomaticProcedure* procedure = nullptr;
    if (code == Code::AutoTravel) {
        procedure = &TravelCalibration();
    } else if (code == Code::AutoPrestageTrim) {
        procedure = &PrestageTrim();
    }
    if (procedure != nullptr) {
        for (const AutomaticPage& page : procedure->pages) {
            m_page.say(page.label, "commonCalText2");
            m_page.say(page.first, "stop");
            if (!page.second.name.empty()) {
                m_page.show(page.second, false);
            }
        }
        bool blAccepted = false;
        // A refused start is not looked at: the page waits for the user's stop.
        m_control.control().SendAutoAction(tools.ConnectionID,
                                           data::AutoActionRequest(procedure->request),
                                           AutoActionTimeout, blAccepted);
    }
    tools.CurrentAutoAction = Action::Calibration;
    tools.CalibrationStep = Step::Running;
    m_events.ActionStarted("progressCalibrating", "calibration");
    // Every other action is locked; the running page keeps its stop.
    if (procedure != nullptr) {
        for (const AutomaticPage& page : procedure->pages) {
            if (form::Control* first = m_control.form().find(page.first.name, page.first.index)) {
                first->setEnabled(true);
            }
        }
    }
}

void AutomaticCalibrations::AutoCalibrationNotReady() {
    // The travel pages, whatever the code: a refused prestage trim keeps its
    // confirmation text on its own page.
    for (const AutomaticPage& page : TravelCalibration().pages) {
        m_page.say(page.label, "commonCalText1");
        m_page.say(page.first, "ok");
        if (!page.second.name.empty()) {
            m_page.show(page.second, false);
        }
    }
    m_control.tools().CalibrationStep = Step::Finished;
    // The device never took the action: the toolbar is back.
    UnlockUploadAndSend(m_control);
}

void AutomaticCalibrations::Completed(bool blSuccess) {
    const AutomaticProcedure& procedure = running();
    showResult(procedure, key(procedure, blSuccess ? '4' : '5'));
    m_control.ChangeTreeIcon(std::string(procedure.treeNode), blSuccess ? "read" : "error");
}

void AutomaticCalibrations::Stopped() {
    const AutomaticProcedure& procedure = running();
    showResult(procedure, key(procedure, '3'));
}

void AutomaticCalibrations::StopRefused() {
    for (const AutomaticPage& page : running().pages) {
        m_page.say(page.label, "commonCalText3");
    }
}

void AutomaticCalibrations::manualTrimFields(bool blVisible) {
    m_page.show({{"lblHAManualPrestageTrim", 1}, {"lblHAManualPrestageTrim", 2},
                 {"txtHAPrestageTrim", 0}, {"txtHAPrestageTrim"}},
                blVisible);
}

// The manual prestage trim: start reads the present value into the field,
// the second button writes what the user made of it.
//
//   step          first button                           second button
//   0 idle        read the value, fields shown -> 1      -
//   1 confirming  back to idle, fields hidden  -> 0      guarded write (the reply -> 3)
//   3 finished    back to idle, calibration mode off -> 0
//   other         abandon ("commonCalText5")   -> 3      -
void AutomaticCalibrations::ManualPrestageTrimClick(int element) {
    session::clsTools& tools = m_control.tools();
    if (element == 1) {
        if (tools.CalibrationStep != Step::Confirming) {
            return;
        }
        bool blCalibrationMode = false;
        m_control.control().SetCalibrationMode(true, blCalibrationMode);
        if (!blCalibrationMode) {
            m_page.say(ManualPrompt, "commonCalText4");
            return;
        }
        m_control.SendRequest("manualPrestageTrim", "write");
        // The step stays: the reply decides the next one.
        tools.CurrentAutoAction = Action::Calibration;
        LockToolbar(m_control);
        m_page.say(ManualPrompt, "commonCalText2");
        return;
    }
    switch (tools.CalibrationStep) {
        case Step::Idle:
            manualTrimFields(true);
            m_control.SetProgressBar("manualPrestageTrim", "progressReading");
            m_control.SendRequest("manualPrestageTrim", "read");
            tools.CurrentCalibration = Code::ManualPrestageTrim;
            tools.CalibrationStep = Step::Confirming;
            m_page.say(ManualPrompt, "manualPrestageTrimText4");
            m_page.caption(ManualButtons, 0, "cancel");
            m_page.showButton(ManualButtons, 1, true);
            break;
        case Step::Confirming:
            m_page.say(ManualPrompt, "manualPrestageTrimText1");
            m_page.caption(ManualButtons, 0, "start");
            m_page.showButton(ManualButtons, 1, false);
            manualTrimFields(false);
            tools.CalibrationStep = Step::Idle;
            break;
        case Step::Finished: {
            m_page.caption(ManualButtons, 0, "start");
            m_page.say(ManualPrompt, "manualPrestageTrimText1");
            tools.CalibrationStep = Step::Idle;
            tools.CurrentAutoAction = Action::None;
            bool blOff = false;
            m_control.control().SetCalibrationMode(false, blOff);
            ReleaseDevice(m_control);
            break;
        }
        default:
            tools.CalibrationStep = Step::Finished;
            tools.CommunicationSign("calibration", "0");
            EndActionProgress(m_control);
            m_page.say(ManualPrompt, "commonCalText5");
            m_page.caption(ManualButtons, 0, "ok");
            m_page.showButton(ManualButtons, 1, false);
            manualTrimFields(false);
            break;
    }
}

void AutomaticCalibrations::ManualTrimWritten(bool blOk) {
    m_page.say(ManualPrompt, blOk ? "manualPrestageTrimText2" : "manualPrestageTrimText3");
    m_page.caption(ManualButtons, 0, "ok");
    m_page.showButton(ManualButtons, 1, false);
    manualTrimFields(false);
    m_control.tools().CalibrationStep = Step::Finished;
    m_control.ChangeTreeIcon("manualPrestageTrim", blOk ? "read" : "error");
    StepAnswered(m_control, ManualButtons);
}

void AutomaticCalibrations::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    const auto element = [](const form::FormEvent& event) {
        return event.control != nullptr ? event.control->index() : -1;
    };
    handlers.add("cmdHAAutoTravelCalibration", EventKind::Click, [this, element](auto& event) {
        TwoButtonClick(TravelCalibration(), element(event));
    });
    handlers.add("cmdHAAutomaticPrestageTrim", EventKind::Click, [this, element](auto& event) {
        TwoButtonClick(PrestageTrim(), element(event));
    });
    handlers.add("cmdPAAutoTravelCalStart", EventKind::Click,
                 [this](auto&) { OneButtonClick(TravelCalibration(), 1); });
    handlers.add("cmdPLAutocalibration", EventKind::Click, [this, element](auto& event) {
        if (element(event) == 0) {
            OneButtonClick(TravelCalibration(), 2);
        }
    });
    handlers.add("cmdManualPrestageTrim", EventKind::Click,
                 [this, element](auto& event) { ManualPrestageTrimClick(element(event)); });
}

}  // namespace kt500::calibration
