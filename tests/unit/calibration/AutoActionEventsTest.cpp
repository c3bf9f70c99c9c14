#include "calibration/Calibrations.h"

#include "calibration/CalibrationState.h"
#include "devices/MemberMissing.h"
#include "simulator/SimulatedControl.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

namespace kt500::calibration {
namespace {

using testing::TestUserControl;

struct AutoActionEventsTest : ::testing::Test {
    AutoActionEventsTest() {
        uc.tools().Language = "9999";
        uc.tools().ActorRole = "maintenance";
        uc.tools().OnlineConf = true;
    }
    form::Control& control(const char* name, int index = -1) {
        return uc.form().control(name, index);
    }
    simulator::SimulatedControl& bl() { return uc.bl().simulatedControl(); }

    TestUserControl uc{testing::SessionOf("KT520_7", true)};
    Calibrations calibrations{uc};
};

TEST_F(AutoActionEventsTest, PreparingStopsMonitoringFirstAndTellsARefusal) {
    bool started = false;
    bl().StartMonitoringRequests(uc.tools().ConnectionID, 0, started);
    ASSERT_TRUE(bl().monitoring());
    uc.tools().MonitoringFlag = true;

    EXPECT_EQ(calibrations.PrepareAutoAction(), "");
    EXPECT_FALSE(bl().monitoring());
    EXPECT_FALSE(uc.tools().MonitoringFlag);
    EXPECT_EQ(control("lblHAMonitoringSettings", 6).caption(), "Stopped");

    bl().setNextRequestAccepted(false);
    EXPECT_EQ(calibrations.PrepareAutoAction(), "commonCalText4");
}

TEST_F(AutoActionEventsTest, ReadinessGoesToTheActionThatAskedAndNowhereElse) {
    // Cancelled while the device made ready: nothing changes.
    calibrations.IQDLGuiEvent_ReadyForAutoAction(true);
    EXPECT_EQ(uc.tools().CalibrationStep, Step::Idle);
    EXPECT_FALSE(control("fraProgress").visible());

    // A test brings its own start, which is not part of the control yet.
    uc.tools().CurrentAutoAction = Action::Test;
    EXPECT_THROW(calibrations.IQDLGuiEvent_ReadyForAutoAction(true), devices::MemberMissing);
    EXPECT_THROW(calibrations.IQDLGuiEvent_ReadyForAutoAction(false), devices::MemberMissing);
}

TEST_F(AutoActionEventsTest, AFailedTestGivesEverythingBackButSettings) {
    form::ToolbarModel& toolbar = control("smuiDTM", 1).toolbar();
    toolbar.setEnabled("settings", false);
    uc.tools().CurrentAutoAction = Action::Test;
    uc.tools().TestStep = 1;
    control("cmdStartTest", 0).setCaption("stop");
    control("fraProgress").setVisible(true);

    calibrations.IQDLGuiEvent_AutoActionComplete(false);

    EXPECT_EQ(uc.tools().CurrentAutoAction, Action::None);
    EXPECT_EQ(uc.tools().TestStep, 0);
    EXPECT_EQ(control("cmdStartTest", 0).caption(), "start");
    EXPECT_FALSE(control("fraProgress").visible());
    EXPECT_TRUE(toolbar.item("uploadCurrent").enabled);
    EXPECT_FALSE(toolbar.item("settings").enabled);
    ASSERT_EQ(uc.messages.size(), 1U);
    EXPECT_EQ(uc.messages[0], "testInfo: commonTestText1");
}

TEST_F(AutoActionEventsTest, TheCoefficientFollowsTheScaleOfThePage) {
    SensorCalibrations& sensors = calibrations.sensors();
    for (const auto& [scale, coefficient] :
         {std::pair{"degC", "0.0023"}, std::pair{"\xC2\xB0" "C", "0.0023"},
          std::pair{"degF", "0.001277778"}}) {
        control("lblHAAmbientTemperature", 1).setCaption(scale);
        sensors.TemperatureCoefficient();
        EXPECT_EQ(control("txtHATemperatureSensorCal", 1).text(), coefficient) << scale;
    }
}

}  // namespace
}  // namespace kt500::calibration
