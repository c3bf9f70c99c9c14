// The event sink that the control implements and hands to OpenConnection.
// The BL calls it on the user interface thread only, one event at a time.
#pragma once

#include <string>

namespace kt500::services {

class IQDLGuiEvent {
public:
    virtual ~IQDLGuiEvent() = default;

    // New session data (who, which device, mode, language). Returns True.
    virtual bool IQDLGuiEvent_UpdateSessionData(const std::string& strSessionData) = 0;
    // One reply of a request, or a status push. Returns True.
    virtual bool IQDLGuiEvent_CommunicationEvent(const std::string& strReply) = 0;
    // The device is (or is not) ready for the requested device action.
    virtual void IQDLGuiEvent_ReadyForAutoAction(bool blReady) = 0;
    // The device action ended by itself, well or not.
    virtual void IQDLGuiEvent_AutoActionComplete(bool blSuccess) = 0;
    // Answer to StopAutoAction.
    virtual void IQDLGuiEvent_AutoActionStopped(bool blStopped) = 0;
    // Another session took or gave back the data set; the texts are not read.
    virtual void IQDLGuiEvent_OnLockDataSet(const std::string& strFirst,
                                            const std::string& strSecond) = 0;
    virtual bool IQDLGuiEvent_OnUnlockDataSet(const std::string& strFirst,
                                              const std::string& strSecond) = 0;
    virtual void IQDLGuiEvent_OnParameterChanged(const std::string& strFirst,
                                                 const std::string& strSecond) = 0;
};

}  // namespace kt500::services
