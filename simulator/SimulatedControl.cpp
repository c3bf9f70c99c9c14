#include "simulator/SimulatedControl.h"

#include <stdexcept>

namespace kt500::simulator {

namespace {

constexpr const char* kDataNamespace = "x-schema:QDLDatafileSchema.xml";
constexpr const char* kTypeInfoNamespace = "x-schema:QDLDeviceTypeInfoSchema.xml";

}  // namespace

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
    // The device's full parameter document when one is installed for its key.
    const std::filesystem::path file = m_shareDir / "devices" / (m_model.key + ".xml");
    if (std::filesystem::exists(file)) {
        xml::LoadResult loaded = xml::Document::load(file);
        if (!loaded.ok()) {
            throw std::runtime_error("parameter document " + file.string() + ": " +
                                     loaded.message());
        }
        return std::move(*loaded.document);
    }
    // Otherwise the type's published identity with no parameters yet.
    xml::Document document = xml::Document::create("dtm", kDataNamespace);
    xml::Node root = document.root();
    xml::Node published =
        root.appendElement("device", kTypeInfoNamespace).appendElement("publishedInfo");
    published.setAttribute("deviceTypeId", m_model.deviceTypeId);
    published.setAttribute("name", m_model.name);
    published.setAttribute("version", m_model.revision);
    root.appendElement("persistentData").appendElement("parameters");
    root.appendElement("requestGroups");
    return document;
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
