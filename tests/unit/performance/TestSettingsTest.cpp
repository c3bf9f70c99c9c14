#include "performance/TestSettings.h"

#include "devices/DeviceClass.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

namespace kt500::performance {
namespace {

using testing::TestUserControl;

// The KT540 page (its session does not start the whole control here; the
// page and its handlers are the real ones).
struct KT540TestSettings : ::testing::Test {
    KT540TestSettings() {
        uc.tools().Language = "9999";
        form().control("fraKT540", 19).setVisible(true);
    }
    form::Form& form() { return uc.form(); }
    form::Control& field(int element) { return form().control("txtPATestSettings", element); }
    void choose(int entry) {
        form().control("comTestType", 0).setListIndex(entry);
        settings.comTestType_Click(0);
    }
    void leave(int element, const std::string& text) {
        field(element).setText(text);
        settings.TestSettings_LostFocus(KT540TestPage, element);
    }

    TestUserControl uc{testing::SessionOf("KT540_1.0", true)};
    TestSettings settings{uc};
};

TEST_F(KT540TestSettings, TheEmptyFirstEntryIsNoTestAndLeavesTheFieldsBlank) {
    choose(0);
    EXPECT_EQ(uc.deviceClass().SelectedTest(), 0);
    EXPECT_EQ(field(0).text(), "");
    EXPECT_FALSE(uc.deviceClass().CheckTestParameters());
    ASSERT_EQ(uc.messages.size(), 1u);
    EXPECT_EQ(uc.messages.back(), "testSettings: invalidValue");
    choose(1);
    EXPECT_EQ(uc.deviceClass().SelectedTest(), 1);
    choose(2);
    EXPECT_EQ(uc.deviceClass().SelectedTest(), 2);
    EXPECT_EQ(field(0).text(), "50");
    EXPECT_TRUE(uc.deviceClass().CheckTestParameters());
}

TEST_F(KT540TestSettings, ANegativeChangeIsRefusedOnThisPage) {
    choose(1);
    leave(2, "-5");
    EXPECT_EQ(field(2).foreColor(), 255u);
    ASSERT_FALSE(uc.messages.empty());
    EXPECT_EQ(uc.messages.back(), "invalidValue: Min = 0.1, Max = 100");
    EXPECT_FALSE(uc.deviceClass().CheckTestParameters());
    leave(2, "10");
    EXPECT_EQ(field(2).foreColor(), 0u);
    EXPECT_TRUE(uc.deviceClass().CheckTestParameters());
}

TEST_F(KT540TestSettings, TheHysteresisSumTurnsBothFieldsRed) {
    choose(2);
    leave(2, "20");
    leave(1, "90");
    EXPECT_EQ(field(1).foreColor(), 255u);
    EXPECT_EQ(field(2).foreColor(), 255u);
    EXPECT_EQ(uc.messages.back(),
              "invalidValue: 10 <= startSetpoint + setpointChange <= 100");
    // Leaving another field checks the pair again: still red, no message.
    const std::size_t shown = uc.messages.size();
    leave(0, "60");
    EXPECT_EQ(uc.messages.size(), shown);
    EXPECT_EQ(field(1).foreColor(), 255u);
}

}  // namespace
}  // namespace kt500::performance
