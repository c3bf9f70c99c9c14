#include "app/window/MainWindow.h"

#include "app/window/Launcher.h"
#include "session/QtSettingsStore.h"

#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>

namespace kt500::window {

MainWindow::MainWindow(std::filesystem::path shareDir, QString installationPrefix)
    : m_shareDir(std::move(shareDir)),
      m_installationPrefix(std::move(installationPrefix)),
      m_dialogs(std::make_shared<QtDialogs>(this)),
      m_host(new QWidget(this)) {
    auto* layout = new QVBoxLayout(m_host);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setCentralWidget(m_host);
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Session"));
    menu->addAction(QStringLiteral("&New session..."), QKeySequence::New, this,
                    [this] { chooseSession(); });
    menu->addSeparator();
    menu->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    setWindowIcon(
        QIcon(QString::fromStdString((m_shareDir / "icons" / "deviceKT520.svg").string())));
}

MainWindow::~MainWindow() {
    m_session.reset();
}

bool MainWindow::startSession(const simulator::SessionOptions& options) {
    m_session.reset();
    m_options = options;
    app::SessionEnvironment environment;
    environment.dialogs = m_dialogs;
    environment.installationPrefix = m_installationPrefix;
    environment.debugOutput = std::make_shared<session::QtDebugOutput>();
    environment.startTime = QDateTime::currentDateTime();
    m_session = std::make_unique<DesktopSession>(m_shareDir, environment);
    const double dpi = screen() != nullptr ? screen()->logicalDotsPerInch() : 96.0;
    const bool started = m_session->start(options, m_host, TwipScale(dpi));
    m_host->layout()->addWidget(&m_session->view());
    m_session->view().show();  // a widget added to a shown window stays hidden otherwise
    setWindowTitle(QStringLiteral("KT500 device manager - %1 (%2, %3)")
                       .arg(QString::fromStdString(options.deviceKey),
                            options.online ? QStringLiteral("online") : QStringLiteral("offline"),
                            QString::fromStdString(options.role)));
    layout()->setSizeConstraint(QLayout::SetFixedSize);  // the control's fixed extents
    m_session->setRealTime(true);
    return started;
}

void MainWindow::chooseSession() {
    Launcher launcher(m_options, this);
    if (launcher.exec() == QDialog::Accepted) {
        startSession(launcher.options());
    }
}

}  // namespace kt500::window
