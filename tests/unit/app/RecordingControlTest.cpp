#include "app/RecordingControl.h"

#include "support/RecordingServices.h"

#include <gtest/gtest.h>

namespace kt500::app {
namespace {

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

}  // namespace
}  // namespace kt500::app
