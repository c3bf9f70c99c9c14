// The window's tests need a QApplication; they draw offscreen.
#include <QApplication>
#include <QFont>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // A screen of a given size and pixel ratio comes as the offscreen
    // platform's configuration (offscreen:configfile=...); kept when given.
    if (!qEnvironmentVariable("QT_QPA_PLATFORM").startsWith(QStringLiteral("offscreen"))) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 8));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
