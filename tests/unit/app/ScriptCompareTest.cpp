#include "app/ScriptCompare.h"

#include <gtest/gtest.h>

namespace kt500::app {
namespace {

struct Case {
    const char* expected;
    const char* actual;
    bool match;
};

class ValuesMatchTest : public ::testing::TestWithParam<Case> {};

TEST_P(ValuesMatchTest, FollowsTheComparisonRules) {
    const Case& c = GetParam();
    EXPECT_EQ(ValuesMatch(c.expected, c.actual), c.match)
        << "expected '" << c.expected << "' against actual '" << c.actual << "'";
}

INSTANTIATE_TEST_SUITE_P(Numbers, ValuesMatchTest,
                         ::testing::Values(Case{"7", "7", true}, Case{"7.0", "7", true},
                                           Case{"0x409", "1033", true},
                                           Case{"0XFF0000", "16711680", true},
                                           Case{"-0x1", "-1", true}, Case{"1e3", "1000", true},
                                           Case{"0.5", "0.50", true}, Case{"8", "7", false},
                                           Case{"0x", "0", false}, Case{"0x1g", "1", false},
                                           Case{"1033", "0x409", false}, Case{"inf", "inf", true},
                                           Case{"nan", "nan", true}));

INSTANTIATE_TEST_SUITE_P(Booleans, ValuesMatchTest,
                         ::testing::Values(Case{"True", "True", true}, Case{"true", "True", true},
                                           Case{"FALSE", "False", true}, Case{"1", "True", true},
                                           Case{"0", "False", true}, Case{"1", "False", false},
                                           Case{"True", "False", false}, Case{"yes", "True", false},
                                           Case{"True", "1", true}));

INSTANTIATE_TEST_SUITE_P(Texts, ValuesMatchTest,
                         ::testing::Values(Case{"KT520", "KT520", true},
                                           Case{"kt520", "KT520", false}, Case{"", "", true},
                                           Case{"", "0", false}, Case{"TV 42", "TV 42", true},
                                           Case{"TV 42 ", "TV 42", false}));

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

}  // namespace
}  // namespace kt500::app
