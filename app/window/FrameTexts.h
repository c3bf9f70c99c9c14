// The window's own texts: menus, status bar, header, launcher. The control's
// texts come from the language service; these belong to the frame around
// it and follow the session's language too: German for 1031, English for
// every other language (the pseudo-language included).
#pragma once

#include <QString>

#include <string_view>

namespace kt500::window {

enum class FrameText {
    FileMenu,
    DeviceMenu,
    ViewMenu,
    HelpMenu,
    NewSession,
    Quit,
    PreviousPage,
    NextPage,
    About,
    AboutText,
    Ready,
    Reading,         // %1 what, %2 percent
    Writing,         // %1 what
    Monitoring,
    CalibrationRunning,
    TestRunning,
    ReadingDataFile,
    ReadingResults,
    Online,
    Offline,
    Role,            // %1 the role
    Revision,        // "Rev."
    Tag,             // %1 the tag
    ReadSign,
    WriteSign,
    MonitoringSign,
    CalibrationSign,
    TestSign,
    Range,           // %1 lowest, %2 highest
    Unit,            // %1 unit
    Decimals,        // %1 count
    MaxLength,       // %1 characters
    LauncherTitle,
    LauncherDevice,
    LauncherMode,
    LauncherRole,
    LauncherLanguage,
    LauncherOffline,
    LastRead,        // %1 the time stamp
};

class FrameTexts {
public:
    // language: the session's language identifier ("1031", "1033", ...).
    explicit FrameTexts(std::string_view language = "1033");

    [[nodiscard]] QString text(FrameText which) const;
    // The name of a user role ("maintenance", "planningEngineer", ...) as
    // the frame shows it; an unknown role as it is.
    [[nodiscard]] QString roleName(std::string_view role) const;
    [[nodiscard]] bool german() const noexcept { return m_german; }

private:
    bool m_german;
};

}  // namespace kt500::window
