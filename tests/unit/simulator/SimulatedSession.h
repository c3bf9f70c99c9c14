// A session on the built-in BL with a sink that records every event it
// delivers, and the small helpers the simulator's tests share.
#pragma once

#include "services/IQDLGuiEvent.h"
#include "simulator/BuiltInBL.h"
#include "simulator/CommunicationMessages.h"
#include "simulator/DeviceFamilySource.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kt500::simulator::testing {

// The parameter document schemas, and with session data the session data schema.
[[nodiscard]] xml::SchemaCollection DeviceSchemas(bool withSessionData = false);
// The prefixes "data" and "typeInfo" of the parameter documents.
[[nodiscard]] const xml::Namespaces& DeviceNamespaces();
// The family sources under share/devices.
[[nodiscard]] const ParameterDocumentBuilder& Builder();

// The words of a text, split at white space.
[[nodiscard]] std::vector<std::string> Words(const std::string& text);

// A bodiless request, e.g. of a device action.
[[nodiscard]] std::string Request(const std::string& name, const std::string& access = "write");

// The message of the E that a call throws, or "no error".
template <class E, class Call>
[[nodiscard]] std::string ErrorOf(Call&& call) {
    try {
        call();
    } catch (const E& error) {
        return error.what();
    }
    return "no error";
}

// One event as the sink saw it; a communication event keeps its text and,
// when it validates against the communication schema, its reply read back.
struct SinkEvent {
    std::string kind;  // "reply", "ready", "complete", "stopped", "lock", "unlock", "session"
    bool flag = false;
    std::string text;
    bool valid = false;
    CommunicationReply reply;
    VirtualClock::Milliseconds time = 0;
};

class RecordingSink final : public services::IQDLGuiEvent {
public:
    RecordingSink(const xml::SchemaCollection& schema, const VirtualClock& clock)
        : m_schema(schema), m_clock(clock) {}

    bool IQDLGuiEvent_UpdateSessionData(const std::string& text) override {
        return record("session", false, text), true;
    }
    bool IQDLGuiEvent_CommunicationEvent(const std::string& text) override;
    void IQDLGuiEvent_ReadyForAutoAction(bool ready) override { record("ready", ready); }
    void IQDLGuiEvent_AutoActionComplete(bool success) override { record("complete", success); }
    void IQDLGuiEvent_AutoActionStopped(bool stopped) override { record("stopped", stopped); }
    void IQDLGuiEvent_OnLockDataSet(const std::string&, const std::string&) override {
        record("lock");
    }
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string&, const std::string&) override {
        return record("unlock"), true;
    }
    void IQDLGuiEvent_OnParameterChanged(const std::string&, const std::string&) override {
        record("changed");
    }

    std::vector<SinkEvent> events;
    // The replies of one request name, in arrival order.
    [[nodiscard]] std::vector<SinkEvent> replies(const std::string& name) const;
    // The one reply of a request name, expected valid and final.
    [[nodiscard]] CommunicationReply single(const std::string& name) const;
    // "ready 1 complete 1" for the action events, in order.
    [[nodiscard]] std::string actionEvents() const;

private:
    void record(SinkEvent event) {
        event.time = m_clock.now();
        events.push_back(std::move(event));
    }
    void record(std::string kind, bool flag = false, std::string text = {}) {
        SinkEvent event;
        event.kind = std::move(kind);
        event.flag = flag;
        event.text = std::move(text);
        record(std::move(event));
    }

    const xml::SchemaCollection& m_schema;
    const VirtualClock& m_clock;
};

class SimulatedSession {
    // Declared first: the sink refers to both.
    xml::SchemaCollection m_schema;
    mutable BuiltInBL m_bl;
    xml::Node m_parameters;

public:
    explicit SimulatedSession(const SessionOptions& options);
    explicit SimulatedSession(const std::string& deviceKey = "KT520_7", bool online = true);

    BuiltInBL& bl() { return m_bl; }
    SimulatedControl& control() { return m_bl.simulatedControl(); }
    VirtualClock& clock() { return m_bl.clock(); }
    [[nodiscard]] const xml::Node& parameters() const { return m_parameters; }

    // PostRequest; returns accepted.
    bool post(const std::string& request);
    // The auto action calls; each returns accepted (or stopping).
    bool requestAction();
    bool sendAction(const std::string& request);
    bool stopAction();
    bool startMonitoring();
    // A query on the data set (the live parameter document).
    [[nodiscard]] xml::XPath query() const;
    // A read request of a group as the control builds it.
    [[nodiscard]] std::string readRequest(const std::string& group) const;
    // A write or writeOffline request of name/value pairs, typed by the document.
    [[nodiscard]] std::string writeRequest(
        const std::string& group, const std::vector<std::pair<std::string, std::string>>& values,
        const std::string& access = "write") const;
    // An attribute of a parameter in the data set.
    [[nodiscard]] std::string dataSet(const std::string& parameter,
                                      const std::string& attribute) const;

    RecordingSink sink;
    // What OpenConnection gave besides the parameters.
    std::string sessionData;
    std::shared_ptr<services::IDtmLanguage> language;
    bool locked = false;
};

}  // namespace kt500::simulator::testing
