// The main window: one session at a time, scrolling, header, status bar and
// geometry kept between runs.
#include "app/window/MainWindow.h"

#include <QLabel>
#include <QScreen>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include "BoxCloser.h"

#include <gtest/gtest.h>

#include <iostream>

namespace kt500::window {
namespace {

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(folder.isValid()); }
    void TearDown() override {
        for (const QString& box : boxes.seen()) {
            std::cerr << "message box: " << box.toStdString() << '\n';
        }
    }

    std::unique_ptr<MainWindow> open(const std::string& device = "KT520_7", bool online = true,
                                     const std::string& language = "1033") {
        auto window = std::make_unique<MainWindow>(KT500_SHARE_DIR, folder.path(),
                                                   folder.filePath(QStringLiteral("window.ini")));
        simulator::SessionOptions options;
        options.deviceKey = device;
        options.online = online;
        options.language = language;
        options.frameLanguage = language;
        EXPECT_TRUE(window->startSession(options));
        window->show();
        window->session()->setRealTime(false);  // the test moves the time
        return window;
    }

    BoxCloser boxes;
    QTemporaryDir folder;
};

TEST_F(MainWindowTest, HostsOneSessionAtATimeAndReplacesItCleanly) {
    auto window = open();
    FormView* first = &window->session()->view();
    EXPECT_TRUE(first->isVisible());
    window->session()->setRealTime(true);
    QTest::qWait(3 * DesktopSession::kPumpInterval);  // the pump runs in the event loop

    simulator::SessionOptions options;
    options.deviceKey = "PL500_2";
    options.online = false;
    ASSERT_TRUE(window->startSession(options));
    EXPECT_TRUE(window->session()->view().isVisible());
    EXPECT_EQ(window->session()->session().control().m_objTools->DeviceType, "PL500_2");
    EXPECT_TRUE(window->windowTitle().contains(QStringLiteral("PL500")));
    // One set of menus, not one per session.
    EXPECT_EQ(window->menuBar()->actions().size(), 4);
    QTest::qWait(3 * DesktopSession::kPumpInterval);
}

TEST_F(MainWindowTest, TheWindowResizesAndTheControlScrollsInside) {
    auto window = open();
    const QSize control = window->session()->view().size();
    auto* scroll = qobject_cast<QScrollArea*>(window->centralWidget());
    ASSERT_NE(scroll, nullptr);
    // Opened at the control's size, as far as the screen has room.
    const QSize room = window->screen()->availableGeometry().size();
    EXPECT_TRUE(scroll->viewport()->width() >= control.width() ||
                window->width() == room.width());
    EXPECT_TRUE(scroll->viewport()->height() >= control.height() ||
                window->height() == room.height());
    EXPECT_LE(window->width(), room.width());
    EXPECT_LE(window->height(), room.height());

    window->resize(500, 400);
    QCoreApplication::processEvents();
    EXPECT_EQ(window->size(), QSize(500, 400));
    EXPECT_EQ(window->session()->view().size(), control);  // nothing squeezed
    EXPECT_GT(scroll->horizontalScrollBar()->maximum(), 0);
    EXPECT_GT(scroll->verticalScrollBar()->maximum(), 0);

    window->showMaximized();
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->isMaximized());
}

TEST_F(MainWindowTest, GeometryAndTreeWidthComeBackAfterARestart) {
    QRect geometry;
    int extra = 0;
    {
        auto window = open();
        window->resize(900, 650);
        window->move(40, 30);
        FormView& view = window->session()->view();
        view.setTreeExtra(view.minimumTreeExtra() + 45);
        extra = view.treeExtra();
        QCoreApplication::processEvents();
        geometry = window->geometry();
        window->close();
    }
    auto again = open();
    QCoreApplication::processEvents();
    EXPECT_EQ(again->size(), geometry.size());
    EXPECT_EQ(again->session()->view().treeExtra(), extra);
}

TEST_F(MainWindowTest, HeaderAndTitleNameTheDeviceItsRevisionAndTag) {
    auto window = open();
    window->session()->view().toolbarAction("uploadAll")->trigger();
    window->session()->settle();
    window->refreshStatus();
    const std::string tag =
        window->session()->session().bl().simulatedControl().deviceValue("hartTag").value_or("?");
    const QString header = window->headerText();
    EXPECT_TRUE(header.contains(QStringLiteral("Rev. 7"))) << header.toStdString();
    EXPECT_TRUE(header.contains(QString::fromStdString(tag))) << header.toStdString();
    EXPECT_TRUE(window->windowTitle().startsWith(header)) << window->windowTitle().toStdString();
    auto* shown = window->findChild<QLabel*>(QStringLiteral("windowHeader"));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->text(), header);

    // The PROFIBUS positioner's tag is its tag descriptor.
    auto pa = open("KT540_1.0", false);
    pa->refreshStatus();
    const std::string descriptor = pa->session()
                                       ->session()
                                       .control()
                                       .ParameterNodeByName("tagDescriptor")
                                       .attribute("value");
    ASSERT_FALSE(descriptor.empty());
    EXPECT_TRUE(pa->headerText().contains(QString::fromStdString(descriptor)));
}

TEST_F(MainWindowTest, TheStatusBarTellsWhatRunsAndTheModeAndRole) {
    auto window = open();
    window->refreshStatus();
    EXPECT_EQ(window->activityText(), QStringLiteral("Ready"));
    EXPECT_EQ(window->modeText(), QStringLiteral("Online \u00b7 Role: Maintenance"));

    window->session()->view().toolbarAction("uploadAll")->trigger();
    window->refreshStatus();
    EXPECT_TRUE(window->activityText().startsWith(QStringLiteral("Reading")))
        << window->activityText().toStdString();
    window->session()->settle();
    window->refreshStatus();
    EXPECT_EQ(window->activityText(), QStringLiteral("Ready"));

    // The frame's texts follow the session's language.
    auto german = open("PL500_2", false, "1031");
    german->refreshStatus();
    EXPECT_EQ(german->modeText(), QStringLiteral("Offline \u00b7 Rolle: Wartung"));
    EXPECT_EQ(german->activityText(), QStringLiteral("Bereit"));
    EXPECT_EQ(german->menuBar()->actions().at(0)->text(), QStringLiteral("&Datei"));
}

}  // namespace
}  // namespace kt500::window
