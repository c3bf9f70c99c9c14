// The control's life without a window: constructed as the frame creates
// it, initialised against the built-in BL, and released; each step is
// printed, with every message box the control showed on the way.
#pragma once

#include "app/InstallLayout.h"
#include "simulator/SessionOptions.h"

#include <ostream>

namespace kt500::app {

// Returns the process exit status: 0 when the control started and was
// released, 1 when its start-up failed.
int RunHeadlessLife(const InstallLayout& layout, const simulator::SessionOptions& options,
                    std::ostream& out);

}  // namespace kt500::app
