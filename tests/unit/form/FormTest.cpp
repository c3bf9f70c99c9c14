// Form order, lookup by name and index, control arrays, containers, events,
// change notification and timers.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::form::test {
namespace {

using Lines = std::vector<std::string>;

TEST(Form, KeepsFormOrderFindsByNameAndIndexAndKeepsArraysApart) {
    Form form;
    Control& page = form.add(ControlKind::Frame, "fraKT520", 7);
    Control& first = form.add(ControlKind::TextBox, "txtHAOperationUnit", 2, &page);
    Control& second = form.add(ControlKind::TextBox, "txtHAOperationUnit", 0, &page);
    Control& plain = form.add(ControlKind::Label, "lblNote");

    EXPECT_EQ(form.controls(), (std::vector<Control*>{&page, &first, &second, &plain}));
    EXPECT_EQ(&form.control("txtHAOperationUnit", 2), &first);
    EXPECT_EQ(form.find("txtHAOperationUnit", 1), nullptr);
    expectThrowNaming<std::out_of_range>({"txtHAOperationUnit(5)"},
                                         [&] { (void)form.control("txtHAOperationUnit", 5); });
    EXPECT_THROW((void)form.control("txtHAOperationUnit"), std::out_of_range);
    EXPECT_THROW((void)form.control("lblNote", 0), std::out_of_range);

    // Arrays list their elements.
    for (int i : {4, 0, 2}) {
        form.add(ControlKind::CommandButton, "cmdSend", i);
    }
    form.add(ControlKind::Label, "lblOne");
    const ControlArray& array = form.array("cmdSend");
    EXPECT_EQ(array.indices(), (std::vector<int>{0, 2, 4}));
    EXPECT_THROW((void)array[3], std::out_of_range);
    EXPECT_FALSE(form.array("lblOne").isArray());
    // Duplicates and mixed names are refused as the loader's tests show.
}

TEST(Form, TaggedListsTheControlsOfATagInFormOrderAsTagsChange) {
    Form form;
    Control& page = form.add(ControlKind::Frame, "fraKT520", 7);
    Control& later = form.add(ControlKind::TextBox, "txtHAOperationUnit", 1, &page);
    Control& earlier = form.add(ControlKind::Label, "lblHAOperationUnit", 0, &page);
    Control& mark = form.add(ControlKind::Image, "imgHAOperationUnit", 0, &page);
    EXPECT_TRUE(form.tagged("hartTag").empty());

    // Tagged out of form order, listed in it.
    later.setTag("hartTag");
    mark.setTag("hartTag");
    earlier.setTag("hartTag");
    EXPECT_EQ(form.tagged("hartTag"), (std::vector<Control*>{&later, &earlier, &mark}));

    // A new tag moves the control; the same tag again changes nothing.
    earlier.setTag("description");
    earlier.setTag("description");
    EXPECT_EQ(form.tagged("hartTag"), (std::vector<Control*>{&later, &mark}));
    EXPECT_EQ(form.tagged("description"), (std::vector<Control*>{&earlier}));
    // The Tag property set by name takes the same way.
    mark.set("Tag", "description");
    EXPECT_EQ(form.tagged("description"), (std::vector<Control*>{&earlier, &mark}));

    // A removed control leaves its tag's list; the walk of every control agrees.
    form.remove(mark);
    EXPECT_EQ(form.tagged("description"), (std::vector<Control*>{&earlier}));
    for (const std::string tag : {"hartTag", "description", ""}) {
        std::vector<Control*> walked;
        for (Control* control : form.controls()) {
            if (control->tag() == tag) {
                walked.push_back(control);
            }
        }
        EXPECT_EQ(form.tagged(tag), walked) << tag;
    }
}

TEST(Form, ContainersAreWalkedInFormOrder) {
    Form form;
    Control& page = form.add(ControlKind::Frame, "fraCommon", 0);
    Control& group = form.add(ControlKind::Frame, "fraSettingsLanguage", -1, &page);
    Control& list = form.add(ControlKind::ComboBox, "comSelectLanguage", -1, &group);
    Control& button = form.add(ControlKind::CommandButton, "cmdTranslate", -1, &group);
    Control& other = form.add(ControlKind::Frame, "fraCommon", 1);

    EXPECT_EQ(form.children(&group), (std::vector<Control*>{&list, &button}));
    EXPECT_TRUE(Form::isInside(list, page));
    EXPECT_FALSE(Form::isInside(list, other));
    EXPECT_FALSE(Form::isInside(page, page));

    // A chart created at run time joins the end of the form order.
    Control& chart = form.add(ControlKind::Chart, "pegoTravelDeviation", -1, &other);
    EXPECT_EQ(form.controls().back(), &chart);
    EXPECT_THROW(form.remove(other), std::invalid_argument);  // not empty
    form.remove(chart);
    EXPECT_EQ(form.find("pegoTravelDeviation"), nullptr);
}

TEST(Form, NotifiesOnlyRealChangesNamingTheModelItem) {
    Form form;
    Control& text = form.add(ControlKind::TextBox, "txtHAOperationUnit", 0);
    Control& toolbar = form.add(ControlKind::Toolbar, "smuiDTM", 1);
    toolbar.toolbar().addBand("main");
    toolbar.toolbar().addItem(toolbarItem("send"));
    Control& tree = form.add(ControlKind::TreeView, "treeNavigation");
    tree.tree().add("", "operationUnit", "Operation unit", "notRead");
    Control& chart = form.add(ControlKind::Chart, "pesgoKT520");
    ChangeLog changes;
    changes.attach(form);

    for (int twice = 0; twice < 2; ++twice) {
        text.setText("12");
        text.setForeColor(0xff0000);
        text.set("Visible", "False");
        toolbar.toolbar().setEnabled("send", false);
        tree.tree().setImage("operationUnit", "changed");
        chart.chart().setMainTitle("Step test");
    }
    EXPECT_EQ(changes.lines,
              (Lines{"txtHAOperationUnit(0).Text", "txtHAOperationUnit(0).ForeColor",
                     "txtHAOperationUnit(0).Visible", "smuiDTM(1).Buttons[send]",
                     "treeNavigation.Nodes[operationUnit]", "pesgoKT520.ChartData"}));
}

// Observers may come and go while a change is told: one removed before its
// turn hears nothing more, one that removes itself finishes its call, one
// added hears the next change; beyond a few observers all are still told.
TEST(Form, ObserversComeAndGoWhileAChangeIsTold) {
    Form form;
    Control& text = form.add(ControlKind::TextBox, "txtHAOperationUnit", 0);
    std::vector<std::string> heard;
    std::size_t second = 0;
    std::size_t self = 0;
    form.addObserver([&](const PropertyChange&) {
        heard.push_back("first");
        form.removeObserver(second);
        if (heard.size() == 1) {
            form.addObserver([&](const PropertyChange&) { heard.push_back("added"); });
        }
    });
    second = form.addObserver([&](const PropertyChange&) { heard.push_back("second"); });
    self = form.addObserver([&, tag = std::string(40, 'x')](const PropertyChange&) {
        form.removeObserver(self);
        heard.push_back("self " + std::to_string(tag.size()));
    });
    text.setText("1");
    text.setText("2");
    EXPECT_EQ(heard, (Lines{"first", "self 40", "first", "added"}));

    int told = 0;
    for (int observer = 0; observer < 12; ++observer) {
        form.addObserver([&told](const PropertyChange&) { ++told; });
    }
    text.setText("3");
    EXPECT_EQ(told, 12);
}

TEST(Form, DeliversEventsToTheSink) {
    Form form;
    EventLog events;
    Control& text = form.add(ControlKind::TextBox, "txtHAOperationUnit", 3);
    Control& rows = form.add(ControlKind::ListView, "lsvConfirmation");
    rows.listView().add("hartTag");
    Control& tree = form.add(ControlKind::TreeView, "treeNavigation");
    tree.tree().add("", "status", "Status");
    Control& toolbar = form.add(ControlKind::Toolbar, "smuiDTM", 1);
    toolbar.toolbar().addBand("main");
    toolbar.toolbar().addItem(toolbarItem("send"));

    form.raiseClick(text);  // no sink yet: dropped
    events.attach(form);
    form.raiseGotFocus(text);
    form.raiseChange(text);
    form.raiseItemCheck(rows, 1, true);
    form.raiseNodeClick(tree, "status");
    form.raiseToolbarClick(toolbar, "send");
    form.raiseResize();
    EXPECT_EQ(events.lines, (Lines{"GotFocus txtHAOperationUnit(3)", "Change txtHAOperationUnit(3)",
                                   "ItemCheck lsvConfirmation 1", "NodeClick treeNavigation status",
                                   "ToolbarClick smuiDTM(1) send", "Resize UserControl"}));
    EXPECT_TRUE(rows.listView().row(1).checked);
    EXPECT_THROW(form.raiseNodeClick(tree, "nowhere"), std::out_of_range);
    EXPECT_THROW(form.raiseToolbarClick(toolbar, "nothing"), std::out_of_range);
}

TEST(Form, HandlersMaySwallowKeysRaiseFurtherEventsAndReplaceTheSink) {
    Form form;
    Control& a = form.add(ControlKind::CommandButton, "cmdA");
    Control& b = form.add(ControlKind::CommandButton, "cmdB");
    Control& text = form.add(ControlKind::TextBox, "txtHAOperationUnit", 0);
    Lines seen;
    form.setEventSink([&](FormEvent& e) {
        if (e.kind == EventKind::KeyPress) {
            e.keyAscii = e.keyAscii == 'x' ? 0 : e.keyAscii;
            return;
        }
        seen.push_back(e.control->name());
        if (e.control == &a) {
            form.raiseClick(b);
            form.setEventSink({});
        }
    });
    EXPECT_EQ(form.raiseKeyPress(text, '7'), '7');
    EXPECT_EQ(form.raiseKeyPress(text, 'x'), 0);
    form.raiseClick(a);
    form.raiseClick(a);
    EXPECT_EQ(seen, (Lines{"cmdA", "cmdB"}));
}

TEST(Form, WritesRaiseThePlatformsImplicitEvents) {
    Form form;
    EventLog events;
    events.attach(form);
    Control& frame = form.add(ControlKind::Frame, "fraKT520", 17);
    Control& text = form.add(ControlKind::TextBox, "txtHATestSettings", 0, &frame);
    Control& list = form.add(ControlKind::ComboBox, "comHATestSettings", 0, &frame);
    Control& check = form.add(ControlKind::CheckBox, "chkHAMonitoring", 0, &frame);
    Control& optA = form.add(ControlKind::OptionButton, "optHAMonitoring", 0, &frame);
    Control& optB = form.add(ControlKind::OptionButton, "optHAMonitoring", 1, &frame);
    Control& elsewhere = form.add(ControlKind::OptionButton, "optOther");
    list.addItem("a");
    list.addItem("b");
    elsewhere.setValue(1);
    events.lines.clear();

    for (int twice = 0; twice < 2; ++twice) {  // the same value again raises nothing
        text.setText("5");
        list.setListIndex(1);
        check.setValue(1);
    }
    optA.setValue(1);
    optB.set("Value", "True");
    EXPECT_EQ(events.lines, (Lines{"Change txtHATestSettings(0)", "Click comHATestSettings(0)",
                                   "Click chkHAMonitoring(0)", "Click optHAMonitoring(0)",
                                   "Click optHAMonitoring(1)"}));
    // One option per container: B cleared A, the option outside stays.
    EXPECT_EQ(optA.get("Value"), "False");
    EXPECT_EQ(elsewhere.get("Value"), "True");
}

TEST(Form, TimersTickOnTheTimeGiven) {
    Form form;
    EventLog events;
    events.attach(form);
    Control& blink = form.add(ControlKind::Timer, "tmrIconBlink");
    Control& slow = form.add(ControlKind::Timer, "tmrSlow");
    blink.setInterval(500);
    slow.setInterval(1200);
    EXPECT_EQ(form.nextTimerTick(), std::nullopt);  // timers start disabled
    blink.setEnabled(true);
    slow.setEnabled(true);
    form.advanceTimers(1250);
    EXPECT_EQ(events.lines, (Lines{"Timer tmrIconBlink", "Timer tmrIconBlink", "Timer tmrSlow"}));
    EXPECT_EQ(form.nextTimerTick(), 250);

    // Disabling stops it; enabling again counts a whole interval.
    events.lines.clear();
    blink.setEnabled(false);
    form.advanceTimers(300);
    blink.setEnabled(true);
    form.advanceTimers(499);
    EXPECT_TRUE(events.lines.empty());
    form.advanceTimers(1);
    EXPECT_EQ(events.lines, (Lines{"Timer tmrIconBlink"}));

    // A handler may stop a timer due in the same step.
    for (Control* t : {&blink, &slow}) {
        t->setEnabled(false);
        t->setInterval(100);
        t->setEnabled(true);
    }
    int slowTicks = 0;
    form.setEventSink(
        [&](FormEvent& e) { e.control == &blink ? slow.setEnabled(false) : void(++slowTicks); });
    form.advanceTimers(100);
    EXPECT_EQ(slowTicks, 0);
}

}  // namespace
}  // namespace kt500::form::test
