// The recorded curve of a performance test: the device keeps 50 samples of
// two values each (time or set point or position, then travel or pressure).
#pragma once

#include <array>
#include <string_view>

namespace kt500::devices {

inline constexpr int TestSamples = 50;

// arr(sample, 0) the time, set point or position; arr(sample, 1) the travel
// or pressure.
using TestCurve = std::array<std::array<float, 2>, TestSamples>;

// A pressure of 0 marks a sample the device did not record. Each such sample
// repeats the sample before it; missing samples at the start take the first
// recorded one. A curve with no recorded sample stays as it is.
void CloseCurveGaps(TestCurve& arrCurve);

// The sample number of a curve item ("stepTestTime07" is 7) and its series
// ("stepTestTime"). A name that does not end in two digits is no curve item
// and throws std::invalid_argument; a sample of 50 or more throws
// std::out_of_range when it is stored.
struct CurveItemName {
    std::string_view series;
    int sample;
};
[[nodiscard]] CurveItemName SplitCurveItem(std::string_view strName);
// Whether a name ends in two digits.
[[nodiscard]] bool IsCurveItem(std::string_view strName) noexcept;
// The curve's slot of a sample; std::out_of_range past the last sample.
[[nodiscard]] std::array<float, 2>& CurveSample(TestCurve& arrCurve, int intSample);

}  // namespace kt500::devices
