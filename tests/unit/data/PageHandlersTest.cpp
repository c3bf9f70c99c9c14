#include "data/PageHandlers.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::data {
namespace {

using testing::TestUserControl;

// The control with the page handlers on its events, the alert settings
// page showing with values as a read left them. The refused and the
// accepted edit of a text field are in the scenario edit_refused.
struct AlertPage {
    AlertPage() {
        uc.form().control("treeNavigation").tree().add("", "alertSettings", "Alert", "read");
        uc.form().control("txtHAAlertLimit", 0).setText("3.0");
        uc.form().control("comHAAlertSettings", 0).setListIndex(1);
        uc.tools().CurrentFrame = "HAalertSettings";
        pages.addHandlers(handlers);
        uc.form().setEventSink([this](form::FormEvent& event) {
            if (const form::Handler* handler = handlers.find(event)) {
                (*handler)(event);
            }
        });
    }
    std::string node() {
        return uc.form().control("treeNavigation").tree().node("alertSettings").image;
    }
    int pendingRows() { return uc.form().control("lsvConfirmation").listView().count(); }
    // A user typing a new text and leaving the field.
    void edit(form::Control& field, const std::string& text) {
        uc.form().raiseGotFocus(field);
        uc.form().raiseKeyPress(field, '5');
        field.setText(text);
        uc.form().raiseLostFocus(field);
    }

    TestUserControl uc;
    form::EventHandlers handlers;
    PageHandlers pages{uc};
};

TEST(PageHandlersTest, LeavingAnEditedFieldAgainWithoutTypingAddsNoSecondRow) {
    AlertPage page;
    form::Control& limit = page.uc.form().control("txtHAAlertLimit", 0);
    page.edit(limit, "100");
    page.uc.form().raiseLostFocus(limit);
    EXPECT_EQ(page.pendingRows(), 1);
}

TEST(PageHandlersTest, AListBoxShowsAChangeOnlyWhenItsEntryDiffers) {
    for (const auto& [entry, changed] : {std::pair{1, false}, {0, true}}) {
        AlertPage page;
        form::Control& list = page.uc.form().control("comHAAlertSettings", 0);
        page.uc.form().raiseGotFocus(list);
        list.setListIndex(entry);
        page.uc.form().raiseLostFocus(list);
        EXPECT_EQ(list.foreColor(), changed ? devices::ColorChanged : devices::ColorSynchronised);
        EXPECT_EQ(page.uc.form().control("imgHAAlertSettings", 0).visible(), changed);
        EXPECT_EQ(page.node(), changed ? "changed" : "read");
        EXPECT_EQ(page.pendingRows(), changed ? 1 : 0);
    }
}

TEST(PageHandlersTest, TheYearOfTheDeviceDateIsChecked) {
    for (const std::string year : {"2155", "2156"}) {
        AlertPage page;
        page.uc.tools().CurrentFrame = "HAoperationUnit";
        page.edit(page.uc.form().control("txtHAOperationUnit", 2), year);
        EXPECT_EQ(page.uc.messages.size(), year == "2155" ? 0U : 1U);
    }
}

TEST(SnapshotTest, OldValuesOfEveryPageByTag) {
    TestUserControl uc;
    uc.form().control("txtHAAlertLimit", 0).setText("3.0");
    uc.form().control("comHAAlertSettings", 0).setListIndex(1);
    uc.form().control("txtHAOperationUnit", 0).setText("PV-101");
    uc.tools().CurrentFrame = "HAoperationUnit";
    uc.changes.SaveOldValues();
    EXPECT_EQ(uc.tools().CurrentFrame, "HAoperationUnit");
    EXPECT_EQ(uc.changes.GetOldValue("hartTag", "HAoperationUnit"), "PV-101");
    uc.tools().CurrentFrame = "HAalertSettings";
    EXPECT_EQ(uc.changes.GetOldValue("travelDeviationTrendLimit", "HAalertSettings"), "3.0");
    EXPECT_EQ(uc.changes.GetOldValue("useFixedAlertLimits", "HAalertSettings"), "1");
    EXPECT_EQ(uc.changes.GetOldValue("hartTag", "HAalertSettings"), "");
}

}  // namespace
}  // namespace kt500::data
