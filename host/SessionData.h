// SessionData: who uses the control, for which device, in which mode and
// language. LoadSessionData reads the BL's session message and brings the
// toolbar, the role limits and the pages into line with it.
#pragma once

#include "devices/IUserControl.h"
#include "form/ToolbarModel.h"
#include "session/ISettingsStore.h"
#include "xml/SchemaCollection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kt500::host {

class SessionData {
public:
    // The settings give the install path when the session names no save
    // path; strSaveDefault is the folder used when "Install Path" cannot be
    // read (the platform's default, as PathDefaults gives it).
    // languageIds gives the languages the language service offers, in the
    // order of its list (none: every language is taken as it comes).
    SessionData(devices::IUserControl& control, session::ISettingsStore& settings,
                session::IDebugOutput& debugOutput, std::string strSaveDefault,
                std::function<std::vector<std::int32_t>()> languageIds = {})
        : m_control(control),
          m_settings(settings),
          m_debugOutput(debugOutput),
          m_saveDefault(std::move(strSaveDefault)),
          m_languageIds(std::move(languageIds)) {}

    // Takes a session message of the BL: at the connection with blInit True,
    // on every session update with blInit False. A message that does not
    // parse is reported under "GetSessionData" and the session stays as it
    // was; the toolbar, rights and monitoring state are still brought into
    // line with it.
    void LoadSessionData(const std::string& strSessionData, bool blInit);
    // The session attribute privateDialogEnabled.
    [[nodiscard]] bool privateDialogEnabled() const noexcept { return m_privateDialogEnabled; }

private:
    // Reads the attributes of the first child of the document element.
    void ReadAttributes(xml::Node session);
    // A session language that the language service does not offer gives way
    // to the first language of its list, so that every text can be found.
    void KeepOfferedLanguage();
    void ShowDeviceModelPicture();
    void ApplyTestRights();
    void ApplyMode(form::ToolbarModel& toolbar);
    void ApplyRoleLimits();
    void ApplySavePath();
    void RefreshPages(bool blLanguageChanged);
    void StopMonitoringState();
    // The session schema, compiled at the first message.
    [[nodiscard]] const xml::SchemaCollection& Schemas();

    devices::IUserControl& m_control;
    session::ISettingsStore& m_settings;
    session::IDebugOutput& m_debugOutput;
    std::string m_saveDefault;
    std::function<std::vector<std::int32_t>()> m_languageIds;
    std::unique_ptr<xml::SchemaCollection> m_schemas;
    // The plain model word of deviceType ("KT520", "KTQ500_PT", "PL500").
    std::string m_deviceModel;
    bool m_privateDialogEnabled = false;
};

}  // namespace kt500::host
