// The compare page's rule: when values of one parameter count as different.
#include "datasets/CompareValues.h"

#include <gtest/gtest.h>

namespace kt500::datasets {
namespace {

using Values = std::vector<std::optional<std::string>>;

TEST(CompareValuesTest, NumbersCompareWithinTheTolerance) {
    EXPECT_FALSE(ValuesDiffer({"30", "30.0", "3e1"}, true, 0.0));
    EXPECT_TRUE(ValuesDiffer({"30.4", "30.0", std::nullopt}, true, 0.0));
    EXPECT_FALSE(ValuesDiffer({"30.4", "30.0", std::nullopt}, true, 0.5));
    // The spread of all the values counts, not each against the first.
    EXPECT_TRUE(ValuesDiffer({"30.0", "30.4", "29.7"}, true, 0.5));
    EXPECT_FALSE(ValuesDiffer({"30.0", "30.4", "29.9"}, true, 0.5));
    // A number against a text that is none differs; two blanks do not.
    EXPECT_TRUE(ValuesDiffer({"1", "", std::nullopt}, true, 10.0));
    EXPECT_FALSE(ValuesDiffer({"", " ", std::nullopt}, true, 0.0));
}

TEST(CompareValuesTest, TextComparesExactlyAndMissingSourcesDoNotCount) {
    EXPECT_TRUE(ValuesDiffer({"PV-101", "pv-101"}, false, 5.0));
    EXPECT_FALSE(ValuesDiffer({"PV-101", std::nullopt, "PV-101"}, false, 0.0));
    EXPECT_FALSE(ValuesDiffer({std::nullopt, "PV-101", std::nullopt}, false, 0.0));
    EXPECT_FALSE(ValuesDiffer({std::nullopt, std::nullopt, std::nullopt}, true, 0.0));
    EXPECT_TRUE(ValuesDiffer({"", "x"}, false, 0.0));
}

TEST(CompareValuesTest, ReadsTheTolerance) {
    EXPECT_EQ(ReadTolerance(""), 0.0);
    EXPECT_EQ(ReadTolerance("0.5"), 0.5);
    EXPECT_EQ(ReadTolerance("0,5"), 0.5);
    EXPECT_EQ(ReadTolerance(" 2 "), 2.0);
    EXPECT_EQ(ReadTolerance("-1"), std::nullopt);
    EXPECT_EQ(ReadTolerance("abc"), std::nullopt);
    EXPECT_EQ(ReadTolerance("nan"), std::nullopt);
}

}  // namespace
}  // namespace kt500::datasets
