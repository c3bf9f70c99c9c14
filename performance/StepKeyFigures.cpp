#include "performance/StepKeyFigures.h"

#include <algorithm>
#include <cmath>

namespace kt500::performance {

namespace {

// The device's own thresholds, as 32-bit floats.
constexpr float kDeadBand = 0.02F;
constexpr float kRest63 = 0.37F;
constexpr float kRest98 = 0.02F;
constexpr float kLeastRatio = 0.2F;
constexpr float kLeastMove = 0.01F;

}  // namespace

std::optional<StepKeyFigures> ComputeStepKeyFigures(const devices::TestCurve& arrCurve,
                                                    float sngStart, float sngSetpoint,
                                                    float sngEnd, float sngCount) {
    if (sngEnd == sngStart) {
        return std::nullopt;
    }
    const float moved = std::fabs(sngEnd - sngStart);
    // A step that reached less than a fifth of what was asked, or a tiny
    // one, is not evaluated. An asked step of 0 gives an infinite ratio.
    const float ratio = moved / std::fabs(sngSetpoint - sngStart);
    if (ratio < kLeastRatio || moved < kLeastMove) {
        return std::nullopt;
    }
    const int count = std::min(static_cast<int>(sngCount), devices::TestSamples);
    const bool rising = sngEnd > sngStart;
    const auto travel = [&arrCurve](int sample) {
        return arrCurve[static_cast<std::size_t>(sample)][1];
    };
    const auto time = [&arrCurve](int sample) {
        return arrCurve[static_cast<std::size_t>(sample)][0];
    };

    // Dead time: the first sample beyond 2 percent of the step from the
    // start. On a rising step the samples 1, 3, 5 and 10 further on must be
    // beyond it too, so that a noisy sample that falls back is not taken; a
    // look-ahead past the last sample does not qualify. On a falling step
    // the band is negative and the look-ahead never disqualifies.
    const float band = (sngEnd - sngStart) * kDeadBand;
    const auto beyond = [&](int sample) {
        if (sample >= count) {
            return false;
        }
        const float d = travel(sample) - sngStart;
        return rising ? d > band : std::fabs(d) > band;
    };
    int i = 1;
    for (; i <= count - 2; ++i) {
        const float d = travel(i) - sngStart;
        const bool first = rising ? d > band : d < band;
        if (first && beyond(i + 1) && beyond(i + 3) && beyond(i + 5) && beyond(i + 10)) {
            break;
        }
    }
    StepKeyFigures figures;
    figures.deadTime = time(i);
    if (figures.deadTime == 0.0F) {
        return std::nullopt;
    }

    // The first sample past the level, from a sample on; the last sample
    // when none is.
    const auto firstPast = [&](int from, float rest) {
        const float level = rising ? sngEnd - moved * rest : sngEnd + moved * rest;
        int j = from;
        for (; j <= count - 2; ++j) {
            if (rising ? travel(j) > level : travel(j) < level) {
                break;
            }
        }
        return j;
    };
    const int j63 = firstPast(i, kRest63);
    figures.settling63 = time(j63);
    const int j98 = firstPast(j63, kRest98);
    figures.settling98 = time(j98);
    return figures;
}

}  // namespace kt500::performance
