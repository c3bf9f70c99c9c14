// The values of the session's action members (clsTools) that the
// calibration pages step through, by name.
#pragma once

#include <cstdint>

namespace kt500::calibration {

// CurrentAutoAction.
namespace Action {
inline constexpr std::int16_t None = 0;
inline constexpr std::int16_t Calibration = 1;
inline constexpr std::int16_t Test = 2;
inline constexpr std::int16_t TestResults = 4;
}  // namespace Action

// CalibrationStep: the steps every calibration page shares; 4 to 8 are the
// further points of the multi-point procedures.
namespace Step {
inline constexpr std::int16_t Idle = 0;
inline constexpr std::int16_t Confirming = 1;
inline constexpr std::int16_t Running = 2;
inline constexpr std::int16_t Finished = 3;
}  // namespace Step

// CurrentCalibration: which procedure owns the reply. The gaps are never
// assigned.
namespace Code {
inline constexpr std::int32_t TemperatureSensor = 0;
inline constexpr std::int32_t PressureFirstPoint = 1;
inline constexpr std::int32_t PressureSecondPoint = 2;
inline constexpr std::int32_t PressureLastPoint = 3;
inline constexpr std::int32_t PositionSensor = 4;
inline constexpr std::int32_t InputSignalZero = 8;
inline constexpr std::int32_t InputSignalSpan = 9;
inline constexpr std::int32_t AutoTravel = 10;
inline constexpr std::int32_t TransmitterLow = 11;
inline constexpr std::int32_t TransmitterHigh = 12;
inline constexpr std::int32_t TransmitterExit = 13;
inline constexpr std::int32_t AutoPrestageTrim = 14;
inline constexpr std::int32_t ManualPrestageTrim = 15;
}  // namespace Code

// Mouse pointers of the control.
inline constexpr int ArrowPointer = 1;
inline constexpr int HourglassPointer = 11;

}  // namespace kt500::calibration
