// The widgets show what the form holds on every page, and what the user does
// with them reaches the form and the logic.
#include "app/window/DateRows.h"
#include "app/window/DesktopSession.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>

#include "CaptionClipped.h"
#include "WindowTest.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace kt500::window {
namespace {

using form::ControlKind;

class FormViewTest : public WindowTest {
protected:
    void SetUp() override { start("KT520_7"); }

    template <typename W>
    W* widget(std::string_view name, int index = -1) {
        return qobject_cast<W*>(view().widgetOf(form().control(name, index)));
    }
    std::string currentFrame() { return desktop.session().control().m_objTools->CurrentFrame; }

    // Clicks the node's item in the tree widget, as the user does.
    void clickNode(QTreeWidget& tree, const std::string& key) {
        for (QTreeWidgetItemIterator it(&tree); *it != nullptr; ++it) {
            if ((*it)->data(0, Qt::UserRole).toString().toStdString() == key) {
                tree.scrollToItem(*it);
                QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                                  tree.visualItemRect(*it).center());
                settle();
                return;
            }
        }
        ADD_FAILURE() << "no item for node " << key;
    }

    // Every control on the page: its widget shows what the form holds.
    void expectPageMirrored(const form::Control& page) {
        QWidget* pageWidget = view().widgetOf(page);
        ASSERT_NE(pageWidget, nullptr);
        EXPECT_TRUE(pageWidget->isVisible()) << page.displayName();
        ExpectPageWhole(view(), page);
        for (const form::Control* control : form().controls()) {
            QWidget* w = view().widgetOf(*control);
            if (w == nullptr || !form::Form::isInside(*control, page)) {
                continue;
            }
            const std::string name = control->displayName();
            if (DatePlaceOf(form(), *control) == DatePlace::Dropped) {
                // The caption of the device date's day or month row: the
                // date editor's row stands for it.
                EXPECT_FALSE(w->isVisibleTo(pageWidget)) << name;
                continue;
            }
            bool shown = true;
            for (const form::Control* c = control; c != &page; c = c->container()) {
                shown = shown && c->visible();
            }
            EXPECT_EQ(w->isVisibleTo(pageWidget), shown) << name;
            EXPECT_EQ(w->isEnabled(), control->enabled() && pageWidget->isEnabled()) << name;
            const QString caption = QString::fromStdString(
                control->has(form::PropertyId::Caption) ? control->caption() : "");
            switch (control->kind()) {
                case ControlKind::TextBox:
                    if (control->look() == form::Control::Look::Date) {
                        // The device date, whole, in one editor.
                        auto* edit = qobject_cast<QDateEdit*>(w);
                        ASSERT_NE(edit, nullptr) << name;
                        const QDate date = DateOf(DatePartsOf(form(), *control));
                        EXPECT_EQ(edit->date(), date.isValid() ? date : edit->minimumDate())
                            << name;
                        break;
                    }
                    EXPECT_EQ(qobject_cast<QLineEdit*>(w)->text().toStdString(), control->text())
                        << name;
                    break;
                case ControlKind::ComboBox: {
                    if (control->look() == form::Control::Look::Switch) {
                        // An on/off list: a check box ticked on the on entry.
                        auto* check = qobject_cast<QCheckBox*>(w);
                        ASSERT_NE(check, nullptr) << name;
                        const int index = control->listIndex();
                        EXPECT_EQ(check->isChecked(), index >= 0 && control->itemData(index) == 1)
                            << name;
                        break;
                    }
                    auto* box = qobject_cast<QComboBox*>(w);
                    ASSERT_EQ(box->count(), control->listCount()) << name;
                    for (int i = 0; i < box->count(); ++i) {
                        EXPECT_EQ(box->itemText(i).toStdString(), control->list(i)) << name;
                    }
                    EXPECT_EQ(box->currentIndex(), control->listIndex()) << name;
                    break;
                }
                case ControlKind::Label:
                    if (control->name() == "lblTimeStamp") {
                        // The time, said what it is where there is room.
                        EXPECT_TRUE(qobject_cast<QLabel*>(w)->text().endsWith(caption)) << name;
                        if (!caption.isEmpty()) {
                            EXPECT_TRUE(w->toolTip().endsWith(caption) &&
                                        w->toolTip().size() > caption.size())
                                << name;
                        }
                    } else if (control->look() == form::Control::Look::Grouped) {
                        EXPECT_EQ(qobject_cast<QLabel*>(w)->text(), GroupedDigits(caption)) << name;
                    } else if (control->look() != form::Control::Look::Model) {
                        EXPECT_EQ(qobject_cast<QLabel*>(w)->text(), caption) << name;
                    }
                    break;
                case ControlKind::CommandButton: {
                    // The caption with its Alt letter marked.
                    QString text = qobject_cast<QAbstractButton*>(w)->text();
                    text.replace(QRegularExpression(QStringLiteral("&(.)")), QStringLiteral("\\1"));
                    EXPECT_EQ(text, caption) << name;
                    break;
                }
                case ControlKind::OptionButton:
                    EXPECT_EQ(qobject_cast<QAbstractButton*>(w)->text(), caption) << name;
                    break;
                case ControlKind::CheckBox:
                    EXPECT_EQ(qobject_cast<QCheckBox*>(w)->checkState() != Qt::Unchecked,
                              control->value() != 0)
                        << name;
                    break;
                case ControlKind::Frame:
                    EXPECT_EQ(qobject_cast<QGroupBox*>(w)->title(), caption) << name;
                    break;
                default:
                    break;
            }
        }
    }

