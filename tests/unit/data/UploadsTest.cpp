#include "data/Uploads.h"

#include "data/ParameterDocument.h"
#include "support/TestUserControl.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace kt500::data {
namespace {

using testing::TestUserControl;

constexpr int kHourglass = 11;

// A session whose requests are recorded instead of sent, and whose GUIInit
// document holds one upload group of two request groups counted as
// strCount.
struct Session {
    explicit Session(const std::string& strCount = "2", bool online = true)
        : uc(testing::SessionOf("KT520_7", online)) {
        const std::string guiInit =
            "<dtm><uploadGroups><uploadGroup name='uploadIdentification' count='" + strCount +
            "'><requestGroup name='operationUnit'/><requestGroup name='positionerInformation'/>"
            "</uploadGroup></uploadGroups></dtm>";
        xml::LoadResult loaded = xml::Document::parse(guiInit);
        if (!loaded.ok()) {
            throw std::runtime_error(loaded.message());
        }
        uc.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
        uc.sendRequestHook = [this](const std::string& group, const std::string& access) {
            sent.push_back(group + " " + access);
        };
    }
    form::Control& bar() { return uc.form().control("ProgressBar1"); }
    int pointer() { return uc.form().userControl().mousePointer(); }
    simulator::HeadlessDialogs& dialogs() { return *uc.bl().headlessDialogs(); }
    // The requestCount of a group of the parameter document, changed for a test.
    void setRequestCount(const std::string& strGroup, const std::string& strCount) {
        const xml::XPath query(*uc.xmlDataFile(), xml::Namespaces::fromSelection(
                                                      ParameterDocument::SelectionNamespaces));
        query.selectSingle(ParameterDocument::RequestGroupQuery(strGroup))
            .setAttribute("requestCount", strCount);
    }

    TestUserControl uc;
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
        Session s;
        if (!c.requestCount.empty()) {
            s.setRequestCount(c.group, c.requestCount);
        }
        s.uc.uploads.SetProgressBar(c.group, "progressReading");
        EXPECT_EQ(s.bar().min(), 0) << c.group << " " << c.requestCount;
        EXPECT_EQ(s.bar().max(), c.max) << c.group << " " << c.requestCount;
        EXPECT_EQ(s.bar().value(), c.value) << c.group << " " << c.requestCount;
        EXPECT_EQ(s.uc.form().control("lblProgressText").caption(),
                  s.uc.Translate("progressReading"));
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
        EXPECT_TRUE(s.uc.tools().ShowProgressbar);
        EXPECT_TRUE(s.bar().visible());
        EXPECT_TRUE(s.uc.form().control("fraProgress").visible());
    }
    // A count beyond the listed groups fails after sending those.
    Session beyond("3");
    EXPECT_THROW(beyond.uc.uploads.RunUploadGroup("uploadIdentification"), std::out_of_range);
    EXPECT_EQ(beyond.sent, both);
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

TEST(CmdReloadTest, UnsavedChangesAreAskedForAndNoKeepsThem) {
    const struct {
        bool saved;
        int answer;  // 0: none queued
        bool asked;
        bool reads;
    } cases[] = {
        {false, services::ButtonNo, false, true},
        {true, services::ButtonYes, true, true},
        {true, services::ButtonNo, true, false},
    };
    for (const auto& c : cases) {
        Session s;
        s.uc.tools().CurrentFrame = "HAoperationUnit";
        s.uc.tools().value_saved = c.saved;
        s.uc.tools().ReadGroup = false;
        s.bar().setMax(50);
        s.bar().setValue(7);
        s.dialogs().queueAnswer(c.answer);
        s.uc.uploads.cmdReload();

        const auto boxes = s.dialogs().takeBoxes();
        ASSERT_EQ(boxes.size(), c.asked ? 1U : 0U) << c.saved << c.answer;
        if (c.asked) {
            EXPECT_EQ(boxes[0].header, "Data changed");
            EXPECT_EQ(boxes[0].text, s.uc.Translate("reloadConfirmation"));
            EXPECT_EQ(boxes[0].buttonSet, 4);
            EXPECT_EQ(boxes[0].defaultButton, 6);
        }
        if (c.reads) {
            EXPECT_EQ(s.sent, std::vector<std::string>{"operationUnit read"});
            // The bar counts the group's replies; the read adds nothing again.
            EXPECT_TRUE(s.uc.tools().ReadGroup);
            EXPECT_EQ(s.bar().max(), 11);
        } else {
            EXPECT_TRUE(s.sent.empty());
            EXPECT_FALSE(s.uc.tools().ReadGroup);
            EXPECT_TRUE(s.uc.tools().value_saved);
            EXPECT_EQ(s.bar().max(), 50);
            EXPECT_EQ(s.bar().value(), 7);
        }
    }
}

TEST(CmdReloadTest, TheFlowModificationPageFailsOnItsCurveTable) {
    Session s;
    s.uc.tools().CurrentFrame = "HAflowModification";
    EXPECT_THROW(s.uc.uploads.cmdReload(), devices::MemberMissing);
    EXPECT_FALSE(s.uc.form().control("comFlowModification", 0).enabled());
    EXPECT_TRUE(s.uc.form().control("comFlowModification", 1).enabled());
    EXPECT_FALSE(s.uc.form().control("txtHAFlowModification", 0).enabled());
    EXPECT_FALSE(s.uc.form().control("txtHAFlowModification", 10).enabled());
    EXPECT_TRUE(s.uc.tools().ConfirmFlag);
    EXPECT_TRUE(s.sent.empty());
}

TEST(ResolveReloadGroupTest, PagesReadTheirGroupOrSayTheyHaveNothingToUpload) {
    const struct {
        std::string frame;
        std::string group;
        std::string nameKey;  // of a page with nothing to upload
    } cases[] = {
        {"HAtestSettings", "testSettings", ""},
        {"PLmonitoringVariables", "monitoringVariables", ""},
        {"PLleakageSignalTrend", "leakageSignalTrend", ""},
        {"PAtestValues", "testValues", ""},
        {"", "", ""},
        {"HAresetDiagnostics", "", "resetDiagnostics"},
        {"PAtestSettings", "", "testSettings"},
        {"PAfactoryReset", "", "factoryReset"},
        {"HAstepTestValues", "", "stepTest"},
        {"PAhysteresisTestValues", "", "hysteresisTest"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.frame);
        Session s;
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

TEST(TmrIconBlinkTest, AlternatesAndLightsOnlyTheSignsSet) {
    for (const bool online : {true, false}) {
        Session s("2", online);
        const std::vector<form::Control*> signs = s.uc.form().elements("lblCommunication");
        ASSERT_EQ(signs.size(), 5U);
        s.uc.tools().CommunicationSign("read", "1");
        s.uc.tools().CommunicationSign("test", "1");
        const auto lit = [&] {
            std::string text;
            for (const form::Control* sign : signs) {
                text += sign->visible() ? '1' : '0';
            }
            return text;
        };
        const std::string lightTick = online ? "10001" : "00000";
        for (const std::string& expected :
             std::vector<std::string>{"00000", lightTick, "00000", lightTick}) {
            s.uc.uploads.tmrIconBlink();
            EXPECT_EQ(lit(), expected) << online;
        }
        EXPECT_FALSE(s.uc.tools().OnCommunication);
    }
}

}  // namespace
}  // namespace kt500::data
