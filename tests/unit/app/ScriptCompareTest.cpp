#include "app/ScriptCompare.h"

#include <gtest/gtest.h>

namespace kt500::app {
namespace {

// Numbers match in decimal, hexadecimal or exponent form, truth values in any
// case or as 1 and 0, other text exactly.
TEST(ScriptCompare, ExpectedValuesMatchByNumberTruthOrExactText) {
    const struct {
        const char* expected;
        const char* actual;
        bool match;
    } cases[] = {{"7", "7", true},         {"7.0", "7", true},
                 {"0x409", "1033", true},  {"0XFF0000", "16711680", true},
                 {"-0x1", "-1", true},     {"1e3", "1000", true},
                 {"0.5", "0.50", true},    {"8", "7", false},
                 {"0x", "0", false},       {"0x1g", "1", false},
                 {"1033", "0x409", false}, {"inf", "inf", true},
                 {"nan", "nan", true},     {"True", "True", true},
                 {"true", "True", true},   {"FALSE", "False", true},
                 {"1", "True", true},      {"0", "False", true},
                 {"1", "False", false},    {"True", "False", false},
                 {"yes", "True", false},   {"True", "1", true},
                 {"KT520", "KT520", true}, {"kt520", "KT520", false},
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

}  // namespace
}  // namespace kt500::app
