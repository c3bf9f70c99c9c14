// The connection the script runner hands to the control: every call goes
// on to the built-in BL's connection unchanged, and each call that carries
// a request (PostRequest, SendAutoAction) is recorded for the `requests`
// command, in the order the control made them. The BL's events reach the
// control through a ReplyTap, which times the replies for a watcher.
#pragma once

#include "app/ReplyTap.h"
#include "services/IDtmControl.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace kt500::app {

struct RecordedRequest {
    std::string operation;  // "PostRequest" or "SendAutoAction"
    std::string request;    // the request as the control sent it
};

class RecordingControl final : public services::IDtmControl {
public:
    explicit RecordingControl(std::shared_ptr<services::IDtmControl> inner);

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

    // The record keeps the last kKeptRequests requests: a session that
    // nobody asks for its requests (the window, a long run) does not grow.
    static constexpr std::size_t kKeptRequests = 1000;
    // The requests since the last call (the last kKeptRequests of them), and
    // forgets them.
    std::vector<RecordedRequest> takeRequests();
    // How many requests since the last call of takeRequests went unkept.
    [[nodiscard]] std::size_t droppedRequests() const noexcept { return m_dropped; }
    // Reports every reply from now on with the control's processor time on
    // it; an empty watcher stops the reports.
    void watchReplies(ReplyWatcher watcher) { m_tap.setWatcher(std::move(watcher)); }
    // The processor time the BL took in the last OpenConnection: its own
    // composition of the parameter document and session data.
    [[nodiscard]] std::chrono::nanoseconds openConnectionTime() const noexcept {
        return m_openConnectionTime;
    }

private:
    std::shared_ptr<services::IDtmControl> m_inner;
    void record(const char* strOperation, const std::string& strRequest);

    std::deque<RecordedRequest> m_requests;
    std::size_t m_dropped = 0;
    ReplyTap m_tap;
    std::chrono::nanoseconds m_openConnectionTime{0};
};

}  // namespace kt500::app
