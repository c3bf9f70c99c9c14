// The menus carry the toolbar's commands in the same state, with shortcuts.
#include "app/window/CommandMenus.h"
#include "app/window/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "BoxCloser.h"

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

class CommandMenusTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder.isValid());
        window = std::make_unique<MainWindow>(KT500_SHARE_DIR, folder.path(),
                                              folder.filePath(QStringLiteral("window.ini")));
        simulator::SessionOptions options;
        ASSERT_TRUE(window->startSession(options));
        window->session()->setRealTime(false);
        window->show();
        QApplication::setActiveWindow(window.get());
        window->activateWindow();
        settle();
    }

    void settle() {
        window->session()->settle();
        QCoreApplication::processEvents();
    }
    FormView& view() { return window->session()->view(); }
    form::Form& form() { return view().form(); }
    session::clsTools& tools() { return *window->session()->session().control().m_objTools; }
    CommandMenus& menus() { return *window->menus(); }

    // Every toolbar command has its menu command, in the same state.
    void expectMenusFollowTheToolbar() {
        for (const form::ToolbarItem& item : form().control("smuiDTM", 1).toolbar().items()) {
            if (item.style != form::ToolbarItemStyle::Button &&
                item.style != form::ToolbarItemStyle::Check) {
                continue;
            }
            QAction* menu = menus().action(item.key);
            ASSERT_NE(menu, nullptr) << item.key << " has no menu command";
            EXPECT_EQ(menu->isEnabled(), item.enabled) << item.key;
            EXPECT_EQ(menu->isEnabled(), view().toolbarAction(item.key)->isEnabled()) << item.key;
            EXPECT_EQ(menu->isChecked(), item.pressed) << item.key;
            EXPECT_FALSE(menu->text().isEmpty()) << item.key;
        }
    }

    void press(const QKeySequence& keys) {
        QTest::keySequence(window.get(), keys);
        QCoreApplication::processEvents();
    }

    BoxCloser boxes;
    QTemporaryDir folder;
    std::unique_ptr<MainWindow> window;
};

TEST_F(CommandMenusTest, MenuCommandsAreEnabledAsTheirToolbarItemsThroughAnUploadAndAStop) {
    expectMenusFollowTheToolbar();
    EXPECT_TRUE(menus().action("uploadCurrent")->isEnabled());
    EXPECT_FALSE(menus().action("stop")->isEnabled());

    menus().action("uploadAll")->trigger();
    // Busy: stop is offered, the uploads and send are not.
    EXPECT_TRUE(menus().action("stop")->isEnabled());
    EXPECT_FALSE(menus().action("uploadCurrent")->isEnabled());
    expectMenusFollowTheToolbar();

    menus().action("stop")->trigger();
    EXPECT_FALSE(menus().action("stop")->isEnabled());
    EXPECT_TRUE(menus().action("uploadCurrent")->isEnabled());
    expectMenusFollowTheToolbar();
    settle();
    expectMenusFollowTheToolbar();

    // The tree command is pressed as the toolbar's is.
    menus().action("hideTree")->trigger();
    EXPECT_TRUE(menus().action("hideTree")->isChecked());
    EXPECT_FALSE(form().control("treeNavigation").visible());
    menus().action("hideTree")->trigger();
    EXPECT_FALSE(menus().action("hideTree")->isChecked());
    EXPECT_TRUE(form().control("treeNavigation").visible());
}

TEST_F(CommandMenusTest, EachShortcutRunsItsCommand) {
    const auto spyOn = [this](const char* key) {
        return std::make_unique<QSignalSpy>(view().toolbarAction(key), &QAction::triggered);
    };
    // Escape does nothing while stop is not offered; F5 reads the page,
    // Escape then stops the read.
    auto stop = spyOn("stop");
    press(QKeySequence(Qt::Key_Escape));
    EXPECT_EQ(stop->count(), 0);
    auto upload = spyOn("uploadCurrent");
    press(QKeySequence(Qt::Key_F5));
    EXPECT_EQ(upload->count(), 1);
    EXPECT_TRUE(view().toolbarAction("stop")->isEnabled());
    press(QKeySequence(Qt::Key_Escape));
    EXPECT_EQ(stop->count(), 1);
    EXPECT_FALSE(view().toolbarAction("stop")->isEnabled());
    settle();

    // Ctrl+O and Ctrl+S open the file page for import and export.
    press(QKeySequence(Qt::CTRL | Qt::Key_O));
    EXPECT_TRUE(form().control("fraCommon", 2).visible());
    EXPECT_EQ(form().control("lblOpenFileDlgHeader").caption(),
              window->session()->session().control().Translate("importFile"));
    press(QKeySequence(Qt::CTRL | Qt::Key_S));
    EXPECT_EQ(form().control("lblOpenFileDlgHeader").caption(),
              window->session()->session().control().Translate("exportFile"));

    // Alt+Right and Alt+Left step through the pages.
    form().raiseNodeClick(form().control("treeNavigation"), "operationUnit");
    const std::string page = tools().CurrentFrame;
    press(QKeySequence(Qt::ALT | Qt::Key_Right));
    EXPECT_NE(tools().CurrentFrame, page);
    press(QKeySequence(Qt::ALT | Qt::Key_Left));
    EXPECT_EQ(tools().CurrentFrame, page);

    // Ctrl+Z undoes the changes of the page.
    form::Control& tag = form().control("txtHAOperationUnit", 0);
    const std::string before = tag.text();
    QLineEdit* field = qobject_cast<QLineEdit*>(view().widgetOf(tag));
    field->setFocus(Qt::MouseFocusReason);
    field->selectAll();
    QTest::keyClicks(field, "CHANGED");
    view().widgetOf(form().control("txtHAOperationUnit", 1))->setFocus(Qt::TabFocusReason);
    settle();
    ASSERT_EQ(tag.text(), "CHANGED");
    window->setFocus();
    press(QKeySequence(Qt::CTRL | Qt::Key_Z));
    EXPECT_EQ(tag.text(), before);

    // F1 asks for help.
    auto help = spyOn("help");
    press(QKeySequence(Qt::Key_F1));
    EXPECT_EQ(help->count(), 1);
}

TEST(WithMnemonic, GivesEachCommandOfAMenuItsOwnLetter) {
    QString taken;
    EXPECT_EQ(WithMnemonic(QStringLiteral("Upload all"), taken), QStringLiteral("&Upload all"));
    EXPECT_EQ(WithMnemonic(QStringLiteral("Undo all"), taken), QStringLiteral("U&ndo all"));
    EXPECT_EQ(WithMnemonic(QStringLiteral("R&D"), taken), QStringLiteral("&R&&D"));
    EXPECT_EQ(WithMnemonic(QStringLiteral("..."), taken), QStringLiteral("..."));
    EXPECT_EQ(taken, QStringLiteral("unr"));
}

}  // namespace
}  // namespace kt500::window
