// What a test or a script forces on the simulated device: the `bl` commands.
#include "services/IQDLGuiEvent.h"
#include "simulator/SimulatedControl.h"

#include "simulator/EventLog.h"

#include <stdexcept>

namespace kt500::simulator {

namespace {

bool Flag(const std::vector<std::string>& words) {
    if (words.size() != 2 || (words[1] != "0" && words[1] != "1")) {
        throw std::invalid_argument("bl " + words[0] + ": expects 0 or 1");
    }
    return words[1] == "1";
}

}  // namespace

void SimulatedControl::failNext(const std::string& group, const std::string& errorCode) {
    m_failures[group] = errorCode.empty() ? "communicationFailed" : errorCode;
}

void SimulatedControl::refuseNext() {
    m_refuseNext = true;
}

void SimulatedControl::setDeviceValue(const std::string& parameter, const std::string& value) {
    // The valve's own make-up, which no parameter of the device shows.
    if (m_device && m_device->parameter(parameter) == nullptr && m_dynamics) {
        m_dynamics->advanceTo(m_clock->now());
        if (m_dynamics->setValveParameter(parameter, value)) {
            return;
        }
    }
    takeValue(parameter, value);
}

std::optional<std::string> SimulatedControl::deviceValue(const std::string& parameter) const {
    if (!m_device) {
        return std::nullopt;
    }
    if (std::optional<std::string> value = m_device->value(parameter)) {
        return value;
    }
    // What the device learnt of itself and shows in no parameter.
    return m_dynamics ? m_dynamics->internalValue(parameter) : std::nullopt;
}

void SimulatedControl::pushStatus(const std::string& item, const std::string& value) {
    DeviceState& state = device();
    state.setStatus(item, value);
    // A status that comes on is an event of the device's log: the event of
    // its own where the log has one, else an alarm.
    if (value != "0" && !value.empty()) {
        static constexpr std::pair<std::string_view, std::string_view> kEvents[] = {
            {"statusTravelDeviation", "eventTravelDeviation"},
            {"statusSupplyPressureLow", "eventSupplyPressureLow"},
            {"statusLoopCurrentLow", "eventLoopCurrentLow"},
            {"statusSimulationActive", "eventSimulationActive"},
            {"statusFailSafeActive", "eventFailSafeActive"},
            {"statusTripActive", "eventTrip"},
        };
        std::string event = "eventAlarm";
        for (const auto& [status, logged] : kEvents) {
            if (status == item) {
                event = logged;
            }
        }
        EventLog::Record(state, event, sessionHours());
    }
    sendNow(statusReply({{"", item, "", value}}, false), Events);
}

void SimulatedControl::deliverReply(const std::string& text) {
    sendNow(text, Events);
}

void SimulatedControl::lockDataSet() {
    m_clock->schedule(
        0,
        [this] {
            if (m_sink != nullptr) {
                m_sink->IQDLGuiEvent_OnLockDataSet("", "");
            }
        },
        this, Events);
}

void SimulatedControl::unlockDataSet() {
    m_clock->schedule(
        0,
        [this] {
            if (m_sink != nullptr) {
                m_sink->IQDLGuiEvent_OnUnlockDataSet("", "");
            }
        },
        this, Events);
}

void SimulatedControl::inject(const std::vector<std::string>& words) {
    if (words.empty()) {
        throw std::invalid_argument("bl: a command is missing");
    }
    const std::string& command = words[0];
    const auto expect = [&](std::size_t low, std::size_t high) {
        if (words.size() < low || words.size() > high) {
            throw std::invalid_argument("bl " + command + ": wrong number of words");
        }
    };
    if (command == "fail") {
        expect(2, 3);
        failNext(words[1], words.size() == 3 ? words[2] : "communicationFailed");
    } else if (command == "refuse") {
        expect(1, 1);
        refuseNext();
    } else if (command == "set") {
        expect(3, 3);
        setDeviceValue(words[1], words[2]);
    } else if (command == "status") {
        expect(3, 3);
        pushStatus(words[1], words[2]);
    } else if (command == "reply") {
        expect(2, 2);
        deliverReply(words[1]);
    } else if (command == "ready") {
        setNextReady(Flag(words));
    } else if (command == "complete") {
        setNextComplete(Flag(words));
    } else if (command == "stopped") {
        setNextStopped(Flag(words));
    } else if (command == "calmode") {
        setNextCalibrationMode(Flag(words));
    } else if (command == "request") {
        setNextRequestAccepted(Flag(words));
    } else if (command == "lock") {
        expect(1, 1);
        lockDataSet();
    } else if (command == "unlock") {
        expect(1, 1);
        unlockDataSet();
    } else {
        throw std::invalid_argument("bl: unknown command '" + command + "'");
    }
}

}  // namespace kt500::simulator
