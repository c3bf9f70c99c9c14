// The main window of kt500-dtm: the control of one session, the menus of
// its commands, the header with the device and its tag, and the status bar
// with what runs, the mode and the role. The window is resizable: the
// control scrolls inside it when the window is smaller, and the tree's pane
// widens with its handle. Size, place and the tree's width are kept in the
// window's settings between runs.
#pragma once

#include "app/window/CommandMenus.h"
#include "app/window/DesktopSession.h"
#include "app/window/FrameTexts.h"
#include "app/window/QtDialogs.h"

#include <QMainWindow>
#include <QTimer>

#include <filesystem>
#include <memory>

class QLabel;
class QScrollArea;

namespace kt500::window {

class MainWindow final : public QMainWindow {
public:
    // installationPrefix: whose settings the control reads (prefix/etc).
    // windowSettings: the file that keeps the window's geometry; empty: the
    // user's configuration folder.
    MainWindow(std::filesystem::path shareDir, QString installationPrefix,
               QString windowSettings = {});
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Ends the running session and starts one for the options, in real
    // time; returns what the control's start-up returned.
    bool startSession(const simulator::SessionOptions& options);
    [[nodiscard]] DesktopSession* session() const noexcept { return m_session.get(); }
    [[nodiscard]] CommandMenus* menus() const noexcept { return m_menus.get(); }
    [[nodiscard]] QDialog* launcher() const;

    // Reads the session state into the header, the title and the status bar
    // (the window does so five times a second).
    void refreshStatus();
    [[nodiscard]] QString headerText() const;
    [[nodiscard]] QString activityText() const;
    [[nodiscard]] QString modeText() const;
    // Writes the geometry and the tree's width into the window's settings.
    void saveSettings() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void chooseSession();
    void buildMenus();
    [[nodiscard]] QString tagOfDevice() const;

    std::filesystem::path m_shareDir;
    QString m_installationPrefix;
    QString m_settingsFile;
    std::shared_ptr<QtDialogs> m_dialogs;
    simulator::SessionOptions m_options;
    FrameTexts m_texts;
    std::string m_language;  // the language the frame's texts are in
    QScrollArea* m_scroll;
    QWidget* m_host;  // holds the view of the session
    QLabel* m_header;
    QLabel* m_activity;
    QLabel* m_mode;
    QTimer m_refresh;
    std::unique_ptr<CommandMenus> m_menus;
    std::unique_ptr<DesktopSession> m_session;
};

}  // namespace kt500::window