    // Every item of the toolbar is on it, none behind its overflow arrow.
    void expectToolbarFits() {
        QWidget* toolbar = view().widgetOf(form().control("smuiDTM", 1));
        auto* overflow = toolbar->findChild<QWidget*>(QStringLiteral("qt_toolbar_ext_button"));
        ASSERT_NE(overflow, nullptr);
        EXPECT_FALSE(overflow->isVisible());
    }

    // Clicks every node of the tree and checks the page it shows; returns
    // how many pages were seen.
    std::size_t visitEveryPage() {
        auto* tree = widget<QTreeWidget>("treeNavigation");
        tree->expandAll();
        std::set<std::string> pages;
        for (const form::TreeNode& node : form().control("treeNavigation").tree().nodes()) {
            clickNode(*tree, node.key);
            EXPECT_EQ(form().control("treeNavigation").tree().selectedKey(), node.key);
            EXPECT_EQ(tree->currentItem()->data(0, Qt::UserRole).toString().toStdString(),
                      node.key);
            if (const form::Control* page = ShownPage(form(), currentFrame())) {
                pages.insert(page->tag());
                expectPageMirrored(*page);
            }
        }
        return pages.size();
    }
};

// Every family, in English and in German: after a full upload every page of
// the tree mirrors the form, and no caption is cut off or covered.
struct Family {
    const char* device;
    std::size_t pages;
};

class FamilyFormViewTest : public FormViewTest, public ::testing::WithParamInterface<Family> {
protected:
    void SetUp() override {}
    void uploadAll(const std::string& language) {
        start(GetParam().device, true, language);
        QAction* uploadAll = view().toolbarAction("uploadAll");
        ASSERT_TRUE(uploadAll->isEnabled());
        uploadAll->trigger();
        // The chain runs: the toolbar's stop is offered until the BL has answered.
        EXPECT_TRUE(view().toolbarAction("stop")->isEnabled());
        settle();
        EXPECT_FALSE(view().toolbarAction("stop")->isEnabled());
    }
};

TEST_P(FamilyFormViewTest, EveryPageOfTheTreeShowsTheFormsValuesAfterAFullUpload) {
    uploadAll("1033");
    EXPECT_GE(visitEveryPage(), GetParam().pages);
}

TEST_P(FamilyFormViewTest, EveryPageFitsItsGermanCaptions) {
    uploadAll("1031");
    EXPECT_EQ(view().toolbarAction("uploadAll")->toolTip().toStdString(),
              desktop.session().control().Translate("uploadAll"));
    EXPECT_GE(visitEveryPage(), GetParam().pages);
    expectToolbarFits();
    // Offline the header's texts are the longest.
    start(GetParam().device, false, "1031");
    expectToolbarFits();
}

INSTANTIATE_TEST_SUITE_P(EachFamily, FamilyFormViewTest,
                         ::testing::Values(Family{"KT520_7", 24}, Family{"KT540_1.0", 18},
                                           Family{"PL500_2", 18}),
                         [](const auto& info) { return TestNameOf(info.param.device); });

TEST_F(FormViewTest, ATypedValueReachesTheFormAndTheConfirmationList) {
    clickNode(*widget<QTreeWidget>("treeNavigation"), "operationUnit");
    auto* tag = widget<QLineEdit>("txtHAOperationUnit", 0);
    ASSERT_TRUE(tag->isVisible());
    tag->setFocus(Qt::MouseFocusReason);
    tag->selectAll();
    QTest::keyClicks(tag, "NEWTAG");
    EXPECT_EQ(form().control("txtHAOperationUnit", 0).text(), "NEWTAG");
    // Leaving the field puts the change into the confirmation list.
    widget<QLineEdit>("txtHAOperationUnit", 1)->setFocus(Qt::TabFocusReason);
    settle();
    const form::ListViewModel& rows = form().control("lsvConfirmation").listView();
    auto* list = widget<QTreeWidget>("lsvConfirmation");
    ASSERT_EQ(list->topLevelItemCount(), rows.count());
    const int row = rows.findKey("hartTag");
    ASSERT_GT(row, 0);
    QTreeWidgetItem* item = list->topLevelItem(row - 1);
    EXPECT_EQ(item->text(0).toStdString(), rows.row(row).text);
    EXPECT_EQ(item->text(2).toStdString(), "NEWTAG");
    EXPECT_EQ(item->checkState(0) == Qt::Checked, rows.row(row).checked);

    // Unticking the row in the list reaches the logic's ItemCheck.
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(item).topLeft() + QPoint(10, 8));
    EXPECT_FALSE(rows.row(row).checked);
}

// The pump delivers the BL's replies while Qt's event loop runs.
TEST_F(FormViewTest, TheBLsRepliesArriveInRealTime) {
    clickNode(*widget<QTreeWidget>("treeNavigation"), "operationUnit");
    desktop.setRealTime(true);
    QAction* uploadCurrent = view().toolbarAction("uploadCurrent");
    uploadCurrent->trigger();
    EXPECT_FALSE(uploadCurrent->isEnabled());
    EXPECT_TRUE(view().toolbarAction("stop")->isEnabled());
    EXPECT_TRUE(QTest::qWaitFor([&] { return uploadCurrent->isEnabled(); }, 5000));
    EXPECT_FALSE(view().toolbarAction("stop")->isEnabled());
    desktop.setRealTime(false);
}

}  // namespace
}  // namespace kt500::window
