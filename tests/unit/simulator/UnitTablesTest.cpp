#include "simulator/UnitTables.h"
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>

namespace kt500::simulator::testing {
namespace {

const std::filesystem::path kShare = KT500_SHARE_DIR;
const std::filesystem::path kBadTables = std::filesystem::path(KT500_TEST_DATA_DIR) / "units";

const UnitTables& Shipped() {
    static const UnitTables tables = UnitTables::load(kShare / "units" / "units.xml");
    return tables;
}

struct Known {
    double value;
    const char* from;
    double expected;
    const char* to;
};

// Published values: 1 bar = 14.5037738 psi = 100 kPa = 0.1 MPa; one standard
// atmosphere 1.01325 bar = 14.6959488 psi; 0 degC = 32 degF = 273.15 K;
// -40 degC = -40 degF; 100 degC = 212 degF.
constexpr Known kKnown[] = {
    {1.0, "bar", 14.5037738, "psi"},   {1.0, "bar", 100.0, "kPa"},
    {1.0, "bar", 0.1, "MPa"},          {1.0, "barG", 14.5037738, "psiG"},
    {0.0, "barG", 1.01325, "barA"},    {0.0, "psiG", 14.6959488, "psiA"},
    {6.0, "barA", 72.3266939, "psiG"}, {400.0, "kPa", 5.01325, "barA"},
    {0.0, "°C", 32.0, "°F"},           {0.0, "°C", 273.15, "K"},
    {-40.0, "°F", -40.0, "°C"},        {0.0, "K", -459.67, "°F"},
    {100.0, "degC", 212.0, "degF"},    {77.0, "°F", 77.0, "degF"},
};

TEST(UnitTablesConversion, KnownValuesAgreeWithPublishedFactors) {
    for (const Known& k : kKnown) {
        const auto result = Shipped().convert(k.value, k.from, k.to);
        ASSERT_TRUE(result.has_value()) << k.from << " -> " << k.to;
        EXPECT_NEAR(*result, k.expected, 1e-6 * std::max(1.0, std::abs(k.expected)))
            << k.value << " " << k.from << " -> " << k.to;
    }
}

TEST(UnitTablesConversion, EveryPairOfAQuantityRoundTrips) {
    for (const Quantity& quantity : Shipped().quantities()) {
        for (const UnitDefinition& from : quantity.units) {
            for (const UnitDefinition& to : quantity.units) {
                for (const double value : {-12.5, 0.0, 3.75, 1000.0}) {
                    const auto there = Shipped().convert(value, from.name, to.name);
                    ASSERT_TRUE(there.has_value());
                    const auto back = Shipped().convert(*there, to.name, from.name);
                    ASSERT_TRUE(back.has_value());
                    EXPECT_NEAR(*back, value, 1e-9 * std::max(1.0, std::abs(value)))
                        << from.name << " <-> " << to.name;
                }
            }
        }
    }
}

TEST(UnitTablesConversion, OnlyUnitsOfOneQuantityConvertAndEqualNamesKeepTheValue) {
    for (const auto& [from, to] : {std::pair{"bar", "°C"},
                                   {"K", "psiG"},
                                   {"mA", "%"},
                                   {"barG", "noUnit"},
                                   {"furlong", "bar"}}) {
        EXPECT_FALSE(Shipped().convert(1.0, from, to).has_value()) << from << " -> " << to;
    }
    EXPECT_EQ(Shipped().convert(7.25, "noUnit", "noUnit"), 7.25);
    EXPECT_EQ(Shipped().convert(7.25, "barG", "barG"), 7.25);
}

TEST(UnitTablesShipped, ValidateAgainstTheirSchema) {
    xml::SchemaCollection schemas;
    ASSERT_EQ(
        schemas.add("x-schema:KT500UnitsSchema.xml", kShare / "schemas" / "KT500UnitsSchema.xsd"),
        "");
    const xml::LoadResult loaded =
        xml::Document::load(kShare / "units" / "units.xml", {.schemas = &schemas});
    EXPECT_TRUE(loaded.ok()) << loaded.message();
}

TEST(UnitTablesBadInput, NamesFileLineAndReason) {
    for (const auto& [file, where, reason] :
         {std::tuple{"malformed.xml", ":6:", "line 6"},
          {"duplicate_unit.xml", ":9:", "the unit 'barG' is given twice"},
          {"unknown_unit_in_system.xml", ":9:", "the unit 'Pa'"},
          {"incomplete_system.xml", ":9:", "gives no unit for 'actuatorPressure'"},
          {"bad_factor.xml", ":5:", "'0,0689' is not a number"},
          {"unknown_quantity.xml", ":6:", "unknown quantity 'temperature'"},
          {"missing.xml", "", "cannot be read"}}) {
        const std::filesystem::path path = kBadTables / file;
        const std::string message = ErrorOf<UnitTablesError>([&] { (void)UnitTables::load(path); });
        EXPECT_NE(message.find(path.string() + where), std::string::npos) << message;
        EXPECT_NE(message.find(reason), std::string::npos) << message;
    }
}

TEST(UnitTablesBadInput, RefusesWrongRootBaseWithoutUnitFactorAndNoSystem) {
    const std::string open =
        "<unitTables xmlns='x-schema:KT500UnitsSchema.xml'><quantity "
        "name='p' base='a'><unit name='a' factor=";
    for (const std::string& bytes :
         {std::string("<units xmlns='x-schema:KT500UnitsSchema.xml'/>"),
          open + "'2'/></quantity><system name='SI'/></unitTables>",
          open + "'1'/><unit name='b' factor='-1'/></quantity><system name='SI'/></unitTables>",
          open + "'1'/></quantity></unitTables>"}) {
        EXPECT_THROW((void)UnitTables::parse(bytes, "t"), UnitTablesError) << bytes;
    }
}

}  // namespace
}  // namespace kt500::simulator::testing
