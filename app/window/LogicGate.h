// The one way from the window into the logic. The logic runs on one thread
// and is not re-entrant: a call that arrives while another runs (a focus
// change caused by the logic hiding a page, a widget signal during a modal
// message box's own event loop) waits until the running call has returned,
// then runs in arrival order. The real-time pump does not wait: it skips a
// beat while the logic is busy.
#pragma once

#include <deque>
#include <functional>

namespace kt500::window {

class LogicGate {
public:
    // Runs call now when the logic is idle, after the running call otherwise.
    // A failure that escapes the logic's own handlers is reported on the
    // standard error output, and the window goes on.
    void run(std::function<void()> call);
    // Runs call only when the logic is idle; returns whether it ran.
    bool tryRun(const std::function<void()>& call);
    [[nodiscard]] bool busy() const noexcept { return m_depth > 0; }
    // After the control's release nothing reaches the logic any more: the
    // focus changes of widgets being destroyed are dropped.
    void close() noexcept { m_closed = true; }

private:
    void invoke(const std::function<void()>& call);

    int m_depth = 0;
    bool m_closed = false;
    std::deque<std::function<void()>> m_waiting;
};

}  // namespace kt500::window
