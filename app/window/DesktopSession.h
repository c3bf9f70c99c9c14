// A session of the control in the window: the control session against the
// built-in BL, the form view over its form, and the pump that delivers the
// BL's events and the form's timer ticks on the UI thread in real time.
// The pump moves the BL's clock by the time that really passed; while the
// logic is busy (a message box of a handler is open) it waits and catches
// up afterwards, so no event ever arrives inside a running handler.
#pragma once

#include "app/ControlSession.h"
#include "app/window/FormView.h"
#include "app/window/FrameTexts.h"
#include "app/window/IconStore.h"
#include "app/window/LogicGate.h"

#include <QElapsedTimer>
#include <QTimer>

#include <filesystem>
#include <memory>

namespace kt500::window {

class DesktopSession final : public QObject {
public:
    // The pump's beat in milliseconds.
    static constexpr int kPumpInterval = 20;

    DesktopSession(std::filesystem::path shareDir, app::SessionEnvironment environment);
    ~DesktopSession() override;
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    // Starts the control for the options and builds its view inside
    // parent; returns what the control's start-up returned. Throws
    // std::invalid_argument for a device key the BL does not simulate.
    bool start(const simulator::SessionOptions& options, QWidget* parent, TwipScale scale);
    // Runs the pump in real time (the window), or leaves time to settle()
    // (screenshots, tests).
    void setRealTime(bool realTime);
    // Delivers every pending BL event at once, through the gate.
    void settle();

    [[nodiscard]] app::ControlSession& session() noexcept { return m_session; }
    [[nodiscard]] FormView& view() const;
    [[nodiscard]] LogicGate& gate() noexcept { return m_gate; }

private:
    void beat();
    // The tool tip hint of a field from the parameter document.
    [[nodiscard]] QString hintOf(const form::Control& control, const FrameTexts& texts) const;

    app::ControlSession m_session;
    IconStore m_icons;
    LogicGate m_gate;
    std::unique_ptr<FormView> m_view;
    QTimer m_pump;
    QElapsedTimer m_clock;
    qint64 m_owed = 0;
    bool m_realTime = false;
};

}  // namespace kt500::window
