// The tables of the sensor and signal calibrations: for each page, what its
// buttons do at each step beyond the common frame (SensorCalibrations.cpp).
// The second button (element 1) goes on through the points; the first
// (element 0) is the frame's start, cancel, leave or "ok" unless a row here
// says otherwise.
#include "calibration/CalibrationState.h"
#include "calibration/SensorCalibrations.h"

namespace kt500::calibration {

namespace {

using C = SensorCalibrations;
using P = SensorProcedure;

// A row that only shows a prompt and moves to a step.
template <const char* Key, std::int16_t Next>
void Prompt(C& c, const P& p) {
    c.say(p, Key);
    c.tools().CalibrationStep = Next;
}

// A prompt, the page's value fields shown, and a step.
template <const char* Key, std::int16_t Next>
void PromptWithFields(C& c, const P& p) {
    c.say(p, Key);
    c.showFields(p, true);
    c.tools().CalibrationStep = Next;
}

// The warning before leaving a procedure at its last point: a second press
// of the first button leaves, the second button goes back.
template <std::int16_t Next>
void WarnBeforeLeaving(C& c, const P& p) {
    c.say(p, "pressureSensorCalText5");
    c.caption(p, 0, "stop");
    c.tools().CalibrationStep = Next;
}

template <const char* Request>
void GuardedWrite(C& c, const P& p) {
    c.guardedWrite(p, Request);
}

// A further point: the values are checked, the prompt tells the write, the
// code names the point whose reply comes.
template <const char* Request, std::int32_t Code, const char* Key>
void PointWrite(C& c, const P& p) {
    if (!c.valuesValid(p)) {
        return;
    }
    if (Key[0] != '\0') {
        c.say(p, Key);
    }
    c.tools().CurrentCalibration = Code;
    c.send(Request);
}

// A trim at the present point: the code stays, so its reply repeats the
// point's row and the user may trim again.
template <const char* Request>
void Trim(C& c, const P& p) {
    if (c.valuesValid(p)) {
        c.send(Request);
    }
}

constexpr char NoKey[] = "";
constexpr char TrimZero[] = "trimLoopCurrentZero";
constexpr char TrimSpan[] = "trimLoopCurrentSpan";
constexpr char InputText5[] = "inputSignalMeasurementCalText5";
constexpr char EnterFixed[] = "enterFixedAnalogChannelMode";
constexpr char ExitFixed[] = "exitFixedAnalogChannelMode";
constexpr char TrimChannelZero[] = "trimAnalogChannelZero";
constexpr char TrimChannelGain[] = "trimAnalogChannelGain";
constexpr char Pressure1[] = "pressureSensorCalibration1";
constexpr char Pressure2[] = "pressureSensorCalibration2";
constexpr char Pressure3[] = "pressureSensorCalibration3";
constexpr char PressureZero[] = "pressureSensorCalibrationZero";
constexpr char PressureSpan[] = "pressureSensorCalibrationSpan";
constexpr char PressureText8[] = "pressureSensorCalText8";
constexpr char PressureText9[] = "pressureSensorCalText9";
constexpr char PressureText10[] = "pressureSensorCalText10";
constexpr char TemperatureWrite[] = "temperatureSensorCalibration";
constexpr char FixedField[] = "txtHAPositionTransmitterCal";

// The position transmitter's fixed output: the field takes the point in
// mA for the write and is emptied after it.
template <const char* Milliamperes, std::int32_t Code>
void FixOutput(C& c, const P& p) {
    if (!c.valuesValid(p) || !c.calibrationMode(p)) {
        return;
    }
    c.page().setText({FixedField, 0}, Milliamperes);
    c.tools().CurrentCalibration = Code;
    c.send(EnterFixed);
    c.page().setText({FixedField, 0}, "");
    if (Code == Code::TransmitterLow) {
        c.caption(p, 0, "stop");
    }
    c.say(p, "commonCalText2");
}

constexpr char FourMilliamperes[] = "4";
constexpr char TwentyMilliamperes[] = "20";

void LeaveFixedMode(C& c, const P& p) {
    if (!c.calibrationMode(p)) {
        return;
    }
    c.tools().CurrentCalibration = Code::TransmitterExit;
    c.send(ExitFixed);
    c.say(p, "commonCalText2");
}

// "ok" on the finished page: the fixed output is left first unless the
// procedure ended by leaving it.
void TransmitterDone(C& c, const P& p) {
    if (!c.page().shows(p.label, "positionTransmitterCalText5")) {
        c.control().SendRequest(ExitFixed, "write");
    }
    c.reset(p);
}

// The temperature: an empty reference is told, and written only from the
// confirmation.
template <std::size_t Field>
void TemperatureWriteRow(C& c, const P& p) {
    if (c.page().text(p.fields.at(Field)).empty()) {
        c.control().ShowMsg(c.control().Translate("valueCheck"), c.control().Translate("nullValue"));
        return;
    }
    if (c.tools().CalibrationStep == Step::Confirming) {
        c.guardedWrite(p, TemperatureWrite);
    }
}

}  // namespace

namespace SensorPages {

const SensorProcedure& InputSignalHA() {
    static const SensorProcedure procedure{
        "cmdHAInputSignalMeasurementCalibration",
        {"lblHAInputSignalMeasurementCal"},
        {},
        "inputSignalMeasurementCalibration",
        Code::InputSignalZero,
        "inputSignalMeasurementCalText1",
        "inputSignalMeasurementCalText2",
        false,
        {
            {1, Step::Confirming, GuardedWrite<TrimZero>},
            {1, Step::Running, Prompt<InputText5, 4>},
            {1, 4, PointWrite<TrimSpan, Code::InputSignalSpan, NoKey>},
        }};
    return procedure;
}

const SensorProcedure& PositionTransmitterHA() {
    static const SensorProcedure procedure{
        "cmdHAPositionTransmitterCalibration",
        {"lblHAPositionTransmitterCalText"},
        {{"txtHAPositionTransmitterCal", 0},
         {"txtHAPositionTransmitterCal", 1},
         {"lblHAPositionTransmitterCal", 0},
         {"lblHAPositionTransmitterCal", 1},
         {"lblHAPositionTransmitterCal", 2},
         {"lblHAPositionTransmitterCal", 3}},
        "positionTransmitterCalibration",
        Code::TransmitterLow,
        "positionTransmitterCalText1",
        // The travel calibration's confirmation serves here on purpose.
        "automaticTravelCalText2",
        false,
        {
            {0, Step::Finished, TransmitterDone},
            {1, Step::Confirming, FixOutput<FourMilliamperes, Code::TransmitterLow>},
            {1, Step::Running, FixOutput<TwentyMilliamperes, Code::TransmitterHigh>},
            {2, Step::Running, Trim<TrimChannelZero>},
            {1, 4, LeaveFixedMode},
            {2, 4, Trim<TrimChannelGain>},
        }};
    return procedure;
}

const SensorProcedure& PressureHA() {
    static const SensorProcedure procedure{
        "cmdHAPressureSensorCalibration",
        {"lblHAPressureSensorCal"},
        {{"txtHAPressureSensorCal", 0}, {"lblHAPressureCalSpan", 0}, {"lblHAPressureCalSpan", 1}},
        "pressureSensorCalibration",
        Code::PressureFirstPoint,
        "pressureSensorCalText1",
        "pressureSensorCalText4",
        false,
        {
            {1, Step::Confirming, GuardedWrite<Pressure1>},
            {1, 4, Prompt<PressureText8, 5>},
            {1, 5, PointWrite<Pressure2, Code::PressureSecondPoint, PressureText10>},
            {1, 6, PromptWithFields<PressureText9, 7>},
            {0, 7, WarnBeforeLeaving<8>},
            {1, 7, PointWrite<Pressure3, Code::PressureLastPoint, PressureText10>},
            {1, 8, PromptWithFields<PressureText9, 7>},
        }};
    return procedure;
}

const SensorProcedure& PressurePA() {
    static const SensorProcedure procedure{
        "cmdPAPressureSensorCalibration",
        {"lblPAPressureSensorCal"},
        {{"txtPAPressureSensorCal", 0}, {"lblPAPressureCalSpan", 0}, {"lblPAPressureCalSpan", 1}},
        "pressureSensorCalibration",
        Code::PressureFirstPoint,
        "pressureSensorCalText1",
        "pressureSensorCalText4",
        false,
        {
            {1, Step::Confirming, GuardedWrite<PressureZero>},
            {1, 4, Prompt<PressureText8, 5>},
            {1, 5, PromptWithFields<PressureText9, 6>},
            {0, 6, WarnBeforeLeaving<7>},
            {1, 6,
             [](C& c, const P& p) {
                 if (!c.valuesValid(p)) {
                     return;
                 }
                 PointWrite<PressureSpan, Code::PressureLastPoint, PressureText10>(c, p);
                 c.showFields(p, false);
                 c.showButton(p, 1, false);
             }},
            {1, 7, PromptWithFields<PressureText9, 6>},
        }};
    return procedure;
}

const SensorProcedure& TemperatureHA() {
    static const SensorProcedure procedure{
        "cmdHATemperatureSensorCalibration",
        {"lblHATemperatureSensorCal"},
        {{"txtHATemperatureSensorCal", 0},
         {"txtHATemperatureSensorCal", 1},
         {"lblHAAmbientTemperature", 0},
         {"lblHAAmbientTemperature", 1},
         {"lblHATemperatureTitle", 0},
         {"lblHATemperatureTitle", 1}},
        "temperatureSensorCalibration",
        Code::TemperatureSensor,
        "temperatureSensorCalText1",
        "temperatureSensorCalText4",
        true,
        {{1, AnyStep, TemperatureWriteRow<0>}}};
    return procedure;
}

const SensorProcedure& TemperaturePA() {
    static const SensorProcedure procedure{
        "cmdPATemperatureSensorCalibration",
        {"lblPATemperatureSensorCal"},
        {{"txtPATemperatureSensorCal", 0},
         {"lblPAMeasuredTemperature", 0},
         {"lblPAMeasuredTemperature", 1}},
        "temperatureSensorCalibration",
        Code::TemperatureSensor,
        "temperatureSensorCalText1",
        "temperatureSensorCalText4",
        true,
        {{1, AnyStep, TemperatureWriteRow<0>}}};
    return procedure;
}

// The position sensor drives the pressure procedure's zero and span
// requests and prompts; its own reply ends at the first point, so the
// further rows are not reached in use.
const SensorProcedure& PositionSensorPA() {
    static const SensorProcedure procedure{
        "cmdPAPositionSensorCalibration",
        {"lblPAPositionSensorCal"},
        {{"txtPAPositionSensorCal", 0}, {"lblPAPositionSensorVal", 0}, {"lblPAPositionSensorVal", 1}},
        "positionSensorCalibration",
        Code::PositionSensor,
        "positionSensorCalText1",
        "positionSensorCalText4",
        true,
        {
            {1, Step::Confirming, GuardedWrite<PressureZero>},
            {1, 4, Prompt<PressureText8, 5>},
            {1, 5,
             [](C& c, const P& p) {
                 c.say(p, PressureText9);
                 c.page().show({{"lblPAPositionSensorVal", 0}, {"lblPAPositionSensorVal", 1}}, true);
                 c.tools().CalibrationStep = 6;
             }},
            {1, 6, PointWrite<PressureSpan, Code::PressureLastPoint, PressureText10>},
            {1, 7,
             [](C& c, const P& p) {
                 c.say(p, PressureText9);
                 c.page().show({{"lblPAPositionSensorVal", 0}, {"lblPAPositionSensorVal", 1}}, true);
                 c.tools().CalibrationStep = 6;
             }},
        }};
    return procedure;
}

const std::vector<const SensorProcedure*>& All() {
    static const std::vector<const SensorProcedure*> all = {
        &InputSignalHA(), &PositionTransmitterHA(), &PressureHA(),       &PressurePA(),
        &TemperatureHA(), &TemperaturePA(),         &PositionSensorPA()};
    return all;
}

}  // namespace SensorPages

}  // namespace kt500::calibration
