#include "app/window/DesktopSession.h"

#include <stdexcept>

namespace kt500::window {

DesktopSession::DesktopSession(std::filesystem::path shareDir, app::SessionEnvironment environment)
    : m_session(shareDir, std::move(environment)), m_icons(shareDir / "icons") {
    m_pump.setInterval(kPumpInterval);
    QObject::connect(&m_pump, &QTimer::timeout, this, [this] { beat(); });
}

DesktopSession::~DesktopSession() {
    m_pump.stop();
    // The control lets go while its view still mirrors it; then the view
    // goes before the form it observes.
    if (m_session.running()) {
        m_gate.run([this] { m_session.release(); });
    }
    m_gate.close();
    m_view.reset();
}

bool DesktopSession::start(const simulator::SessionOptions& options, QWidget* parent,
                           TwipScale scale) {
    bool started = false;
    m_view.reset();
    m_gate.run([&] { started = m_session.start(options); });
    m_view = std::make_unique<FormView>(m_session.control().form(), m_icons, m_gate, scale, parent);
    m_clock.start();
    return started;
}

FormView& DesktopSession::view() const {
    if (!m_view) {
        throw std::logic_error("no session view: start a session first");
    }
    return *m_view;
}

void DesktopSession::setRealTime(bool realTime) {
    m_realTime = realTime;
    if (realTime) {
        m_clock.restart();
        m_pump.start();
    } else {
        m_pump.stop();
    }
}

void DesktopSession::beat() {
    if (!m_session.running()) {
        return;
    }
    m_owed += m_clock.restart();
    // Busy: the time is owed to the next beat.
    if (m_gate.tryRun([this] { m_session.wait(m_owed); })) {
        m_owed = 0;
    }
}

void DesktopSession::settle() {
    m_gate.run([this] { m_session.settle(); });
}

}  // namespace kt500::window
