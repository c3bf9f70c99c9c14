#include "simulator/BuiltInBL.h"
#include "simulator/SimulatedUnits.h"
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace kt500::simulator {
namespace {

const std::filesystem::path kShare = KT500_SHARE_DIR;

class SimulatedUnitsTest : public ::testing::Test {
protected:
    // The unit service as the built-in BL offers it.
    BuiltInBL bl{SessionOptions{}, kShare};
    services::IDtmUnits& units = *bl.units();

    std::string unitOf(const std::string& parameter) {
        std::string unit;
        bool ok = false;
        units.GetUnitOfParameter(parameter, unit, ok);
        return ok ? unit : "<failed>";
    }
};

TEST_F(SimulatedUnitsTest, ConvertValueReportsSuccessAndFailure) {
    float converted = -1.0F;
    bool ok = false;
    units.ConvertValue(2.0F, "bar", "psi", converted, ok);
    EXPECT_TRUE(ok);
    EXPECT_NEAR(converted, 29.0075476F, 1e-4F);

    units.ConvertValue(0.0F, "barG", "barA", converted, ok);
    EXPECT_TRUE(ok);
    EXPECT_NEAR(converted, 1.01325F, 1e-6F);

    converted = 123.0F;
    units.ConvertValue(2.0F, "barG", "°C", converted, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(converted, 123.0F);  // a failed conversion leaves the output alone

    units.ConvertValue(3.0e38F, "MPa", "kPa", converted, ok);
    EXPECT_FALSE(ok);  // beyond the range of a 32-bit float
}

TEST_F(SimulatedUnitsTest, StartsInSIAndSwitchesSystemsAsAWhole) {
    EXPECT_EQ(unitOf("supplyPressure"), "barG");
    EXPECT_EQ(unitOf("pressureSpan"), "bar");  // a span is a difference: plain bar and psi
    EXPECT_EQ(unitOf("measuredTemperature"), "°C");

    bool ok = false;
    units.SetUnitSystem("US", ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(unitOf("supplyPressure"), "psiG");
    EXPECT_EQ(unitOf("pressureSpan"), "psi");
    EXPECT_EQ(unitOf("measuredTemperature"), "°F");

    units.SetUnitSystem("metric", ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(unitOf("supplyPressure"), "psiG");  // an unknown system changes nothing
}

TEST_F(SimulatedUnitsTest, SetUnitOfParameterTakesOnlyTheParametersUnits) {
    bool ok = false;
    units.SetUnitOfParameter("actuatorPressure", "kPa", ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(unitOf("actuatorPressure"), "kPa");
    EXPECT_EQ(unitOf("supplyPressure"), "barG");  // the others keep theirs

    units.SetUnitOfParameter("actuatorPressure", "°C", ok);
    EXPECT_FALSE(ok);
    units.SetUnitOfParameter("pressureSpan", "barA", ok);  // a difference is never absolute
    EXPECT_FALSE(ok);
    units.SetUnitOfParameter("hartTag", "bar", ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(unitOf("actuatorPressure"), "kPa");

    units.SetUnitSystem("SI", ok);
    EXPECT_EQ(unitOf("actuatorPressure"), "barG");  // a system overrides single choices
}

TEST_F(SimulatedUnitsTest, UnitListsByParameterOrQuantity) {
    std::vector<std::string> list;
    bool ok = false;
    units.GetUnitsOfParameter("pcbTemperature", list, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(list, (std::vector<std::string>{"°C", "°F", "K"}));

    units.GetUnitsOfParameter("temperature", list, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(list.size(), 5U);

    units.GetUnitsOfParameter("hartTag", list, ok);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(list.empty());

    std::string unit = "x";
    units.GetUnitOfParameter("hartTag", unit, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(unit, "");
}

// The parameters with a page unit, in table order, each with a unit of its
// own in both systems.
TEST_F(SimulatedUnitsTest, UnitParametersComeInTableOrderAndEachHasAUnit) {
    std::vector<std::string> parameters;
    bool ok = false;
    units.GetUnitParameters(parameters, ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(parameters,
              testing::Words("supplyPressure actuatorPressure pcbTemperature measuredTemperature "
                             "pressureSpan breakawayPressureLimitHigh breakawayPressureLimitLow "
                             "limitSupplyPressureAlarmHigh limitSupplyPressureAlarmLow "
                             "valveTestPressureStep valveTestBreakawayPressure "
                             "pressureSetpointLowLimit pressurePeak"));
    for (const std::string& parameter : parameters) {
        for (const char* system : {"SI", "US"}) {
            units.SetUnitSystem(system, ok);
            const std::string unit = unitOf(parameter);
            std::vector<std::string> allowed;
            units.GetUnitsOfParameter(parameter, allowed, ok);
            EXPECT_NE(std::find(allowed.begin(), allowed.end(), unit), allowed.end())
                << parameter << " in " << system;
        }
    }
}

}  // namespace
}  // namespace kt500::simulator
