#include "app/window/DesktopSession.h"

#include "app/window/FrameTexts.h"
#include "app/window/ParameterHint.h"

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
    const FrameTexts texts(options.language);
    m_view = std::make_unique<FormView>(m_session.control().form(), m_icons, m_gate, scale, parent,
                                        texts.text(FrameText::LastRead));
    const session::clsTools& tools = *m_session.control().m_objTools;
    m_view->setDeviceModel(QString::fromStdString(tools.DeviceTypeId),
                           QString::fromStdString(tools.DeviceName));
    m_view->setHintSource([this, texts](
                              const form::Control& control) { return hintOf(control, texts); });
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

QString DesktopSession::hintOf(const form::Control& control, const FrameTexts& texts) const {
    if (control.tag().empty() || !m_session.running()) {
        return {};
    }
    try {
        host::RavikKT500& logic = m_session.control();
        const xml::Node node = logic.ParameterNodeByName(control.tag());
        if (!node) {
            return {};
        }
        ParameterFacts facts;
        facts.type = node.attribute("type");
        facts.minVal = node.attribute("minVal");
        facts.maxVal = node.attribute("maxVal");
        facts.unit = node.attribute("unit");
        facts.decimals = node.attribute("decimals");
        facts.pageUnit = logic.FetchUnitName(control.tag());
        return ParameterHint(facts, texts);
    } catch (const std::exception&) {
        return {};  // a parameter the document cannot describe has no hint
    }
}

void DesktopSession::settle() {
    m_gate.run([this] { m_session.settle(); });
}

}  // namespace kt500::window
