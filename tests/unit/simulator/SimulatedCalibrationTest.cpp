// The calibrations the simulated device performs on its valve model.
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

namespace kt500::simulator::testing {
namespace {

double Value(SimulatedControl& control, const std::string& name) {
    return std::stod(control.deviceValue(name).value());
}

// The temperature and loop current references are in the scenarios
// calibration_temperature and calibration_input_signal.
TEST(SimulatedCalibrationTest, APressureSpanRescalesTheReadingAndARefusedReferenceChangesNone) {
    SimulatedSession session("KT520_7", true);
    SimulatedControl& control = session.control();
    const double before = Value(control, "actuatorPressure");
    const double supply = Value(control, "supplyPressure");
    EXPECT_TRUE(session.post(
        session.writeRequest("pressureSensorCalibration3", {{"pressureSpan", "6.3"}})));
    // Read at the same instant: only the sensor's scale changed.
    EXPECT_NEAR(Value(control, "actuatorPressure"), before * 6.3 / supply, 0.01);

    const double temperature = Value(control, "pcbTemperature");
    EXPECT_TRUE(session.post(session.writeRequest("temperatureSensorCalibration",
                                                  {{"measuredTemperature", "120"},
                                                   {"temperatureCoefficient", "0.0023"}})));
    session.clock().settle();
    EXPECT_DOUBLE_EQ(Value(control, "pcbTemperature"), temperature);
}

TEST(SimulatedCalibrationTest, TravelCalibrationFindsTheStopsTheSupplyAllows) {
    SimulatedSession session("KT520_7", true);
    SimulatedControl& control = session.control();
    // 2.5 bar cannot push the spring (1 to 3 bar) past its friction at the top.
    control.inject({"set", "supplyPressure", "2.5"});
    const double travel = Value(control, "valveTravel");
    ASSERT_TRUE(session.sendAction(Request("positionControlAutocalibration")));
    session.clock().advance(control.actionDuration("positionControlAutocalibration"));
    EXPECT_NEAR(Value(control, "travelEndStopLow"), 0.0, 0.01);
    EXPECT_NEAR(Value(control, "travelEndStopHigh"), 67.5, 0.01);
    // Back where it stood, within the dead band it came back through.
    EXPECT_NEAR(Value(control, "valveTravel"), travel, 0.25);
}

TEST(SimulatedCalibrationTest, PrestageTrimHalvesTheDeadBandDownToItsBest) {
    SimulatedSession session("KT520_7", true);
    SimulatedControl& control = session.control();
    for (const double expected : {0.1, 0.05, 0.05}) {
        ASSERT_TRUE(session.sendAction(Request("automaticPrestageTrim")));
        session.clock().advance(control.actionDuration("automaticPrestageTrim"));
        EXPECT_DOUBLE_EQ(Value(control, "deadBand"), expected);
    }
}

}  // namespace
}  // namespace kt500::simulator::testing
