#include "simulator/SimulatedControl.h"

#include "simulator/DeviceFamilySource.h"

#include <stdexcept>

namespace kt500::simulator {

SimulatedControl::SimulatedControl(SessionOptions options, std::filesystem::path shareDir,
                                   std::shared_ptr<services::IDtmLanguage> language)
    : m_options(std::move(options)),
      m_shareDir(std::move(shareDir)),
      m_language(std::move(language)) {
    const DeviceModel* model = DeviceCatalogue::find(m_options.deviceKey);
    if (model == nullptr) {
        throw std::invalid_argument("unknown device key '" + m_options.deviceKey +
                                    "'; the built-in BL simulates " + DeviceCatalogue::keyList());
    }
    m_model = *model;
}

xml::Document SimulatedControl::loadParameterDocument() const {
    // Composed from the family source that describes the model; a source
    // that does not load fails the connection with its file and line.
    return ParameterDocumentBuilder(m_shareDir / "devices").build(m_model);
}

void SimulatedControl::OpenConnection(services::IQDLGuiEvent& sink,
                                      const std::string& /*connectionParameter*/,
                                      std::int32_t& lngConnectionId, std::string& strSessionData,
                                      xml::Node& parameterNode,
                                      std::shared_ptr<services::IDtmLanguage>& language,
                                      bool& blDataSetLocked, bool& blSuccess) {
    if (m_sink != nullptr) {
        throw std::logic_error("OpenConnection: the connection is already open");
    }
    m_parameters.emplace(loadParameterDocument());
    m_sink = &sink;
    lngConnectionId = kConnectionId;
    strSessionData = BuildSessionData(m_options, m_model.deviceType, m_model.revision);
    parameterNode = m_parameters->root();
    language = m_language;
    blDataSetLocked = m_options.locked;
    blSuccess = true;
}

void SimulatedControl::requireConnection(const char* operation,
                                         std::int32_t lngConnectionId) const {
    if (m_sink == nullptr || lngConnectionId != kConnectionId) {
        throw std::invalid_argument(std::string(operation) + ": no open connection " +
                                    std::to_string(lngConnectionId));
    }
}

void SimulatedControl::notAvailable(const char* operation) {
    throw std::logic_error(std::string(operation) +
                           ": the built-in BL does not simulate device traffic yet");
}

void SimulatedControl::CloseConnection(std::int32_t lngConnectionId, bool& blSuccess) {
    blSuccess = m_sink != nullptr && lngConnectionId == kConnectionId;
    if (blSuccess) {
        m_sink = nullptr;
    }
}

void SimulatedControl::PostRequest(std::int32_t lngConnectionId, const std::string& /*strRequest*/,
                                   bool& /*blAccepted*/) {
    requireConnection("PostRequest", lngConnectionId);
    notAvailable("PostRequest");
}

void SimulatedControl::CancelRequests(std::int32_t lngConnectionId, bool& /*blSuccess*/) {
    requireConnection("CancelRequests", lngConnectionId);
    notAvailable("CancelRequests");
}

void SimulatedControl::StartMonitoringRequests(std::int32_t lngConnectionId,
                                               std::int32_t /*lngReserved*/, bool& /*blSuccess*/) {
    requireConnection("StartMonitoringRequests", lngConnectionId);
    notAvailable("StartMonitoringRequests");
}

void SimulatedControl::StopMonitoringRequests(std::int32_t lngConnectionId) {
    requireConnection("StopMonitoringRequests", lngConnectionId);
    notAvailable("StopMonitoringRequests");
}

void SimulatedControl::RequestAutoAction(std::int32_t lngConnectionId, bool& /*blAccepted*/) {
    requireConnection("RequestAutoAction", lngConnectionId);
    notAvailable("RequestAutoAction");
}

void SimulatedControl::SendAutoAction(std::int32_t lngConnectionId,
                                      const std::string& /*strRequest*/,
                                      std::int32_t /*lngTimeoutMs*/, bool& /*blAccepted*/) {
    requireConnection("SendAutoAction", lngConnectionId);
    notAvailable("SendAutoAction");
}

void SimulatedControl::StopAutoAction(std::int32_t lngConnectionId, bool& /*blStopping*/) {
    requireConnection("StopAutoAction", lngConnectionId);
    notAvailable("StopAutoAction");
}

void SimulatedControl::SetGuiLanguage(std::int32_t lngLanguageId) {
    m_guiLanguage = lngLanguageId;
}

void SimulatedControl::SetCalibrationMode(bool /*blOn*/, bool& /*blSuccess*/) {
    notAvailable("SetCalibrationMode");
}

}  // namespace kt500::simulator
