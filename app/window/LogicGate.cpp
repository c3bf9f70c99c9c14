#include "app/window/LogicGate.h"

#include <QtGlobal>

#include <exception>

namespace kt500::window {

void LogicGate::invoke(const std::function<void()>& call) {
    ++m_depth;
    try {
        call();
    } catch (const std::exception& failure) {
        qWarning("kt500-dtm: %s", failure.what());
    } catch (...) {
        qWarning("kt500-dtm: an unknown failure in an event of the window");
    }
    --m_depth;
}

void LogicGate::run(std::function<void()> call) {
    if (m_closed) {
        return;
    }
    if (busy()) {
        m_waiting.push_back(std::move(call));
        return;
    }
    invoke(call);
    while (!m_waiting.empty()) {
        const std::function<void()> next = std::move(m_waiting.front());
        m_waiting.pop_front();
        invoke(next);
    }
}

bool LogicGate::tryRun(const std::function<void()>& call) {
    if (busy() || m_closed) {
        return false;
    }
    run(call);
    return true;
}

}  // namespace kt500::window
