#include "devices/TestCurve.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::devices {
namespace {

// Positions 0, 2, 4, ... and pressures 1.0, 1.1, 1.2, ...
TestCurve Ramp() {
    TestCurve curve{};
    for (int i = 0; i < TestSamples; ++i) {
        curve[static_cast<std::size_t>(i)] = {2.0F * static_cast<float>(i),
                                              1.0F + 0.1F * static_cast<float>(i)};
    }
    return curve;
}

TEST(CloseCurveGaps, MissingSamplesRepeatTheOneBeforeAndTheStartTakesTheFirstRecorded) {
    TestCurve curve = Ramp();
    const TestCurve ramp = Ramp();
    for (const int missing : {0, 1, 2, 20}) {
        curve[static_cast<std::size_t>(missing)][1] = 0.0F;
    }
    CloseCurveGaps(curve);
    for (const int i : {0, 1, 2}) {
        EXPECT_EQ(curve[static_cast<std::size_t>(i)], ramp[3]) << i;
    }
    EXPECT_EQ(curve[3], ramp[3]);
    EXPECT_EQ(curve[20], ramp[19]);
    EXPECT_EQ(curve[21], ramp[21]);
    EXPECT_EQ(curve[49], ramp[49]);
}

TEST(CloseCurveGaps, ACurveWithNothingRecordedStaysAsItIs) {
    TestCurve curve{};
    curve[5][0] = 10.0F;
    const TestCurve before = curve;
    CloseCurveGaps(curve);
    EXPECT_EQ(curve, before);
}

TEST(CurveItems, OnlyANameEndingInTwoDigitsIsASample) {
    EXPECT_EQ(SplitCurveItem("valveTestVal07").series, "valveTestVal");
    EXPECT_EQ(SplitCurveItem("valveTestVal07").sample, 7);
    EXPECT_EQ(SplitCurveItem("lastSpOrTime49").sample, 49);
    for (const char* bad : {"", "7", "07", "valveTestBreakawayPressure", "val7", "valX7"}) {
        EXPECT_THROW((void)SplitCurveItem(bad), std::invalid_argument) << bad;
    }
    TestCurve curve{};
    EXPECT_THROW((void)CurveSample(curve, 50), std::out_of_range);
    EXPECT_THROW((void)CurveSample(curve, -1), std::out_of_range);
}

}  // namespace
}  // namespace kt500::devices
