// What the status bar says the control is doing, read from the session
// state: a device action, a read or a write with its progress, monitoring,
// or nothing; and the mode and role of the session.
#pragma once

#include "app/window/FrameTexts.h"

#include <QString>

#include <string>

namespace kt500::window {

struct Activity {
    int autoAction = 0;  // CurrentAutoAction: 1 calibration, 2 test, 3 data file, 4 results
    bool monitoring = false;
    bool reading = false;   // the read sign is lit or a read is open
    bool writing = false;   // the write sign is lit
    bool progressShown = false;
    double progressMin = 0.0;
    double progressValue = 0.0;
    double progressMax = 0.0;
    std::string progressText;  // the caption beside the progress bar
    bool online = true;
    std::string role;
};

// The left part of the status bar: what runs.
[[nodiscard]] QString ActivityText(const Activity& activity, const FrameTexts& texts);
// The right part: "Online · Role: maintenance".
[[nodiscard]] QString SessionModeText(const Activity& activity, const FrameTexts& texts);

}  // namespace kt500::window
