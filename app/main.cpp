// kt500-dtm: the KT500 device manager. Without a window (until the desktop
// window is part of the product) it runs the control's life against the
// built-in BL and prints each step; with --script it runs an automation
// script as the headless frame.
#include "app/HeadlessLife.h"
#include "app/ScriptRunner.h"
#include "simulator/DeviceCatalogue.h"
#include "xml/FileText.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kt500-dtm"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KT500_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("KT500 device manager: configure, calibrate, test and monitor KT500 "
                       "valve controllers. Runs against the built-in simulated BL."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption device(QStringLiteral("device"),
                                    QStringLiteral("Device key of the simulated device."),
                                    QStringLiteral("KEY"), QStringLiteral("KT520_7"));
    const QCommandLineOption offline(QStringLiteral("offline"),
                                     QStringLiteral("Work offline on the data set."));
    const QCommandLineOption role(QStringLiteral("role"), QStringLiteral("The user's role."),
                                  QStringLiteral("ROLE"), QStringLiteral("maintenance"));
    const QCommandLineOption language(QStringLiteral("language"),
                                      QStringLiteral("Language identifier (1033, 1031, 9999)."),
                                      QStringLiteral("ID"), QStringLiteral("1033"));
    const QCommandLineOption script(
        QStringLiteral("script"),
        QStringLiteral("Run an automation script (- for standard input) and exit with 0 when "
                       "every expect held, 1 when one failed, 2 when the script cannot run."),
        QStringLiteral("FILE"));
    parser.addOptions({device, offline, role, language, script});
    parser.process(application);

    if (parser.isSet(script)) {
        const std::string file = parser.value(script).toStdString();
        std::string text;
        if (file == "-") {
            text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        } else {
            if (const std::string reason = kt500::xml::ReadFileBytes(file, text); !reason.empty()) {
                std::cerr << "kt500-dtm: the script: " << reason << '\n';
                return 2;
            }
        }
        try {
            const auto layout = kt500::app::InstallLayout::Detect(
                QCoreApplication::applicationDirPath(), KT500_SHARE_DIR);
            return kt500::app::RunScript(text, layout.shareDir, std::cout, std::cerr);
        } catch (const std::exception& failure) {
            std::cerr << "kt500-dtm: " << failure.what() << '\n';
            return 2;
        }
    }

    kt500::simulator::SessionOptions options;
    options.deviceKey = parser.value(device).toStdString();
    options.online = !parser.isSet(offline);
    options.role = parser.value(role).toStdString();
    options.language = parser.value(language).toStdString();
    if (kt500::simulator::DeviceCatalogue::find(options.deviceKey) == nullptr) {
        std::cerr << "kt500-dtm: unknown device key '" << options.deviceKey
                  << "'; known keys: " << kt500::simulator::DeviceCatalogue::keyList() << '\n';
        return 2;
    }
    try {
        const auto layout = kt500::app::InstallLayout::Detect(
            QCoreApplication::applicationDirPath(), KT500_SHARE_DIR);
        return kt500::app::RunHeadlessLife(layout, options, std::cout);
    } catch (const std::exception& failure) {
        std::cerr << "kt500-dtm: " << failure.what() << '\n';
        return 1;
    }
}
