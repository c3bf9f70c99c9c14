// The index of the controls on each page must follow the form: a control
// added, moved to another page or removed, a page retagged, another form.
#include "data/PageControls.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kt500::data {
namespace {

using form::Control;
using form::ControlKind;
using form::Form;

std::vector<std::string> Names(const std::vector<Control*>& controls) {
    std::vector<std::string> names;
    for (const Control* control : controls) {
        names.push_back(control->displayName());
    }
    return names;
}

using Names_ = std::vector<std::string>;

class PageControlsTest : public ::testing::Test {
protected:
    PageControlsTest() {
        pageA = &form.add(ControlKind::Frame, "fraKT520", 0);
        pageA->setTag("HAoperationUnit");
        pageB = &form.add(ControlKind::Frame, "fraKT520", 1);
        pageB->setTag("HAalertSettings");
        // A frame within a page: its controls belong to the page.
        inner = &form.add(ControlKind::Frame, "fraInner", -1, pageA);
        form.add(ControlKind::TextBox, "txtA", 0, pageA);
        form.add(ControlKind::TextBox, "txtA", 1, inner);
        form.add(ControlKind::TextBox, "txtB", 0, pageB);
        form.add(ControlKind::TextBox, "txtElsewhere");
    }
    std::vector<std::string> on(const Control& page) {
        return Names(index.on(form, "fraKT520", page));
    }

    Form form;
    Control* pageA = nullptr;
    Control* pageB = nullptr;
    Control* inner = nullptr;
    PageControls index;
};

TEST_F(PageControlsTest, EachPageHoldsWhatLiesInItInFormOrder) {
    EXPECT_EQ(on(*pageA), (Names_{"fraInner", "txtA(0)", "txtA(1)"}));
    EXPECT_EQ(on(*pageB), (Names_{"txtB(0)"}));
    EXPECT_EQ(Names(index.pagesOfGroup(form, "fraKT520", "alertSettings")), (Names_{"fraKT520(1)"}));
    EXPECT_TRUE(index.pagesOfGroup(form, "fraKT520", "hartAddress").empty());
    // Another frame array has pages of its own.
    EXPECT_TRUE(index.on(form, "fraKT540", *pageA).empty());
}

TEST_F(PageControlsTest, FollowsControlsAddedMovedAndRemoved) {
    ASSERT_EQ(on(*pageB), (Names_{"txtB(0)"}));
    form.add(ControlKind::ComboBox, "cboB", -1, pageB);
    EXPECT_EQ(on(*pageB), (Names_{"txtB(0)", "cboB"}));

    form.setContainer(form.control("txtA", 1), pageB);
    EXPECT_EQ(on(*pageA), (Names_{"fraInner", "txtA(0)"}));
    EXPECT_EQ(on(*pageB), (Names_{"txtA(1)", "txtB(0)", "cboB"}));

    form.remove(form.control("cboB"));
    EXPECT_EQ(on(*pageB), (Names_{"txtA(1)", "txtB(0)"}));
}

TEST_F(PageControlsTest, FollowsAPageRetagged) {
    ASSERT_EQ(Names(index.pagesOfGroup(form, "fraKT520", "operationUnit")), (Names_{"fraKT520(0)"}));
    pageB->setTag("HAoperationUnit");
    EXPECT_EQ(Names(index.pagesOfGroup(form, "fraKT520", "operationUnit")),
              (Names_{"fraKT520(0)", "fraKT520(1)"}));
    EXPECT_TRUE(index.pagesOfGroup(form, "fraKT520", "alertSettings").empty());
}

TEST_F(PageControlsTest, WatchesTheFormItIsHandedNext) {
    ASSERT_EQ(on(*pageB), (Names_{"txtB(0)"}));
    auto other = std::make_unique<Form>();
    Control& page = other->add(ControlKind::Frame, "fraKT520", 0);
    page.setTag("HAoperationUnit");
    other->add(ControlKind::TextBox, "txtC", -1, &page);
    EXPECT_EQ(Names(index.on(*other, "fraKT520", page)), (Names_{"txtC"}));
    other->add(ControlKind::TextBox, "txtD", -1, &page);
    EXPECT_EQ(Names(index.on(*other, "fraKT520", page)), (Names_{"txtC", "txtD"}));
    other.reset();
    // Back on the first form, which changed meanwhile.
    form.add(ControlKind::TextBox, "txtE", -1, pageB);
    EXPECT_EQ(on(*pageB), (Names_{"txtB(0)", "txtE"}));
}

}  // namespace
}  // namespace kt500::data
