#include "data/ChangeTracking.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::data {
namespace {

using testing::TestUserControl;

// Fields of the KT520 pages: travelDeviationTrendLimit (0 to 100, one
// decimal), actuatorFullStrokesLimit (no decimals) and hartTag (a text of
// at most 8 characters).
TEST(CheckValueTest, LimitsDecimalsAndLengths) {
    struct Case {
        const char* array;
        int index;
        const char* text;
        bool good;
        const char* message;  // "" when none
    };
    const Case cases[] = {
        {"txtHAAlertLimit", 0, "0", true, ""},
        {"txtHAAlertLimit", 0, "100", true, ""},
        {"txtHAAlertLimit", 0, "", true, ""},
        {"txtHAAlertLimit", 0, "100.1", false, "Value check: Invalid value Min: 0, Max: 100"},
        {"txtHAAlertLimit", 0, "-0.1", false, "Value check: Invalid value Min: 0, Max: 100"},
        {"txtHAAlertLimit", 0, "1a", false, "Value check: Invalid value"},
        {"txtHAAlertLimit", 3, "15", true, ""},
        {"txtHAAlertLimit", 3, "1.5", false,
         "Value check: Decimals are not allowed for this value."},
        {"txtHAAlertLimit", 3, "1,5", false,
         "Value check: Decimals are not allowed for this value."},
        {"txtHAOperationUnit", 0, "ABCDEFGH", true, ""},
        {"txtHAOperationUnit", 0, "ABCDEFGHI", false,
         "Value check: Invalid value Maximum length: 8"},
    };
    for (const Case& c : cases) {
        TestUserControl uc;
        form::Control& field = uc.form().control(c.array, c.index);
        field.setText(c.text);
        EXPECT_EQ(uc.changes.CheckValue(field), c.good) << c.array << " " << c.text;
        EXPECT_EQ(field.foreColor(), c.good ? devices::ColorSynchronised : devices::ColorRefused)
            << c.text;
        if (c.message[0] == '\0') {
            EXPECT_TRUE(uc.messages.empty()) << c.text << ": " << uc.messages.front();
        } else {
            ASSERT_EQ(uc.messages.size(), 1U) << c.text;
            EXPECT_EQ(uc.messages.front(), c.message);
        }
    }
}

TEST(CheckValueTest, AMissingLimitPrintsArrows) {
    TestUserControl uc;
    form::Control& field = uc.form().control("txtHAAlertLimit", 0);
    xml::Node parameter = uc.ParameterNodeByName("travelDeviationTrendLimit");

    parameter.removeAttribute("minVal");
    field.setText("101");
    EXPECT_FALSE(uc.changes.CheckValue(field));
    field.setText("-1000");
    EXPECT_TRUE(uc.changes.CheckValue(field));

    parameter.setAttribute("minVal", "0");
    parameter.removeAttribute("maxVal");
    field.setText("-1");
    EXPECT_FALSE(uc.changes.CheckValue(field));
    field.setText("1000");
    EXPECT_TRUE(uc.changes.CheckValue(field));

    EXPECT_EQ(uc.messages,
              (std::vector<std::string>{"Value check: Invalid value Min: <<<, Max: 100",
                                        "Value check: Invalid value Min: 0, Max: >>>"}));

    // A field without a parameter is not validated.
    form::Control& untagged = uc.form().control("txtHAAlertLimit", 1);
    untagged.setTag("");
    untagged.setText("abc");
    EXPECT_FALSE(uc.changes.CheckValue(untagged));
    EXPECT_EQ(uc.messages.size(), 2U);
}

}  // namespace
}  // namespace kt500::data
