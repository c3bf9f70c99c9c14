// kt500-dtm: the KT500 device manager. Opens the window on a session with
// the built-in simulated BL; with --screenshot it draws every page of a
// device offscreen into PNG files; with --script it runs an automation
// script as the headless frame; with --life it prints the control's life
// without a window.
#include "app/HeadlessLife.h"
#include "app/InstallLayout.h"
#include "app/ScriptRunner.h"
#include "app/window/Launcher.h"
#include "app/window/MainWindow.h"
#include "app/window/Screenshots.h"
#include "app/window/WindowPictures.h"
#include "simulator/DeviceCatalogue.h"
#include "xml/FileText.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFont>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <iterator>
#include <memory>

namespace {

struct Options {
    QCommandLineOption device{QStringLiteral("device"),
                              QStringLiteral("Device key of the simulated device."),
                              QStringLiteral("KEY"), QStringLiteral("KT520_7")};
    QCommandLineOption offline{QStringLiteral("offline"),
                               QStringLiteral("Work offline on the data set.")};
    QCommandLineOption role{QStringLiteral("role"),
                            QStringLiteral("The user's role: observer, operator, maintenance, "
                                           "planningEngineer, administrator, oemService."),
                            QStringLiteral("ROLE"), QStringLiteral("maintenance")};
    QCommandLineOption language{QStringLiteral("language"),
                                QStringLiteral("Language identifier (1033, 1031, 9999)."),
                                QStringLiteral("ID"), QStringLiteral("1033")};
    QCommandLineOption choose{QStringLiteral("choose"),
                              QStringLiteral("Choose the session in the launcher first.")};
    QCommandLineOption screenshot{
        QStringLiteral("screenshot"),
        QStringLiteral("Draw every page of the device offscreen, after a full upload, into "
                       "DIR/<page>.png, and exit."),
        QStringLiteral("DIR")};
    QCommandLineOption script{
        QStringLiteral("script"),
        QStringLiteral("Run an automation script (- for standard input) and exit with 0 when "
                       "every expect held, 1 when one failed, 2 when the script cannot run."),
        QStringLiteral("FILE")};
    QCommandLineOption windowPictures{
        QStringLiteral("window-pictures"),
        QStringLiteral("Draw the whole window of a KT520_7 at two sizes, offline, in German, "
                       "with a changed and a refused field and with the confirmation list, "
                       "into DIR/window*.png, and exit."),
        QStringLiteral("DIR")};
    QCommandLineOption life{QStringLiteral("life"),
                            QStringLiteral("Print the control's life without a window.")};
};

bool HasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int RunScriptFile(const std::string& file, const kt500::app::InstallLayout& layout) {
    std::string text;
    if (file == "-") {
        text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    } else if (const std::string reason = kt500::xml::ReadFileBytes(file, text); !reason.empty()) {
        std::cerr << "kt500-dtm: the script: " << reason << '\n';
        return 2;
    }
    return kt500::app::RunScript(text, layout.shareDir, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    Options o;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("KT500 device manager: configure, calibrate, test and monitor KT500 "
                       "valve controllers. Runs against the built-in simulated BL."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions(
        {o.device, o.offline, o.role, o.language, o.choose, o.screenshot, o.windowPictures,
                       o.script, o.life});
    (void)parser.parse(arguments);

    // Scripts and the printed life need no window system at all; the
    // window falls back to pictures where there is no display.
    const bool windowless = parser.isSet(o.script) || parser.isSet(o.life);
    const bool pictures = parser.isSet(o.screenshot) || parser.isSet(o.windowPictures) ||
                          (!windowless && !HasDisplay());
    if (pictures && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    std::unique_ptr<QCoreApplication> application =
        windowless ? std::make_unique<QCoreApplication>(argc, argv)
                   : std::make_unique<QApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kt500-dtm"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KT500_VERSION));
    parser.process(*application);

    kt500::simulator::SessionOptions options;
    options.deviceKey = parser.value(o.device).toStdString();
    options.online = !parser.isSet(o.offline);
    options.role = parser.value(o.role).toStdString();
    options.language = parser.value(o.language).toStdString();
    options.frameLanguage = options.language;
    if (kt500::simulator::DeviceCatalogue::find(options.deviceKey) == nullptr) {
        std::cerr << "kt500-dtm: unknown device key '" << options.deviceKey
                  << "'; known keys: " << kt500::simulator::DeviceCatalogue::keyList() << '\n';
        return 2;
    }
    try {
        const auto layout = kt500::app::InstallLayout::Detect(
            QCoreApplication::applicationDirPath(), KT500_SHARE_DIR);
        if (parser.isSet(o.script)) {
            return RunScriptFile(parser.value(o.script).toStdString(), layout);
        }
        if (parser.isSet(o.life)) {
            return kt500::app::RunHeadlessLife(layout, options, std::cout);
        }
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 8));
        if (parser.isSet(o.windowPictures)) {
            return kt500::window::WriteWindowPictures(
                layout.shareDir, QDir(parser.value(o.windowPictures)).absolutePath().toStdString(),
                std::cout);
        }
        if (pictures) {
            const QString folder = parser.isSet(o.screenshot)
                                       ? parser.value(o.screenshot)
                                       : layout.prefix + QStringLiteral("/screenshots");
            if (!parser.isSet(o.screenshot)) {
                std::cout << "kt500-dtm: no display; drawing every page of " << options.deviceKey
                          << " instead:\n";
            }
            return kt500::window::WriteScreenshots(
                layout.shareDir, options, QDir(folder).absolutePath().toStdString(), std::cout);
        }
        if (parser.isSet(o.choose)) {
            kt500::window::Launcher launcher(options);
            if (launcher.exec() != QDialog::Accepted) {
                return 0;
            }
            options = launcher.options();
        }
        kt500::window::MainWindow window(layout.shareDir, layout.prefix);
        window.startSession(options);
        window.show();
        return QApplication::exec();
    } catch (const std::exception& failure) {
        std::cerr << "kt500-dtm: " << failure.what() << '\n';
        return 1;
    }
}
