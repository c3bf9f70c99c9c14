#include "calibration/SensorCalibrations.h"

#include "calibration/ActionProgress.h"
#include "calibration/CalibrationState.h"

#include <cstdio>
#include <set>
#include <string>

namespace kt500::calibration {

namespace {

using Pages = std::vector<const SensorProcedure*>;

// The device's answer to a written step, by CurrentCalibration: what the
// pages that share the code show when it was taken, and when it was not.
struct ReplyRow {
    std::int32_t code;
    Pages pages;
    SensorAction ok;
    SensorAction failed;
};

void Tree(SensorCalibrations& c, const SensorProcedure& p, const char* strState) {
    c.control().ChangeTreeIcon(std::string(p.treeNode), strState);
}

template <const char* Key>
void FinishWith(SensorCalibrations& c, const SensorProcedure& p) {
    c.say(p, Key);
    c.finish(p);
}

constexpr char InputFailed[] = "inputSignalMeasurementCalText3";
constexpr char TransmitterFailed[] = "positionTransmitterCalText2";

const std::vector<ReplyRow>& ReplyTable() {
    using namespace SensorPages;
    static const std::vector<ReplyRow> rows = {
        {Code::InputSignalZero, {&InputSignalHA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "inputSignalMeasurementCalText4");
             c.tools().CalibrationStep = Step::Running;
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             FinishWith<InputFailed>(c, p);
             Tree(c, p, "error");
         }},
        {Code::InputSignalSpan, {&InputSignalHA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "inputSignalMeasurementCalText7");
             c.finish(p);
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             FinishWith<InputFailed>(c, p);
             Tree(c, p, "error");
         }},
        {Code::TransmitterLow, {&PositionTransmitterHA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "positionTransmitterCalText3");
             c.tools().CalibrationStep = Step::Running;
             c.showButton(p, 1, true);
             c.showButton(p, 2, true);
             c.showFields(p, true);
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             FinishWith<TransmitterFailed>(c, p);
             Tree(c, p, "error");
         }},
        {Code::TransmitterHigh, {&PositionTransmitterHA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "positionTransmitterCalText4");
             c.tools().CalibrationStep = 4;
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             FinishWith<TransmitterFailed>(c, p);
             Tree(c, p, "error");
         }},
        {Code::TransmitterExit, {&PositionTransmitterHA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "positionTransmitterCalText5");
             c.finish(p);
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             FinishWith<TransmitterFailed>(c, p);
             Tree(c, p, "error");
         }},
        {Code::PressureFirstPoint, {&PressureHA(), &PressurePA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "pressureSensorCalText7");
             c.tools().CalibrationStep = 4;
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "pressureSensorCalText6");
             c.finish(p);
             Tree(c, p, "error");
         }},
        // A refused second point changes nothing: the user presses again or
        // leaves.
        {Code::PressureSecondPoint, {&PressureHA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "pressureSensorCalText11");
             c.tools().CalibrationStep = 6;
         },
         [](SensorCalibrations&, const SensorProcedure&) {}},
        {Code::PressureLastPoint, {&PressureHA(), &PressurePA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "pressureSensorCalText2");
             c.finish(p);
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "pressureSensorCalText3");
             c.finish(p);
             Tree(c, p, "error");
         }},
        {Code::TemperatureSensor, {&TemperatureHA(), &TemperaturePA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "temperatureSensorCalText2");
             c.finish(p);
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "temperatureSensorCalText3");
             c.finish(p);
             Tree(c, p, "error");
         }},
        {Code::PositionSensor, {&PositionSensorPA()},
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "positionSensorCalText2");
             c.finish(p);
             Tree(c, p, "read");
         },
         [](SensorCalibrations& c, const SensorProcedure& p) {
             c.say(p, "positionSensorCalText3");
             c.finish(p);
             Tree(c, p, "error");
         }},
    };
    return rows;
}

}  // namespace

void SensorCalibrations::showFields(const SensorProcedure& procedure, bool blVisible) {
    for (const ControlRef& field : procedure.fields) {
        m_page.show(field, blVisible);
    }
}

void SensorCalibrations::finish(const SensorProcedure& procedure) {
    caption(procedure, 0, "ok");
    showButton(procedure, 1, false);
    showButton(procedure, 2, false);
    showFields(procedure, false);
    tools().CalibrationStep = Step::Finished;
}

std::vector<form::Control*> ValueFields(form::Form& form, const PageWriter& page,
                                        const SensorProcedure& procedure) {
    std::vector<form::Control*> fields;
    const form::Control* prompt = page.control(procedure.label);
    if (prompt == nullptr || prompt->container() == nullptr) {
        return fields;
    }
    for (form::Control* field : form.children(prompt->container())) {
        if (field->kind() == form::ControlKind::TextBox && !field->tag().empty()) {
            fields.push_back(field);
        }
    }
    return fields;
}

bool SensorCalibrations::valuesValid(const SensorProcedure& procedure) {
    // The fields of the page that the user can see.
    for (form::Control* field : ValueFields(m_control.form(), m_page, procedure)) {
        if (field->visible() && !m_control.CheckValue(*field)) {
            return false;
        }
    }
    return true;
}

bool SensorCalibrations::calibrationMode(const SensorProcedure& procedure) {
    bool blOn = false;
    m_control.control().SetCalibrationMode(true, blOn);
    if (!blOn) {
        say(procedure, "commonCalText4");
    }
    return blOn;
}

