#include "app/ScriptLexer.h"

#include <gtest/gtest.h>

namespace kt500::app {
namespace {

using Words = std::vector<std::string>;

TEST(ScriptLexer, SplitsWordsAtBlanksAndKeepsLineNumbers) {
    const auto lines = LexScript("start  KT520_7\tonline\n\n   \nget tools.DeviceName\r\n");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].number, 1);
    EXPECT_EQ(lines[0].words, (Words{"start", "KT520_7", "online"}));
    EXPECT_EQ(lines[1].number, 4);
    EXPECT_EQ(lines[1].words, (Words{"get", "tools.DeviceName"}));
    EXPECT_TRUE(LexScript("").empty());
    EXPECT_TRUE(LexScript("\n\n# only a comment\n\t\n").empty());
}

TEST(ScriptLexer, QuotedWordsKeepBlanksAndTakeEscapedQuotesAndBackslashes) {
    const auto lines = LexScript(R"(type txtX "a \"b\" c\\d" "" pre"fix"post "\n")");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].words, (Words{"type", "txtX", R"(a "b" c\d)", "", "prefixpost", R"(\n)"}));
}

TEST(ScriptLexer, CommentsStartAWordButAListIndexIsAWord) {
    const auto lines = LexScript(
        "# a comment line\n"
        "  #indented comment\n"
        "select comX #2 # the third entry\n"
        "click cmdY #\n"
        "type txtZ \"# not a comment\"\n");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].words, (Words{"select", "comX", "#2"}));
    EXPECT_EQ(lines[1].words, (Words{"click", "cmdY"}));
    EXPECT_EQ(lines[2].words, (Words{"type", "txtZ", "# not a comment"}));
    EXPECT_EQ(lines[2].number, 5);
}

TEST(ScriptLexer, AQuoteLeftOpenNamesItsLine) {
    for (const char* script :
         {"start KT520_7\n\ntype txtX \"open", "start KT520_7\n\nget \"x\\\""}) {
        try {
            (void)LexScript(script);
            ADD_FAILURE() << "no error for: " << script;
        } catch (const ScriptError& error) {
            EXPECT_EQ(error.line(), 3) << script;
            EXPECT_STREQ(error.what(), "line 3: a quoted word is not closed");
        }
    }
}

}  // namespace
}  // namespace kt500::app
