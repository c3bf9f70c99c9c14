#include "simulator/BuiltInBL.h"
#include "simulator/SimulatedUnits.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
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

    // "noUnit" on either side, and a unit into itself, keep the value.
    for (const auto& [from, to] : {std::pair<std::string, std::string>{"%", "noUnit"},
                                   {"noUnit", "barG"}, {"%", "%"}, {"mA", "mA"}}) {
        converted = -1.0F;
        units.ConvertValue(42.5F, from, to, converted, ok);
        EXPECT_TRUE(ok) << from << " to " << to;
        EXPECT_EQ(converted, 42.5F) << from << " to " << to;
    }
    units.ConvertValue(42.5F, "%", "mA", converted, ok);
    EXPECT_FALSE(ok);  // two units of different quantities still fail
}

// Applying a single unit and resetting to a system are shown by the
// unit_selectors scenario.
TEST_F(SimulatedUnitsTest, SystemsSwitchAsAWholeAndRefuseUnitsOfAnotherKind) {
    const auto shown = [&] {
        return unitOf("supplyPressure") + " " + unitOf("pressureSpan") + " " +
               unitOf("measuredTemperature");
    };
    // A span is a difference: plain bar and psi, never gauge or absolute.
    EXPECT_EQ(shown(), "barG bar °C");
    units.SetUnitSystem("US", ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(shown(), "psiG psi °F");
    units.SetUnitSystem("metric", ok);
    EXPECT_FALSE(ok);
    for (const auto& [parameter, unit] :
         {std::pair{"actuatorPressure", "°C"}, {"pressureSpan", "barA"}, {"hartTag", "bar"}}) {
        units.SetUnitOfParameter(parameter, unit, ok);
        EXPECT_FALSE(ok) << parameter << " " << unit;
    }
    EXPECT_EQ(shown() + " " + unitOf("actuatorPressure"), "psiG psi °F psiG")
        << "a refused choice changes nothing";
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

}  // namespace
}  // namespace kt500::simulator
