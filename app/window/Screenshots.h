// Pictures of every page of a device: a session against the built-in BL
// (its message boxes headless, its settings in a temporary folder) is
// started offscreen, reads the whole device when online, and each page the
// navigation tree leads to, and the settings page, is drawn into
// <folder>/<page>.png, the page named as the control names it
// (CurrentFrame, such as "HAoperationUnit").
#pragma once

#include "simulator/SessionOptions.h"

#include <filesystem>
#include <ostream>
#include <vector>

namespace kt500::window {

// Writes the pictures and names each file on out; a message a box showed
// on the way is listed too. Returns 0, or 1 when the folder cannot be
// written or the control did not start. Needs a QApplication.
int WriteScreenshots(const std::filesystem::path& shareDir,
                     const simulator::SessionOptions& options, const std::filesystem::path& folder,
                     std::ostream& out);

}  // namespace kt500::window
