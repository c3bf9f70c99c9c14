// One session of the control: the control constructed as the frame
// constructs it (the form files loaded, settings read, the built-in BL for
// the device key), initialised, driven, and released. Scripts and the
// window both run their sessions through it.
//
// By default the settings live in a temporary folder of the session, so
// that a script never reads or writes the user's settings and runs the same
// everywhere, the message boxes are the BL's headless ones, and the
// control's debug output goes nowhere, so that standard output holds only
// what the script asks for. The window passes its own environment: the
// installation's settings and Qt message boxes.
//
// Time: the BL's virtual clock and the form's timers move together, in time
// order, only when the driver says so (a script's wait and settle, the
// window's real-time pump).
#pragma once

#include "app/RecordingControl.h"
#include "host/RavikKT500.h"
#include "simulator/BuiltInBL.h"
#include "simulator/SessionOptions.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kt500::app {

struct SessionEnvironment {
    // The message boxes of m_pDialogs; none: the BL's headless boxes.
    std::shared_ptr<services::IDtmDialogs> dialogs;
    // The installation whose settings the control reads (prefix/etc); empty:
    // a temporary folder of the session.
    QString installationPrefix;
    // Where the debug output goes; none: nowhere.
    std::shared_ptr<session::IDebugOutput> debugOutput;
    // The wall clock at the start of the session, from which the control's
    // date and time run on with the virtual clock; none: a fixed morning
    // (Monday 5 January 2026, 08:00 local time), so that scripts print the
    // same times on every run.
    std::optional<QDateTime> startTime;
};

class ControlSession {
public:
    explicit ControlSession(std::filesystem::path shareDir, SessionEnvironment environment = {});
    ~ControlSession();
    ControlSession(const ControlSession&) = delete;
    ControlSession& operator=(const ControlSession&) = delete;

    // Constructs the control and runs IDtmActiveXControl_Init against a new
    // built-in BL; a session still running is released first. Throws
    // std::invalid_argument for a device key the BL does not simulate.
    // Returns what IDtmActiveXControl_Init returned.
    bool start(const simulator::SessionOptions& options);
    // The two halves of start: prepare constructs the BL and the control as
    // the frame does (the form files loaded, the settings read), initialise
    // runs IDtmActiveXControl_Init on it. The benchmarks time the second
    // half alone.
    void prepare(const simulator::SessionOptions& options);
    bool initialise();
    // IDtmActiveXControl_PrepareToRelease. The control, the BL and its boxes
    // stay readable afterwards.
    void release();

    [[nodiscard]] bool started() const noexcept { return m_control != nullptr; }
    [[nodiscard]] bool running() const noexcept { return started() && !m_control->released(); }
    // Each throws std::logic_error before the first start.
    [[nodiscard]] host::RavikKT500& control() const;
    [[nodiscard]] simulator::BuiltInBL& bl() const;
    [[nodiscard]] simulator::HeadlessDialogs& dialogs() const;
    [[nodiscard]] RecordingControl& recorder() const;
    [[nodiscard]] const simulator::SessionOptions& options() const noexcept { return m_options; }

    // The BL sends IQDLGuiEvent_UpdateSessionData with these attributes of
    // the session element changed (name, value); the changes stay for the
    // next update. An attribute the session data lack throws
    // std::invalid_argument.
    void updateSessionData(const std::vector<std::pair<std::string, std::string>>& changes);

    // Moves time on by ms: every BL event and timer tick due on the way, in
    // time order (at the same moment, BL events first).
    void wait(std::int64_t ms);
    // Delivers BL events until none is pending, at most ten minutes; the
    // timers tick on the way.
    void settle();
    // Delivers the BL events due now.
    void deliverDue();
    // Virtual milliseconds since the session's start.
    [[nodiscard]] std::int64_t now() const;

private:
    void advanceTo(std::int64_t target);
    void requireStarted() const;

    std::filesystem::path m_shareDir;
    SessionEnvironment m_environment;
    QTemporaryDir m_settingsDir;
    simulator::SessionOptions m_options;
    QDateTime m_startTime;
    std::string m_sessionData;  // the last session data the BL sent
    // Destroyed in reverse: the control lets go of the BL's services first.
    std::unique_ptr<simulator::BuiltInBL> m_bl;
    std::shared_ptr<RecordingControl> m_recorder;
    std::unique_ptr<services::IDtmServiceProvider> m_provider;
    std::shared_ptr<session::IDebugOutput> m_debugOutput;
    std::unique_ptr<session::ISettingsStore> m_settings;
    std::unique_ptr<host::RavikKT500> m_control;
};

}  // namespace kt500::app
