#include "unit/simulator/SimulatedSession.h"

#include "support/TestUserControl.h"

#include "xml/XPath.h"

#include <iterator>
#include <sstream>

namespace kt500::simulator::testing {

namespace {

constexpr std::int32_t kId = SimulatedControl::kConnectionId;

std::string Parameter(const std::string& name) {
    return "data:persistentData/data:parameters/data:parameter[@name='" + name + "']";
}

}  // namespace

xml::SchemaCollection DeviceSchemas(bool withSessionData) {
    const std::filesystem::path dir = std::filesystem::path(KT500_SHARE_DIR) / "schemas";
    xml::SchemaCollection collection;
    for (const char* name :
         {"QDLDeviceTypeInfoSchema", "QDLDatafileSchema", "QDLSessionDataSchema"}) {
        if (withSessionData || std::string(name) != "QDLSessionDataSchema") {
            EXPECT_EQ(collection.add(std::string("x-schema:") + name + ".xml",
                                     dir / (std::string(name) + ".xml")),
                      "");
        }
    }
    return collection;
}

const xml::Namespaces& DeviceNamespaces() {
    static const xml::Namespaces namespaces = xml::Namespaces::fromSelection(
        "xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'");
    return namespaces;
}

const ParameterDocumentBuilder& Builder() {
    static const ParameterDocumentBuilder builder(std::filesystem::path(KT500_SHARE_DIR) /
                                                  "devices");
    return builder;
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

std::string Request(const std::string& name, const std::string& access) {
    return "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest name='" + name +
           "' access='" + access + "'/></dtm>";
}

bool RecordingSink::IQDLGuiEvent_CommunicationEvent(const std::string& text) {
    SinkEvent event;
    event.kind = "reply";
    event.text = text;
    const xml::LoadResult loaded = xml::Document::parse(text, {.schemas = &m_schema});
    event.valid = loaded.ok();
    if (loaded.ok()) {
        const xml::Node response =
            loaded.document->root().firstChildElement("communicationResponse");
        event.reply.name = response.attribute("name");
        event.reply.access = response.attribute("access");
        event.reply.responseStatus = response.attribute("responseStatus");
        event.reply.isFinal = response.attribute("isFinal") == "1";
        event.reply.errorCode = response.attribute("errorCode");
        for (const xml::Node& item : response.childElements("item")) {
            const xml::Node value = item.firstChildElement();
            event.reply.items.push_back(
                {item.attribute("name"), item.attribute("unit"), value.name(), value.text()});
        }
    }
    record(std::move(event));
    return true;
}

std::vector<SinkEvent> RecordingSink::replies(const std::string& name) const {
    std::vector<SinkEvent> found;
    for (const SinkEvent& event : events) {
        if (event.kind == "reply" && event.reply.name == name) {
            found.push_back(event);
        }
    }
    return found;
}

CommunicationReply RecordingSink::single(const std::string& name) const {
    const std::vector<SinkEvent> found = replies(name);
    EXPECT_EQ(found.size(), 1U) << name;
    if (found.empty()) {
        return {};
    }
    EXPECT_TRUE(found[0].valid) << found[0].text;
    EXPECT_TRUE(found[0].reply.isFinal) << name;
    return found[0].reply;
}

std::string RecordingSink::actionEvents() const {
    std::string text;
    for (const SinkEvent& event : events) {
        if (event.kind == "ready" || event.kind == "complete" || event.kind == "stopped") {
            text += (text.empty() ? "" : " ") + event.kind + (event.flag ? " 1" : " 0");
        }
    }
    return text;
}

SimulatedSession::SimulatedSession(const SessionOptions& options)
    : m_schema(LoadCommunicationSchema(KT500_SHARE_DIR)),
      m_bl(options, KT500_SHARE_DIR),
      sink(m_schema, m_bl.clock()) {
    std::int32_t id = 0;
    bool success = false;
    m_bl.control()->OpenConnection(sink, "", id, sessionData, m_parameters, language, locked,
                                   success);
    EXPECT_TRUE(success) << options.deviceKey;
    EXPECT_EQ(id, kId);
}

SimulatedSession::SimulatedSession(const std::string& deviceKey, bool online)
    : SimulatedSession(kt500::testing::SessionOf(deviceKey, online)) {}

bool SimulatedSession::post(const std::string& request) {
    bool accepted = false;
    control().PostRequest(kId, request, accepted);
    return accepted;
}

bool SimulatedSession::requestAction() {
    bool accepted = false;
    control().RequestAutoAction(kId, accepted);
    return accepted;
}

bool SimulatedSession::sendAction(const std::string& request) {
    bool accepted = false;
    control().SendAutoAction(kId, request, 10000, accepted);
    return accepted;
}

bool SimulatedSession::stopAction() {
    bool stopping = false;
    control().StopAutoAction(kId, stopping);
    return stopping;
}

bool SimulatedSession::startMonitoring() {
    bool success = false;
    control().StartMonitoringRequests(kId, 0, success);
    return success;
}

xml::XPath SimulatedSession::query() const {
    return {*m_bl.simulatedControl().parameterDocument(), DeviceNamespaces()};
}

std::string SimulatedSession::readRequest(const std::string& group) const {
    const xml::XPath data = query();
    std::string text =
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest name='" + group +
        "' access='read'>";
    for (const xml::Node& included : data.select("data:requestGroups/data:requestGroup[@name='" +
                                                 group + "']/data:includedParam")) {
        const xml::Node parameter = data.selectSingle(Parameter(included.attribute("name")));
        if (parameter.attribute("access") != "write") {
            text += "<item name='" + parameter.attribute("name") + "' unit='" +
                    parameter.attribute("unit") + "'><" + parameter.attribute("type") + "/></item>";
        }
    }
    return text + "</communicationRequest></dtm>";
}

std::string SimulatedSession::writeRequest(
    const std::string& group, const std::vector<std::pair<std::string, std::string>>& values,
    const std::string& access) const {
    xml::Document document = xml::Document::create("dtm", kCommunicationNamespace);
    xml::Node request = document.root().appendElement("communicationRequest");
    request.setAttribute("name", group);
    request.setAttribute("access", access);
    for (const auto& [name, value] : values) {
        xml::Node item = request.appendElement("item");
        item.setAttribute("name", name);
        const std::string unit = dataSet(name, "unit");
        item.setAttribute("unit", unit.empty() ? "noUnit" : unit);
        const std::string type = dataSet(name, "type");
        item.appendElement(type.empty() ? "stringVal" : type).setText(value);
    }
    return document.toXml();
}

std::string SimulatedSession::dataSet(const std::string& parameter,
                                      const std::string& attribute) const {
    return query().selectSingle(Parameter(parameter)).attribute(attribute);
}

}  // namespace kt500::simulator::testing
