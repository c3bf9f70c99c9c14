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
    const int status = RunScript(script, KT500_SHARE_DIR, out, err);
    return {status, out.str(), err.str()};
}

// Line 2 of each script is bad. A fault found while reading the script stops
// it before line 1 runs (line 1 alone would fail for want of a session); a
// fault found while running stops it after line 1 started a session.
TEST(ScriptRunner, ErrorsStopTheScriptAtTheirLineWithStatusTwo) {
    const struct {
        bool whileReading;
        const char* line;
        const char* error;
    } cases[] = {
        {true, "frob x", "unknown command 'frob'"},
        {true, "get", "'get' takes 1 words after it"},
        {true, "wait -5", "wait: expects milliseconds (a whole number from 0), not '-5'"},
        {true, "bl explode", "unknown command 'bl explode'"},
        {true, "answer maybe", "answer: 'maybe' is not yes, no, ok or cancel"},
        {true, "expect a.b == 1", "expect: TARGET.PROPERTY = VALUE or TARGET.PROPERTY != VALUE"},
        {true, "session online", "session: 'online' is not WORD=VALUE"},
        {true, "row 0 on", "row: expects a row number from 1 and on or off"},
        {true, "check chkX 2", "check: the value must be 0 or 1, not '2'"},
        {true, "type txtX \"open", "a quoted word is not closed"},
        {false, "start KT520_7 sideways", "start: unknown word 'sideways'"},
        {false, "start KT520_7 locked=2", "start: locked takes 0 or 1, not '2'"},
        {false, "get tools.NoSuchMember",
         "unknown target 'tools.NoSuchMember': clsTools has no such member"},
        {false, "get device.MonitoringFrame",
         "unknown target 'device.MonitoringFrame': Object doesn't support this property or "
         "method: MonitoringFrame"},
        {false, "get device.NoSuchMember",
         "unknown target 'device.NoSuchMember': the device class has no such member"},
        {false, "get bl.noSuchParameter",
         "unknown target 'bl.noSuchParameter': the device has no such parameter (or is not "
         "connected)"},
        {false, "get tree.HAoperationUnit.Text",
         "unknown target: treeNavigation has no node 'HAoperationUnit'"},
        {false, "get cmdTranslate.ListIndex",
         "unknown property: cmdTranslate.ListIndex: a control of kind 'cmd' lacks it"},
        {false, "select comSelectLanguage #3", "comSelectLanguage has no entry #3 (ListCount 3)"},
        {false, "select comSelectLanguage Klingon", "comSelectLanguage has no entry 'Klingon'"},
        {false, "node HAoperationUnit", "unknown node 'HAoperationUnit' of treeNavigation"},
        {false, "toolbar launch", "unknown toolbar item 'launch'"},
        {false, "row 1 on", "lsvConfirmation has no row 1 (0 rows)"},
        {false, "session colour=blue", "the session data have no attribute 'colour'"},
        {false, "get txtNothing[x].Text",
         "unknown control 'txtNothing[x]': the index must be a whole number in [ ]"},
        {false, "chart cmdTranslate", "cmdTranslate is not a chart"},
    };
    for (const auto& c : cases) {
        const std::string script =
            std::string(c.whileReading ? "get tools.DeviceName\n" : "start KT520_7\n") + c.line;
        const ScriptRun result = run(script);
        EXPECT_EQ(result.status, ScriptRunner::kCannotRun) << script;
        EXPECT_EQ(result.out, "") << script;
        EXPECT_EQ(result.err, "line 2: " + std::string(c.error) + "\n") << script;
    }
    EXPECT_EQ(run("get tools.DeviceName\n").err,
              "line 1: no session: 'get' needs a start before it\n");
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

    // A later error outranks the failed expect.
    const ScriptRun stopped = run("start KT520_7\nexpect tools.ConnectionID = 2\nclick cmdNone\n");
    EXPECT_EQ(stopped.status, ScriptRunner::kCannotRun);
    EXPECT_EQ(stopped.out, "line 2: expected tools.ConnectionID = 2, actual 1\n");
}

TEST(ScriptRunner, SelectsTypesAndRestartsThroughTheFormModel) {
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

    // A start while a session runs releases the former one.
    const ScriptRun restarted = run(
        "start KT520_7\nstart PL500_2 offline\nget tools.DeviceName\nrelease\nrelease\nmessages\n");
    EXPECT_EQ(restarted.status, ScriptRunner::kPassed) << restarted.err;
    EXPECT_EQ(restarted.out, "tools.DeviceName=PL500\n");
}

}  // namespace
}  // namespace kt500::app
