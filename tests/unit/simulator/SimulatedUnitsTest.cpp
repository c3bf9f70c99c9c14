#include "simulator/BuiltInBL.h"
#include "simulator/SimulatedUnits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kt500::simulator {
namespace {

class SimulatedUnitsTest : public ::testing::Test {
protected:
    // The unit service as the built-in BL offers it.
    BuiltInBL bl{SessionOptions{}, KT500_SHARE_DIR};
    services::IDtmUnits& units = *bl.units();
    bool ok = false;

    std::string unitOf(const std::string& parameter) {
        std::string unit = "x";
        units.GetUnitOfParameter(parameter, unit, ok);
        return ok ? unit : "<failed:" + unit + ">";
    }
};

TEST_F(SimulatedUnitsTest, ConvertValueReportsSuccessAndFailure) {
    float converted = -1.0F;
    units.ConvertValue(2.0F, "bar", "psi", converted, ok);
    EXPECT_TRUE(ok);
    EXPECT_NEAR(converted, 29.0075476F, 1e-4F);

    converted = 123.0F;
    units.ConvertValue(2.0F, "barG", "°C", converted, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(converted, 123.0F);  // a failed conversion leaves the output alone
    units.ConvertValue(3.0e38F, "MPa", "kPa", converted, ok);
    EXPECT_FALSE(ok);  // beyond the range of a 32-bit float
}

TEST_F(SimulatedUnitsTest, SystemsSwitchAsAWholeAndOverrideSingleChoices) {
    // A span is a difference: plain bar and psi, never gauge or absolute.
    EXPECT_EQ(unitOf("supplyPressure") + unitOf("pressureSpan") + unitOf("measuredTemperature"),
              "barGbar°C");
    units.SetUnitSystem("US", ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(unitOf("supplyPressure") + unitOf("pressureSpan") + unitOf("measuredTemperature"),
              "psiGpsi°F");
    units.SetUnitSystem("metric", ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(unitOf("supplyPressure"), "psiG");  // an unknown system changes nothing

    units.SetUnitOfParameter("actuatorPressure", "kPa", ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(unitOf("actuatorPressure") + unitOf("supplyPressure"), "kPapsiG");
    for (const auto& [parameter, unit] :
         {std::pair{"actuatorPressure", "°C"}, {"pressureSpan", "barA"}, {"hartTag", "bar"}}) {
        units.SetUnitOfParameter(parameter, unit, ok);
        EXPECT_FALSE(ok) << parameter << " " << unit;
    }
    EXPECT_EQ(unitOf("actuatorPressure"), "kPa");
    units.SetUnitSystem("SI", ok);
    EXPECT_EQ(unitOf("actuatorPressure"), "barG");
}

TEST_F(SimulatedUnitsTest, UnitListsByParameterOrQuantityAndNoneForOthers) {
    std::vector<std::string> list;
    units.GetUnitsOfParameter("pcbTemperature", list, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(list, (std::vector<std::string>{"°C", "°F", "K"}));
    units.GetUnitsOfParameter("temperature", list, ok);  // a quantity: its aliases too
    EXPECT_TRUE(ok);
    EXPECT_EQ(list.size(), 5U);
    units.GetUnitsOfParameter("hartTag", list, ok);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(unitOf("hartTag"), "<failed:>");
}

// Each parameter with a page unit has a unit of its own in both systems.
TEST_F(SimulatedUnitsTest, EveryUnitParameterHasAnAllowedUnitInEachSystem) {
    std::vector<std::string> parameters;
    units.GetUnitParameters(parameters, ok);
    ASSERT_TRUE(ok);
    ASSERT_GT(parameters.size(), 10U);
    EXPECT_EQ(parameters.front(), "supplyPressure") << "table order";
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
