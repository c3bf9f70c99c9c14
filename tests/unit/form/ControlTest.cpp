// Property typing of controls: what each kind has, the text form scripts
// see, list entries and their bounds.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::form::test {
namespace {

TEST(Control, APropertyTheKindLacksNamesControlAndProperty) {
    Control timer(ControlKind::Timer, "tmrIconBlink");
    try {
        timer.setCaption("x");
        FAIL();
    } catch (const std::invalid_argument& e) {
        const std::string what = e.what();
        EXPECT_NE(what.find("tmrIconBlink"), std::string::npos);
        EXPECT_NE(what.find("Caption"), std::string::npos);
    }
    Control text(ControlKind::TextBox, "txtHAOperationUnit", 2);
    EXPECT_THROW((void)text.get("Caption"), std::invalid_argument);
    EXPECT_THROW(text.set("ListIndex", "0"), std::invalid_argument);
    EXPECT_THROW((void)text.tree(), std::invalid_argument);
    EXPECT_THROW((void)text.get("NoSuchThing"), std::invalid_argument);
    EXPECT_THROW(text.set("Name", "other"), std::invalid_argument);
    Control label(ControlKind::Label, "lblPLParams", 9);
    EXPECT_THROW(label.setText("x"), std::invalid_argument);
}

TEST(Control, ValuesPrintAsTheSystemHoldsThem) {
    Control text(ControlKind::TextBox, "txtHAOperationUnit", 2);
    text.set("ForeColor", "0xff0000");
    EXPECT_EQ(text.foreColor(), 0xff0000U);
    EXPECT_EQ(text.get("ForeColor"), "16711680");
    text.set("forecolor", "&H0");  // names are case-insensitive, &H is hex
    EXPECT_EQ(text.get("ForeColor"), "0");
    EXPECT_EQ(text.get("Visible"), "True");
    text.set("Visible", "false");
    EXPECT_EQ(text.get("Visible"), "False");
    text.set("Enabled", "0");
    EXPECT_FALSE(text.enabled());
    text.set("left", "2880");
    EXPECT_EQ(text.left(), 2880);
    EXPECT_EQ(text.get("Index"), "2");
    EXPECT_EQ(text.get("Name"), "txtHAOperationUnit");
    EXPECT_THROW(text.set("Visible", "maybe"), std::invalid_argument);
    EXPECT_THROW(text.set("Left", "12.5"), std::invalid_argument);
    EXPECT_THROW(text.set("Left", "1e12"), std::invalid_argument);
    EXPECT_THROW(text.set("ForeColor", "0x1FFFFFFFF"), std::invalid_argument);
}

TEST(Control, CheckOptionAndProgressValues) {
    Control check(ControlKind::CheckBox, "chkPLParams", 9);
    check.setValue(2);
    EXPECT_EQ(check.get("Value"), "2");
    EXPECT_THROW(check.setValue(3), std::invalid_argument);
    EXPECT_THROW(check.set("Value", "-1"), std::invalid_argument);

    Control option(ControlKind::OptionButton, "optHAMonitoring", 0);
    EXPECT_EQ(option.get("Value"), "False");
    option.set("Value", "-1");
    EXPECT_EQ(option.get("Value"), "True");

    Control bar(ControlKind::ProgressBar, "ProgressBar1");
    bar.setMax(40);
    bar.setValue(39);
    EXPECT_THROW(bar.setValue(41), std::invalid_argument);
    EXPECT_THROW(bar.setMin(50), std::invalid_argument);
    bar.setMax(20);  // the value follows a Max that falls below it
    EXPECT_EQ(bar.value(), 20.0);
    bar.set("Value", "12.5");
    EXPECT_EQ(bar.get("Value"), "12.5");
}

TEST(Control, ListEntriesWithItemDataAndSelection) {
    Control list(ControlKind::ComboBox, "comSelectLanguage");
    EXPECT_EQ(list.listIndex(), -1);
    EXPECT_EQ(list.newIndex(), -1);
    list.addItem("English");
    list.setItemData(list.newIndex(), 1033);
    list.addItem("German");
    list.setItemData(list.newIndex(), 1031);
    list.addItem("First", 0);
    EXPECT_EQ(list.newIndex(), 0);
    EXPECT_EQ(list.listCount(), 3);
    EXPECT_EQ(list.list(1), "English");
    EXPECT_EQ(list.get("ItemData(2)"), "1031");
    EXPECT_EQ(list.text(), "");

    list.setListIndex(2);
    EXPECT_EQ(list.text(), "German");
    EXPECT_EQ(list.get("ItemData"), "1031");
    list.removeItem(0);  // the selection keeps its entry
    EXPECT_EQ(list.listIndex(), 1);
    list.removeItem(1);  // and goes with it
    EXPECT_EQ(list.listIndex(), -1);

    list.setText("English");
    EXPECT_EQ(list.listIndex(), 0);
    EXPECT_THROW(list.setText("Finnish"), std::invalid_argument);
    list.clear();
    EXPECT_EQ(list.listCount(), 0);
    EXPECT_EQ(list.listIndex(), -1);
}

TEST(Control, ListIndicesOutsideTheListThrowNamingTheControl) {
    Control list(ControlKind::ComboBox, "comFlowModification", 1);
    list.addItem("Linear");
    const auto expectOutOfRange = [](const auto& call) {
        try {
            call();
            FAIL();
        } catch (const std::out_of_range& e) {
            EXPECT_NE(std::string(e.what()).find("comFlowModification(1)"), std::string::npos)
                << e.what();
        }
    };
    expectOutOfRange([&] { (void)list.list(1); });
    expectOutOfRange([&] { (void)list.itemData(-1); });
    expectOutOfRange([&] { list.setItemData(5, 1); });
    expectOutOfRange([&] { list.setListIndex(1); });
    expectOutOfRange([&] { list.setListIndex(-2); });
    expectOutOfRange([&] { list.removeItem(3); });
    expectOutOfRange([&] { list.addItem("x", 3); });
    expectOutOfRange([&] { (void)list.get("ItemData"); });  // nothing selected
    expectOutOfRange([&] { (void)list.get("List(7)"); });
    EXPECT_THROW((void)list.get("ListCount(1)"), std::invalid_argument);
}

TEST(Control, FileListsAndTimersKeepTheirSettings) {
    Control files(ControlKind::FileList, "filOpenFile");
    files.set("Path", "/tmp/data");
    files.set("Pattern", "*.chr");
    EXPECT_EQ(files.get("Path"), "/tmp/data");
    EXPECT_EQ(files.pattern(), "*.chr");
    EXPECT_THROW(files.set("Interval", "10"), std::invalid_argument);

    Control timer(ControlKind::Timer, "tmrIconBlink");
    EXPECT_EQ(timer.get("Enabled"), "False");
    EXPECT_THROW(timer.setInterval(-1), std::invalid_argument);
    EXPECT_THROW(timer.setVisible(true), std::invalid_argument);
}

}  // namespace
}  // namespace kt500::form::test
