// Pictures of the whole window, for the documentation: a KT520_7 session at
// 1280 x 800 and at 1920 x 1080 after a full read, offline, in German, with
// a changed (blue) and a refused (red) field, and with the confirmation
// list. Each is a window of its own with its settings in a temporary
// folder; the message boxes that open on the way are closed as a user
// pressing their default button would, and listed on out.
#pragma once

#include <filesystem>
#include <ostream>

namespace kt500::window {

// Writes <folder>/window*.png and names each file on out. Returns 0, or 1
// when a picture cannot be written. Needs a QApplication.
int WriteWindowPictures(const std::filesystem::path& shareDir,
                        const std::filesystem::path& folder, std::ostream& out);

}  // namespace kt500::window
