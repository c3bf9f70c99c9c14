// The upload chains; a chain against the BL is in the scenarios upload and reload.
#include "data/Uploads.h"
#include "unit/data/DataTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace kt500::data {
namespace {

constexpr int kHourglass = 11;

// A session whose requests are recorded instead of sent, and whose GUIInit
// document holds one upload group of two request groups counted as
// strCount.
struct Session {
    explicit Session(const std::string& strCount = "2", bool online = true)
        : uc(testing::SessionOf("KT520_7", online)) {
        test::SetGuiInit(uc, "<dtm><uploadGroups><uploadGroup name='uploadIdentification' count='" +
                                 strCount +
                                 "'><requestGroup name='operationUnit'/>"
                                 "<requestGroup name='positionerInformation'/>"
                                 "</uploadGroup></uploadGroups></dtm>");
        uc.sendRequestHook = [this](const std::string& group, const std::string& access) {
            sent.push_back(group + " " + access);
        };
    }
    form::Control& bar() { return uc.form().control("ProgressBar1"); }
    int pointer() { return uc.form().userControl().mousePointer(); }

    testing::TestUserControl uc;
    std::vector<std::string> sent;
};

TEST(SetProgressBarTest, MaxAndValueFollowTheGroupsReplies) {
    const struct {
        std::string group;
        std::string requestCount;  // empty: as the document has it
        double max;
        double value;
    } cases[] = {
        {"operationUnit", "3", 33, 4},
        // No reply to wait for: the bar stands at its end.
        {"operationUnit", "0", 0, 0},
        {"noSuchGroup", "", 1, 1},
        {"download", "", 1, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.group + " " + c.requestCount);
        Session s;
        if (!c.requestCount.empty()) {
            s.uc.RequestGroupByName(c.group).setAttribute("requestCount", c.requestCount);
        }
        s.uc.uploads.SetProgressBar(c.group, "progressReading");
        EXPECT_EQ(s.bar().min(), 0);
        EXPECT_EQ(s.bar().max(), c.max);
        EXPECT_EQ(s.bar().value(), c.value);
    }
}

TEST(RunUploadGroupTest, SendsTheCountedRequestGroupsAsOneChain) {
    const std::vector<std::string> both = {"operationUnit read", "positionerInformation read"};
    for (const std::string count : {"1", "2"}) {
        Session s(count);
        s.uc.deviceClass().setCancelledGroups("operationUnit");
        s.uc.uploads.RunUploadGroup("uploadIdentification");
        EXPECT_EQ(s.sent, std::vector<std::string>(both.begin(), both.begin() + std::stoi(count)));
        EXPECT_EQ(s.uc.deviceClass().CancelledGroups(), "");
        EXPECT_EQ(s.pointer(), kHourglass);
        EXPECT_TRUE(s.uc.tools().ReadGroup);
    }
    // A count beyond the listed groups fails after sending those.
    Session beyond("3");
    EXPECT_THROW(beyond.uc.uploads.RunUploadGroup("uploadIdentification"), std::out_of_range);
    EXPECT_EQ(beyond.sent, both);
}

TEST(RunUploadGroupTest, TheTestSettingsAreReadOnlyForAChosenTest) {
    const auto chain = [](std::int16_t test, const std::string& strMembers) {
        Session s;
        test::SetGuiInit(s.uc, "<dtm><uploadGroups><uploadGroup name='uploadAdvanced' count='" +
                                   std::to_string(std::count(strMembers.begin(),
                                                             strMembers.end(), '<')) +
                                   "'>" + strMembers + "</uploadGroup></uploadGroups></dtm>");
        s.uc.tools().CurrentTest = test;
        s.uc.uploads.RunUploadGroup("uploadAdvanced");
        return std::pair{s.sent, s.pointer()};
    };
    const std::string around = "<requestGroup name='testSettings'/>"
                               "<requestGroup name='alertSettings'/>"
                               "<requestGroup name='testSettings'/>";
    EXPECT_EQ(chain(0, around).first, std::vector<std::string>{"alertSettings read"});
    EXPECT_EQ(chain(2, around).first,
              (std::vector<std::string>{"testSettings read", "alertSettings read",
                                        "testSettings read"}));
    // Nothing left to read: no request, and the pointer is given back.
    const auto [sent, pointer] = chain(0, "<requestGroup name='testSettings'/>");
    EXPECT_TRUE(sent.empty());
    EXPECT_NE(pointer, kHourglass);
}

TEST(RunUploadGroupTest, ARunningChainOrAnUnknownGroupSendsNothing) {
    Session running;
    running.uc.form().userControl().setMousePointer(kHourglass);
    running.uc.deviceClass().setCancelledGroups("operationUnit");
    running.uc.uploads.RunUploadGroup("uploadIdentification");
    running.uc.tools().CurrentFrame = "HAoperationUnit";
    running.uc.uploads.cmdReload();  // nor does a reload
    EXPECT_TRUE(running.sent.empty());
    EXPECT_EQ(running.uc.deviceClass().CancelledGroups(), "operationUnit");

    Session unknown;
    unknown.uc.uploads.RunUploadGroup("uploadEverything");
    EXPECT_TRUE(unknown.sent.empty());
    EXPECT_NE(unknown.pointer(), kHourglass);
}

TEST(CmdReloadTest, NoToTheQuestionLeavesTheProgressAsItWas) {
    Session s;
    s.uc.tools().CurrentFrame = "HAoperationUnit";
    s.uc.tools().value_saved = true;
    s.uc.tools().ReadGroup = false;
    s.bar().setMax(50);
    s.uc.bl().headlessDialogs()->queueAnswer(services::ButtonNo);
    s.uc.uploads.cmdReload();

    const auto boxes = s.uc.bl().headlessDialogs()->takeBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].buttonSet, 4);
    EXPECT_EQ(boxes[0].defaultButton, 6);
    EXPECT_TRUE(s.sent.empty());
    EXPECT_FALSE(s.uc.tools().ReadGroup);
    EXPECT_EQ(s.bar().max(), 50);
}

