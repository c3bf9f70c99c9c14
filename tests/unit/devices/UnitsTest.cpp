// The unit pages. The unit selectors' lists and commands are in the
// scenario unit_selectors.
#include "devices/Encodings.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::devices {
namespace {

using form::ControlKind;
using testing::TestUserControl;

// 1 barG in psiG, 1 bar = 14.5037738 psi.
constexpr double kPsiPerBar = 1.0 / 0.0689475729316836;

class UnitPages : public ::testing::Test {
protected:
    // The supply pressure on the load factor and the trim page, in barG.
    void supplyPressure(const std::string& value, const std::string& trimValue) {
        for (const auto& [label, index, field, text] :
             {std::tuple{"lblHALoadFactor", 5, "txtLoadFactor", value},
              {"lblHAManualPrestageTrim", 2, "txtHAPrestageTrim", trimValue}}) {
            kt.addField(ControlKind::Label, label, index, "fraKT520", 7, "HAsupplyPressureUnit")
                .setCaption("barG");
            kt.addField(ControlKind::TextBox, field, 0, "fraKT520", 7, "").setText(text);
        }
    }
    form::Control& control(const char* name, int index = -1) {
        return kt.form().control(name, index);
    }

    TestUserControl kt;
};

TEST_F(UnitPages, ConvertUnitLeavesEqualUnitsToItselfAndReportsFailureAsEmpty) {
    // The service would turn "abc" into the no-value number and "1,50" into "1.5".
    EXPECT_EQ(kt.unitPages.ConvertUnit("abc", "barG", "barG"), "abc");
    EXPECT_EQ(kt.unitPages.ConvertUnit("1,50", "xyz", "xyz"), "1,50");
    EXPECT_EQ(kt.unitPages.ConvertUnit("1", "barG", "degC"), "");
    EXPECT_EQ(kt.unitPages.ConvertUnit("1", "barG", "xyz"), "");

    for (const auto language : {QLocale::English, QLocale::German}) {
        const test::LocaleGuard locale{language};
        for (const char* value : {"1,5", "1.5"}) {
            const std::string psi = kt.unitPages.ConvertUnit(value, "barG", "psiG");
            // The result goes on with a point, whatever the locale.
            EXPECT_EQ(psi.find(','), std::string::npos) << psi;
            EXPECT_NEAR(Str2Dbl(psi), 1.5 * kPsiPerBar, 1e-4) << value;
        }
    }
}

TEST(DeviceUnits, FollowTheKindOfValue) {
    const std::pair<const char*, const char*> table[] = {
        {"bar", "bar"}, {"psi", "bar"},   {"K", "degC"},   {"°F", "degC"}, {"degF", "degC"},
        {"°C", "degC"}, {"barA", "barG"}, {"kPa", "barG"}, {"", "barG"}};
    const auto device = CreateDeviceClass("KT520_7");
    for (const auto& [unit, expected] : table) {
        EXPECT_EQ(device->ConvertUnitForDevice(unit), expected) << unit;
    }
}

TEST_F(UnitPages, ConvertValueForDeviceConvertsOnlyFromAnotherPageUnit) {
    control("lblHAMonitoringSettings", 1).setCaption("psiG");  // HAactuatorPressureUnit
    DeviceClass& device = kt.deviceClass();
    EXPECT_NEAR(Str2Dbl(device.ConvertValueForDevice("14.5037738", "barG", "actuatorPressure")),
                1.0, 1e-5);
    EXPECT_EQ(device.ConvertValueForDevice("abc", "psiG", "actuatorPressure"), "abc");
    // No unit label: the page unit is "noUnit", and a value between a unit
    // and "noUnit" stays the value itself.
    EXPECT_EQ(device.ConvertValueForDevice("1", "barG", "tightShutOff"), "1");
}

TEST_F(UnitPages, FetchUnitNameReadsTheTaggedLabel) {
    EXPECT_EQ(kt.unitPages.FetchUnitName("tightShutOff"), "noUnit");  // an untagged "%"
    control("lblHAPressureCalSpan", 0).setCaption("");
    EXPECT_EQ(kt.unitPages.FetchUnitName("pressureSpan"), "noUnit");

    // The first label wins, but the last one of "supplyPressure".
    control("lblHAAmbientTemperature", 0).setCaption("degC");
    control("lblHAAmbientTemperature", 1).setCaption("degF");
    control("lblHALoadFactor", 5).setCaption("barG");
    control("lblHAManualPrestageTrim", 2).setCaption("psiG");
    EXPECT_EQ(kt.unitPages.FetchUnitName("measuredTemperature"), "degC");
    EXPECT_EQ(kt.unitPages.FetchUnitName("supplyPressure"), "psiG");
}

TEST_F(UnitPages, UnitSystemChangeConvertsBothSupplyPressurePlacesInTheLocalesSign) {
    const test::LocaleGuard locale{QLocale::German};
    supplyPressure("1,5", "2");
    control("cmdResetUnits").setEnabled(true);
    control("optUSUnits").setValue(1);

    kt.unitPages.RefreshAllUnits(false);

    EXPECT_EQ(control("lblHALoadFactor", 5).caption(), "psiG");
    EXPECT_EQ(control("lblHAManualPrestageTrim", 2).caption(), "psiG");
    // 21.76 and 29.008 psi, each shown with its parameter's decimals.
    EXPECT_EQ(control("txtLoadFactor", 0).text(), "21,8");
    EXPECT_EQ(control("txtHAPrestageTrim", 0).text(), "29,0");
    EXPECT_TRUE(kt.messages.empty());
    EXPECT_FALSE(control("cmdResetUnits").enabled());
}

TEST_F(UnitPages, UnitSystemChangeKeepsEmptyAndInvalidFields) {
    supplyPressure("  ", "1.2.3");
    control("optUSUnits").setValue(1);

    kt.unitPages.RefreshAllUnits(false);

    EXPECT_EQ(control("txtLoadFactor", 0).text(), "  ");
    EXPECT_EQ(control("txtHAPrestageTrim", 0).text(), "1.2.3");
    EXPECT_EQ(control("lblHAManualPrestageTrim", 2).caption(), "psiG");
    EXPECT_EQ(kt.messages,
              std::vector<std::string>{kt.Translate("supplyPressure") + ": 1.2.3  Invalid value"});
}

TEST_F(UnitPages, AppliedUnitConvertsTheValueAndAnyUnitShowsOnThePage) {
    supplyPressure("1", "");
    kt.unitPages.RefreshAllUnits(true);
    form::Control& units = control("comSelectUnit");
    control("comSelectParameter").setListIndex(0);  // the supply pressure
    kt.unitPages.comSelectParameter_Click();
    units.setText("psiG");
    kt.unitPages.comSelectUnit_Click();
    kt.unitPages.cmdApplyUnitChange_Click();
    EXPECT_EQ(control("lblHALoadFactor", 5).caption(), "psiG");
    EXPECT_EQ(control("txtLoadFactor", 0).text(), "14.5");
    EXPECT_EQ(kt.unitPages.FetchUnitName("supplyPressure"), "psiG");
    EXPECT_TRUE(kt.messages.empty());

    // A unit the parameter may not take: the page shows it all the same.
    units.addItem("°C");
    units.setText("°C");
    kt.unitPages.cmdApplyUnitChange_Click();
    EXPECT_EQ(kt.messages, std::vector<std::string>{"Error: Unable to set the new unit!"});
    EXPECT_EQ(control("lblHALoadFactor", 5).caption(), "°C");
}

}  // namespace
}  // namespace kt500::devices
