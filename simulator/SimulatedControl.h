// m_pControl of the built-in BL: the connection to a simulated device of the
// family. It hands over the session data, the device's parameter document
// (the data set) and the language service at OpenConnection, and answers
// requests the way a device on the bus does: every reply, monitoring cycle
// and device action event is scheduled on the virtual clock and reaches the
// sink only when the host advances the clock. docs/simulator.md describes
// the timings and the fault injection.
//
// Sources: SimulatedControl.cpp (connection, monitoring, device actions),
// RequestHandling.cpp (requests and their replies), FaultInjection.cpp (the
// outcomes and events a test or script forces).
#pragma once

#include "services/IDtmControl.h"
#include "services/IDtmUnits.h"
#include "simulator/CommunicationMessages.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceDynamics.h"
#include "simulator/TrendHistory.h"
#include "simulator/DeviceState.h"
#include "simulator/SessionOptions.h"
#include "simulator/VirtualClock.h"
#include "xml/Document.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kt500::simulator {

// How long the simulated device takes, in milliseconds of the virtual clock.
struct DeviceTiming {
    VirtualClock::Milliseconds replyPiece = 300;  // one reply of a group on the bus
    VirtualClock::Milliseconds ready = 500;       // RequestAutoAction until ready
    VirtualClock::Milliseconds stop = 300;        // StopAutoAction until stopped
    VirtualClock::Milliseconds monitoringPeriod = 500;
    VirtualClock::Milliseconds firstStatus = 1000;  // status push after the connection opens

    // HART: about 300 ms a reply; PROFIBUS PA is faster.
    static DeviceTiming forProtocol(const std::string& protocol);
};

class SimulatedControl final : public services::IDtmControl {
public:
    // Throws std::invalid_argument for a device key the catalogue lacks and
    // std::runtime_error when the communication schema does not compile.
    // Without a clock the control keeps one of its own; without units a
    // write must carry the device's units.
    SimulatedControl(SessionOptions options, std::filesystem::path shareDir,
                     std::shared_ptr<services::IDtmLanguage> language,
                     std::shared_ptr<VirtualClock> clock = nullptr,
                     std::shared_ptr<services::IDtmUnits> units = nullptr);
    ~SimulatedControl() override;
    SimulatedControl(const SimulatedControl&) = delete;
    SimulatedControl& operator=(const SimulatedControl&) = delete;

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

    [[nodiscard]] const DeviceModel& model() const noexcept { return m_model; }
    [[nodiscard]] const SessionOptions& options() const noexcept { return m_options; }
    [[nodiscard]] bool connected() const noexcept { return m_sink != nullptr; }
    [[nodiscard]] std::int32_t guiLanguage() const noexcept { return m_guiLanguage; }
    // The parameter document the BL holds (the live node lives in it).
    [[nodiscard]] const xml::Document* parameterDocument() const noexcept {
        return m_parameters ? &*m_parameters : nullptr;
    }
    [[nodiscard]] VirtualClock& clock() noexcept { return *m_clock; }
    [[nodiscard]] const DeviceTiming& timing() const noexcept { return m_timing; }
    // Another pace of the device (a faster monitoring, for a long run); it
    // holds from the next reply or monitoring cycle on.
    void setTiming(const DeviceTiming& timing) noexcept { m_timing = timing; }
    // The valve behind the measured values, while a connection is open.
    [[nodiscard]] const DeviceDynamics* dynamics() const noexcept {
        return m_dynamics ? &*m_dynamics : nullptr;
    }
    [[nodiscard]] bool monitoring() const noexcept { return m_monitoring; }
    // Monitoring replies delivered since the control was made.
    [[nodiscard]] long long monitoringReplies() const noexcept { return m_monitoringReplies; }
    [[nodiscard]] bool calibrationMode() const noexcept { return m_calibrationMode; }
    // The device action under way ("" when none).
    [[nodiscard]] const std::string& runningAction() const noexcept { return m_action.name; }
    // Virtual hours since the session's clock started.
    [[nodiscard]] double sessionHours() const;
    // How long a device action runs, by its request name (0: no such action).
    [[nodiscard]] VirtualClock::Milliseconds actionDuration(const std::string& name) const;

