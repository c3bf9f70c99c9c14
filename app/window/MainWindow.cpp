#include "app/window/MainWindow.h"

#include "app/window/ActivityText.h"
#include "app/window/Launcher.h"
#include "app/window/Mnemonics.h"
#include "session/QtSettingsStore.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QStatusBar>
#include <QVBoxLayout>

#include <algorithm>

namespace kt500::window {

namespace {

constexpr int kRefreshInterval = 200;
const QString kGeometryKey = QStringLiteral("window/geometry");
const QString kTreeExtraKey = QStringLiteral("window/treeExtra");

std::unique_ptr<QSettings> SettingsAt(const QString& file) {
    if (file.isEmpty()) {
        return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                           QStringLiteral("kt500-dtm"), QStringLiteral("window"));
    }
    return std::make_unique<QSettings>(file, QSettings::IniFormat);
}

}  // namespace

MainWindow::MainWindow(std::filesystem::path shareDir, QString installationPrefix,
                       QString windowSettings)
    : m_shareDir(std::move(shareDir)),
      m_installationPrefix(std::move(installationPrefix)),
      m_settingsFile(std::move(windowSettings)),
      m_dialogs(std::make_shared<QtDialogs>(this)),
      m_scroll(new QScrollArea(this)),
      m_host(new QWidget()),
      m_header(new QLabel(this)),
      m_activity(new QLabel(this)),
      m_mode(new QLabel(this)) {
    auto* layout = new QVBoxLayout(m_host);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    m_scroll->setWidget(m_host);
    m_scroll->setWidgetResizable(false);
    m_scroll->setFrameShape(QFrame::NoFrame);
    setCentralWidget(m_scroll);
    m_header->setObjectName(QStringLiteral("windowHeader"));
    m_header->setContentsMargins(8, 0, 8, 0);
    menuBar()->setCornerWidget(m_header, Qt::TopRightCorner);
    m_activity->setObjectName(QStringLiteral("statusActivity"));
    m_mode->setObjectName(QStringLiteral("statusMode"));
    statusBar()->addWidget(m_activity, 1);
    statusBar()->addPermanentWidget(m_mode);
    setWindowIcon(
        QIcon(QString::fromStdString((m_shareDir / "icons" / "deviceKT520.svg").string())));
    m_dialogs->setTexts([this] {
        MessageTexts texts;
        if (m_session && m_session->session().running()) {
            host::RavikKT500& control = m_session->session().control();
            texts.error = control.Translate("error");
            texts.valueCheck = control.Translate("valueCheck");
            texts.parseFailed = control.Translate("parseFailed");
            texts.requestFailed = control.Translate("errRequestFailed");
        }
        return texts;
    });
    m_refresh.setInterval(kRefreshInterval);
    connect(&m_refresh, &QTimer::timeout, this, [this] { refreshStatus(); });
    const auto settings = SettingsAt(m_settingsFile);
    if (!restoreGeometry(settings->value(kGeometryKey).toByteArray())) {
        resize(800, 600);  // sized to the control once a session runs
    }
}

MainWindow::~MainWindow() {
    m_refresh.stop();
    m_menus.reset();
    m_session.reset();
}

QDialog* MainWindow::launcher() const {
    return findChild<QDialog*>(QStringLiteral("launcher"));
}

bool MainWindow::startSession(const simulator::SessionOptions& options) {
    const bool first = !m_session;
    const int treeExtra = first ? SettingsAt(m_settingsFile)->value(kTreeExtraKey, 0).toInt()
                                : m_session->view().treeExtra();
    m_menus.reset();
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
    FormView& view = m_session->view();
    m_host->layout()->addWidget(&view);
    view.setTreeExtra(treeExtra);
    view.show();  // a widget added to a shown window stays hidden otherwise
    m_language.clear();
    refreshStatus();  // builds the menus in the session's language
    if (first && SettingsAt(m_settingsFile)->value(kGeometryKey).isNull()) {
        // The first run opens at the control's size, within the screen.
        const QSize wanted = view.size() + QSize(m_scroll->frameWidth() * 2, 0) +
                             QSize(0, menuBar()->sizeHint().height() +
                                          statusBar()->sizeHint().height());
        const QRect room =
            screen() != nullptr ? screen()->availableGeometry() : QRect(0, 0, 1280, 800);
        resize(wanted.boundedTo(room.size()));
    }
    m_session->setRealTime(true);
    m_refresh.start();
    return started;
}

