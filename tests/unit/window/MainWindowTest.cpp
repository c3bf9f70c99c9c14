#include "app/window/MainWindow.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

// The window hosts the control at its fixed extents, runs in real time,
// and a new session replaces the old one's view and control cleanly.
TEST(MainWindow, HostsOneSessionAtATimeAtTheFixedExtents) {
    QTemporaryDir prefix;
    ASSERT_TRUE(prefix.isValid());
    MainWindow window(KT500_SHARE_DIR, prefix.path());
    simulator::SessionOptions options;
    ASSERT_TRUE(window.startSession(options));
    window.show();
    FormView* first = &window.session()->view();
    const TwipScale& scale = first->scale();
    EXPECT_EQ(first->size(), QSize(scale.pixels(form::Form::kUserControlWidth),
                                   scale.pixels(form::Form::kUserControlHeight)));
    EXPECT_TRUE(first->isVisible());
    QTest::qWait(3 * DesktopSession::kPumpInterval);  // the pump runs in the event loop

    options.deviceKey = "PL500_2";
    options.online = false;
    ASSERT_TRUE(window.startSession(options));
    EXPECT_TRUE(window.session()->view().isVisible());
    EXPECT_EQ(window.session()->session().control().m_objTools->DeviceType, "PL500_2");
    EXPECT_TRUE(window.windowTitle().contains(QStringLiteral("PL500_2")));
    QTest::qWait(3 * DesktopSession::kPumpInterval);
}

}  // namespace
}  // namespace kt500::window
