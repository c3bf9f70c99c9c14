// One session of the control for the fuzz targets that feed BL events: the
// control started on the built-in BL as the frame starts it, kept for the
// whole run because a start costs far more than one input. After each
// input the session forgets its recorded boxes and requests, so that a long
// run holds no more than a short one.
#pragma once

#include "app/ControlSession.h"

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace kt500::fuzz {

// The share folder of the source tree, unless KT500_SHARE_DIR names another.
inline std::filesystem::path ShareDir() {
    const char* share = std::getenv("KT500_SHARE_DIR");
    return share != nullptr ? std::filesystem::path(share)
                            : std::filesystem::path(KT500_DEFAULT_SHARE_DIR);
}

inline app::ControlSession& StartedSession() {
    static const std::unique_ptr<app::ControlSession> session = [] {
        auto started = std::make_unique<app::ControlSession>(ShareDir());
        simulator::SessionOptions options;
        options.deviceKey = "KT520_7";
        if (!started->start(options)) {
            std::abort();  // the fuzz target's own session must start
        }
        started->settle();
        (void)started->dialogs().takeBoxes();
        return started;
    }();
    return *session;
}

// libFuzzer calls this before the first input: the session starts here, so
// that its start does not count against the first input's time limit.
#define KT500_FUZZ_START_SESSION_FIRST                                \
    extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) { \
        (void)kt500::fuzz::StartedSession();                          \
        return 0;                                                     \
    }

// Plays out what an input set going (requests it caused, their replies) and
// forgets what the session recorded on the way.
inline void Forget(app::ControlSession& session) {
    session.settle();
    (void)session.recorder().takeRequests();
    session.dialogs().forgetBoxes();
}

}  // namespace kt500::fuzz
