#include "simulator/SimulatedControl.h"

#include "simulator/EventLog.h"

#include "services/IQDLGuiEvent.h"
#include "simulator/DeviceFamilySource.h"

#include <cmath>
#include <stdexcept>

namespace kt500::simulator {

namespace {

constexpr const char* kMonitoringGroup = "monitoringVariables";

}  // namespace

DeviceTiming DeviceTiming::forProtocol(const std::string& protocol) {
    DeviceTiming timing;
    if (protocol.find("PROFIBUS") != std::string::npos) {
        timing.replyPiece = 100;
    }
    return timing;
}

SimulatedControl::SimulatedControl(SessionOptions options, std::filesystem::path shareDir,
                                   std::shared_ptr<services::IDtmLanguage> language,
                                   std::shared_ptr<VirtualClock> clock,
                                   std::shared_ptr<services::IDtmUnits> units)
    : m_options(std::move(options)),
      m_shareDir(std::move(shareDir)),
      m_language(std::move(language)),
      m_clock(clock ? std::move(clock) : std::make_shared<VirtualClock>()),
      m_units(std::move(units)) {
    const DeviceModel* model = DeviceCatalogue::find(m_options.deviceKey);
    if (model == nullptr) {
        throw std::invalid_argument("unknown device key '" + m_options.deviceKey +
                                    "'; the built-in BL simulates " + DeviceCatalogue::keyList());
    }
    m_model = *model;
    m_schema = LoadCommunicationSchema(m_shareDir);
}

SimulatedControl::~SimulatedControl() {
    m_clock->cancelOwner(this);
}

xml::Document SimulatedControl::loadParameterDocument() const {
    // Composed from the family source that describes the model; a source
    // that does not load fails the connection with its file and line.
    return ParameterDocumentBuilder(m_shareDir / "devices").build(m_model);
}

DeviceState& SimulatedControl::device() {
    if (!m_device) {
        throw std::logic_error("the simulated device is not connected");
    }
    return *m_device;
}

void SimulatedControl::takeValue(const std::string& parameter, const std::string& value) {
    device().setValue(parameter, value);
    m_dynamics->advanceTo(m_clock->now());
    m_dynamics->apply(parameter, value);
}

bool SimulatedControl::take(std::optional<bool>& outcome) {
    const bool value = outcome.value_or(true);
    outcome.reset();
    return value;
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
    m_dynamics.reset();
    m_device.reset();
    m_parameters.emplace(loadParameterDocument());
    m_device.emplace(*m_parameters);
    m_dynamics.emplace(*m_device, m_clock->now());
    m_device->setLiveValues([this](const std::string& name) {
        m_dynamics->advanceTo(m_clock->now());
        return m_dynamics->value(name);
    });
    m_timing = DeviceTiming::forProtocol(m_device->publishedProtocol());
    // A device with a sampling rate of its own monitors at that rate.
    if (const std::optional<std::string> rate = m_device->value("monitoringSamplingRate")) {
        try {
            const long milliseconds = std::stol(*rate);
            if (milliseconds >= 100 && milliseconds <= 10000) {
                m_timing.monitoringPeriod = milliseconds;
            }
        } catch (const std::exception&) {
            // The default period stays.
        }
    }
    m_sink = &sink;
    m_busUntil = m_clock->now();
    lngConnectionId = kConnectionId;
    strSessionData = BuildSessionData(m_options, m_model.deviceType, m_model.revision);
    parameterNode = m_parameters->root();
    language = m_language;
    blDataSetLocked = m_options.locked;
    blSuccess = true;
    if (m_options.online) {
        // The device's first status read: every status item and the tree.
        m_clock->schedule(
            m_timing.firstStatus, [this] { deliver(statusReply(m_device->statuses(), true)); },
            this, Events);
    }
}

void SimulatedControl::requireConnection(const char* operation,
                                         std::int32_t lngConnectionId) const {
    if (m_sink == nullptr || lngConnectionId != kConnectionId) {
        throw std::invalid_argument(std::string(operation) + ": no open connection " +
                                    std::to_string(lngConnectionId));
    }
}

void SimulatedControl::CloseConnection(std::int32_t lngConnectionId, bool& blSuccess) {
    blSuccess = m_sink != nullptr && lngConnectionId == kConnectionId;
    if (blSuccess) {
        m_clock->cancelOwner(this);
        m_sink = nullptr;
        m_monitoring = false;
        m_calibrationMode = false;
        m_action = {};
    }
}

void SimulatedControl::CancelRequests(std::int32_t lngConnectionId, bool& blSuccess) {
    requireConnection("CancelRequests", lngConnectionId);
    m_clock->cancelChannel(this, Replies);
    m_busUntil = m_clock->now();
    blSuccess = true;
}

void SimulatedControl::StartMonitoringRequests(std::int32_t lngConnectionId,
                                               std::int32_t /*lngReserved*/, bool& blSuccess) {
    requireConnection("StartMonitoringRequests", lngConnectionId);
    blSuccess = device().group(kMonitoringGroup) != nullptr;
    if (blSuccess && !m_monitoring) {
        m_monitoring = true;
        m_clock->schedule(
            m_timing.monitoringPeriod, [this] { monitoringCycle(); }, this, Monitoring);
    }
}

void SimulatedControl::StopMonitoringRequests(std::int32_t lngConnectionId) {
    requireConnection("StopMonitoringRequests", lngConnectionId);
    m_monitoring = false;
    m_clock->cancelChannel(this, Monitoring);
}

void SimulatedControl::monitoringCycle() {
    CommunicationReply reply{kMonitoringGroup, "read", "ok", true, "", {}};
    if (const auto failure = m_failures.find(kMonitoringGroup); failure != m_failures.end()) {
        // One cycle fails without values; the next one reads again.
        reply.responseStatus = "failed";
        reply.errorCode = failure->second;
        m_failures.erase(failure);
    } else {
        for (const std::string& name : device().group(kMonitoringGroup)->parameters) {
            reply.items.push_back(device().item(name));
        }
    }
    // The next cycle is due one period on, whatever the sink does with this one.
    m_clock->schedule(
        m_timing.monitoringPeriod, [this] { monitoringCycle(); }, this, Monitoring);
    ++m_monitoringReplies;
    deliver(BuildReply(reply));
}

VirtualClock::Milliseconds SimulatedControl::actionDuration(const std::string& name) const {
    static const std::map<std::string, VirtualClock::Milliseconds, std::less<>> fixed = {
        {"positionControlAutocalibration", 20000},
        {"automaticTravelCalibration", 20000},
        {"automaticPrestageTrim", 15000},
        {"pneumaticsTest", 12000},
        {"valveTest", 20000},
    };
    if (const auto found = fixed.find(name); found != fixed.end()) {
        return found->second;
    }
    if (name == "stepResponseTest" || name == "hysteresisTest") {
        // The test time the device holds, and two seconds to settle first.
        double seconds = 10.0;
        if (m_device) {
            if (const std::optional<std::string> testTime = m_device->value("testTime")) {
                try {
                    seconds = std::stod(*testTime);
                } catch (const std::exception&) {
                    seconds = 10.0;
                }
            }
        }
        if (!std::isfinite(seconds) || seconds < 0 || seconds > 600) {
            seconds = 10.0;
        }
        return 2000 + static_cast<VirtualClock::Milliseconds>(seconds * 1000.0);
    }
    return 0;
}

void SimulatedControl::RequestAutoAction(std::int32_t lngConnectionId, bool& blAccepted) {
    requireConnection("RequestAutoAction", lngConnectionId);
    blAccepted = take(m_nextRequestAccepted);
    if (blAccepted) {
        m_clock->schedule(
            m_timing.ready,
            [this] {
                const bool ready = take(m_nextReady);
                m_sink->IQDLGuiEvent_ReadyForAutoAction(ready);
            },
            this, Action);
    }
}

void SimulatedControl::SendAutoAction(std::int32_t lngConnectionId, const std::string& strRequest,
                                      std::int32_t /*lngTimeoutMs*/, bool& blAccepted) {
    requireConnection("SendAutoAction", lngConnectionId);
    blAccepted = false;
    if (m_refuseNext) {
        m_refuseNext = false;
        return;
    }
    const std::optional<CommunicationRequest> request = ParseRequest(strRequest, m_schema);
    if (!request || request->access != "write" || !m_action.name.empty()) {
        return;
    }
    if (actionDuration(request->name) == 0) {
        return;
    }
    // The settings the action request carries become the device's own.
    for (const MessageItem& item : request->items) {
        const ParameterInfo* parameter = device().parameter(item.name);
        if (parameter == nullptr) {
            continue;
        }
        const std::optional<std::string> value = deviceValueOf(item, *parameter);
        if (value && DeviceState::checkWrite(*parameter, *value).empty()) {
            takeValue(item.name, *value);
        }
    }
    const VirtualClock::Milliseconds duration = actionDuration(request->name);
    blAccepted = true;
    m_action.name = request->name;
    m_action.endsAt = m_clock->now() + duration;
    m_action.completion = m_clock->schedule(
        duration, [this] { completeAction(); }, this, Action);
}

double SimulatedControl::sessionHours() const {
    return static_cast<double>(m_clock->now()) / 3600000.0;
}

void SimulatedControl::completeAction() {
    const bool success = take(m_nextComplete);
    if (success) {
        m_dynamics->advanceTo(m_clock->now());
        m_dynamics->runTest(m_action.name, *m_device);
        // Calibrations and trims are events of the device's log; tests are not.
        if (m_action.name.find("alibration") != std::string::npos ||
            m_action.name.find("Trim") != std::string::npos) {
            EventLog::Record(*m_device, "eventCalibration", sessionHours());
        }
    }
    m_action = {};
    m_sink->IQDLGuiEvent_AutoActionComplete(success);
}

void SimulatedControl::StopAutoAction(std::int32_t lngConnectionId, bool& blStopping) {
    requireConnection("StopAutoAction", lngConnectionId);
    blStopping = !m_action.name.empty();
    if (!blStopping) {
        return;
    }
    // The action holds still while the stop is under way; a refused stop
    // lets it run on for the time it had left.
    if (m_action.stopsPending == 0 && m_clock->cancel(m_action.completion)) {
        m_action.remaining = m_action.endsAt - m_clock->now();
    }
    ++m_action.stopsPending;
    m_clock->schedule(
        m_timing.stop, [this] { finishStop(); }, this, Action);
}

void SimulatedControl::finishStop() {
    const bool stopped = take(m_nextStopped);
    if (m_action.stopsPending > 0) {
        --m_action.stopsPending;
    }
    if (stopped) {
        m_action = {};
    } else if (m_action.stopsPending == 0 && !m_action.name.empty()) {
        m_action.endsAt = m_clock->now() + m_action.remaining;
        m_action.completion = m_clock->schedule(
            m_action.remaining, [this] { completeAction(); }, this, Action);
    }
    m_sink->IQDLGuiEvent_AutoActionStopped(stopped);
}

void SimulatedControl::SetGuiLanguage(std::int32_t lngLanguageId) {
    m_guiLanguage = lngLanguageId;
}

void SimulatedControl::SetCalibrationMode(bool blOn, bool& blSuccess) {
    blSuccess = blOn ? take(m_nextCalibrationMode) : true;
    m_calibrationMode = blOn && blSuccess;
}

}  // namespace kt500::simulator