TEST(CmdReloadTest, TheFlowModificationPageEmptiesItsCurveTableAndReads) {
    Session s;
    s.uc.tools().CurrentFrame = "HAflowModification";
    s.uc.form().control("txtHAFlowModification", 3).setText("30");
    // The other family's curve list is not this page's: the reload leaves it.
    s.uc.form().control("comFlowModification", 1).setEnabled(true);
    s.uc.uploads.cmdReload();
    EXPECT_EQ(s.uc.form().control("txtHAFlowModification", 3).text(), "");
    EXPECT_FALSE(s.uc.form().control("comFlowModification", 0).enabled());
    EXPECT_TRUE(s.uc.form().control("comFlowModification", 1).enabled());
    EXPECT_FALSE(s.uc.form().control("txtHAFlowModification", 0).enabled());
    EXPECT_FALSE(s.uc.form().control("txtHAFlowModification", 10).enabled());
    EXPECT_FALSE(s.sent.empty());
}

TEST(ResolveReloadGroupTest, PagesReadTheirGroupOrSayTheyHaveNothingToUpload) {
    const struct {
        std::string frame;
        std::string group;
        std::string nameKey;  // of a page with nothing to upload
        std::int16_t test = 1;
    } cases[] = {
        {"PLleakageSignalTrend", "leakageSignalTrend", ""},
        {"PAtestValues", "testValues", ""},
        {"", "", ""},
        // Only the KT520's test settings page reads its settings, and only
        // those of a chosen test.
        {"HAtestSettings", "testSettings", ""},
        {"HAtestSettings", "", "testSettings", 0},
        {"PAtestSettings", "", "testSettings"},
        {"HAstepTestValues", "", "stepTest"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.frame + " test " + std::to_string(c.test));
        Session s;
        s.uc.tools().CurrentTest = c.test;
        s.uc.tools().StepTestFlag = true;
        s.uc.tools().HysteresisTestFlag = true;
        s.uc.tools().CurrentFrame = c.frame;
        EXPECT_EQ(s.uc.uploads.ResolveReloadGroup(c.frame).group, c.group);
        // Reading the test values drops the marks of the tests run before.
        EXPECT_EQ(s.uc.tools().StepTestFlag, c.group != "testValues");
        EXPECT_EQ(s.uc.tools().HysteresisTestFlag, c.group != "testValues");
        if (c.nameKey.empty()) {
            EXPECT_TRUE(s.uc.messages.empty());
        } else {
            EXPECT_EQ(s.uc.messages, std::vector<std::string>{s.uc.Translate(c.nameKey) + ": " +
                                                              s.uc.Translate("nothingToUpload")});
            s.uc.uploads.cmdReload();
            EXPECT_TRUE(s.sent.empty());
        }
    }
}

TEST(TmrIconBlinkTest, LightsOnlyTheSignsSetAndNothingOffline) {
    for (const bool online : {true, false}) {
        Session s("2", online);
        const std::vector<form::Control*> signs = s.uc.form().elements("lblCommunication");
        ASSERT_EQ(signs.size(), 5U);
        s.uc.tools().CommunicationSign("read", "1");
        s.uc.tools().CommunicationSign("test", "1");
        std::string lit;
        for (int tick = 0; tick < 2; ++tick) {
            s.uc.uploads.tmrIconBlink();
            for (const form::Control* sign : signs) {
                lit += sign->visible() ? '1' : '0';
            }
        }
        EXPECT_EQ(lit, online ? "0000010001" : "0000000000") << online;
    }
}

}  // namespace
}  // namespace kt500::data
