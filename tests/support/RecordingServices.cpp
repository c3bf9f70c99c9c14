#include "support/RecordingServices.h"

#include <stdexcept>

namespace kt500::testing {

void RecordingLanguage::TranslateKey(std::int32_t lngLanguageId, const std::string& strKey,
                                     std::string& strText) {
    m_log->push_back("TranslateKey " + std::to_string(lngLanguageId) + " " + strKey);
    strText = "[" + std::to_string(lngLanguageId) + ":" + strKey + "]";
}

void RecordingLanguage::GetLanguageIds(std::vector<std::int32_t>& arrIds) {
    m_log->push_back("GetLanguageIds");
    arrIds = ids;
}

void RecordingLanguage::GetLanguageName(std::int32_t lngLanguageId, std::string& strName) {
    m_log->push_back("GetLanguageName " + std::to_string(lngLanguageId));
    const auto it = names.find(lngLanguageId);
    strName = it != names.end() ? it->second : "?";
}

void RecordingControl::OpenConnection(services::IQDLGuiEvent& eventSink,
                                      const std::string& connectionParameter,
                                      std::int32_t& lngConnectionId, std::string& strSessionData,
                                      xml::Node& parameterNode,
                                      std::shared_ptr<services::IDtmLanguage>& languageOut,
                                      bool& blDataSetLocked, bool& blSuccess) {
    m_log->push_back("OpenConnection " + connectionParameter);
    sink = &eventSink;
    lngConnectionId = connectionId;
    strSessionData = sessionData;
    parameterNode = xml::Node();
    if (!parameterXml.empty()) {
        xml::LoadResult loaded = xml::Document::parse(parameterXml);
        if (!loaded.ok()) {
            throw std::runtime_error("test parameter document: " + loaded.message());
        }
        m_parameterDocument.emplace(std::move(*loaded.document));
        parameterNode = m_parameterDocument->root();
    }
    if (onOpen) {
        onOpen(parameterNode);
    }
    languageOut = language;
    blDataSetLocked = dataSetLocked;
    blSuccess = openSucceeds;
}

void RecordingControl::CloseConnection(std::int32_t lngConnectionId, bool& blSuccess) {
    m_log->push_back("CloseConnection " + std::to_string(lngConnectionId));
    if (onClose) {
        onClose();
    }
    blSuccess = closeSucceeds;
}

void RecordingControl::PostRequest(std::int32_t lngConnectionId, const std::string& strRequest,
                                   bool& blAccepted) {
    m_log->push_back("PostRequest " + std::to_string(lngConnectionId) + " " + strRequest);
    blAccepted = accepts;
}

void RecordingControl::CancelRequests(std::int32_t lngConnectionId, bool& blSuccess) {
    m_log->push_back("CancelRequests " + std::to_string(lngConnectionId));
    blSuccess = true;
}

void RecordingControl::StartMonitoringRequests(std::int32_t lngConnectionId,
                                               std::int32_t lngReserved, bool& blSuccess) {
    m_log->push_back("StartMonitoringRequests " + std::to_string(lngConnectionId) + " " +
                     std::to_string(lngReserved));
    blSuccess = true;
}

void RecordingControl::StopMonitoringRequests(std::int32_t lngConnectionId) {
    m_log->push_back("StopMonitoringRequests " + std::to_string(lngConnectionId));
}

void RecordingControl::RequestAutoAction(std::int32_t lngConnectionId, bool& blAccepted) {
    m_log->push_back("RequestAutoAction " + std::to_string(lngConnectionId));
    blAccepted = accepts;
}

void RecordingControl::SendAutoAction(std::int32_t lngConnectionId, const std::string& strRequest,
                                      std::int32_t lngTimeoutMs, bool& blAccepted) {
    m_log->push_back("SendAutoAction " + std::to_string(lngConnectionId) + " " +
                     std::to_string(lngTimeoutMs) + " " + strRequest);
    blAccepted = accepts;
}

void RecordingControl::StopAutoAction(std::int32_t lngConnectionId, bool& blStopping) {
    m_log->push_back("StopAutoAction " + std::to_string(lngConnectionId));
    blStopping = true;
}

void RecordingControl::SetGuiLanguage(std::int32_t lngLanguageId) {
    m_log->push_back("SetGuiLanguage " + std::to_string(lngLanguageId));
}

void RecordingControl::SetCalibrationMode(bool blOn, bool& blSuccess) {
    m_log->push_back(std::string("SetCalibrationMode ") + (blOn ? "True" : "False"));
    blSuccess = true;
}

void RecordingDialogs::ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                                   const std::string& strHeader, const std::string& strText,
                                   int& intButtonPressed, int& intResult) {
    m_log->push_back("ShowMessage " + strHeader + " | " + strText);
    boxes.push_back({intDialogKind, intButtonSet, intDefaultButton, strHeader, strText});
    int answer = intButtonSet == 4 ? services::ButtonYes : services::ButtonOk;
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    }
    intButtonPressed = answer;
    intResult = answer;
}

void RecordingUnits::ConvertValue(float sngValue, const std::string& strFromUnit,
                                  const std::string& strToUnit, float& sngConverted,
                                  bool& blSuccess) {
    m_log->push_back("ConvertValue " + strFromUnit + " " + strToUnit);
    sngConverted = sngValue;
    blSuccess = succeeds;
}

void RecordingUnits::GetUnitsOfParameter(const std::string& strParameter,
                                         std::vector<std::string>& arrUnits, bool& blSuccess) {
    m_log->push_back("GetUnitsOfParameter " + strParameter);
    arrUnits.clear();
    blSuccess = succeeds;
}

void RecordingUnits::GetUnitOfParameter(const std::string& strParameter, std::string& strUnit,
                                        bool& blSuccess) {
    m_log->push_back("GetUnitOfParameter " + strParameter);
    strUnit.clear();
    blSuccess = succeeds;
}

void RecordingUnits::SetUnitOfParameter(const std::string& strParameter,
                                        const std::string& strUnit, bool& blSuccess) {
    m_log->push_back("SetUnitOfParameter " + strParameter + " " + strUnit);
    blSuccess = succeeds;
}

void RecordingUnits::SetUnitSystem(const std::string& strSystem, bool& blSuccess) {
    m_log->push_back("SetUnitSystem " + strSystem);
    blSuccess = succeeds;
}

void RecordingUnits::GetUnitParameters(std::vector<std::string>& arrParameters, bool& blSuccess) {
    m_log->push_back("GetUnitParameters");
    arrParameters.clear();
    blSuccess = succeeds;
}

RecordingServices::RecordingServices()
    : log(std::make_shared<CallLog>()),
      controlDouble(std::make_shared<RecordingControl>(log)),
      dialogsDouble(std::make_shared<RecordingDialogs>(log)),
      languageDouble(std::make_shared<RecordingLanguage>(log)),
      unitsDouble(std::make_shared<RecordingUnits>(log)) {
    controlDouble->language = languageDouble;
}

std::shared_ptr<services::IDtmControl> RecordingServices::control() {
    log->push_back("service control");
    return controlDouble;
}

std::shared_ptr<services::IDtmDialogs> RecordingServices::dialogs() {
    log->push_back("service dialogs");
    return dialogsDouble;
}

}  // namespace kt500::testing
