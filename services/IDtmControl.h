// m_pControl: the connection to the BL. Every request goes through it; the
// replies come back through IQDLGuiEvent. A failure at interface level is an
// exception, which is a run-time failure of the calling handler.
#pragma once

#include "xml/Node.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kt500::services {

class IQDLGuiEvent;
class IDtmLanguage;

class IDtmControl {
public:
    virtual ~IDtmControl() = default;

    // Opens the connection; events may arrive from then on. The parameter
    // node stays owned by the BL and lives until CloseConnection.
    virtual void OpenConnection(IQDLGuiEvent& sink, const std::string& connectionParameter,
                                std::int32_t& lngConnectionId, std::string& strSessionData,
                                xml::Node& parameterNode, std::shared_ptr<IDtmLanguage>& language,
                                bool& blDataSetLocked, bool& blSuccess) = 0;
    virtual void CloseConnection(std::int32_t lngConnectionId, bool& blSuccess) = 0;
    // Returns at once; the replies come as communication events.
    virtual void PostRequest(std::int32_t lngConnectionId, const std::string& strRequest,
                             bool& blAccepted) = 0;
    virtual void CancelRequests(std::int32_t lngConnectionId, bool& blSuccess) = 0;
    virtual void StartMonitoringRequests(std::int32_t lngConnectionId, std::int32_t lngReserved,
                                         bool& blSuccess) = 0;
    virtual void StopMonitoringRequests(std::int32_t lngConnectionId) = 0;
    // Asks the BL to make the device ready; IQDLGuiEvent_ReadyForAutoAction follows.
    virtual void RequestAutoAction(std::int32_t lngConnectionId, bool& blAccepted) = 0;
    // The one request that starts a device action, with its time-out.
    virtual void SendAutoAction(std::int32_t lngConnectionId, const std::string& strRequest,
                                std::int32_t lngTimeoutMs, bool& blAccepted) = 0;
    // Stops the running action; IQDLGuiEvent_AutoActionStopped follows.
    virtual void StopAutoAction(std::int32_t lngConnectionId, bool& blStopping) = 0;
    virtual void SetGuiLanguage(std::int32_t lngLanguageId) = 0;
    virtual void SetCalibrationMode(bool blOn, bool& blSuccess) = 0;
};

}  // namespace kt500::services
