// The window's tests need a QApplication; they draw offscreen.
#include <QApplication>
#include <QFont>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 8));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