void MainWindow::buildMenus() {
    m_menus.reset();
    if (!m_session) {
        return;
    }
    m_menus = std::make_unique<CommandMenus>(
        *menuBar(), m_session->view(), m_texts,
        WindowCommands{[this] { chooseSession(); }, [this] { close(); },
                       [this] {
                           QMessageBox::about(this, m_texts.text(FrameText::About).remove('&'),
                                              m_texts.text(FrameText::AboutText)
                                                  .arg(QCoreApplication::applicationVersion()));
                       }});
    // The page buttons take letters that no menu title holds.
    QString titles;
    for (const QAction* menu : menuBar()->actions()) {
        if (const QChar letter = MnemonicOf(menu->text()); !letter.isNull()) {
            titles += letter;
        }
    }
    m_session->view().setReservedMnemonics(titles);
}

QString MainWindow::tagOfDevice() const {
    host::RavikKT500& control = m_session->session().control();
    for (const char* name : {"hartTag", "tagDescriptor"}) {
        try {
            if (const xml::Node node = control.ParameterNodeByName(name)) {
                return QString::fromStdString(node.attribute("value"));
            }
        } catch (const std::exception&) {
            // No document: no tag to show.
        }
    }
    return {};
}

QString MainWindow::headerText() const {
    if (!m_session || !m_session->session().running() || !m_session->session().control().m_objTools) {
        return {};
    }
    const session::clsTools& tools = *m_session->session().control().m_objTools;
    QString header = QString::fromStdString(tools.DeviceName.empty() ? m_options.deviceKey
                                                                     : tools.DeviceName);
    if (!tools.DeviceRevision.empty()) {
        header += QLatin1Char(' ') + m_texts.text(FrameText::Revision) + QLatin1Char(' ') +
                  QString::fromStdString(tools.DeviceRevision);
    }
    const QString tag = tagOfDevice().trimmed();
    if (!tag.isEmpty()) {
        header += QStringLiteral("  \u00b7  ") + m_texts.text(FrameText::Tag).arg(tag);
    }
    return header;
}

QString MainWindow::activityText() const {
    return m_activity->text();
}

QString MainWindow::modeText() const {
    return m_mode->text();
}

void MainWindow::refreshStatus() {
    if (!m_session || !m_session->session().running()) {
        return;
    }
    host::RavikKT500& control = m_session->session().control();
    if (!control.m_objTools) {
        return;
    }
    session::clsTools& tools = *control.m_objTools;
    const std::string language = tools.Language.empty() || tools.Language == "0"
                                     ? tools.FrameLanguage
                                     : tools.Language;
    if (language != m_language || !m_menus) {
        m_language = language;
        m_texts = FrameTexts(language);
        buildMenus();
    }
    Activity activity;
    activity.autoAction = tools.CurrentAutoAction;
    activity.monitoring = tools.MonitoringFlag;
    activity.reading = tools.CommunicationSign("read", "");
    activity.writing = tools.CommunicationSign("write", "");
    form::Form& form = control.form();
    if (const form::Control* bar = form.find("ProgressBar1")) {
        const form::Control* frame = form.find("fraProgress");
        activity.progressShown = bar->visible() && (frame == nullptr || frame->visible());
        activity.progressMin = bar->min();
        activity.progressValue = bar->value();
        activity.progressMax = bar->max();
    }
    if (const form::Control* text = form.find("lblProgressText")) {
        activity.progressText = text->caption();
    }
    activity.online = tools.OnlineConf;
    activity.role = tools.ActorRole;
    m_activity->setText(ActivityText(activity, m_texts));
    m_mode->setText(SessionModeText(activity, m_texts));
    const QString header = headerText();
    m_header->setText(header);
    setWindowTitle(header + QStringLiteral(" - KT500 device manager (") +
                   m_texts.text(tools.OnlineConf ? FrameText::Online : FrameText::Offline) +
                   QStringLiteral(", ") + QString::fromStdString(tools.ActorRole) +
                   QLatin1Char(')'));
}

void MainWindow::saveSettings() const {
    const auto settings = SettingsAt(m_settingsFile);
    settings->setValue(kGeometryKey, saveGeometry());
    if (m_session) {
        settings->setValue(kTreeExtraKey, m_session->view().treeExtra());
    }
    settings->sync();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    saveSettings();
    QMainWindow::closeEvent(event);
}

void MainWindow::chooseSession() {
    Launcher launcher(m_options, this);
    launcher.setObjectName(QStringLiteral("launcher"));
    if (launcher.exec() == QDialog::Accepted) {
        startSession(launcher.options());
    }
}

}  // namespace kt500::window
