#include "data/ChangeTracking.h"
#include "devices/SeparatedList.h"
#include "unit/data/DataTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kt500::data {
namespace {

using test::AddConfirmationRow;
using testing::TestUserControl;

TEST(CheckIfValueChangedTest, RowOfTheCheckStateNamesTheParameter) {
    TestUserControl uc;
    AddConfirmationRow(uc, "hartTag", "HAoperationUnit", true, "Tag");
    AddConfirmationRow(uc, "message", "HAoperationUnit", false, "Message");
    for (const auto& [name, checked, changed] : {std::tuple{"hartTag", true, true},
                                                 {"hartTag", false, false},
                                                 {"message", false, true},
                                                 {"message", true, false},
                                                 {"description", true, false}}) {
        EXPECT_EQ(uc.changes.CheckIfValueChanged(name, checked), changed) << name << " " << checked;
    }
    // The KT540's meters are never normal parameters: always changed.
    TestUserControl kt540(testing::SessionOf("KT540_1.0"));
    EXPECT_TRUE(kt540.changes.CheckIfValueChanged("valveReversals", true));
    EXPECT_FALSE(kt540.changes.CheckIfValueChanged("hartTag", true));
}

TEST(RemoveSpecialCaseItemTest, RemovesTheRowOfThatText) {
    TestUserControl uc;
    AddConfirmationRow(uc, "hartTag", "HAoperationUnit", true, "Tag");
    AddConfirmationRow(uc, "message", "HAoperationUnit", true, "Message");
    uc.changes.RemoveSpecialCaseItem("Tag");
    uc.changes.RemoveSpecialCaseItem("message");  // the internal name is no row text
    EXPECT_EQ(test::ConfirmationTexts(uc), "Message");
}

TEST(ChangeTreeIconTest, ChangedIsIgnoredWhileAReadShowsProgress) {
    TestUserControl uc;
    form::TreeModel& tree = uc.form().control("treeNavigation").tree();
    tree.add("", "operationUnit", "Operation unit", "notRead");
    form::Control& progress = uc.form().control("fraProgress");

    progress.setVisible(true);
    uc.changes.ChangeTreeIcon("operationUnit", "changed");
    EXPECT_EQ(tree.node("operationUnit").image, "notRead");
    uc.changes.ChangeTreeIcon("operationUnit", "read");
    EXPECT_EQ(tree.node("operationUnit").image, "read");

    progress.setVisible(false);
    uc.changes.ChangeTreeIcon("operationUnit", "changed");
    EXPECT_EQ(tree.node("operationUnit").image, "changed");
    EXPECT_NO_THROW(uc.changes.ChangeTreeIcon("noSuchPage", "error"));
}

// The operation unit page: the hartTag text box, the deviceMonth list box
// and their marks, edited by the user.
class RestoreOldValuesTest : public ::testing::TestWithParam<bool> {
protected:
    RestoreOldValuesTest() {
        // Entries keep their item data whatever language their texts are in.
        list.addItem("first");
        list.setItemData(0, 1);
        list.addItem("second");
        list.setItemData(1, 2);
        text.setText("edited");
        list.setListIndex(0);
        for (form::Control* control : {&text, &list}) {
            control->setForeColor(devices::ColorChanged);
        }
        textMark.setVisible(true);
        listMark.setVisible(true);
        uc.tools().CurrentFrame = "HAoperationUnit";
    }
    // A snapshot of the page's fields in form order: hartTag, description,
    // message, deviceDay, deviceMonth, deviceDate; a list box by the item
    // data of its entry.
    static std::string snapshot(const std::string& hartTag, const std::string& deviceMonth) {
        std::string values;
        for (const std::string& value :
             {hartTag, std::string(), std::string(), std::string(), deviceMonth, std::string()}) {
            devices::AppendSeparated(values, value);
        }
        return values;
    }
    TestUserControl uc{testing::SessionOf("KT520_7", GetParam())};
    form::Control& text = uc.form().control("txtHAOperationUnit", 0);
    form::Control& list = uc.form().control("comHAOperationUnit", 1);
    form::Control& textMark = uc.form().control("imgHAOperationUnit", 0);
    form::Control& listMark = uc.form().control("imgHAOperationUnit", 4);
};

TEST_P(RestoreOldValuesTest, OneFieldOrThePageFromTheSnapshot) {
    const bool online = GetParam();
    // No snapshot leaves the field.
    uc.changes.RestoreOldValues("HAoperationUnit", "hartTag");
    EXPECT_EQ(text.text(), "edited");

    uc.tools().set_old_values(snapshot("PV-101", "2"));
    uc.changes.RestoreOldValues("HAoperationUnit", "hartTag");
    EXPECT_EQ(text.text(), "PV-101");
    EXPECT_EQ(list.listIndex(), 0);
    EXPECT_EQ(text.foreColor(), online ? devices::ColorRestored : devices::ColorChanged);
    EXPECT_EQ(textMark.visible(), !online);
    EXPECT_TRUE(listMark.visible());

    uc.changes.RestoreOldValues("HAoperationUnit", "");
    EXPECT_EQ(list.listIndex(), 1);
    EXPECT_EQ(listMark.visible(), !online);

    // An empty value clears the list's selection.
    uc.tools().set_old_values(snapshot("PV-101", ""));
    uc.changes.RestoreOldValues("HAoperationUnit", "deviceMonth");
    EXPECT_EQ(list.listIndex(), -1);
}

INSTANTIATE_TEST_SUITE_P(OnlineAndOffline, RestoreOldValuesTest, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Online" : "Offline"; });

}  // namespace
}  // namespace kt500::data
