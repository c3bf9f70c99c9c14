// Disabled fields, range tool tips, the tree's pane, time stamps, the Tab
// order and pictures at the screen's pixel ratio.
#include "app/window/DesktopSession.h"
#include "WindowTest.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kt500::window {
namespace {

constexpr std::uint32_t kBlue = 0xFF0000;  // BGR, as the logic writes a changed value

class WindowStatesTest : public WindowTest {
protected:
    void start(const std::string& language = "1033") { WindowTest::start("KT520_7", true, language); }
};

TEST_F(WindowStatesTest, ADisabledFieldLooksDisabledAndAnEnabledOneKeepsTheLogicsColours) {
    start();
    form::Control& changed = form().control("txtHAOperationUnit", 0);
    form::Control& locked = form().control("txtHAOperationUnit", 1);
    changed.setForeColor(kBlue);
    locked.setForeColor(kBlue);
    locked.setEnabled(false);
    QWidget* enabledField = view().widgetOf(changed);
    QWidget* disabledField = view().widgetOf(locked);
    ASSERT_FALSE(disabledField->isEnabled());

    const QPalette on = enabledField->palette();
    const QPalette off = disabledField->palette();
    // The changed value is blue on its white ground.
    EXPECT_EQ(on.color(QPalette::Active, QPalette::Text), QColor(0, 0, 255));
    EXPECT_EQ(on.color(QPalette::Active, QPalette::Base), QColor(Qt::white));
    // Disabled: the ground and the text are the style's, not the field's.
    EXPECT_NE(off.color(QPalette::Disabled, QPalette::Base),
              on.color(QPalette::Active, QPalette::Base));
    EXPECT_NE(off.color(QPalette::Disabled, QPalette::Text), QColor(0, 0, 255));
    EXPECT_EQ(off.color(QPalette::Disabled, QPalette::Text),
              QApplication::palette(disabledField).color(QPalette::Disabled, QPalette::Text));
    // What the window draws: a disabled field's ground differs from an
    // enabled one's.
    const QImage enabledImage = enabledField->grab().toImage();
    const QImage disabledImage = disabledField->grab().toImage();
    const QPoint inside(enabledImage.width() - 4, enabledImage.height() / 2);
    EXPECT_NE(enabledImage.pixelColor(inside), disabledImage.pixelColor(inside));

    // Enabled again, it shows the logic's colour once more.
    locked.setEnabled(true);
    EXPECT_TRUE(disabledField->isEnabled());
    EXPECT_EQ(disabledField->palette().color(QPalette::Active, QPalette::Text),
              QColor(0, 0, 255));
}

TEST_F(WindowStatesTest, AFieldsToolTipGivesItsParametersRangeUnitAndDecimals) {
    start();
    const QString range = widget("txtHAPositionControl", 3)->toolTip();
    EXPECT_TRUE(range.contains(QStringLiteral("Range: 0 to 100 %"))) << range.toStdString();
    EXPECT_TRUE(range.contains(QStringLiteral("Decimals: 1"))) << range.toStdString();
    const QString text = widget("txtHAOperationUnit", 0)->toolTip();
    EXPECT_TRUE(text.contains(QStringLiteral("At most 8 characters"))) << text.toStdString();

    start("1031");
    EXPECT_TRUE(widget("txtHAPositionControl", 3)
                    ->toolTip()
                    .contains(QStringLiteral("Bereich: 0 bis 100 %")));
}

TEST_F(WindowStatesTest, TheTreesPaneWidensWithItsHandleAndNeverCutsACaption) {
    start("1031");  // the longer captions
    auto* tree = qobject_cast<QTreeWidget*>(widget("treeNavigation"));
    tree->expandAll();
    QCoreApplication::processEvents();
    EXPECT_EQ(tree->horizontalScrollBar()->maximum(), 0) << "a caption is cut";

    const form::Control* page = nullptr;
    for (const form::Control* control : form().controls()) {
        if (control->kind() == form::ControlKind::Frame && control->container() == nullptr &&
            control->visible() && control->left() > 0) {
            page = control;
        }
    }
    ASSERT_NE(page, nullptr);
    const int pageLeft = view().widgetOf(*page)->x();
    const int treeWidth = tree->width();
    const int viewWidth = view().width();

    // Dragging the handle 40 pixels to the right.
    QWidget* handle = view().splitHandle();
    ASSERT_TRUE(handle->isVisible());
    EXPECT_EQ(handle->x(), tree->geometry().right() + 1);
    QTest::mousePress(handle, Qt::LeftButton, {}, QPoint(2, 10));
    QMouseEvent move(QEvent::MouseMove, QPointF(42, 10), handle->mapToGlobal(QPointF(42, 10)),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(handle, &move);
    QTest::mouseRelease(handle, Qt::LeftButton, {}, QPoint(42, 10));
    EXPECT_EQ(tree->width(), treeWidth + 40);
    EXPECT_EQ(view().widgetOf(*page)->x(), pageLeft + 40);
    EXPECT_EQ(view().width(), viewWidth + 40);
    // The form keeps the logic's measures.
    EXPECT_EQ(view().widgetOf(*page)->x() - view().treeExtra(), view().scale().pixels(page->left()));

    // Never narrower than the captions need.
    view().setTreeExtra(-500);
    EXPECT_EQ(view().treeExtra(), view().minimumTreeExtra());
    EXPECT_EQ(tree->horizontalScrollBar()->maximum(), 0);

    // With the tree hidden the page takes the whole width, as the form says,
    // and shown again the page is back beside it.
    const int widened = view().widgetOf(*page)->x();
    view().toolbarAction("hideTree")->trigger();
    EXPECT_FALSE(tree->isVisible());
    EXPECT_FALSE(handle->isVisible());
    EXPECT_TRUE(view().toolbarAction("hideTree")->isChecked());
    EXPECT_EQ(view().widgetOf(*page)->x(), view().scale().pixels(page->left()));
    EXPECT_EQ(view().width(), view().scale().pixels(form::Form::kUserControlWidth));
    view().toolbarAction("hideTree")->trigger();
    EXPECT_TRUE(tree->isVisible());
    EXPECT_EQ(view().widgetOf(*page)->x(), widened);
}

TEST_F(WindowStatesTest, APagesTimeStampSaysWhatItIs) {
    start();
    form::Control& wide = form().control("lblTimeStamp", 0);
    wide.setCaption("05.01.26 08:00:12");
    auto* label = qobject_cast<QLabel*>(view().widgetOf(wide));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), QStringLiteral("Last read: 05.01.26 08:00:12"));
    EXPECT_EQ(label->toolTip(), label->text());
    // Where the label has no room for the words, the time alone, and the
    // words in its tool tip.
    form::Control& narrow = form().control("lblTimeStamp", 11);
    narrow.setCaption("Monday, 5 January 2026 08:00:12");
    auto* short_ = qobject_cast<QLabel*>(view().widgetOf(narrow));
    EXPECT_EQ(short_->text(), QStringLiteral("Monday, 5 January 2026 08:00:12"));
    EXPECT_EQ(short_->toolTip(), QStringLiteral("Last read: Monday, 5 January 2026 08:00:12"));

