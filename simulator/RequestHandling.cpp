// The requests of the built-in BL's connection: PostRequest and the replies
// the simulated device gives, piece by piece on the bus.
#include "services/IQDLGuiEvent.h"
#include "simulator/SimulatedControl.h"

#include "simulator/DiagnosticsReset.h"
#include "simulator/EventLog.h"

#include <algorithm>
#include <cstdio>

namespace kt500::simulator {

namespace {

constexpr const char* kFailed = "failed";

CommunicationReply ErrorReply(const CommunicationRequest& request, std::string errorCode,
                              std::vector<MessageItem> items = {}) {
    return {request.name, request.access, kFailed, true, std::move(errorCode), std::move(items)};
}

// A number in its shortest text with "." as the decimal sign.
std::string NumberText(float number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.7g", static_cast<double>(number));
    return buffer;
}

}  // namespace

void SimulatedControl::PostRequest(std::int32_t lngConnectionId, const std::string& strRequest,
                                   bool& blAccepted) {
    requireConnection("PostRequest", lngConnectionId);
    blAccepted = false;
    if (m_refuseNext) {
        m_refuseNext = false;
        return;
    }
    const std::optional<CommunicationRequest> request = ParseRequest(strRequest, m_schema);
    if (!request) {
        return;
    }
    blAccepted = true;
    answer(*request);
}

void SimulatedControl::answer(const CommunicationRequest& request) {
    if (request.access == "writeOffline") {
        // The data set only: the BL answers itself, without the device.
        answerOffline(request);
        return;
    }
    if (const auto failure = m_failures.find(request.name); failure != m_failures.end()) {
        const std::string errorCode = failure->second;
        m_failures.erase(failure);
        if (errorCode == "missingItems") {
            // Found before the device is asked: one reply lists the items.
            sendOnBus(ErrorReply(request, errorCode, request.items));
            return;
        }
        // The device fails each command of the group: a read fails in as
        // many pieces as it would have answered, the last one closing it.
        const GroupInfo* failing = device().group(request.name);
        const int pieces =
            request.access == "read" && failing != nullptr ? std::max(failing->requestCount, 1) : 1;
        for (int piece = 1; piece <= pieces; ++piece) {
            CommunicationReply reply = ErrorReply(request, errorCode);
            reply.isFinal = piece == pieces;
            sendOnBus(reply);
        }
        return;
    }
    const GroupInfo* group = device().group(request.name);
    if (group == nullptr) {
        if (request.name == "deviceStatus" && request.access == "read") {
            answerStatusRead();
        } else {
            sendOnBus(ErrorReply(request, "unknownRequest"));
        }
        return;
    }
    if (std::vector<MessageItem> missing = unknownItems(request); !missing.empty()) {
        sendOnBus(ErrorReply(request, "missingItems", std::move(missing)));
        return;
    }
    if (request.access == "read") {
        answerRead(request, *group);
    } else {
        answerWrite(request);
    }
}

std::vector<MessageItem> SimulatedControl::unknownItems(const CommunicationRequest& request) const {
    std::vector<MessageItem> missing;
    for (const MessageItem& item : request.items) {
        // A request without parameters names its group in its one item.
        const bool groupPlaceholder = item.name == request.name && request.items.size() == 1;
        if (!groupPlaceholder && m_device->parameter(item.name) == nullptr) {
            missing.push_back({item.name, item.unit, "", ""});
        }
    }
    return missing;
}

void SimulatedControl::answerRead(const CommunicationRequest& request, const GroupInfo& group) {
    // A trend holds the samples the device took since its last reading.
    if (m_dynamics && TrendHistory::Keeps(request.name)) {
        m_dynamics->advanceTo(m_clock->now());
        m_trendHistory.catchUp(*m_device, m_dynamics->valve(), request.name, sessionHours());
    }
    std::vector<MessageItem> items;
    for (const MessageItem& asked : request.items) {
        if (m_device->parameter(asked.name) != nullptr) {
            items.push_back(m_device->item(asked.name));
        }
    }
    // The group's values come in requestCount replies, spread evenly; only
    // the last one closes the group.
    const std::size_t pieces = static_cast<std::size_t>(std::max(group.requestCount, 1));
    for (std::size_t piece = 0; piece < pieces; ++piece) {
        CommunicationReply reply{request.name, request.access, "ok", piece + 1 == pieces, "", {}};
        const std::size_t from = piece * items.size() / pieces;
        const std::size_t to = (piece + 1) * items.size() / pieces;
        reply.items.assign(items.begin() + static_cast<std::ptrdiff_t>(from),
                           items.begin() + static_cast<std::ptrdiff_t>(to));
        sendOnBus(reply);
    }
}

std::optional<std::string> SimulatedControl::deviceValueOf(const MessageItem& item,
                                                           const ParameterInfo& parameter) const {
    const std::string& unit = parameter.unit;
    if (item.unit == unit || item.unit == "noUnit" || unit == "noUnit" || unit.empty() ||
        item.value.empty()) {
        return item.value;
    }
    if (!m_units) {
        return std::nullopt;
    }
    float number = 0.0F;
    try {
        std::size_t used = 0;
        number = std::stof(item.value, &used);
        if (used != item.value.size()) {
            return std::nullopt;
        }
    } catch (const std::exception&) {
        return std::nullopt;
    }
    float converted = 0.0F;
    bool success = false;
    m_units->ConvertValue(number, item.unit, unit, converted, success);
    if (!success) {
        return std::nullopt;
    }
    return NumberText(converted);
}

void SimulatedControl::answerWrite(const CommunicationRequest& request) {
    // The device takes all values of a write or none of them.
    std::vector<std::pair<std::string, std::string>> accepted;
    std::vector<MessageItem> refused;
    std::string errorCode;
    for (const MessageItem& item : request.items) {
        const ParameterInfo* parameter = m_device->parameter(item.name);
        if (parameter == nullptr) {
            continue;  // the group placeholder
        }
        const std::optional<std::string> value = deviceValueOf(item, *parameter);
        const std::string refusal =
            value ? DeviceState::checkWrite(*parameter, *value) : std::string("invalidValue");
        if (refusal.empty()) {
            accepted.emplace_back(item.name, *value);
        } else {
            refused.push_back({item.name, item.unit, item.type, item.value});
            if (errorCode.empty()) {
                errorCode = refusal;
            }
        }
    }
    if (!refused.empty()) {
        sendOnBus(ErrorReply(request, errorCode, std::move(refused)));
        return;
    }
    CommunicationReply reply{request.name, request.access, "ok", true, "", {}};
    for (const auto& [name, value] : accepted) {
        takeValue(name, value);
        m_device->storeInDataSet(name, value, "1");
        reply.items.push_back(m_device->item(name));
    }
    m_dynamics->advanceTo(m_clock->now());
    if (DiagnosticsReset::Apply(*m_device, request.name, sessionHours())) {
        // The reset notes itself in the device's log.
    } else if (m_dynamics->calibrate(request.name, *m_device)) {
        EventLog::Record(*m_device, "eventCalibration", sessionHours());
    } else if (!accepted.empty()) {
        EventLog::Record(*m_device, "eventConfigurationChanged", sessionHours());
    }
    // One reply for every eight values sent, at least one, on the bus.
    sendOnBus(reply, std::max<int>(1, static_cast<int>((accepted.size() + 7) / 8)));
}

void SimulatedControl::answerOffline(const CommunicationRequest& request) {
    CommunicationReply reply{request.name, request.access, "local", true, "", {}};
    std::vector<MessageItem> missing;
    for (const MessageItem& item : request.items) {
        const ParameterInfo* parameter = device().parameter(item.name);
        if (parameter != nullptr) {
            m_device->storeInDataSet(item.name, item.value, "0");
            reply.items.push_back(item);
        } else if (item.name != request.name) {
            missing.push_back({item.name, item.unit, "", ""});
        }
    }
    if (!missing.empty()) {
        reply = ErrorReply(request, "missingItems", std::move(missing));
    }
    sendNow(BuildReply(reply), Replies);
}

void SimulatedControl::answerStatusRead() {
    // Every status item and the tree, as the device holds them when the reply goes out.
    m_busUntil = std::max(m_busUntil, m_clock->now()) + m_timing.replyPiece;
    m_clock->schedule(
        m_busUntil - m_clock->now(), [this] { deliver(statusReply(m_device->statuses(), true)); },
        this, Replies);
}

std::string SimulatedControl::statusReply(const std::vector<StatusEntry>& entries,
                                          bool withTree) const {
    CommunicationReply reply{"deviceStatus", "read", "ok", true, "", {}};
    for (const StatusEntry& entry : entries) {
        reply.items.push_back({entry.name, "noUnit", "integerVal", entry.value});
    }
    return BuildReply(reply, withTree ? entries : std::vector<StatusEntry>{});
}

void SimulatedControl::sendOnBus(const CommunicationReply& reply, int pieces) {
    m_busUntil = std::max(m_busUntil, m_clock->now()) + m_timing.replyPiece * pieces;
    m_clock->schedule(
        m_busUntil - m_clock->now(), [this, text = BuildReply(reply)] { deliver(text); }, this,
        Replies);
}

void SimulatedControl::sendNow(std::string text, int channel) {
    m_clock->schedule(
        0, [this, text = std::move(text)] { deliver(text); }, this, channel);
}

void SimulatedControl::deliver(const std::string& text) {
    if (m_sink != nullptr) {
        m_sink->IQDLGuiEvent_CommunicationEvent(text);
    }
}

}  // namespace kt500::simulator
