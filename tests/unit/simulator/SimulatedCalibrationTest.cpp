// The calibrations the simulated device performs on its valve model: what
// its sensors read after a reference was written, the end stops that a
// travel calibration finds and the dead band that a prestage trim leaves.
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

namespace kt500::simulator::testing {
namespace {

double Value(SimulatedControl& control, const std::string& name) {
    return std::stod(control.deviceValue(name).value());
}

TEST(SimulatedCalibrationTest, AReferenceBecomesWhatTheSensorReads) {
    SimulatedSession session("KT520_7", true);
    SimulatedControl& control = session.control();

    // The span at the supply: pressures read on the reference's scale.
    const double before = Value(control, "actuatorPressure");
    const double supply = Value(control, "supplyPressure");
    EXPECT_TRUE(session.post(
        session.writeRequest("pressureSensorCalibration3", {{"pressureSpan", "6.3"}})));
    // Read at the same instant: only the sensor's scale changed.
    EXPECT_NEAR(Value(control, "actuatorPressure"), before * 6.3 / supply, 0.01);

    EXPECT_TRUE(session.post(session.writeRequest("temperatureSensorCalibration",
                                                  {{"measuredTemperature", "25.0"},
                                                   {"temperatureCoefficient", "0.0023"}})));
    session.clock().settle();
    EXPECT_DOUBLE_EQ(Value(control, "pcbTemperature"), 25.0);

    // The loop: 4.05 mA measured at 4 mA, 19.9 mA at 20 mA; in between the
    // reading lies on the line through both.
    control.inject({"set", "inputSignal", "4.0"});
    EXPECT_TRUE(session.post(
        session.writeRequest("trimLoopCurrentZero", {{"measuredLoopCurrent", "4.05"}})));
    control.inject({"set", "inputSignal", "20.0"});
    EXPECT_TRUE(session.post(
        session.writeRequest("trimLoopCurrentSpan", {{"measuredLoopCurrent", "19.9"}})));
    session.clock().settle();
    EXPECT_NEAR(Value(control, "inputSignal"), 19.9, 0.005);
    control.inject({"set", "inputSignal", "4.0"});
    EXPECT_NEAR(Value(control, "inputSignal"), 4.05, 0.005);

}

TEST(SimulatedCalibrationTest, ARefusedReferenceChangesNoReading) {
    SimulatedSession session("KT520_7", true);
    SimulatedControl& control = session.control();
    const double before = Value(control, "pcbTemperature");
    EXPECT_TRUE(session.post(session.writeRequest("temperatureSensorCalibration",
                                                  {{"measuredTemperature", "120"},
                                                   {"temperatureCoefficient", "0.0023"}})));
    session.clock().settle();
    EXPECT_DOUBLE_EQ(Value(control, "pcbTemperature"), before);
}

TEST(SimulatedCalibrationTest, TravelCalibrationFindsTheStopsTheSupplyAllows) {
    SimulatedSession session("KT520_7", true);
    SimulatedControl& control = session.control();
    EXPECT_DOUBLE_EQ(Value(control, "travelEndStopHigh"), 100.0);
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
