#include "calibration/DeviceActionLock.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

namespace kt500::calibration {
namespace {

using testing::TestUserControl;

// What each role gets back when communication returns the device.
struct RoleCase {
    const char* role;
    bool tests;
    bool resets;
    bool calibrations;
};

class DeviceActionLockRoles : public ::testing::TestWithParam<RoleCase> {};

TEST_P(DeviceActionLockRoles, ReleaseFollowsTheRoleAndLockTakesEverything) {
    const RoleCase& c = GetParam();
    TestUserControl uc(testing::SessionOf("KT520_7", true, c.role));
    uc.tools().ActorRole = c.role;
    DeviceActionLock lock(uc);
    const auto enabled = [&uc](const char* name, int element) {
        return uc.form().control(name, element).enabled();
    };

    lock.EnableDeviceActions(false);
    for (const char* name : {"cmdStartTest", "cmdResetDiagnostics", "cmdHAAutoTravelCalibration",
                             "cmdHAMonitoring", "cmdHAFlowModification"}) {
        EXPECT_FALSE(enabled(name, 0)) << c.role << " " << name;
    }

    lock.EnableDeviceActions(true);
    EXPECT_TRUE(enabled("cmdHAMonitoring", 0)) << c.role;
    EXPECT_TRUE(enabled("cmdHAFlowModification", 1)) << c.role;
    EXPECT_EQ(enabled("cmdStartTest", 0), c.tests) << c.role;
    EXPECT_EQ(enabled("cmdStartTest", 1), c.tests) << c.role;
    EXPECT_EQ(enabled("cmdResetDiagnostics", 0), c.resets) << c.role;
    EXPECT_EQ(enabled("cmdResetDiagnostics", 1), c.resets) << c.role;
    for (const char* name :
         {"cmdHAAutoTravelCalibration", "cmdHAInputSignalMeasurementCalibration",
          "cmdHAPressureSensorCalibration", "cmdHATemperatureSensorCalibration"}) {
        EXPECT_EQ(enabled(name, 0), c.calibrations) << c.role << " " << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Roles, DeviceActionLockRoles,
                         ::testing::Values(RoleCase{"maintenance", true, true, true},
                                           RoleCase{"operator", true, false, false},
                                           RoleCase{"observer", false, false, false}));

TEST(DeviceActionLock, ARunningTestKeepsItsStopAndMonitoring) {
    TestUserControl uc(testing::SessionOf("KT520_7", true, "observer"));
    uc.tools().ActorRole = "observer";
    uc.tools().CurrentAutoAction = 2;
    DeviceActionLock lock(uc);
    lock.EnableDeviceActions(false);
    EXPECT_TRUE(uc.form().control("cmdStartTest", 0).enabled());
    EXPECT_TRUE(uc.form().control("cmdHAMonitoring", 1).enabled());
    EXPECT_FALSE(uc.form().control("cmdHAFlowModification", 0).enabled());
}

TEST(DeviceActionLock, RunningMonitoringKeepsItsOwnCommands) {
    TestUserControl uc(testing::SessionOf("KT520_7", true));
    uc.tools().ActorRole = "maintenance";
    DeviceActionLock lock(uc);
    lock.EnableDeviceActions(false);
    uc.tools().MonitoringFlag = true;
    lock.EnableDeviceActions(true);
    EXPECT_FALSE(uc.form().control("cmdHAMonitoring", 0).enabled());
    EXPECT_TRUE(uc.form().control("cmdStartTest", 1).enabled());
    EXPECT_TRUE(uc.form().control("cmdHAAutoTravelCalibration", 0).enabled());
}

}  // namespace
}  // namespace kt500::calibration
