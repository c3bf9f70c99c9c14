#include "data/ChangeTracking.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::data {
namespace {

using testing::TestUserControl;

// Fields of the KT520 pages: travelDeviationTrendLimit (0 to 100, one
// decimal), actuatorFullStrokesLimit (no decimals) and hartTag (a text of
// at most 8 characters). A limit the parameter lacks prints as arrows.
TEST(CheckValueTest, LimitsDecimalsAndLengths) {
    const std::string invalid = "Value check: Invalid value";
    const std::string decimals = "Value check: Decimals are not allowed for this value.";
    const struct {
        const char* array;
        int index;
        const char* text;
        const char* missingLimit;
        std::string message;  // "" when the value is good
    } cases[] = {
        {"txtHAAlertLimit", 0, "0", "", ""},
        {"txtHAAlertLimit", 0, "100", "", ""},
        {"txtHAAlertLimit", 0, "", "", ""},
        {"txtHAAlertLimit", 0, "100.1", "", invalid + " Min: 0, Max: 100"},
        {"txtHAAlertLimit", 0, "-0.1", "", invalid + " Min: 0, Max: 100"},
        {"txtHAAlertLimit", 0, "1a", "", invalid},
        {"txtHAAlertLimit", 0, "101", "minVal", invalid + " Min: <<<, Max: 100"},
        {"txtHAAlertLimit", 0, "-1000", "minVal", ""},
        {"txtHAAlertLimit", 0, "-1", "maxVal", invalid + " Min: 0, Max: >>>"},
        {"txtHAAlertLimit", 0, "1000", "maxVal", ""},
        {"txtHAAlertLimit", 3, "15", "", ""},
        {"txtHAAlertLimit", 3, "1.5", "", decimals},
        {"txtHAAlertLimit", 3, "1,5", "", decimals},
        {"txtHAOperationUnit", 0, "ABCDEFGH", "", ""},
        {"txtHAOperationUnit", 0, "ABCDEFGHI", "", invalid + " Maximum length: 8"},
        // The serial number is checked in its page form, whatever its limits.
        {"txtHAPositionerInformation", 0, "2021-07-0042", "", ""},
        {"txtHAPositionerInformation", 0, "0000-00-0000", "", ""},
        {"txtHAPositionerInformation", 0, "12345", "", invalid},
        {"txtHAPositionerInformation", 0, "2021-53-0042", "", invalid},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.array) + " " + c.text + " " + c.missingLimit);
        TestUserControl uc;
        form::Control& field = uc.form().control(c.array, c.index);
        if (c.missingLimit[0] != '\0') {
            uc.ParameterNodeByName(field.tag()).removeAttribute(c.missingLimit);
        }
        field.setText(c.text);
        const bool good = c.message.empty();
        EXPECT_EQ(uc.changes.CheckValue(field), good);
        EXPECT_EQ(field.foreColor(), good ? devices::ColorSynchronised : devices::ColorRefused);
        EXPECT_EQ(uc.messages,
                  good ? std::vector<std::string>{} : std::vector<std::string>{c.message});
    }
}

TEST(CheckValueTest, AFieldWithoutAParameterIsRefusedSilently) {
    TestUserControl uc;
    form::Control& untagged = uc.form().control("txtHAAlertLimit", 1);
    untagged.setTag("");
    untagged.setText("abc");
    EXPECT_FALSE(uc.changes.CheckValue(untagged));
    EXPECT_TRUE(uc.messages.empty());
}

}  // namespace
}  // namespace kt500::data
