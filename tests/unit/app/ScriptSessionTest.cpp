#include "app/ScriptSession.h"
#include "app/ScriptTargets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kt500::app {
namespace {

simulator::SessionOptions optionsFor(const std::string& deviceKey) {
    simulator::SessionOptions options;
    options.deviceKey = deviceKey;
    return options;
}

TEST(ScriptSession, WaitDeliversBlEventsAndTimerTicksInTimeOrder) {
    ScriptSession session(KT500_SHARE_DIR);
    ASSERT_TRUE(session.start(optionsFor("KT520_7")));
    form::Form& form = session.control().form();
    simulator::VirtualClock& clock = session.bl().clock();
    // Only our own events: the status push of the online session goes.
    clock.cancelOwner(&session.bl().simulatedControl());

    std::vector<std::string> seen;
    form.setEventSink([&](form::FormEvent& event) {
        if (event.kind == form::EventKind::Timer) {
            seen.push_back("tick@" + std::to_string(clock.now()));
        }
    });
    for (const int at : {250, 500, 1000, 1200}) {
        clock.schedule(at,
                       [&seen, &clock] { seen.push_back("bl@" + std::to_string(clock.now())); });
    }
    session.wait(1000);
    EXPECT_EQ(seen,
              (std::vector<std::string>{"bl@250", "bl@500", "tick@500", "bl@1000", "tick@1000"}));
    EXPECT_EQ(session.now(), 1000);

    // settle stops at the last BL event; the timer ticked on the way.
    seen.clear();
    session.settle();
    EXPECT_EQ(seen, (std::vector<std::string>{"bl@1200"}));
    EXPECT_EQ(session.now(), 1200);
    form.setEventSink({});
}

TEST(ScriptSession, SessionDataChangesReachTheControlAndAccumulate) {
    ScriptSession session(KT500_SHARE_DIR);
    ASSERT_TRUE(session.start(optionsFor("PL500_2")));
    (void)session.dialogs().takeBoxes();
    session.updateSessionData({{"online", "0"}});
    session.updateSessionData({{"userRole", "observer"}});
    const auto boxes = session.dialogs().takeBoxes();
    ASSERT_EQ(boxes.size(), 2U);
    EXPECT_EQ(boxes[0].header, "IQDLGuiEvent_UpdateSessionData");
    EXPECT_THROW(session.updateSessionData({{"colour", "blue"}}), std::invalid_argument);
}

TEST(ScriptTargets, ATagIsTheFirstControlOfTheSessionsFamilyPages) {
    ScriptSession session(KT500_SHARE_DIR);
    ASSERT_TRUE(session.start(optionsFor("KT540_1.0")));
    form::Form& form = session.control().form();
    form::Control& kt520 =
        form.add(form::ControlKind::TextBox, "txtHATest", 0, &form.control("fraKT520", 7));
    form::Control& first =
        form.add(form::ControlKind::TextBox, "txtPATest", 0, &form.control("fraKT540", 1));
    form::Control& second =
        form.add(form::ControlKind::TextBox, "txtPATest", 1, &form.control("fraKT540", 2));
    for (form::Control* control : {&kt520, &first, &second}) {
        control->setTag("hartTag");
    }
    first.setText("first");
    const ScriptTargets targets(session);
    EXPECT_EQ(targets.family(), "KT540");
    EXPECT_EQ(&targets.control("@hartTag"), &first);
    EXPECT_EQ(targets.read("@hartTag.Text"), "first");
    EXPECT_EQ(&targets.control("txtPATest[1]"), &second);
    EXPECT_THROW((void)targets.control("txtPATest"), TargetError);
    EXPECT_THROW((void)targets.control("@nothing"), TargetError);
}

TEST(ScriptTargets, ReadsTheLiveDocumentTheDeviceAndTheSessionState) {
    ScriptSession session(KT500_SHARE_DIR);
    ASSERT_TRUE(session.start(optionsFor("PL500_2")));
    const ScriptTargets targets(session);
    EXPECT_EQ(targets.read("doc.hartTag.value"), "XV-310");
    session.bl().simulatedControl().setDeviceValue("hartTag", "XV-311");
    EXPECT_EQ(targets.read("bl.hartTag"), "XV-311");
    EXPECT_EQ(targets.read("doc.hartTag.value"), "XV-310");
    EXPECT_EQ(targets.read("tools.connectionid"), "1");
    EXPECT_EQ(targets.read("toolbar.hideTree.Pressed"), "False");
    EXPECT_EQ(targets.read("control.m_buttonPressed"), "0");
    EXPECT_THROW((void)targets.read("doc.hartTag"), TargetError);
    EXPECT_THROW((void)targets.read("doc.nothing.value"), TargetError);
    session.release();
    EXPECT_THROW((void)targets.read("doc.hartTag.value"), TargetError);
    EXPECT_THROW((void)targets.read("tools.ConnectionID"), TargetError);
}

}  // namespace
}  // namespace kt500::app
