// The event sink that the recording connection hands to the BL in place of
// the control's: every event goes on to the control unchanged, and each
// reply (IQDLGuiEvent_CommunicationEvent) is reported, when a watcher is
// set, with the reply text and the processor time of the calling thread
// that the control spent on it. The benchmarks measure the control's own
// share of a run this way, apart from the BL's.
#pragma once

#include "services/IQDLGuiEvent.h"

#include <chrono>
#include <functional>
#include <string>

namespace kt500::app {

using ReplyWatcher = std::function<void(const std::string& reply, std::chrono::nanoseconds spent)>;

class ReplyTap final : public services::IQDLGuiEvent {
public:
    // The control's sink; events before it is set throw std::logic_error.
    void setTarget(services::IQDLGuiEvent* target) noexcept { m_target = target; }
    // None: replies pass without being timed.
    void setWatcher(ReplyWatcher watcher) { m_watcher = std::move(watcher); }

    bool IQDLGuiEvent_UpdateSessionData(const std::string& strSessionData) override;
    bool IQDLGuiEvent_CommunicationEvent(const std::string& strReply) override;
    void IQDLGuiEvent_ReadyForAutoAction(bool blReady) override;
    void IQDLGuiEvent_AutoActionComplete(bool blSuccess) override;
    void IQDLGuiEvent_AutoActionStopped(bool blStopped) override;
    void IQDLGuiEvent_OnLockDataSet(const std::string& strFirst,
                                    const std::string& strSecond) override;
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string& strFirst,
                                      const std::string& strSecond) override;
    void IQDLGuiEvent_OnParameterChanged(const std::string& strFirst,
                                         const std::string& strSecond) override;

private:
    services::IQDLGuiEvent& target() const;

    services::IQDLGuiEvent* m_target = nullptr;
    ReplyWatcher m_watcher;
};

// The processor time the calling thread has used so far.
[[nodiscard]] std::chrono::nanoseconds ThreadCpuTime();

}  // namespace kt500::app