    start("1031");
    form().control("lblTimeStamp", 0).setCaption("05.01.26 08:00:12");
    EXPECT_EQ(qobject_cast<QLabel*>(view().widgetOf(form().control("lblTimeStamp", 0)))->text(),
              QStringLiteral("Zuletzt gelesen: 05.01.26 08:00:12"));
}

TEST_F(WindowStatesTest, TabGoesThroughEveryPagesFieldsInReadingOrder) {
    start();
    int checked = 0;
    for (const form::Control* page : form().controls()) {
        QWidget* pageWidget = view().widgetOf(*page);
        if (page->kind() != form::ControlKind::Frame || page->container() != nullptr ||
            pageWidget == nullptr) {
            continue;
        }
        // The page's text boxes that the form shows.
        std::vector<QWidget*> fields;
        for (const form::Control* control : form().controls()) {
            QWidget* w = view().widgetOf(*control);
            if (control->kind() == form::ControlKind::TextBox && w != nullptr &&
                form::Form::isInside(*control, *page) && control->visible()) {
                fields.push_back(w);
            }
        }
        if (fields.size() < 2) {
            continue;
        }
        const auto at = [pageWidget](QWidget* w) { return w->mapTo(pageWidget, QPoint()); };
        const auto before = [&](QWidget* a, QWidget* b) {
            return at(a).y() != at(b).y() ? at(a).y() < at(b).y() : at(a).x() < at(b).x();
        };
        QWidget* first = *std::min_element(fields.begin(), fields.end(), before);
        // From the first field, each Tab to a field of the page lands on the
        // next one in reading order.
        QWidget* last = first;
        for (QWidget* next = first->nextInFocusChain(); next != first;
             next = next->nextInFocusChain()) {
            if (std::find(fields.begin(), fields.end(), next) == fields.end()) {
                continue;
            }
            EXPECT_TRUE(before(last, next)) << page->tag() << ": "
                                            << next->objectName().toStdString()
                                            << " comes out of reading order";
            last = next;
        }
        ++checked;
    }
    EXPECT_GE(checked, 10);
}

TEST(IconStoreRatio, PicturesAreDrawnWithTheScreensPixels) {
    IconStore icons(std::filesystem::path(KT500_SHARE_DIR) / "icons");
    const QPixmap sharp = icons.pixmap("read", QSize(16, 16), 2.0);
    EXPECT_EQ(sharp.devicePixelRatio(), 2.0);
    EXPECT_EQ(sharp.width(), 32);
    EXPECT_EQ(sharp.deviceIndependentSize().toSize(), QSize(16, 16));
    const QPixmap plain = icons.pixmap("read", QSize(16, 16), 1.0);
    EXPECT_EQ(plain.width(), 16);
    // A selected row's state picture is the picture itself, not tinted.
    const QIcon notRead = icons.icon("notRead");
    EXPECT_EQ(notRead.pixmap(QSize(16, 16), 1.0, QIcon::Selected).toImage(),
              notRead.pixmap(QSize(16, 16), 1.0, QIcon::Normal).toImage());
    // Without a ratio given, the application's.
    EXPECT_EQ(icons.pixmap("read", QSize(16, 16)).devicePixelRatio(), qApp->devicePixelRatio());
}

}  // namespace
}  // namespace kt500::window
