#include "flow/CurveArithmetic.h"
#include "flow/CurveFile.h"
#include "flow/PresetCurves.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::flow {
namespace {

std::string Lines(int count, const std::string& tail = " p.u") {
    std::string text;
    for (int line = 0; line < count; ++line) {
        text += std::to_string(line / 10.0).substr(0, 3) + tail + "\n";
    }
    return text;
}

TEST(CurveFile, ReadsElevenFractionsAsPercentWhateverTheTail) {
    const CurveFileRead read = ReadCurveFile(Lines(11, "XXXX"));
    ASSERT_TRUE(read.ok) << read.error.key;
    for (int j = 0; j < 11; ++j) {
        EXPECT_NEAR(read.chr[j], 10.0F * j, 1e-4) << j;
    }
    EXPECT_EQ(read.chr[11], 0.0F);
    // Carriage returns, a comma as decimal sign and a twelfth line are read.
    const CurveFileRead windows = ReadCurveFile("0,25    \r\n" + Lines(11));
    ASSERT_TRUE(windows.ok) << windows.error.key;
    EXPECT_NEAR(windows.chr[0], 25.0F, 1e-4);
    EXPECT_NEAR(windows.chr[11], 100.0F, 1e-4);
}

TEST(CurveFile, RefusesEveryBadFileWithItsReasonAndLine) {
    struct Case {
        std::string bytes;
        std::string key;
        int line;
    };
    const Case cases[] = {
        {"", "curveFileEmpty", 0},
        {std::string("0.1 p.u\n\0\1", 10), "curveFileNotText", 0},
        {"\xff\xfe" + Lines(11), "curveFileNotText", 0},
        {std::string(5000, '1'), "curveFileTooLarge", 0},
        {"0.1\n" + Lines(10), "curveFileLineTooShort", 1},
        {Lines(3) + "\n" + Lines(8), "curveFileLineTooShort", 4},
        {Lines(2) + "abc p.u\n" + Lines(8), "curveFileNoNumber", 3},
        {Lines(2) + "    p.u\n" + Lines(8), "curveFileNoNumber", 3},
        {Lines(2) + "1e5 p.u\n" + Lines(8), "curveFileNoNumber", 3},
        {Lines(13), "curveFileTooManyLines", 13},
        {Lines(10), "curveFileTooFewLines", 10},
    };
    for (const Case& c : cases) {
        const CurveFileRead read = ReadCurveFile(c.bytes);
        EXPECT_FALSE(read.ok) << c.key;
        EXPECT_EQ(read.error.key, c.key);
        EXPECT_EQ(read.error.line, c.line) << c.key;
    }
}

TEST(CurveFile, WhatIsWrittenReadsBack) {
    CurveRowList curve = *PresetCurve("Quick 1/25");
    const CurveFileRead read = ReadCurveFile(CurveFileText(curve));
    ASSERT_TRUE(read.ok) << read.error.key;
    for (int j = 0; j < 11; ++j) {
        EXPECT_NEAR(read.chr[j], curve[2 * j], 1e-3) << j;
    }
}

TEST(CurveFile, FillsTheModificationCurveWithMeansBetweenPoints) {
    CurveFilePoints chr{};
    for (int j = 0; j < 11; ++j) {
        chr[j] = static_cast<float>(j * j);  // 0, 1, 4, ... 100
    }
    CurveTable table;
    FillFromCurveFile(table, chr);
    EXPECT_EQ(table.at(4, kSignalModificationSubset), 4.0F);
    EXPECT_EQ(table.at(5, kSignalModificationSubset), 6.5F);
    EXPECT_EQ(table.at(21, kSignalModificationSubset), 50.0F);  // (100 + 0) / 2
    EXPECT_EQ(table.at(5, kInstalledSubset), 6.5F);
    EXPECT_EQ(table.at(5, kDesiredSubset), 25.0F);
    EXPECT_EQ(table.at(5, kWorkingSubset), -1.0F);
}

}  // namespace
}  // namespace kt500::flow
