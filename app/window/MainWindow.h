// The main window of kt500-dtm: the control of one session at its fixed
// extents, and the session menu (a new session through the launcher, quit).
#pragma once

#include "app/window/DesktopSession.h"
#include "app/window/QtDialogs.h"

#include <QMainWindow>

#include <filesystem>
#include <memory>

namespace kt500::window {

class MainWindow final : public QMainWindow {
public:
    // installationPrefix: whose settings the control reads (prefix/etc).
    MainWindow(std::filesystem::path shareDir, QString installationPrefix);
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Ends the running session and starts one for the options, in real
    // time; returns what the control's start-up returned.
    bool startSession(const simulator::SessionOptions& options);
    [[nodiscard]] DesktopSession* session() const noexcept { return m_session.get(); }

private:
    void chooseSession();

    std::filesystem::path m_shareDir;
    QString m_installationPrefix;
    std::shared_ptr<QtDialogs> m_dialogs;
    simulator::SessionOptions m_options;
    QWidget* m_host;  // holds the view of the session
    std::unique_ptr<DesktopSession> m_session;
};

}  // namespace kt500::window