    // Fault injection: what a test or script forces (the `bl` commands).
    // The next request of the group gets one failed final reply.
    void failNext(const std::string& group, const std::string& errorCode = "communicationFailed");
    // The next PostRequest or SendAutoAction is not accepted.
    void refuseNext();
    // The device's own value (a set point or input signal also moves the
    // valve); throws std::invalid_argument for a name the device lacks or
    // std::logic_error when no connection is open.
    void setDeviceValue(const std::string& parameter, const std::string& value);
    [[nodiscard]] std::optional<std::string> deviceValue(const std::string& parameter) const;
    // A status push holding that item (delivered at the current time).
    void pushStatus(const std::string& item, const std::string& value);
    // Delivers the text as it stands as a communication event.
    void deliverReply(const std::string& text);
    // Outcomes of the next ready, complete and stopped event, of the next
    // SetCalibrationMode(True) and of the next RequestAutoAction.
    void setNextReady(bool ready) { m_nextReady = ready; }
    void setNextComplete(bool success) { m_nextComplete = success; }
    void setNextStopped(bool stopped) { m_nextStopped = stopped; }
    void setNextCalibrationMode(bool success) { m_nextCalibrationMode = success; }
    void setNextRequestAccepted(bool accepted) { m_nextRequestAccepted = accepted; }
    // The data set lock and unlock events of another session.
    void lockDataSet();
    void unlockDataSet();
    // One `bl` command of a script, its words after "bl" ("fail",
    // "operationUnit"). Throws std::invalid_argument for words it does not know.
    void inject(const std::vector<std::string>& words);

    static constexpr std::int32_t kConnectionId = 1;

private:
    // Channels of the clock: CancelRequests drops the replies only.
    enum Channel : int { Replies = 1, Monitoring, Action, Events };

    struct RunningAction {
        std::string name;
        VirtualClock::Ticket completion = 0;
        VirtualClock::Milliseconds endsAt = 0;
        VirtualClock::Milliseconds remaining = 0;  // while a stop is under way
        int stopsPending = 0;
    };

    void requireConnection(const char* operation, std::int32_t lngConnectionId) const;
    xml::Document loadParameterDocument() const;
    DeviceState& device();
    // A value the device took: stored, and passed on to the valve.
    void takeValue(const std::string& parameter, const std::string& value);
    static bool take(std::optional<bool>& outcome);

    // RequestHandling.cpp
    void answer(const CommunicationRequest& request);
    void answerRead(const CommunicationRequest& request, const GroupInfo& group);
    void answerWrite(const CommunicationRequest& request);
    void answerOffline(const CommunicationRequest& request);
    void answerStatusRead();
    [[nodiscard]] std::vector<MessageItem> unknownItems(const CommunicationRequest& request) const;
    // The value of a write item in the device's unit; nothing when the unit
    // cannot be converted.
    [[nodiscard]] std::optional<std::string> deviceValueOf(const MessageItem& item,
                                                           const ParameterInfo& parameter) const;
    // A reply that takes `pieces` reply times on the bus after what is queued.
    void sendOnBus(const CommunicationReply& reply, int pieces = 1);
    void sendNow(std::string text, int channel);
    void deliver(const std::string& text);
    [[nodiscard]] std::string statusReply(const std::vector<StatusEntry>& entries,
                                          bool withTree) const;

    // SimulatedControl.cpp
    void monitoringCycle();
    void completeAction();
    void finishStop();

    SessionOptions m_options;
    DeviceModel m_model;
    std::filesystem::path m_shareDir;
    std::shared_ptr<services::IDtmLanguage> m_language;
    std::shared_ptr<VirtualClock> m_clock;
    std::shared_ptr<services::IDtmUnits> m_units;
    xml::SchemaCollection m_schema;
    std::optional<xml::Document> m_parameters;
    std::optional<DeviceState> m_device;
    std::optional<DeviceDynamics> m_dynamics;
    TrendHistory m_trendHistory;
    DeviceTiming m_timing;
    services::IQDLGuiEvent* m_sink = nullptr;
    std::int32_t m_guiLanguage = 0;

    VirtualClock::Milliseconds m_busUntil = 0;  // the bus is busy until then
    bool m_monitoring = false;
    long long m_monitoringReplies = 0;
    bool m_calibrationMode = false;
    RunningAction m_action;

    std::map<std::string, std::string> m_failures;  // group -> error code, next request
    bool m_refuseNext = false;
    std::optional<bool> m_nextReady;
    std::optional<bool> m_nextComplete;
    std::optional<bool> m_nextStopped;
    std::optional<bool> m_nextCalibrationMode;
    std::optional<bool> m_nextRequestAccepted;
};

}  // namespace kt500::simulator
