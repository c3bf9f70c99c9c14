// SessionData: who uses the control, for which device, in which mode and
// language. LoadSessionData reads the BL's session message and brings the
// toolbar, the role limits and the pages into line with it.
#pragma once

#include "devices/IUserControl.h"
#include "host/ISettingsStore.h"
#include "xml/SchemaCollection.h"

#include <string>

namespace kt500::host {

class SessionData {
public:
    // The settings give the install path when the session names no save path.
    SessionData(devices::IUserControl& control, ISettingsStore& settings, IDebugOutput& debugOutput)
        : m_control(control), m_settings(settings), m_debugOutput(debugOutput) {}

    void LoadSessionData(const std::string& strSessionData, bool blInit);
    // The session attribute privateDialogEnabled.
    [[nodiscard]] bool privateDialogEnabled() const noexcept { return m_privateDialogEnabled; }

private:
    devices::IUserControl& m_control;
    ISettingsStore& m_settings;
    IDebugOutput& m_debugOutput;
    bool m_privateDialogEnabled = false;
};

}  // namespace kt500::host
