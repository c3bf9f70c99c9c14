#include "devices/TestCurve.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kt500::devices {

void CloseCurveGaps(TestCurve& arrCurve) {
    const bool recorded = std::any_of(arrCurve.begin(), arrCurve.end(),
                                      [](const auto& sample) { return sample[1] != 0.0F; });
    if (!recorded) {
        return;
    }
    TestCurve closed{};
    int counter = 0;
    for (int sample = 0; sample < TestSamples; ++sample) {
        const auto& current = arrCurve[static_cast<std::size_t>(sample)];
        auto& out = closed[static_cast<std::size_t>(counter)];
        if (current[1] != 0.0F) {
            out = current;
        } else if (counter > 0) {
            out = closed[static_cast<std::size_t>(counter - 1)];
        } else {
            // Before the first recorded sample: take the next one that was.
            int ahead = sample;
            while (ahead < TestSamples && arrCurve[static_cast<std::size_t>(ahead)][1] == 0.0F) {
                ++ahead;
            }
            out = arrCurve[static_cast<std::size_t>(ahead)];
        }
        ++counter;
    }
    arrCurve = closed;
}

bool IsCurveItem(std::string_view strName) noexcept {
    if (strName.size() < 3) {
        return false;
    }
    const char tens = strName[strName.size() - 2];
    const char ones = strName[strName.size() - 1];
    return tens >= '0' && tens <= '9' && ones >= '0' && ones <= '9';
}

CurveItemName SplitCurveItem(std::string_view strName) {
    if (!IsCurveItem(strName)) {
        throw std::invalid_argument("Type mismatch: '" + std::string(strName) +
                                    "' is no sample of a curve");
    }
    const std::size_t split = strName.size() - 2;
    const int sample = (strName[split] - '0') * 10 + (strName[split + 1] - '0');
    return {strName.substr(0, split), sample};
}

std::array<float, 2>& CurveSample(TestCurve& arrCurve, int intSample) {
    if (intSample < 0 || intSample >= TestSamples) {
        throw std::out_of_range("Subscript out of range: sample " + std::to_string(intSample));
    }
    return arrCurve[static_cast<std::size_t>(intSample)];
}

}  // namespace kt500::devices
