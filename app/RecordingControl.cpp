#include "app/RecordingControl.h"

#include <iterator>
#include <stdexcept>

namespace kt500::app {

RecordingControl::RecordingControl(std::shared_ptr<services::IDtmControl> inner)
    : m_inner(std::move(inner)) {
    if (!m_inner) {
        throw std::invalid_argument("RecordingControl: a connection to record is needed");
    }
}

void RecordingControl::OpenConnection(services::IQDLGuiEvent& sink,
                                      const std::string& connectionParameter,
                                      std::int32_t& lngConnectionId, std::string& strSessionData,
                                      xml::Node& parameterNode,
                                      std::shared_ptr<services::IDtmLanguage>& language,
                                      bool& blDataSetLocked, bool& blSuccess) {
    m_tap.setTarget(&sink);
    const std::chrono::nanoseconds before = ThreadCpuTime();
    m_inner->OpenConnection(m_tap, connectionParameter, lngConnectionId, strSessionData,
                            parameterNode, language, blDataSetLocked, blSuccess);
    m_openConnectionTime = ThreadCpuTime() - before;
}

void RecordingControl::CloseConnection(std::int32_t lngConnectionId, bool& blSuccess) {
    m_inner->CloseConnection(lngConnectionId, blSuccess);
}

void RecordingControl::PostRequest(std::int32_t lngConnectionId, const std::string& strRequest,
                                   bool& blAccepted) {
    // Recorded before the call: a request the BL refuses was still sent.
    record("PostRequest", strRequest);
    m_inner->PostRequest(lngConnectionId, strRequest, blAccepted);
}

void RecordingControl::CancelRequests(std::int32_t lngConnectionId, bool& blSuccess) {
    m_inner->CancelRequests(lngConnectionId, blSuccess);
}

void RecordingControl::StartMonitoringRequests(std::int32_t lngConnectionId,
                                               std::int32_t lngReserved, bool& blSuccess) {
    m_inner->StartMonitoringRequests(lngConnectionId, lngReserved, blSuccess);
}

void RecordingControl::StopMonitoringRequests(std::int32_t lngConnectionId) {
    m_inner->StopMonitoringRequests(lngConnectionId);
}

void RecordingControl::RequestAutoAction(std::int32_t lngConnectionId, bool& blAccepted) {
    m_inner->RequestAutoAction(lngConnectionId, blAccepted);
}

void RecordingControl::SendAutoAction(std::int32_t lngConnectionId, const std::string& strRequest,
                                      std::int32_t lngTimeoutMs, bool& blAccepted) {
    record("SendAutoAction", strRequest);
    m_inner->SendAutoAction(lngConnectionId, strRequest, lngTimeoutMs, blAccepted);
}

void RecordingControl::StopAutoAction(std::int32_t lngConnectionId, bool& blStopping) {
    m_inner->StopAutoAction(lngConnectionId, blStopping);
}

void RecordingControl::SetGuiLanguage(std::int32_t lngLanguageId) {
    m_inner->SetGuiLanguage(lngLanguageId);
}

void RecordingControl::SetCalibrationMode(bool blOn, bool& blSuccess) {
    m_inner->SetCalibrationMode(blOn, blSuccess);
}

void RecordingControl::record(const char* strOperation, const std::string& strRequest) {
    if (m_requests.size() == kKeptRequests) {
        m_requests.pop_front();
        ++m_dropped;
    }
    m_requests.push_back({strOperation, strRequest});
}

std::vector<RecordedRequest> RecordingControl::takeRequests() {
    std::vector<RecordedRequest> taken(std::make_move_iterator(m_requests.begin()),
                                       std::make_move_iterator(m_requests.end()));
    m_requests.clear();
    m_dropped = 0;
    return taken;
}

}  // namespace kt500::app
