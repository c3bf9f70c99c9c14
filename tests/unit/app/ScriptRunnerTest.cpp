// The script language: its words, the comparison of expected values and
// the runner.
#include "app/ScriptCompare.h"
#include "app/ScriptLexer.h"
#include "app/ScriptRunner.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kt500::app {
namespace {

using Words = std::vector<std::string>;

// Words split at blanks, quotes keep blanks and take escapes, "#" starts a
// comment only where a word would begin; lines keep their numbers.
TEST(ScriptLexer, SplitsWordsAndKeepsLineNumbersQuotesAndComments) {
    const struct {
        const char* script;
        std::vector<std::pair<int, Words>> lines;
    } cases[] = {
        {"start  KT520_7\tonline\n\n   \nget tools.DeviceName\r\n",
         {{1, {"start", "KT520_7", "online"}}, {4, {"get", "tools.DeviceName"}}}},
        {"", {}},
        {"\n\n# only a comment\n\t\n", {}},
        {R"(type txtX "a \"b\" c\\d" "" pre"fix"post "\n")",
         {{1, {"type", "txtX", R"(a "b" c\d)", "", "prefixpost", R"(\n)"}}}},
        {"# a comment line\n  #indented comment\nselect comX #2 # the third entry\n"
         "click cmdY #\ntype txtZ \"# not a comment\"\n",
         {{3, {"select", "comX", "#2"}},
          {4, {"click", "cmdY"}},
          {5, {"type", "txtZ", "# not a comment"}}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.script);
        const auto lines = LexScript(c.script);
        ASSERT_EQ(lines.size(), c.lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(lines[i].number, c.lines[i].first);
            EXPECT_EQ(lines[i].words, c.lines[i].second);
        }
    }
}

// Numbers match in decimal, hexadecimal or exponent form, truth values in any
// case or as 1 and 0, other text exactly.
TEST(ScriptCompare, ExpectedValuesMatchByNumberTruthOrExactText) {
    const struct {
        const char* expected;
        const char* actual;
        bool match;
    } cases[] = {{"0x409", "1033", true},  {"0XFF0000", "16711680", true},
                 {"-0x1", "-1", true},     {"1e3", "1000", true},
                 {"0.5", "0.50", true},    {"0x", "0", false},
                 {"0x1g", "1", false},     {"1033", "0x409", false},
                 {"inf", "inf", true},     {"nan", "nan", true},
                 {"true", "True", true},   {"1", "True", true},
                 {"0", "False", true},     {"1", "False", false},
                 {"yes", "True", false},   {"True", "1", true},
                 {"", "", true},           {"", "0", false},
                 {"TV 42", "TV 42", true}, {"TV 42 ", "TV 42", false}};
    for (const auto& c : cases) {
        EXPECT_EQ(ValuesMatch(c.expected, c.actual), c.match)
            << "expected '" << c.expected << "' against actual '" << c.actual << "'";
    }
}

TEST(ScriptCompare, NumbersAreOnlyWhatTheSystemPrints) {
    EXPECT_EQ(DecimalOf("-12.5e-1"), -1.25);
    EXPECT_EQ(DecimalOf("+3"), 3.0);
    EXPECT_EQ(DecimalOf(".5"), 0.5);
    for (const char* notNumber :
         {"", "-", ".", "1e", "1.2.3", "0x10", "1 ", " 1", "inf", "nan", "1e999"}) {
        EXPECT_FALSE(DecimalOf(notNumber)) << notNumber;
    }
    EXPECT_EQ(ExpectedNumberOf("0x10"), 16.0);
    EXPECT_FALSE(ExpectedNumberOf("0x-1"));
}

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
        {true, "get", "'get' takes 1 words after it"},
        {true, "wait -5", "wait: expects milliseconds (a whole number from 0), not '-5'"},
        {true, "bl explode", "unknown command 'bl explode'"},
        {true, "answer maybe", "answer: 'maybe' is not yes, no, ok or cancel"},
        {true, "expect a.b == 1", "expect: TARGET.PROPERTY = VALUE or TARGET.PROPERTY != VALUE"},
        {true, "session online", "session: 'online' is not WORD=VALUE"},
        {true, "row 0 on", "row: expects a row number from 1 and on or off"},
        {true, "check chkX 2", "check: the value must be 0 or 1, not '2'"},
        {true, "type txtX \"open", "a quoted word is not closed"},
        {true, "get \"x\\\"", "a quoted word is not closed"},
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

// The expect failures scenario follows the reports of failed expects.
TEST(ScriptRunner, ALaterErrorOutranksAFailedExpect) {
    const ScriptRun stopped = run("start KT520_7\nexpect tools.ConnectionID = 2\nclick cmdNone\n");
    EXPECT_EQ(stopped.status, ScriptRunner::kCannotRun);
    EXPECT_EQ(stopped.out, "line 2: expected tools.ConnectionID = 2, actual 1\n");
}

TEST(ScriptRunner, AStartWhileASessionRunsReleasesTheFormerOne) {
    const ScriptRun restarted = run(
        "start KT520_7\nstart PL500_2 offline\nget tools.DeviceName\nrelease\nrelease\nmessages\n");
    EXPECT_EQ(restarted.status, ScriptRunner::kPassed) << restarted.err;
    EXPECT_EQ(restarted.out, "tools.DeviceName=PL500\n");
}

}  // namespace
}  // namespace kt500::app
