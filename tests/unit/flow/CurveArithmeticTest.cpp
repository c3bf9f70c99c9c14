#include "flow/CurveArithmetic.h"
#include "flow/PresetCurves.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace kt500::flow {
namespace {

constexpr const char* kPresetNames[] = {"Linear",     "1/25",     "Quick 1/25", "1/33",    "Quick 1/33",
                                        "1/50",       "Quick 1/50", "Dovra L1", "Dovra R", "Dovra M"};

CurveTable TableOf(const CurveRowList& installed, const CurveRowList& desired) {
    CurveTable table;
    table.setColumn(kInstalledSubset, installed);
    table.setColumn(kDesiredSubset, desired);
    return table;
}

TEST(CurveArithmetic, PresetsRunFromZeroToHundredAndRiseStrictly) {
    ASSERT_EQ(CurveListNames().size(), 12U);
    EXPECT_EQ(CurveListNames().front(), "");
    EXPECT_EQ(CurveListNames().back(), "Custom");
    EXPECT_EQ(PresetCurve("Custom"), nullptr);
    EXPECT_EQ(PresetCurve(""), nullptr);
    for (const char* name : kPresetNames) {
        const CurveRowList* curve = PresetCurve(name);
        ASSERT_NE(curve, nullptr) << name;
        EXPECT_EQ((*curve)[0], 0.0F) << name;
        EXPECT_EQ((*curve)[20], 100.0F) << name;
        for (std::size_t row = 1; row < curve->size(); ++row) {
            EXPECT_GT((*curve)[row], (*curve)[row - 1]) << name << " row " << row;
        }
    }
}

TEST(CurveArithmetic, PointsTakeEvenRowsOnElevenPointsAndEveryRowOnTwentyOne) {
    EXPECT_EQ(RowOfPoint(11, 0), 0);
    EXPECT_EQ(RowOfPoint(11, 3), 6);
    EXPECT_EQ(RowOfPoint(11, 10), 20);
    EXPECT_EQ(RowOfPoint(21, 3), 3);
    EXPECT_EQ(RowOfPoint(21, 20), 20);
    EXPECT_THROW((void)RowOfPoint(11, 11), std::out_of_range);
    EXPECT_THROW((void)RowOfPoint(21, -1), std::out_of_range);
    EXPECT_THROW((void)RowOfPoint(12, 0), std::out_of_range);
}

// The identity's values are in the inverse test below; here the text form,
// whose odd rows on eleven points are zero.
TEST(CurveArithmetic, TheTextOfTheModifiedCurveListsEveryRow) {
    const CurveTable table = TableOf(*PresetCurve("Linear"), *PresetCurve("Linear"));
    EXPECT_EQ(CalculateModifiedCurve(table, 11).text,
              "0 0 10 0 20 0 30 0 40 0 50 0 60 0 70 0 80 0 90 0 100 0 ");
    EXPECT_EQ(CalculateModifiedCurve(table, 21).text.substr(0, 12), "0 5 10 15 20");
}

TEST(CurveArithmetic, InstalledEqualPercentageToLinearInvertsTheCurve) {
    // 1/25 installed, linear desired, eleven points, computed by hand.
    const CurveTable table = TableOf(*PresetCurve("1/25"), *PresetCurve("Linear"));
    const ModifiedCurve curve = CalculateModifiedCurve(table, 11);
    // B[1] = 10: A = 0, 1.52, 3.61, 6.51, 10.5 -> k = 4, R = (10 - 6.51) / (10.5 - 6.51) * 10 + 30.
    EXPECT_NEAR(curve.rows[2], (10.0 - 6.51) / (10.5 - 6.51) * 10.0 + 30.0, 1e-4);
    // B[5] = 50: A[7] = 34.07, A[8] = 48.53, A[9] = 68.48 -> k = 9.
    EXPECT_NEAR(curve.rows[10], (50.0 - 48.53) / (68.48 - 48.53) * 10.0 + 80.0, 1e-4);
    EXPECT_FLOAT_EQ(curve.rows[20], 100.0F);
}

TEST(CurveArithmetic, InverseOfTheForwardCurveReturnsTheInputForEveryPreset) {
    // Forward through the identity gives the installed curve; its inverse the identity.
    for (const int points : {11, 21}) {
        for (const char* name : kPresetNames) {
            const CurveRowList& installed = *PresetCurve(name);
            CurveTable table = TableOf(installed, installed);
            table.setColumn(kWorkingSubset, *PresetCurve("Linear"));
            const CurveRowList forward = CalculateDesiredCurve(table, points);
            for (int j = 0; j < points; ++j) {
                const int row = RowOfPoint(points, j);
                EXPECT_NEAR(forward[row], installed[row], 1e-3) << name << " point " << j;
            }
            table.setColumn(kDesiredSubset, forward);
            // Only the points' rows matter to the inverse.
            const ModifiedCurve inverse = CalculateModifiedCurve(table, points);
            const float spacing = 100.0F / static_cast<float>(points - 1);
            for (int j = 0; j + 1 < points; ++j) {
                EXPECT_NEAR(inverse.rows[RowOfPoint(points, j)], spacing * j, 1e-3)
                    << name << " point " << j << " of " << points;
            }
        }
    }
}

TEST(CurveArithmetic, ForwardOfTheInverseReturnsTheDesiredCurve) {
    for (const char* name : kPresetNames) {
        CurveTable table = TableOf(*PresetCurve(name), *PresetCurve("Quick 1/33"));
        const ModifiedCurve inverse = CalculateModifiedCurve(table, 21);
        table.setColumn(kWorkingSubset, inverse.rows);
        const CurveRowList desired = CalculateDesiredCurve(table, 21);
        for (int j = 1; j < 20; ++j) {
            EXPECT_NEAR(desired[j], (*PresetCurve("Quick 1/33"))[j], 1e-3) << name << " " << j;
        }
    }
}

TEST(CurveArithmetic, DesiredAboveTheLastInstalledValueTakesKEqualN) {
    // The installed curve ends at 80: a desired 90 and 100 run k up to N,
    // where the zeroed element past the end stands as A[N].
    CurveRowList installed = *PresetCurve("Linear");
    for (float& value : installed) {
        value *= 0.8F;
    }
    const CurveTable table = TableOf(installed, *PresetCurve("Linear"));
    const ModifiedCurve curve = CalculateModifiedCurve(table, 11);
    // j = 9: B = 90, k = 11, A[10] = 80, A[11] = 0:
    // (90 - 80) / (0 - 80) * 10 + 1 * 100 = 98.75.
    EXPECT_NEAR(curve.rows[18], 98.75, 1e-4);
    // j = 10: (100 - 80) / (0 - 80) * 10 + 100 = 97.5.
    EXPECT_NEAR(curve.rows[20], 97.5, 1e-4);
    // Below 80 the inverse is the plain scale 1 / 0.8.
    EXPECT_NEAR(curve.rows[8], 50.0, 1e-4);
}

TEST(CurveArithmetic, EqualInstalledNeighboursAtTheIntervalUsedAreADivisionByZero) {
    // A flat installed curve: the walk runs to k = N, where A[N] and A[N-1]
    // are both 0.
    CurveRowList flat{};
    const CurveTable table = TableOf(flat, *PresetCurve("Linear"));
    EXPECT_THROW((void)CalculateModifiedCurve(table, 11), std::domain_error);
    EXPECT_THROW((void)CalculateModifiedCurve(table, 21), std::domain_error);
    // A flat first interval with a desired value on it: k stays at 1.
    CurveRowList startFlat = *PresetCurve("Linear");
    startFlat[2] = 0.0F;
    CurveRowList desired = *PresetCurve("Linear");
    desired[2] = 0.0F;
    EXPECT_THROW((void)CalculateModifiedCurve(TableOf(startFlat, desired), 11), std::domain_error);
    // Equal neighbours that the walk passes over divide by nothing.
    CurveRowList stepped = *PresetCurve("Linear");
    stepped[4] = stepped[2];
    EXPECT_NO_THROW((void)CalculateModifiedCurve(TableOf(stepped, *PresetCurve("Linear")), 11));
}

TEST(CurveArithmetic, ForwardClampsKAtNAndRefusesNegativeValues) {
    CurveTable table = TableOf(*PresetCurve("Linear"), *PresetCurve("Linear"));
    CurveRowList working = *PresetCurve("Linear");
    working[20] = 120.0F;  // truncate(0.1 * 120) + 1 = 13 -> 11
    table.setColumn(kWorkingSubset, working);
    const CurveRowList desired = CalculateDesiredCurve(table, 11);
    // f = 120 / 10 - 10 = 2; D = 2 * (0 - 100) + 100 = -100.
    EXPECT_NEAR(desired[20], -100.0, 1e-4);
    working[2] = -15.0F;  // truncate(-1.5) + 1 = 0: no interval
    table.setColumn(kWorkingSubset, working);
    EXPECT_THROW((void)CalculateDesiredCurve(table, 11), std::out_of_range);
}

TEST(CurveArithmetic, ValidationWantsEveryPointAboveTheOneBefore) {
    const std::vector<std::string> rising = {"0", "10", "20,5", "30"};
    EXPECT_TRUE(CurveRises(rising));
    const std::vector<std::string> equal = {"0", "10", "10", "30"};
    EXPECT_FALSE(CurveRises(equal));
    const std::vector<std::string> falling = {"0", "10", "5", "30"};
    EXPECT_FALSE(CurveRises(falling));
    const std::vector<std::string> blankFirst = {" ", "10", "20", "30"};
    EXPECT_FALSE(CurveRises(blankFirst));
    // A blank box after the first is converted as the neighbour of the box
    // before it, before its own blank test: a type mismatch.
    const std::vector<std::string> blankInside = {"0", " ", "20", "30"};
    EXPECT_THROW((void)CurveRises(blankInside), std::invalid_argument);
    // A blank last box is not caught by the blank test: its conversion fails.
    const std::vector<std::string> blankLast = {"0", "10", "20", ""};
    EXPECT_THROW((void)CurveRises(blankLast), std::invalid_argument);
    const std::vector<std::string> word = {"0", "ten"};
    EXPECT_THROW((void)CurveRises(word), std::invalid_argument);
}

TEST(CurveTable, OutsideTheTableThrowsAndStartsEmpty) {
    CurveTable table;
    EXPECT_EQ(table.at(21, 3), -1.0F);
    EXPECT_THROW((void)table.at(22, 0), std::out_of_range);
    EXPECT_THROW((void)table.at(0, 4), std::out_of_range);
    EXPECT_THROW((void)table.at(-1, 0), std::out_of_range);
}

}  // namespace
}  // namespace kt500::flow
