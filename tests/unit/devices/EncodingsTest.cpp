#include "devices/Encodings.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::devices {
namespace {

TEST(EncodingsIds, DeviceIdsCountMonthsAndSerialNumbersWeeksSince1996) {
    const std::tuple<std::string (*)(std::int32_t), std::int32_t, const char*> table[] = {
        {DecodeDeviceID, 0, "0000-00-0000"},
        // n = 0: month 0 belongs to the year before.
        {DecodeDeviceID, 12, "1995-12-0012"},
        {DecodeDeviceID, 120000, "1996-12-0000"},
        {DecodeDeviceID, 3630042, "2026-03-0042"},
        {DecodeSerNro, 0, "0000-00-0000"},
        {DecodeSerNro, -32768, "0000-00-0000"},
        {DecodeSerNro, 520000, "1996-52-0000"},
        {DecodeSerNro, 10001, "1996-01-0001"},
        {DecodeSerNro, 16649999, "2027-52-9999"},
        // A negative number keeps its digits behind the sign.
        {DecodeSerNro, -1, "1995-52--0001"},
        {DecodeDeviceID, -30001, "1996--03--0001"},
    };
    for (const auto& [decode, number, text] : table) {
        EXPECT_EQ(decode(number), text) << number;
    }
    EXPECT_THROW((void)DecodeDeviceID(2000000000), std::overflow_error);
}

TEST(EncodingsIds, SerialNumbersEncodeAndRefuseBadTexts) {
    EXPECT_EQ(EnCodeSerNro("0000-00-0000"), 0);
    EXPECT_EQ(EnCodeSerNro("1996-1-0001"), 10001);
    for (const char* bad :
         {"1996-53-0001", "2028-01-0001", "1995-01-0001", "1996-00-0001", "1996-01-001",
          "1996-01-00001", "96-01-0001", "1996-001-0001", "1996-0a-0001", "199a-01-0001", "1996-01",
          "", "1996--0001", "1996-01--001", "1996-1.-0001"}) {
        EXPECT_EQ(EnCodeSerNro(bad), -1) << bad;
    }
    // Every week and year that encodes decodes to the same text.
    for (const std::int32_t year : {1996, 2011, 2027}) {
        for (std::int32_t week = 1; week <= 52; ++week) {
            char text[16];
            std::snprintf(text, sizeof text, "%d-%02d-%04d", year, week, 123);
            EXPECT_EQ(DecodeSerNro(EnCodeSerNro(text)), text);
        }
    }
}

TEST(EncodingsNumbers, IsNumAcceptsWhatCallersRelyOn) {
    for (const char* yes : {"", "-", "0", "12", "-12", "1.5", "1,5", ".5", "-,5"}) {
        EXPECT_TRUE(IsNum(yes)) << yes;
    }
    for (const char* no : {"12.", "1.2.3", "1a", "--1", "1-", " 1", "1e5", "1,2.3"}) {
        EXPECT_FALSE(IsNum(no)) << no;
    }
}

TEST(EncodingsNumbers, Str2DblIsLocaleFree) {
    for (const char* none : {"abc", "", "-"}) {
        EXPECT_EQ(Str2Dbl(none), NoValue) << none;
    }
    // Text before the number is skipped; a second mark or a non-digit ends it.
    const std::pair<const char*, double> table[] = {
        {"x-1,5e1", -15.0}, {"12.5", 12.5},    {"12,5", 12.5},  {".25", 0.25},
        {"1.5.7", 1.5},     {"2.5E-2", 0.025}, {"3e+2", 300.0}, {"42 bar", 42.0},
        {"unit: -7", -7.0}, {"2e3x", 2000.0},  {"1.5e", 1.5}};
    for (const auto& [text, number] : table) {
        EXPECT_DOUBLE_EQ(Str2Dbl(text), number) << text;
    }
}

TEST(EncodingsNumbers, WholeNumbersRoundHalfToEvenAndCheckTheirRange) {
    const std::pair<const char*, std::int32_t> good[] = {
        {"42", 42}, {" 42 ", 42}, {"+7", 7},     {"-5", -5},  {"2.5", 2},
        {"3.5", 4}, {"-2.5", -2}, {"1e3", 1000}, {"0.49", 0}, {"-2147483648", INT32_MIN},
    };
    for (const auto& [text, number] : good) {
        EXPECT_EQ(ToInt32(text), number) << text;
    }
    for (const char* bad : {"", "   ", "abc", "12abc", "1 2", "--1"}) {
        EXPECT_THROW((void)ToInt32(bad), std::invalid_argument) << bad;
    }
    EXPECT_EQ(ToInt32("2147483647"), INT32_MAX);
    EXPECT_THROW((void)ToInt32("2147483647.5"), std::overflow_error);
    EXPECT_EQ(ToInt16("32767.4"), 32767);
    EXPECT_EQ(ToInt16("-32768"), -32768);
    for (const char* wide : {"32767.5", "32768", "-32769", "100000"}) {
        EXPECT_THROW((void)ToInt16(wide), std::overflow_error) << wide;
    }
}

TEST(EncodingsNumbers, SingleTextIsTheShortestPointTextThatReadsBack) {
    // The no-value number stays digits.
    const std::pair<float, const char*> table[] = {{1.5F, "1.5"},
                                                   {100.0F, "100"},
                                                   {0.1F, "0.1"},
                                                   {-0.25F, "-0.25"},
                                                   {2.0F * 30.32F, "60.64"},
                                                   {16649999.0F, "16649999"},
                                                   {2141191936.0F, "2141191936"}};
    for (const auto& [number, text] : table) {
        EXPECT_EQ(SingleText(number), text);
        EXPECT_EQ(static_cast<float>(Str2Dbl(SingleText(number))), number) << text;
    }
}

TEST(EncodingsNumbers, DecimalSignFollowsTheLocaleUnlessASymbolIsGiven) {
    for (const auto language : {QLocale::English, QLocale::German}) {
        const test::LocaleGuard locale{language};
        const bool comma = language == QLocale::German;
        EXPECT_EQ(MachineDecimalSymbol(), comma ? "," : ".");
        EXPECT_EQ(fDecimalSep("1,5"), comma ? "1,5" : "1.5");
        EXPECT_EQ(fDecimalSep("1.5"), comma ? "1,5" : "1.5");
        EXPECT_EQ(fDecimalSep("1,5", "."), "1.5");
        EXPECT_EQ(fDecimalSep("1.5", ",x"), "1,5");
        EXPECT_EQ(fDecimalSep("1,5", "x"), "");
        EXPECT_EQ(fDecimalSep("1,5", ""), "");
        // Parsing does not care about the locale.
        EXPECT_DOUBLE_EQ(Str2Dbl("1,5"), 1.5);
    }
}

}  // namespace
}  // namespace kt500::devices
