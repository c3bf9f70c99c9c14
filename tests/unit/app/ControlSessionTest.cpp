#include "app/ControlSession.h"
#include "app/RecordingControl.h"
#include "app/ScriptTargets.h"
#include "support/RecordingServices.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

namespace kt500::app {
namespace {

class ControlSessionTest : public ::testing::Test {
protected:
    void start(const std::string& deviceKey) {
        simulator::SessionOptions options;
        options.deviceKey = deviceKey;
        ASSERT_TRUE(session.start(options));
    }
    ControlSession session{KT500_SHARE_DIR};
};

TEST_F(ControlSessionTest, WaitDeliversBlEventsAndTimerTicksInTimeOrder) {
    ASSERT_NO_FATAL_FAILURE(start("KT520_7"));
    form::Form& form = session.control().form();
    simulator::VirtualClock& clock = session.bl().clock();
    clock.cancelOwner(&session.bl().simulatedControl());  // no status push of the session

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

    // settle stops at the last BL event.
    seen.clear();
    session.settle();
    EXPECT_EQ(seen, (std::vector<std::string>{"bl@1200"}));
    EXPECT_EQ(session.now(), 1200);
    form.setEventSink({});
}

TEST_F(ControlSessionTest, SessionDataChangesReachTheControlAndAccumulate) {
    ASSERT_NO_FATAL_FAILURE(start("PL500_2"));
    (void)session.dialogs().takeBoxes();
    session.updateSessionData({{"online", "0"}});
    session.updateSessionData({{"userRole", "observer"}});
    EXPECT_TRUE(session.dialogs().takeBoxes().empty());
    // The second message still carries the first change.
    EXPECT_FALSE(session.control().m_objTools->OnlineConf);
    EXPECT_EQ(session.control().m_objTools->ActorRole, "observer");
}

TEST_F(ControlSessionTest, ATagIsTheFirstControlOfTheSessionsFamilyPages) {
    ASSERT_NO_FATAL_FAILURE(start("KT540_1.0"));
    form::Form& form = session.control().form();
    const auto addTagged = [&](const char* name, int index, const char* frame, int page) {
        form::Control& c =
            form.add(form::ControlKind::TextBox, name, index, &form.control(frame, page));
        c.setTag("hartTag");
        return &c;
    };
    addTagged("txtHATest", 0, "fraKT520", 7);  // another family's page
    form::Control* first = addTagged("txtPATest", 0, "fraKT540", 1);
    form::Control* second = addTagged("txtPATest", 1, "fraKT540", 2);
    first->setText("first");
    const ScriptTargets targets(session);
    EXPECT_EQ(targets.family(), "KT540");
    EXPECT_EQ(&targets.control("@hartTag"), first);
    EXPECT_EQ(targets.read("@hartTag.Text"), "first");
    EXPECT_EQ(&targets.control("txtPATest[1]"), second);
    EXPECT_THROW((void)targets.control("txtPATest"), TargetError);
}

// The scenarios read every kind of target; these are the refusals.
TEST_F(ControlSessionTest, TargetsOfNoValueOrOfAReleasedSessionAreRefused) {
    ASSERT_NO_FATAL_FAILURE(start("PL500_2"));
    const ScriptTargets targets(session);
    EXPECT_EQ(targets.read("tools.connectionid"), "1");  // members by any case
    EXPECT_THROW((void)targets.read("doc.hartTag"), TargetError);
    EXPECT_THROW((void)targets.read("doc.nothing.value"), TargetError);
    session.release();
    EXPECT_THROW((void)targets.read("doc.hartTag.value"), TargetError);
    EXPECT_THROW((void)targets.read("tools.ConnectionID"), TargetError);
}

TEST(RecordingControl, RecordsRequestsInOrderAndForwardsEveryCall) {
    auto log = std::make_shared<testing::CallLog>();
    RecordingControl recorder(std::make_shared<testing::RecordingControl>(log));
    bool accepted = false;
    recorder.PostRequest(1, "<read/>", accepted);
    recorder.RequestAutoAction(1, accepted);
    recorder.SendAutoAction(1, "<action/>", 5000, accepted);
    recorder.CancelRequests(1, accepted);

    const auto requests = recorder.takeRequests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0].operation + requests[0].request, "PostRequest<read/>");
    EXPECT_EQ(requests[1].operation + requests[1].request, "SendAutoAction<action/>");
    EXPECT_TRUE(recorder.takeRequests().empty());
    EXPECT_EQ(log->size(), 4U);
}

// A session that nobody asks for its requests (the window) must not grow
// with them: the record keeps the last ones and counts the others.
TEST(RecordingControl, KeepsTheLastRequestsAndCountsTheDropped) {
    auto log = std::make_shared<testing::CallLog>();
    RecordingControl recorder(std::make_shared<testing::RecordingControl>(log));
    bool accepted = false;
    const std::size_t sent = RecordingControl::kKeptRequests + 5;
    for (std::size_t i = 0; i < sent; ++i) {
        recorder.PostRequest(1, "<read n=\"" + std::to_string(i) + "\"/>", accepted);
    }
    EXPECT_EQ(log->size(), sent);
    EXPECT_EQ(recorder.droppedRequests(), 5U);
    const auto requests = recorder.takeRequests();
    ASSERT_EQ(requests.size(), RecordingControl::kKeptRequests);
    EXPECT_EQ(requests.front().request, "<read n=\"5\"/>");
    EXPECT_EQ(requests.back().request, "<read n=\"" + std::to_string(sent - 1) + "\"/>");
    EXPECT_EQ(recorder.droppedRequests(), 0U);
    recorder.PostRequest(1, "<read/>", accepted);
    EXPECT_EQ(recorder.takeRequests().size(), 1U);
}

TEST_F(ControlSessionTest, ReplyWatcherSeesEveryReplyTheControlHandlesWithItsTime) {
    ASSERT_NO_FATAL_FAILURE(start("KT520_7"));
    session.settle();
    session.bl().simulatedControl().setDeviceValue("hartTag", "TAPPED");
    form::Form& form = session.control().form();
    form.raiseNodeClick(form.control("treeNavigation"), "operationUnit");
    std::vector<std::string> replies;
    std::chrono::nanoseconds spent{0};
    session.recorder().watchReplies([&](const std::string& reply, std::chrono::nanoseconds time) {
        replies.push_back(reply);
        spent += time;
    });
    form::Control& bar = form.control("smuiDTM", 1);
    bar.form()->raiseToolbarClick(bar, "uploadCurrent");
    session.settle();
    ASSERT_FALSE(replies.empty());
    for (const std::string& reply : replies) {
        EXPECT_NE(reply.find("communicationResponse"), std::string::npos) << reply;
    }
    EXPECT_GT(spent.count(), 0);
    EXPECT_GT(session.recorder().openConnectionTime().count(), 0);
    // The page's values arrived through the tap: the field shows the device's tag.
    EXPECT_EQ(form.control("txtHAOperationUnit", 0).text(), "TAPPED");

    session.recorder().watchReplies({});
    const std::size_t seen = replies.size();
    bar.form()->raiseToolbarClick(bar, "uploadCurrent");
    session.settle();
    EXPECT_EQ(replies.size(), seen);
}

TEST(ReplyTap, AnEventBeforeTheConnectionIsRefused) {
    ReplyTap tap;
    EXPECT_THROW((void)tap.IQDLGuiEvent_CommunicationEvent("<dtm/>"), std::logic_error);
}

}  // namespace
}  // namespace kt500::app