void SensorCalibrations::send(const char* strRequest) {
    m_control.SendRequest(strRequest, "write");
    tools().CurrentAutoAction = Action::Calibration;
    // The procedure owns the device until its page is reset.
    LockToolbar(m_control);
}

bool SensorCalibrations::guardedWrite(const SensorProcedure& procedure, const char* strRequest) {
    if (!valuesValid(procedure) || !calibrationMode(procedure)) {
        return false;
    }
    send(strRequest);
    say(procedure, "commonCalText2");
    return true;
}

void SensorCalibrations::abandon(const SensorProcedure& procedure) {
    tools().CalibrationStep = Step::Finished;
    showButton(procedure, 1, false);
    showButton(procedure, 2, false);
    showFields(procedure, false);
    tools().CommunicationSign("calibration", "0");
    EndActionProgress(m_control);
    say(procedure, "commonCalText5");
    caption(procedure, 0, "ok");
}

void SensorCalibrations::reset(const SensorProcedure& procedure) {
    caption(procedure, 0, "start");
    say(procedure, procedure.text1);
    // The page is idle again: nothing but the start is offered.
    showButton(procedure, 1, false);
    showButton(procedure, 2, false);
    showFields(procedure, false);
    tools().CalibrationStep = Step::Idle;
    tools().CurrentAutoAction = Action::None;
    bool blOff = false;
    m_control.control().SetCalibrationMode(false, blOff);
    ReleaseDevice(m_control);
}

// The first button where the procedure has no row of its own:
//   0 idle        confirm: "cancel", second button shown     -> 1
//   1 confirming  back to idle, the device untouched          -> 0
//   3 finished    back to idle, calibration mode off          -> 0
//   other         the user leaves between steps               -> 3
void SensorCalibrations::frame(const SensorProcedure& procedure) {
    session::clsTools& state = tools();
    switch (state.CalibrationStep) {
        case Step::Idle:
            state.CurrentCalibration = procedure.firstCode;
            state.CalibrationStep = Step::Confirming;
            caption(procedure, 0, "cancel");
            showButton(procedure, 1, true);
            if (procedure.fieldsAtStart) {
                showFields(procedure, true);
            }
            say(procedure, procedure.confirmText);
            break;
        case Step::Confirming:
            say(procedure, procedure.text1);
            caption(procedure, 0, "start");
            showButton(procedure, 1, false);
            showFields(procedure, false);
            state.CalibrationStep = Step::Idle;
            break;
        case Step::Finished:
            reset(procedure);
            break;
        default:
            abandon(procedure);
            break;
    }
}

void SensorCalibrations::Click(const SensorProcedure& procedure, int element) {
    const std::int16_t step = tools().CalibrationStep;
    for (const ButtonRow& row : procedure.rows) {
        if (row.element == element && (row.step == step || row.step == AnyStep)) {
            row.action(*this, procedure);
            return;
        }
    }
    if (element == 0) {
        frame(procedure);
    }
}

void SensorCalibrations::Replied(bool blOk) {
    const std::int32_t code = tools().CurrentCalibration;
    for (const ReplyRow& row : ReplyTable()) {
        if (row.code != code) {
            continue;
        }
        for (const SensorProcedure* procedure : row.pages) {
            // The pages of the code that the family's form holds.
            if (m_page.control(procedure->label) != nullptr) {
                (blOk ? row.ok : row.failed)(*this, *procedure);
                StepAnswered(m_control, procedure->buttons);
            }
        }
        return;
    }
}

void SensorCalibrations::TemperatureCoefficient() {
    const form::Control* scale = m_page.control({"lblHAAmbientTemperature", 1});
    const std::string unit = scale == nullptr ? std::string() : scale->caption();
    std::string coefficient = "0.0023";
    if (unit != "\xC2\xB0" "C" && unit != "degC") {
        // The same coefficient per degree of the other scale.
        char text[32];
        std::snprintf(text, sizeof text, "%.7g",
                      static_cast<double>(static_cast<float>(5.0 / 9.0 * 0.0023)));
        coefficient = text;
    }
    m_page.setText({"txtHATemperatureSensorCal", 1}, coefficient);
}

void SensorCalibrations::addHandlers(form::EventHandlers& handlers) {
    for (const SensorProcedure* procedure : SensorPages::All()) {
        handlers.add(procedure->buttons, form::EventKind::Click,
                     [this, procedure](form::FormEvent& event) {
                         Click(*procedure, event.control != nullptr ? event.control->index() : 0);
                     });
    }
    // Each value field of a procedure's page is checked against its limits
    // when it loses the focus, with the message of every other page: a
    // refused reference turns red at once, and the write of the step
    // refuses it again (valuesValid). A reference is no setting of the
    // device, so it makes no row of the confirmation list.
    std::set<std::string, std::less<>> fields;
    for (const SensorProcedure* procedure : SensorPages::All()) {
        for (const form::Control* field : ValueFields(m_control.form(), m_page, *procedure)) {
            fields.insert(field->name());
        }
    }
    // The temperature reference also gives the coefficient, whether or not
    // the family's pages are there yet.
    fields.insert("txtHATemperatureSensorCal");
    for (const std::string& name : fields) {
        handlers.add(name, form::EventKind::LostFocus, [this](form::FormEvent& event) {
            if (event.control == nullptr) {
                return;
            }
            (void)m_control.CheckValue(*event.control);
            if (event.control->name() == "txtHATemperatureSensorCal" &&
                event.control->index() == 0) {
                TemperatureCoefficient();
            }
        });
    }
}

}  // namespace kt500::calibration
