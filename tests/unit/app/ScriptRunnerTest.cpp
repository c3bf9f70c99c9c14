#include "app/ScriptRunner.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kt500::app {
namespace {

struct ScriptRun {
    int status = -1;
    std::string out;
    std::string err;
};

ScriptRun run(std::string_view script) {
    std::ostringstream out;
    std::ostringstream err;
    ScriptRun result;
    result.status = RunScript(script, KT500_SHARE_DIR, out, err);
    result.out = out.str();
    result.err = err.str();
    return result;
}

TEST(ScriptRunner, ScriptsThatCannotRunStopAtTheirLineBeforeAnythingRuns) {
    struct Case {
        const char* script;
        const char* error;
    };
    const Case cases[] = {
        {"start KT520_7\nfrob x\n", "line 2: unknown command 'frob'\n"},
        {"start KT520_7\nget\n", "line 2: 'get' takes 1 words after it\n"},
        {"start KT520_7\nwait -5\n",
         "line 2: wait: expects milliseconds (a whole number from 0), "
         "not '-5'\n"},
        {"start KT520_7\nbl explode\n", "line 2: unknown command 'bl explode'\n"},
        {"start KT520_7\nanswer maybe\n", "line 2: answer: 'maybe' is not yes, no, ok or cancel\n"},
        {"start KT520_7\nexpect a.b == 1\n",
         "line 2: expect: TARGET.PROPERTY = VALUE or TARGET.PROPERTY != VALUE\n"},
        {"start KT520_7\nsession online\n", "line 2: session: 'online' is not WORD=VALUE\n"},
        {"start KT520_7\nrow 0 on\n", "line 2: row: expects a row number from 1 and on or off\n"},
        {"start KT520_7\ncheck chkX 2\n", "line 2: check: the value must be 0 or 1, not '2'\n"},
        {"start KT520_7\ntype txtX \"open\n", "line 2: a quoted word is not closed\n"},
    };
    for (const Case& c : cases) {
        const ScriptRun result = run(c.script);
        EXPECT_EQ(result.status, ScriptRunner::kCannotRun) << c.script;
        EXPECT_EQ(result.out, "") << c.script;
        EXPECT_EQ(result.err, c.error) << c.script;
    }
}

TEST(ScriptRunner, RunTimeErrorsStopTheScriptAfterWhatRanBefore) {
    struct Case {
        const char* script;
        const char* error;
    };
    const Case cases[] = {
        {"get tools.DeviceName\n", "line 1: no session: 'get' needs a start before it\n"},
        {"start KT520_7 sideways\n", "line 1: start: unknown word 'sideways'\n"},
        {"start KT520_7 locked=2\n", "line 1: start: locked takes 0 or 1, not '2'\n"},
        {"start KT520_7\nget tools.NoSuchMember\n",
         "line 2: unknown target 'tools.NoSuchMember': clsTools has no such member\n"},
        {"start KT520_7\nget device.CancelledGroups\n",
         "line 2: unknown target 'device.CancelledGroups': the control has no device class yet\n"},
        {"start KT520_7\nget bl.noSuchParameter\n",
         "line 2: unknown target 'bl.noSuchParameter': the device has no such parameter (or is "
         "not connected)\n"},
        {"start KT520_7\nget tree.HAoperationUnit.Text\n",
         "line 2: unknown target: treeNavigation has no node 'HAoperationUnit'\n"},
        {"start KT520_7\nget cmdTranslate.ListIndex\n",
         "line 2: unknown property: cmdTranslate.ListIndex: a control of kind 'cmd' lacks it\n"},
        {"start KT520_7\nselect comSelectLanguage #3\n",
         "line 2: comSelectLanguage has no entry #3 (ListCount 3)\n"},
        {"start KT520_7\nselect comSelectLanguage Klingon\n",
         "line 2: comSelectLanguage has no entry 'Klingon'\n"},
        {"start KT520_7\nnode HAoperationUnit\n",
         "line 2: unknown node 'HAoperationUnit' of treeNavigation\n"},
        {"start KT520_7\ntoolbar launch\n", "line 2: unknown toolbar item 'launch'\n"},
        {"start KT520_7\nrow 1 on\n", "line 2: lsvConfirmation has no row 1 (0 rows)\n"},
        {"start KT520_7\nsession colour=blue\n",
         "line 2: the session data have no attribute 'colour'\n"},
        {"start KT520_7\nget txtNothing[x].Text\n",
         "line 2: unknown control 'txtNothing[x]': the index must be a whole number in [ ]\n"},
        {"start KT520_7\nchart cmdTranslate\n", "line 2: cmdTranslate is not a chart\n"},
    };
    for (const Case& c : cases) {
        const ScriptRun result = run(c.script);
        EXPECT_EQ(result.status, ScriptRunner::kCannotRun) << c.script;
        EXPECT_EQ(result.out, "") << c.script;
        EXPECT_EQ(result.err, c.error) << c.script;
    }
}

TEST(ScriptRunner, FailedExpectsAreAllReportedAndTheScriptGoesOn) {
    const ScriptRun result =
        run("start KT520_7\n"
            "expect tools.ConnectionID = 0x2\n"
            "expect tools.ConnectionID = 1\n"
            "expect tools.DeviceName != KT520\n"
            "get tools.ConnectionID\n");
    EXPECT_EQ(result.status, ScriptRunner::kExpectFailed);
    EXPECT_EQ(result.out,
              "line 2: expected tools.ConnectionID = 0x2, actual 1\n"
              "line 4: expected tools.DeviceName != KT520, actual KT520\n"
              "tools.ConnectionID=1\n");
    EXPECT_EQ(result.err, "");
}

TEST(ScriptRunner, ACannotRunAfterAFailedExpectIsStatusTwo) {
    const ScriptRun result = run("start KT520_7\nexpect tools.ConnectionID = 2\nclick cmdNone\n");
    EXPECT_EQ(result.status, ScriptRunner::kCannotRun);
    EXPECT_EQ(result.out, "line 2: expected tools.ConnectionID = 2, actual 1\n");
}

TEST(ScriptRunner, TheUserSelectsAndTypesThroughTheFormModel) {
    const ScriptRun result =
        run("start KT520_7\n"
            "select comSelectLanguage Deutsch\n"
            "select comSelectLanguage Deutsch\n"
            "type comFlowModification[1] Custom\n"
            "click cmdTranslate\n"
            "get comSelectLanguage.ItemData\n"
            "get comFlowModification[1].ListIndex\n");
    EXPECT_EQ(result.status, ScriptRunner::kPassed) << result.err;
    EXPECT_EQ(result.out, "comSelectLanguage.ItemData=1031\ncomFlowModification[1].ListIndex=11\n");
}

TEST(ScriptRunner, AStartWhileASessionRunsReleasesTheFormerOne) {
    const ScriptRun result =
        run("start KT520_7\nstart PL500_2 offline\nget tools.DeviceName\n"
            "release\nrelease\nmessages\n");
    EXPECT_EQ(result.status, ScriptRunner::kPassed) << result.err;
    EXPECT_EQ(result.out, "tools.DeviceName=PL500\n");
}

}  // namespace
}  // namespace kt500::app
