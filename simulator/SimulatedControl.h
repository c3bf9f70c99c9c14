// m_pControl of the built-in BL: the connection to a simulated device of the
// family. It hands over the session data, the device's parameter document
// and the language service at OpenConnection, and takes the connection back
// at CloseConnection.
//
// The request traffic (PostRequest and the operations after it in the
// interface) comes with the simulated device; until then those calls fail
// at interface level, naming the operation.
#pragma once

#include "services/IDtmControl.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/SessionOptions.h"
#include "xml/Document.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace kt500::simulator {

class SimulatedControl final : public services::IDtmControl {
public:
    // Throws std::invalid_argument for a device key the catalogue lacks.
    SimulatedControl(SessionOptions options, std::filesystem::path shareDir,
                     std::shared_ptr<services::IDtmLanguage> language);

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

    static constexpr std::int32_t kConnectionId = 1;

private:
    void requireConnection(const char* operation, std::int32_t lngConnectionId) const;
    [[noreturn]] static void notAvailable(const char* operation);
    xml::Document loadParameterDocument() const;

    SessionOptions m_options;
    DeviceModel m_model;
    std::filesystem::path m_shareDir;
    std::shared_ptr<services::IDtmLanguage> m_language;
    std::optional<xml::Document> m_parameters;
    services::IQDLGuiEvent* m_sink = nullptr;
    std::int32_t m_guiLanguage = 0;
};

}  // namespace kt500::simulator
