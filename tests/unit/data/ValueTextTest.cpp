#include "data/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>

namespace kt500::data {
namespace {

TEST(RoundedText, RoundsHalfAwayFromZeroInTheGivenSign) {
    struct Case {
        const char* value;
        int decimals;
        const char* sign;
        const char* expected;
    };
    const Case cases[] = {
        {"1.25", 1, ".", "1.3"},     {"-1.25", 1, ".", "-1.3"},  {"-0.04", 1, ".", "0.0"},
        {" 2,5 ", 0, ",", "3"},      {"+7", 2, ",", "7,00"},     {"12.3456", -1, ".", "12"},
        {"0.000001", 6, ".", "0.000001"}, {"1e-30", 25, ".", "0.0000000000000000000000000"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(RoundedText(c.value, c.decimals, c.sign), c.expected) << c.value;
    }
    // A value longer than any page field is still written whole.
    const std::string huge = RoundedText("1e300", 2, ",");
    EXPECT_EQ(huge.size(), 301U + 3U);
    EXPECT_EQ(huge.substr(0, 2) + huge.substr(huge.size() - 3), "10,00");
}

TEST(RoundedText, WritesWhatPrintfWritesForTheRoundedNumber) {
    std::mt19937 random(23);
    std::uniform_real_distribution<double> values(-1e6, 1e6);
    for (int run = 0; run < 2000; ++run) {
        const double value = values(random);
        const int decimals = run % 8;
        char text[64];
        std::snprintf(text, sizeof text, "%.17g", value);
        double scale = 1.0;
        for (int d = 0; d < decimals; ++d) {
            scale *= 10.0;
        }
        char expected[128];
        std::snprintf(expected, sizeof expected, "%.*f", decimals,
                      std::round(std::strtod(text, nullptr) * scale) / scale + 0.0);
        EXPECT_EQ(RoundedText(text, decimals, "."), expected) << text << " " << decimals;
    }
}

TEST(RoundedText, RefusesWhatIsNoNumber) {
    for (const char* bad : {"", "  ", "abc", "1.2.3", "1,2,3", "nan", "inf", "1e999", "--1", "1 2"}) {
        EXPECT_THROW(RoundedText(bad, 2, "."), std::invalid_argument) << bad;
    }
}

}  // namespace
}  // namespace kt500::data
