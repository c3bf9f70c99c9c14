// RavikKT500: the user control that the frame creates, initialises with its
// service object and releases. It owns the session state (m_objTools), the
// form, the parameter document and the references to the closed services,
// and it is the event sink of the BL. It stays thin: each subsystem's
// behaviour lives in a class of its own, which the control owns and forwards to.
#pragma once

#include "form/Form.h"
#include "host/DebugTrace.h"
#include "host/ISettingsStore.h"
#include "host/clsTools.h"
#include "host/modRegistry.h"
#include "services/IDtmLanguage.h"
#include "services/IDtmServiceProvider.h"
#include "services/IQDLGuiEvent.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"
#include "xml/XPath.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kt500::host {

// What the control needs of the platform: the settings store, the system
// debug output and the folders the settings default to.
struct ControlPlatform {
    ISettingsStore& settings;
    IDebugOutput& debugOutput;
    PathDefaults defaults;
};

class RavikKT500 final : public services::IQDLGuiEvent {
public:
    // The control's fixed extents in the host's layout units.
    static constexpr int kWidth = form::Form::kUserControlWidth;
    static constexpr int kHeight = form::Form::kUserControlHeight;
    static constexpr int kHourglass = 11;
    static constexpr const char* SelectionNamespaces =
        "xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'";

    // Construction: UserControl_Initialize runs here. No BL is needed.
    RavikKT500(std::unique_ptr<form::Form> form, ControlPlatform platform);
    ~RavikKT500() override;
    RavikKT500(const RavikKT500&) = delete;
    RavikKT500& operator=(const RavikKT500&) = delete;

    // --- The frame's door ---
    bool IDtmActiveXControl_Init(const std::string& connectionParameter,
                                 const std::string& secondText,
                                 services::IDtmServiceProvider& serviceObject);
    bool IDtmActiveXControl_PrepareToRelease();

    // --- Shared helpers of the logic ---
    // The text of a key in the session's language; "" for an empty key.
    std::string Translate(const std::string& strKey);
    // The one message box of the logic; always a message with OK (0, 1, 4).
    void ShowMsg(const std::string& strHeader, const std::string& strMsg, int dlgType = 0,
                 int buttonType = 0, int Button = 0);
    // Forces the extents back to the fixed size, writing only what differs.
    void UserControl_Resize();

    // --- Events of the BL ---
    bool IQDLGuiEvent_UpdateSessionData(const std::string& strSessionData) override;
    bool IQDLGuiEvent_CommunicationEvent(const std::string& strReply) override;
    void IQDLGuiEvent_ReadyForAutoAction(bool blReady) override;
    void IQDLGuiEvent_AutoActionComplete(bool blSuccess) override;
    void IQDLGuiEvent_AutoActionStopped(bool blStopped) override;
    void IQDLGuiEvent_OnLockDataSet(const std::string& strFirst,
                                    const std::string& strSecond) override;
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string& strFirst,
                                      const std::string& strSecond) override;
    void IQDLGuiEvent_OnParameterChanged(const std::string& strFirst,
                                         const std::string& strSecond) override;

    [[nodiscard]] form::Form& form() noexcept { return *m_form; }
    [[nodiscard]] bool released() const noexcept { return m_released; }
    // The parameter node as the BL gave it (nothing before Init, after release).
    [[nodiscard]] xml::Node parameterNode() const noexcept { return m_parameterNode; }

    // --- Members of the control ---
    std::unique_ptr<clsTools> m_objTools;
    std::shared_ptr<services::IDtmControl> m_pControl;
    std::shared_ptr<services::IDtmDialogs> m_pDialogs;
    std::shared_ptr<services::IDtmLanguage> m_pLanguage;
    std::shared_ptr<services::IDtmUnits> m_pUnits;
    std::optional<xml::Document> xmlDataFile;
    int m_buttonPressed = 0;
    std::string strPresetCurveValues;

private:
    void UserControl_Initialize();
    void ReadRegistrySettings();
    void OpenConnectionStep();
    void LoadParameterDocument();
    void ReadPublishedInfo();
    void FillLanguageList();
    void LoadGuiInitDocument();
    void ShowDataSetLock(bool blLocked);
    void OnFormEvent(form::FormEvent& event);
    void Trace(TraceKind kind, const std::string& strContent);

    // Runs a handler body; a failure is shown under the handler's name and
    // the run goes on. Returns False when the body failed.
    bool Guard(const char* strHandler, const std::function<void()>& body);
    void ShowFailure(const char* strHandler, const std::string& strReason);

    std::unique_ptr<form::Form> m_form;
    ControlPlatform m_platform;
    std::shared_ptr<services::IDtmAddressing> m_pAddressing;
    xml::Node m_parameterNode;
    std::unique_ptr<xml::SchemaCollection> m_communicationSchemas;
    std::unique_ptr<xml::SchemaCollection> m_dataFileSchemas;
    bool m_privateDialogEnabled = false;
    std::string m_connectionParameter;
    std::string m_secondText;
    bool m_dataSetLocked = false;
    bool m_released = false;
};

}  // namespace kt500::host
