// Property typing of controls: what each kind has, the text form scripts
// see, list entries and their bounds.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::form::test {
namespace {

TEST(Control, PropertiesTheKindLacksOrValuesItCannotHoldAreRefused) {
    Control timer(ControlKind::Timer, "tmrIconBlink");
    expectThrowNaming<std::invalid_argument>({"tmrIconBlink", "Caption"},
                                             [&] { timer.setCaption("x"); });
    EXPECT_THROW(timer.setInterval(-1), std::invalid_argument);
    Control text(ControlKind::TextBox, "txtHAOperationUnit", 2);
    EXPECT_THROW((void)text.get("Caption"), std::invalid_argument);
    EXPECT_THROW((void)text.tree(), std::invalid_argument);
    EXPECT_THROW(text.set("Name", "other"), std::invalid_argument);  // read-only
    for (const auto& [property, bad] :
         std::vector<std::pair<const char*, const char*>>{{"Visible", "maybe"},
                                                          {"Left", "12.5"},
                                                          {"Left", "1e12"},
                                                          {"ForeColor", "0x1FFFFFFFF"},
                                                          {"NoSuchThing", "1"}}) {
        EXPECT_THROW(text.set(property, bad), std::invalid_argument) << property << "=" << bad;
    }
    Control check(ControlKind::CheckBox, "chkPLParams", 9);
    EXPECT_THROW(check.setValue(3), std::invalid_argument);
    EXPECT_THROW(check.set("Value", "-1"), std::invalid_argument);
}

TEST(Control, ValuesPrintAsTheSystemHoldsThem) {
    Control text(ControlKind::TextBox, "txtHAOperationUnit", 2);
    text.set("ForeColor", "0xff0000");
    EXPECT_EQ(text.get("ForeColor"), "16711680");
    text.set("forecolor", "&H0");  // names are case-insensitive, &H is hex
    EXPECT_EQ(text.foreColor(), 0U);
    text.set("Visible", "false");
    EXPECT_EQ(text.get("Visible"), "False");
    Control option(ControlKind::OptionButton, "optHAMonitoring", 0);
    option.set("Value", "-1");
    EXPECT_EQ(option.get("Value"), "True");

    Control bar(ControlKind::ProgressBar, "ProgressBar1");
    bar.setMax(40);
    EXPECT_THROW(bar.setValue(41), std::invalid_argument);
    EXPECT_THROW(bar.setMin(50), std::invalid_argument);
    bar.setValue(39);
    bar.setMax(20);  // the value follows a Max that falls below it
    EXPECT_EQ(bar.value(), 20.0);
    bar.set("Value", "12.5");
    EXPECT_EQ(bar.get("Value"), "12.5");
}

TEST(Control, ListEntriesWithItemDataAndSelection) {
    Control list(ControlKind::ComboBox, "comSelectLanguage");
    list.addItem("English");
    list.addItem("German");
    list.setItemData(list.newIndex(), 1031);
    list.addItem("First", 0);
    EXPECT_EQ(list.newIndex(), 0);
    EXPECT_EQ(list.get("ItemData(2)"), "1031");

    list.setListIndex(2);
    EXPECT_EQ(list.text(), "German");
    list.setText("English");
    EXPECT_EQ(list.listIndex(), 1);
    EXPECT_THROW(list.setText("Finnish"), std::invalid_argument);
}

TEST(Control, ListIndicesOutsideTheListThrowNamingTheControl) {
    Control list(ControlKind::ComboBox, "comFlowModification", 1);
    list.addItem("Linear");
    const auto outOfRange = [](const auto& call) {
        expectThrowNaming<std::out_of_range>({"comFlowModification(1)"}, call);
    };
    outOfRange([&] { (void)list.list(1); });
    outOfRange([&] { (void)list.itemData(-1); });
    outOfRange([&] { list.setListIndex(-2); });
    outOfRange([&] { list.removeItem(3); });
    outOfRange([&] { list.addItem("x", 3); });
    outOfRange([&] { (void)list.get("ItemData"); });  // nothing selected
    outOfRange([&] { (void)list.get("List(7)"); });
}

}  // namespace
}  // namespace kt500::form::test
