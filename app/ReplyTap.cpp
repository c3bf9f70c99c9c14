#include "app/ReplyTap.h"

#include <ctime>
#include <stdexcept>

namespace kt500::app {

std::chrono::nanoseconds ThreadCpuTime() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

services::IQDLGuiEvent& ReplyTap::target() const {
    if (m_target == nullptr) {
        throw std::logic_error("ReplyTap: an event came before the connection was opened");
    }
    return *m_target;
}

bool ReplyTap::IQDLGuiEvent_UpdateSessionData(const std::string& strSessionData) {
    return target().IQDLGuiEvent_UpdateSessionData(strSessionData);
}

bool ReplyTap::IQDLGuiEvent_CommunicationEvent(const std::string& strReply) {
    services::IQDLGuiEvent& control = target();
    if (!m_watcher) {
        return control.IQDLGuiEvent_CommunicationEvent(strReply);
    }
    const std::chrono::nanoseconds before = ThreadCpuTime();
    const bool result = control.IQDLGuiEvent_CommunicationEvent(strReply);
    m_watcher(strReply, ThreadCpuTime() - before);
    return result;
}

void ReplyTap::IQDLGuiEvent_ReadyForAutoAction(bool blReady) {
    target().IQDLGuiEvent_ReadyForAutoAction(blReady);
}

void ReplyTap::IQDLGuiEvent_AutoActionComplete(bool blSuccess) {
    target().IQDLGuiEvent_AutoActionComplete(blSuccess);
}

void ReplyTap::IQDLGuiEvent_AutoActionStopped(bool blStopped) {
    target().IQDLGuiEvent_AutoActionStopped(blStopped);
}

void ReplyTap::IQDLGuiEvent_OnLockDataSet(const std::string& strFirst,
                                          const std::string& strSecond) {
    target().IQDLGuiEvent_OnLockDataSet(strFirst, strSecond);
}

bool ReplyTap::IQDLGuiEvent_OnUnlockDataSet(const std::string& strFirst,
                                            const std::string& strSecond) {
    return target().IQDLGuiEvent_OnUnlockDataSet(strFirst, strSecond);
}

void ReplyTap::IQDLGuiEvent_OnParameterChanged(const std::string& strFirst,
                                               const std::string& strSecond) {
    target().IQDLGuiEvent_OnParameterChanged(strFirst, strSecond);
}

}  // namespace kt500::app
