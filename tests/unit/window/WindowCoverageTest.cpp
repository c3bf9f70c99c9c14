// Maximised on each screen of tests/CMakeLists.txt, every page of each family
// is shown whole and fits the window or scrolls inside it.
#include "app/window/MainWindow.h"

#include "BoxCloser.h"

#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include "CaptionClipped.h"
#include "WindowTest.h"

#include <gtest/gtest.h>

#include <optional>

namespace kt500::window {
namespace {

struct Screen {
    QSize size;
    double ratio;
};

// The screen this run was given (KT500_TEST_SCREEN="1280x800@1.5"), or none.
std::optional<Screen> GivenScreen() {
    const QString given = qEnvironmentVariable("KT500_TEST_SCREEN");
    const QStringList parts = given.split(QLatin1Char('@'));
    const QStringList sides = parts.value(0).split(QLatin1Char('x'));
    if (parts.size() != 2 || sides.size() != 2) {
        return std::nullopt;
    }
    return Screen{QSize(sides[0].toInt(), sides[1].toInt()), parts[1].toDouble()};
}

class WindowCoverage : public ::testing::TestWithParam<const char*> {
protected:
    BoxCloser boxes;
    QTemporaryDir folder;
};

TEST_P(WindowCoverage, EveryPageShowsEveryControlWholeOnTheScreen) {
    if (const auto screen = GivenScreen()) {
        // The run has the screen it asked for.
        ASSERT_DOUBLE_EQ(qApp->devicePixelRatio(), screen->ratio);
        ASSERT_EQ(QGuiApplication::primaryScreen()->geometry().size(), screen->size);
    }
    ASSERT_TRUE(folder.isValid());
    MainWindow window(KT500_SHARE_DIR, folder.path(), folder.filePath(QStringLiteral("w.ini")));
    simulator::SessionOptions options;
    options.deviceKey = GetParam();
    ASSERT_TRUE(window.startSession(options));
    window.session()->setRealTime(false);
    window.showMaximized();
    QCoreApplication::processEvents();
    const QRect room = window.screen()->availableGeometry();
    EXPECT_LE(window.width(), room.width());
    EXPECT_LE(window.height(), room.height());

    FormView& view = window.session()->view();
    form::Form& form = view.form();
    auto* scroll = qobject_cast<QScrollArea*>(window.centralWidget());
    ASSERT_NE(scroll, nullptr);
    // The control either fits or scrolls: every part of it can be reached.
    const QSize shown = scroll->viewport()->size();
    if (view.width() > shown.width()) {
        EXPECT_TRUE(scroll->horizontalScrollBar()->isVisible());
    }
    if (view.height() > shown.height()) {
        EXPECT_TRUE(scroll->verticalScrollBar()->isVisible());
    }

    // The tree's pictures are drawn with the screen's pixels.
    auto* tree = qobject_cast<QTreeWidget*>(view.widgetOf(form.control("treeNavigation")));
    ASSERT_NE(tree, nullptr);
    tree->expandAll();
    QCoreApplication::processEvents();
    EXPECT_EQ(tree->horizontalScrollBar()->maximum(), 0) << "a tree caption is cut";

    int pages = 0;
    for (const form::TreeNode& node : form.control("treeNavigation").tree().nodes()) {
        view.gate().run(
            [&] { form.raiseNodeClick(form.control("treeNavigation"), node.key); });
        QCoreApplication::processEvents();
        if (const form::Control* page = ShownPage(
                form, window.session()->session().control().m_objTools->CurrentFrame)) {
            ++pages;
            ExpectPageWhole(view, *page);
        }
    }
    EXPECT_GE(pages, 10);
}

INSTANTIATE_TEST_SUITE_P(EachFamily, WindowCoverage,
                         ::testing::Values("KT520_7", "KT540_1.0", "PL500_2"),
                         [](const auto& info) { return TestNameOf(info.param); });

}  // namespace
}  // namespace kt500::window
