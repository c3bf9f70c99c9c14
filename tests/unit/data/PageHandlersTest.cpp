#include "data/PageHandlers.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace kt500::data {
namespace {

using testing::TestUserControl;

// The control with the page handlers on its events, the alert settings
// page showing with values as a read left them.
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
    form::Control& limit() { return uc.form().control("txtHAAlertLimit", 0); }
    form::Control& mark(const std::string& tag) {
        for (form::Control* element : uc.form().elements("imgHAAlertSettings")) {
            if (element->tag() == tag) {
                return *element;
            }
        }
        throw std::logic_error("no mark for " + tag);
    }
    std::string node() {
        return uc.form().control("treeNavigation").tree().node("alertSettings").image;
    }
    long rowsAdded() {
        return std::ranges::count_if(uc.calls, [](const std::string& call) {
            return call.starts_with("AddConfirmationRow");
        });
    }
    int pendingRows() { return uc.form().control("lsvConfirmation").listView().count(); }
    // A user typing a new text and leaving the field.
    void edit(form::Control& field, const std::string& text) {
        uc.form().raiseKeyPress(field, '5');
        field.setText(text);
        uc.form().raiseLostFocus(field);
    }

    TestUserControl uc;
    form::EventHandlers handlers;
    PageHandlers pages{uc};
};

TEST(PageHandlersTest, ARefusedEditStaysRedAnEditWithinTheLimitsMarksThePageAndAddsOneRow) {
    AlertPage page;
    form::Control& mark = page.mark("travelDeviationTrendLimit");
    page.edit(page.limit(), "150");
    EXPECT_EQ(page.limit().foreColor(), devices::ColorRefused);
    EXPECT_EQ(mark.picture(), "error");
    EXPECT_EQ(page.uc.messages,
              std::vector<std::string>{"Value check: Invalid value Min: 0, Max: 100"});
    EXPECT_EQ(page.rowsAdded(), 0);
    EXPECT_EQ(page.pendingRows(), 0);

    page.edit(page.limit(), "100");
    EXPECT_EQ(page.limit().foreColor(), devices::ColorChanged);
    EXPECT_TRUE(mark.visible());
    EXPECT_EQ(mark.picture(), "changed");
    EXPECT_EQ(page.node(), "changed");
    ASSERT_EQ(page.rowsAdded(), 1);
    EXPECT_EQ(page.uc.calls.back(),
              "AddConfirmationRow travelDeviationTrendLimit HAalertSettings "
              "travelDeviationTrendLimit 3.0 100");
    EXPECT_EQ(page.pendingRows(), 1);
    EXPECT_TRUE(page.uc.tools().value_saved);
    EXPECT_TRUE(page.uc.tools().ConfirmFlag);
    // Leaving again without typing adds nothing more.
    page.uc.form().raiseLostFocus(page.limit());
    EXPECT_EQ(page.rowsAdded(), 1);
}

TEST(PageHandlersTest, AListBoxShowsAChangeOnlyWhenItsEntryDiffers) {
    struct Case {
        int entry;
        bool changed;
    };
    for (const Case c : {Case{1, false}, Case{0, true}}) {
        AlertPage page;
        form::Control& list = page.uc.form().control("comHAAlertSettings", 0);
        page.uc.form().raiseGotFocus(list);
        list.setListIndex(c.entry);
        page.uc.form().raiseLostFocus(list);
        EXPECT_EQ(list.foreColor(), c.changed ? devices::ColorChanged : devices::ColorSynchronised);
        EXPECT_EQ(page.mark("useFixedAlertLimits").visible(), c.changed);
        EXPECT_EQ(page.node(), c.changed ? "changed" : "read");
        EXPECT_EQ(page.pendingRows(), c.changed ? 1 : 0);
    }
}

TEST(PageHandlersTest, TheYearOfTheDeviceDateIsChecked) {
    for (const std::string year : {"2155", "2156"}) {
        AlertPage page;
        page.uc.tools().CurrentFrame = "HAoperationUnit";
        page.edit(page.uc.form().control("txtHAOperationUnit", 2), year);
        EXPECT_EQ(page.uc.messages, year == "2155" ? std::vector<std::string>{}
                                                   : std::vector<std::string>{
                                                         "Value check: Invalid value Device date"});
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
    // The snapshot puts an edited field back where it was taken.
    uc.form().control("txtHAAlertLimit", 0).setText("7");
    uc.changes.RestoreOldValues("HAalertSettings", "travelDeviationTrendLimit");
    EXPECT_EQ(uc.form().control("txtHAAlertLimit", 0).text(), "3.0");
}

}  // namespace
}  // namespace kt500::data
