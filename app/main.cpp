// kt500-dtm: the KT500 device manager. Without a window (until the desktop
// window is part of the product) it runs the control's life against the
// built-in BL and prints each step.
#include "app/HeadlessLife.h"
#include "simulator/DeviceCatalogue.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <exception>
#include <iostream>

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
    parser.addOptions({device, offline, role, language});
    parser.process(application);

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
