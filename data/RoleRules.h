// RoleRules: the one table of what a session may do by its role and mode.
// Every place that enables a tool consults it: the session data as they
// arrive, the close of a request (and its refusal), the toolbar's Stop and
// the page commands given back after communication. Nothing else decides
// whether a role may send, test, calibrate or reset. docs/roles.md tells
// the table and why it reads as it does.
#pragma once

#include "form/Form.h"
#include "session/clsTools.h"

#include <span>
#include <string_view>

namespace kt500::data {

// The actions a role or a mode can withhold.
enum class Right {
    Send,                  // toolbar "send": writes to the device or the data set
    OfflineConfiguration,  // toolbar "offlineConf": the data set's confirmation page
    Upload,                // the upload band: reads from the device
    Settings,              // toolbar "settings": language and units
    Monitoring,            // the monitoring start commands
    Test,                  // cmdStartTest: the positioners' performance tests
    PLTest,                // cmdPLStartTest, cmdPLSetTestSettings: the PL500's tests
    Calibration,           // the calibration start buttons
    ResetDiagnostics,      // cmdResetDiagnostics
    FactoryReset,          // cmdPAFactoryReset
};

// Whether the role allows the right, the mode aside. Role words compare
// without regard to case ("Operator" is "operator"); a word that is no
// limited role limits nothing.
[[nodiscard]] bool RoleAllows(std::string_view strRole, Right right) noexcept;

// Whether the session (ActorRole and OnlineConf) allows the right: the role's
// rule and, for reads, tests and monitoring, a device online; the data set's
// confirmation page only offline.
[[nodiscard]] bool Allows(const session::clsTools& tools, Right right) noexcept;

// The page commands of a right (every element of each on the form).
[[nodiscard]] std::span<const std::string_view> CommandsOf(Right right) noexcept;

// Sets the page commands of a right: enabled only when blWanted and the
// session allows the right.
void EnableCommands(const form::Form& form, const session::clsTools& tools, Right right,
                    bool blWanted);

}  // namespace kt500::data
