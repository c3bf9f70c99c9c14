// A recording double of the closed services: every call is written, in
// order, into one call log shared by all services, and each outcome can be
// set beforehand. Tests of the control's start-up and release read the log.
#pragma once

#include "services/IDtmLanguage.h"
#include "services/IDtmUnits.h"
#include "services/IDtmServiceProvider.h"
#include "services/IQDLGuiEvent.h"
#include "xml/Document.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kt500::testing {

using CallLog = std::vector<std::string>;

class RecordingLanguage final : public services::IDtmLanguage {
public:
    explicit RecordingLanguage(std::shared_ptr<CallLog> log) : m_log(std::move(log)) {}
    void TranslateKey(std::int32_t lngLanguageId, const std::string& strKey,
                      std::string& strText) override;
    void GetLanguageIds(std::vector<std::int32_t>& arrIds) override;
    void GetLanguageName(std::int32_t lngLanguageId, std::string& strName) override;

    std::vector<std::int32_t> ids{1033, 1031};
    std::map<std::int32_t, std::string> names{{1033, "English"}, {1031, "Deutsch"}};

private:
    std::shared_ptr<CallLog> m_log;
};

class RecordingControl final : public services::IDtmControl {
public:
    explicit RecordingControl(std::shared_ptr<CallLog> log) : m_log(std::move(log)) {}

    void OpenConnection(services::IQDLGuiEvent& sink, const std::string& connectionParameter,
                        std::int32_t& lngConnectionId, std::string& strSessionData,
                        xml::Node& parameterNode, std::shared_ptr<services::IDtmLanguage>& language,
                        bool& blDataSetLocked, bool& blSuccess) override;
    void CloseConnection(std::int32_t lngConnectionId, bool& blSuccess) override;
    void PostRequest(std::int32_t lngConnectionId, const std::string& strRequest,
                     bool& blAccepted) override;
    void CancelRequests(std::int32_t lngConnectionId, bool& blSuccess) override;
    void StartMonitoringRequests(std::int32_t lngConnectionId, std::int32_t lngReserved,
                                 bool& blSuccess) override;
    void StopMonitoringRequests(std::int32_t lngConnectionId) override;
    void RequestAutoAction(std::int32_t lngConnectionId, bool& blAccepted) override;
    void SendAutoAction(std::int32_t lngConnectionId, const std::string& strRequest,
                        std::int32_t lngTimeoutMs, bool& blAccepted) override;
    void StopAutoAction(std::int32_t lngConnectionId, bool& blStopping) override;
    void SetGuiLanguage(std::int32_t lngLanguageId) override;
    void SetCalibrationMode(bool blOn, bool& blSuccess) override;

    // Outcomes of the next calls.
    std::int32_t connectionId = 7;
    std::string sessionData =
        "<sessionData xmlns='x-schema:QDLSessionDataSchema.xml'><session "
        "privateDialogEnabled='0' deviceType='KT520' revision='7' userRole='maintenance' "
        "frameLanguage='1033' guiLanguage='1033' online='1' savePath='/tmp/kt500/'/></sessionData>";
    std::string parameterXml;  // becomes the parameter node; empty: no node
    bool openSucceeds = true;
    bool dataSetLocked = false;
    bool closeSucceeds = true;
    bool accepts = true;
    std::shared_ptr<RecordingLanguage> language;
    // Runs inside CloseConnection, before it answers.
    std::function<void()> onClose;
    // Runs inside OpenConnection on the parameter node before it is handed over.
    std::function<void(xml::Node&)> onOpen;
    // Set by OpenConnection: the sink the control handed over.
    services::IQDLGuiEvent* sink = nullptr;

private:
    std::shared_ptr<CallLog> m_log;
    std::optional<xml::Document> m_parameterDocument;
};

class RecordingDialogs final : public services::IDtmDialogs {
public:
    explicit RecordingDialogs(std::shared_ptr<CallLog> log) : m_log(std::move(log)) {}
    void ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                     const std::string& strHeader, const std::string& strText,
                     int& intButtonPressed, int& intResult) override;

    std::deque<int> answers;
    struct Box {
        int kind, buttons, defaultButton;
        std::string header, text;
    };
    std::vector<Box> boxes;

private:
    std::shared_ptr<CallLog> m_log;
};

// A unit service with no unit parameters: conversions return the value as
// it is; each call is logged, and every operation can be made to fail.
class RecordingUnits final : public services::IDtmUnits {
public:
    explicit RecordingUnits(std::shared_ptr<CallLog> log) : m_log(std::move(log)) {}
    void ConvertValue(float sngValue, const std::string& strFromUnit, const std::string& strToUnit,
                      float& sngConverted, bool& blSuccess) override;
    void GetUnitsOfParameter(const std::string& strParameter, std::vector<std::string>& arrUnits,
                             bool& blSuccess) override;
    void GetUnitOfParameter(const std::string& strParameter, std::string& strUnit,
                            bool& blSuccess) override;
    void SetUnitOfParameter(const std::string& strParameter, const std::string& strUnit,
                            bool& blSuccess) override;
    void SetUnitSystem(const std::string& strSystem, bool& blSuccess) override;
    void GetUnitParameters(std::vector<std::string>& arrParameters, bool& blSuccess) override;

    bool succeeds = true;

private:
    std::shared_ptr<CallLog> m_log;
};

// The service object of the frame, holding the doubles above.
class RecordingServices final : public services::IDtmServiceProvider {
public:
    RecordingServices();

    std::shared_ptr<services::IDtmControl> control() override;
    std::shared_ptr<services::IDtmDialogs> dialogs() override;
    std::shared_ptr<services::IDtmUnits> units() override { return unitsDouble; }
    std::shared_ptr<services::IDtmAddressing> addressing() override { return nullptr; }

    std::shared_ptr<CallLog> log;
    std::shared_ptr<RecordingControl> controlDouble;
    std::shared_ptr<RecordingDialogs> dialogsDouble;
    std::shared_ptr<RecordingLanguage> languageDouble;
    std::shared_ptr<RecordingUnits> unitsDouble;
};

}  // namespace kt500::testing
