// SensorCalibrations: the procedures that guide a technician through
// measuring a reference and writing it to the device: input signal
// measurement, position transmitter, pressure sensors, temperature sensor
// and position sensor. Each is a table of what the page's buttons do at
// each step (SensorProcedures.cpp); the device's answer to each written
// step comes back through CalibrationValueSet, whose table by
// CurrentCalibration is the other half of every procedure.
//
// A procedure names the controls of its page on one family; the same
// procedure on another family is another table over the same rows, so a
// family's page is wired by its table alone.
#pragma once

#include "calibration/PageWriter.h"
#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace kt500::calibration {

class SensorCalibrations;
struct SensorProcedure;

// What a button does at a step of a procedure.
using SensorAction = void (*)(SensorCalibrations& calibrations, const SensorProcedure& procedure);

// A row that holds at every step.
inline constexpr std::int16_t AnyStep = -1;

struct ButtonRow {
    int element;          // 0 first button, 1 second, 2 third
    std::int16_t step;    // CalibrationStep when it is pressed
    SensorAction action;
};

struct SensorProcedure {
    std::string_view buttons;        // the page's command array
    ControlRef label;                // the prompt
    std::vector<ControlRef> fields;  // the value fields and their labels
    std::string_view treeNode;
    std::int32_t firstCode;
    std::string_view text1;        // idle prompt
    std::string_view confirmText;  // asks to confirm the start
    bool fieldsAtStart;            // start shows the fields already
    std::vector<ButtonRow> rows;   // the procedure's own rows, before the common frame
};

// The procedures, by page.
namespace SensorPages {
const SensorProcedure& InputSignalHA();
const SensorProcedure& PositionTransmitterHA();
const SensorProcedure& PressureHA();
const SensorProcedure& PressurePA();
const SensorProcedure& TemperatureHA();
const SensorProcedure& TemperaturePA();
const SensorProcedure& PositionSensorPA();
const std::vector<const SensorProcedure*>& All();
}  // namespace SensorPages

// The text boxes of a procedure's page that carry a parameter: the
// references the user types.
[[nodiscard]] std::vector<form::Control*> ValueFields(form::Form& form, const PageWriter& page,
                                                      const SensorProcedure& procedure);

class SensorCalibrations {
public:
    explicit SensorCalibrations(devices::IUserControl& control) : m_control(control), m_page(control) {}

    // A button of a procedure's page: its own row for the step, else the
    // common frame of the first button.
    void Click(const SensorProcedure& procedure, int element);
    // The reply of a written step: the row of CurrentCalibration (a code
    // without a row does nothing).
    void Replied(bool blOk);
    // txtHATemperatureSensorCal element 0 lost the focus: element 1 takes
    // the coefficient for the scale of lblHAAmbientTemperature element 1.
    void TemperatureCoefficient();

    void addHandlers(form::EventHandlers& handlers);

    // --- What the rows do ---
    devices::IUserControl& control() { return m_control; }
    PageWriter& page() { return m_page; }
    session::clsTools& tools() { return m_control.tools(); }
    void say(const SensorProcedure& procedure, std::string_view strKey) {
        m_page.say(procedure.label, strKey);
    }
    void showButton(const SensorProcedure& procedure, int element, bool blVisible) {
        m_page.showButton(procedure.buttons, element, blVisible);
    }
    void caption(const SensorProcedure& procedure, int element, std::string_view strKey) {
        m_page.caption(procedure.buttons, element, strKey);
    }
    void showFields(const SensorProcedure& procedure, bool blVisible);
    // "ok" on the first button, the others and the fields hidden, step 3.
    void finish(const SensorProcedure& procedure);
    // The first write of a procedure: the page's values are checked against
    // their limits, the device is taken into calibration mode, the request
    // is written and the prompt says so ("commonCalText2"). False when
    // nothing was written.
    bool guardedWrite(const SensorProcedure& procedure, const char* strRequest);
    // The pieces of it: the values of the page's visible fields within
    // their limits (the system's message otherwise); the device in
    // calibration mode ("commonCalText4" otherwise); the write itself, which
    // makes the calibration own the replies.
    bool valuesValid(const SensorProcedure& procedure);
    bool calibrationMode(const SensorProcedure& procedure);
    void send(const char* strRequest);
    // The user leaves the procedure between steps ("commonCalText5").
    void abandon(const SensorProcedure& procedure);
    void reset(const SensorProcedure& procedure);

private:
    void frame(const SensorProcedure& procedure);

    devices::IUserControl& m_control;
    PageWriter m_page;
};

}  // namespace kt500::calibration
