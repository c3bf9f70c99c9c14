#include "host/RavikKT500.h"

#include "data/RoleRules.h"
#include "devices/MemberMissing.h"

#include <charconv>
#include <stdexcept>

namespace kt500::host {

using devices::MemberMissing;

namespace {

// The number a text converts to, or nothing ("1033" is 1033; "", "abc" none).
std::optional<std::int32_t> numberOf(const std::string& strText) {
    const auto first = strText.find_first_not_of(' ');
    if (first == std::string::npos) {
        return std::nullopt;
    }
    const auto last = strText.find_last_not_of(' ');
    std::int32_t number = 0;
    const char* begin = strText.data() + first;
    const char* end = strText.data() + last + 1;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

RavikKT500::RavikKT500(std::unique_ptr<form::Form> form, ControlPlatform platform)
    : m_form(std::move(form)),
      m_platform(std::move(platform)),
      m_session(*this, m_platform.settings, m_platform.debugOutput, m_platform.defaults.SavePath,
                [this] {
                    std::vector<std::int32_t> ids;
                    if (m_pLanguage) {
                        m_pLanguage->GetLanguageIds(ids);
                    }
                    return ids;
                }) {
    if (!m_form) {
        throw std::invalid_argument("RavikKT500: a control needs its form");
    }
    m_units.addHandlers(m_handlers);
    m_uploads.addHandlers(m_handlers);
    m_pageHandlers.addHandlers(m_handlers);
    m_familyPageEvents.addHandlers(m_handlers);
    m_navigation.addHandlers(m_handlers);
    m_toolbar.addHandlers(m_handlers);
    m_captions.addHandlers(m_handlers);
    m_confirmation.addHandlers(m_handlers);
    m_flow.addHandlers(m_handlers);
    m_calibrations.addHandlers(m_handlers);
    m_tests.addHandlers(m_handlers);
    m_filePage.addHandlers(m_handlers);
    m_compare.addHandlers(m_handlers);
    m_replies.setReplyObserver(
        [this](const xml::Document& xmlReply) { m_compare.RecordDeviceReply(xmlReply); });
    m_graphs.addHandlers(m_handlers);
    m_monitoring.addHandlers(m_handlers);
    m_filePage.setAction(presentation::OpenFileType::Import,
                         [this] { m_dataFiles.LoadValuesFromFile(); });
    m_filePage.setAction(presentation::OpenFileType::Export,
                         [this] { m_dataFiles.CreateSaveXml(); });
    m_trends.addHandlers(m_handlers);
    m_eventLog.addHandlers(m_handlers);
    m_filePage.setAction(presentation::OpenFileType::MonitoringLog,
                         [this] { m_monitoring.StartMonitorLog(); });
    // A curve file that cannot be read names its reason; the flow page keeps
    // what it had.
    m_filePage.setAction(presentation::OpenFileType::Curve, [this] {
        try {
            m_flow.LoadCurveFile(m_form->control("txtFileName").text());
        } catch (const devices::MemberMissing&) {
            throw;
        } catch (const std::runtime_error& refused) {
            ShowMsg("cmdOpenFile", refused.what());
        }
    });
    m_navigation.setPageChangeHandler([this](const std::string& strKey) {
        m_monitoring.PageChanging(strKey);
        if (strKey == deviceClass().ComparePageNode()) {
            m_compare.FillComparePage();
        }
    });
    m_form->setEventSink([this](form::FormEvent& event) { OnFormEvent(event); });
    UserControl_Initialize();
}

RavikKT500::~RavikKT500() {
    if (m_form) {
        m_form->setEventSink({});
    }
}

bool RavikKT500::Guard(const char* strHandler, const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (const std::exception& failure) {
        ShowFailure(strHandler, failure.what());
    } catch (...) {
        ShowFailure(strHandler, "unknown failure");
    }
    return false;
}

void RavikKT500::ShowFailure(const char* strHandler, const std::string& strReason) {
    try {
        ShowMsg(strHandler, strReason);
    } catch (const std::exception& noBox) {
        // Without a message service the failure still reaches the debug output.
        m_platform.debugOutput.write(std::string(strHandler) + ": " + strReason);
    }
}

std::string RavikKT500::Translate(const std::string& strKey) {
    if (strKey.empty()) {
        return {};
    }
    if (!m_pLanguage) {
        throw std::runtime_error("Translate: the language service is not connected");
    }
    if (!m_objTools) {
        throw std::runtime_error("Translate: the session state is released");
    }
    std::optional<std::int32_t> language = numberOf(m_objTools->Language);
    if (!language || *language == 0) {
        language = numberOf(m_objTools->FrameLanguage);
        if (!language) {
            throw std::invalid_argument("Type mismatch: the frame language '" +
                                        m_objTools->FrameLanguage + "' is not a number");
        }
    }
    std::string text;
    m_pLanguage->TranslateKey(*language, strKey, text);
    return text;
}

void RavikKT500::ShowMsg(const std::string& strHeader, const std::string& strMsg, int /*dlgType*/,
                         int /*buttonType*/, int /*Button*/) {
    if (!m_pDialogs) {
        throw std::runtime_error("ShowMsg: the message service is not connected");
    }
    int result = 0;
    m_pDialogs->ShowMessage(0, 1, 4, strHeader, strMsg, m_buttonPressed, result);
}

void RavikKT500::Trace(session::TraceKind kind, const std::string& strContent) {
    if (!m_objTools) {
        return;
    }
    if (const auto message = session::TraceFor(m_objTools->DebugLevel, kind, strContent)) {
        ShowMsg(message->header, message->text);
    }
}

void RavikKT500::UserControl_Resize() {
    form::Control& user = m_form->userControl();
    if (user.width() != kWidth) {
        user.setWidth(kWidth);
    }
    if (user.height() != kHeight) {
        user.setHeight(kHeight);
    }
}

void RavikKT500::OnFormEvent(form::FormEvent& event) {
    // Each subsystem adds the handlers of its pages; an event with no
    // handler does nothing, as on any form.
    if (event.kind == form::EventKind::Resize) {
        Guard("UserControl_Resize", [this] { UserControl_Resize(); });
        return;
    }
    if (const form::Handler* handler = m_handlers.find(event)) {
        Guard(form::EventHandlers::handlerName(event).c_str(), [&] { (*handler)(event); });
    }
}

void RavikKT500::ShowDataSetLock(bool blLocked) {
    m_form->control("imgLockedDataset").setVisible(blLocked);
    m_form->control("lblLockedDataset").setVisible(blLocked);
    if (blLocked) {
        m_form->control("smuiDTM", 1).toolbar().setEnabled("offlineConf", false);
    }
}

// --- The control as the device class and the subsystems see it ---

namespace {

// An object the control holds; a failure of the caller when it is not set.
template <typename Pointer>
auto& Required(const Pointer& object, const char* strName) {
    if (!object) {
        throw std::logic_error(std::string("Object variable not set: ") + strName);
    }
    return *object;
}

}  // namespace

session::clsTools& RavikKT500::tools() {
    return Required(m_objTools, "m_objTools");
}

devices::DeviceClass& RavikKT500::deviceClass() {
    return Required(m_objDeviceClass, "m_objDeviceClass");
}

services::IDtmControl& RavikKT500::control() {
    return Required(m_pControl, "m_pControl");
}

services::IDtmDialogs& RavikKT500::dialogs() {
    return Required(m_pDialogs, "m_pDialogs");
}

services::IDtmUnits& RavikKT500::units() {
    return Required(m_pUnits, "m_pUnits");
}

xml::Node RavikKT500::ParameterNodeByName(std::string_view strName) {
    if (!m_parameterDocument) {
        return {};
    }
    return m_parameterDocument->ParameterNodeByName(strName);
}

void RavikKT500::EnableTestKeyFigures(bool blValue) {
    // The key figures of the safety valve controller's valve test page and
    // their captions.
    const auto enable = [this, blValue](std::string_view name, int first, int last) {
        for (int index = first; index <= last; ++index) {
            if (form::Control* field = m_form->find(name, index)) {
                field->setEnabled(blValue);
            }
        }
    };
    enable("lblPLParams", 26, 32);
    enable("lblPLParamTitle", 99, 99);
    enable("lblPLParamTitle", 101, 108);
}

void RavikKT500::ResetTargetMode() {
    try {
        xml::Node node = ParameterNodeByName("targetMode");
        if (!node) {
            return;
        }
        // The device has taken the mode: the data set holds no pending one.
        node.setAttribute("value", "");
        node.setAttribute("synchronised", "1");
        if (form::Control* list = m_form->find("comPLParams", 3)) {
            list->setListIndex(-1);
        }
    } catch (const std::exception& failure) {
        ShowMsg("ResetTargetMode", failure.what());
    }
}

// --- Events of the BL ---

bool RavikKT500::IQDLGuiEvent_UpdateSessionData(const std::string& strSessionData) {
    Guard("IQDLGuiEvent_UpdateSessionData",
          [&] { m_session.LoadSessionData(strSessionData, false); });
    return true;
}

bool RavikKT500::IQDLGuiEvent_CommunicationEvent(const std::string& strReply) {
    if (!strReply.empty()) {
        Guard("IQDLGuiEvent_CommunicationEvent",
              [this, &strReply] { m_replies.ItemListFromReply(strReply); });
    }
    return true;
}

void RavikKT500::IQDLGuiEvent_ReadyForAutoAction(bool blReady) {
    Guard("IQDLGuiEvent_ReadyForAutoAction",
          [this, blReady] { m_calibrations.IQDLGuiEvent_ReadyForAutoAction(blReady); });
}

void RavikKT500::IQDLGuiEvent_AutoActionComplete(bool blSuccess) {
    Guard("IQDLGuiEvent_AutoActionComplete",
          [this, blSuccess] { m_calibrations.IQDLGuiEvent_AutoActionComplete(blSuccess); });
}

void RavikKT500::IQDLGuiEvent_AutoActionStopped(bool blStopped) {
    Guard("IQDLGuiEvent_AutoActionStopped",
          [this, blStopped] { m_calibrations.IQDLGuiEvent_AutoActionStopped(blStopped); });
}

void RavikKT500::IQDLGuiEvent_OnLockDataSet(const std::string& /*strFirst*/,
                                            const std::string& /*strSecond*/) {
    Guard("IQDLGuiEvent_OnLockDataSet", [this] { ShowDataSetLock(true); });
}

bool RavikKT500::IQDLGuiEvent_OnUnlockDataSet(const std::string& /*strFirst*/,
                                              const std::string& /*strSecond*/) {
    // "offlineConf" stays disabled until the next session data, on purpose.
    Guard("IQDLGuiEvent_OnUnlockDataSet", [this] { ShowDataSetLock(false); });
    return true;
}

void RavikKT500::IQDLGuiEvent_OnParameterChanged(const std::string& /*strFirst*/,
                                                 const std::string& /*strSecond*/) {}

}  // namespace kt500::host
