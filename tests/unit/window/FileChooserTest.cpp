// The file page's chooser, embedded in the page: the file chosen is the one
// saved or loaded, and Cancel brings back the page from before.
#include "WindowTest.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

class FileChooserTest : public WindowTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder.isValid());
        simulator::SessionOptions options;
        options.deviceKey = "KT520_7";
        options.savePath = folder.path().toStdString();
        startWindow(options);
    }
    QFileDialog* chooser() {
        return qobject_cast<QFileDialog*>(widget("filOpenFile"));
    }
    // Chooses a file in the chooser and presses its Open button.
    void open(const QString& path) {
        QFileDialog* dialog = chooser();
        ASSERT_NE(dialog, nullptr);
        dialog->selectFile(path);
        // Open, as its button presses it (the override is protected).
        static_cast<QDialog*>(dialog)->accept();
        settle();
    }
    bool filePageShown() { return form().control("fraCommon", 2).visible(); }
    std::string currentFrame() { return desktop.session().control().m_objTools->CurrentFrame; }

    QTemporaryDir folder;
};

TEST_F(FileChooserTest, TheChooserOpensInTheSaveFolderWithThePagesPattern) {
    toolbar("save");
    ASSERT_TRUE(filePageShown());
    QFileDialog* dialog = chooser();
    ASSERT_NE(dialog, nullptr);
    // Embedded in the page, never a window of its own that could leave the
    // page empty.
    EXPECT_FALSE(dialog->isWindow());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(QFileInfo(dialog->directory().absolutePath()).canonicalFilePath(),
              QFileInfo(folder.path()).canonicalFilePath());
    EXPECT_TRUE(dialog->nameFilters().join(u' ').contains(u"*.xml"));
}

TEST_F(FileChooserTest, AFileChosenForTheSaveIsWrittenAndLoadsBack) {
    node("operationUnit");
    toolbar("uploadCurrent");
    const std::string frame = currentFrame();
    const std::string saved = form().control("txtHAOperationUnit", 0).text();
    ASSERT_FALSE(saved.empty());

    toolbar("save");
    const QString path = folder.filePath("chosen.xml");
    open(path);
    // The page from before the dialog is back and the file holds the tag.
    EXPECT_FALSE(filePageShown());
    EXPECT_EQ(currentFrame(), frame);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_TRUE(text.startsWith("<?xml"));
    EXPECT_TRUE(text.contains(QByteArray::fromStdString(saved)));

    // Another tag on the page, then the chosen file loaded back.
    form().control("txtHAOperationUnit", 0).setText("CHANGED");
    toolbar("open");
    ASSERT_TRUE(filePageShown());
    // The name typed for the save is not proposed for a load.
    EXPECT_EQ(form().control("txtFileName").text(), "");
    open(path);
    EXPECT_FALSE(filePageShown());
    EXPECT_EQ(form().control("txtHAOperationUnit", 0).text(), saved);
}

TEST_F(FileChooserTest, CancelBringsBackThePageAndKeepsNoName) {
    node("alertSettings");
    const std::string frame = currentFrame();
    toolbar("open");
    ASSERT_TRUE(filePageShown());
    QFileDialog* dialog = chooser();
    ASSERT_NE(dialog, nullptr);
    // A file pointed at but not opened is not kept.
    QFile other(folder.filePath("other.xml"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.close();
    dialog->selectFile(other.fileName());
    settle();
    dialog->reject();
    settle();
    EXPECT_FALSE(filePageShown());
    EXPECT_EQ(currentFrame(), frame);
    EXPECT_EQ(form().control("txtFileName").text(), "");
    // The chooser stays usable for the next use of the page.
    toolbar("save");
    EXPECT_TRUE(filePageShown());
    EXPECT_TRUE(chooser()->isVisible());
}

}  // namespace
}  // namespace kt500::window
