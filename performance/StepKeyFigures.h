// The key figures of a step response: the dead time, the time to 63 percent
// and the time to 98 percent of the step, read off the recorded samples.
// Pure arithmetic on 32-bit floats, as the device reports them.
#pragma once

#include "devices/TestCurve.h"

#include <optional>

namespace kt500::performance {

struct StepKeyFigures {
    float deadTime = 0.0F;
    float settling63 = 0.0F;
    float settling98 = 0.0F;
};

// arrCurve: (sample, 0) the time since the step, (sample, 1) the travel.
// sngStart the travel before the step, sngSetpoint where the step was
// asked to go, sngEnd the travel at the end, sngCount the samples used.
// Nothing when the travel did not move (end equal to start), moved less
// than a fifth of what was asked or less than 0.01, or when the dead time
// comes out as 0.
[[nodiscard]] std::optional<StepKeyFigures> ComputeStepKeyFigures(const devices::TestCurve& arrCurve,
                                                                  float sngStart,
                                                                  float sngSetpoint, float sngEnd,
                                                                  float sngCount);

}  // namespace kt500::performance
