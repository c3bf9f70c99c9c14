#include "devices/Encodings.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <QLocale>

namespace kt500::devices {
namespace {

using form::ControlKind;
using testing::TestUserControl;

// 1 barG in psiG, 1 bar = 14.5037738 psi.
constexpr double kPsiPerBar = 1.0 / 0.0689475729316836;

class UnitPages : public ::testing::Test {
protected:
    void TearDown() override { QLocale::setDefault(m_locale); }

    // A unit label of the KT520 pages, on the operation unit page.
    form::Control& unitLabel(const std::string& name, int index, const std::string& parameter,
                             const std::string& caption) {
        form::Control& label =
            kt.addField(ControlKind::Label, name, index, "fraKT520", 7, "HA" + parameter + "Unit");
        label.setCaption(caption);
        return label;
    }
    form::Control& textField(const std::string& name, int index, const std::string& text) {
        form::Control& field = kt.addField(ControlKind::TextBox, name, index, "fraKT520", 7, "");
        field.setText(text);
        return field;
    }
    // The supply pressure in its two places: the load factor page and the trim page.
    void supplyPressure(const std::string& value, const std::string& trimValue) {
        unitLabel("lblHALoadFactor", 5, "supplyPressure", "barG");
        unitLabel("lblHAManualPrestageTrim", 2, "supplyPressure", "barG");
        textField("txtLoadFactor", 0, value);
        textField("txtHAPrestageTrim", 0, trimValue);
    }
    form::Control& control(const char* name, int index = -1) {
        return kt.form().control(name, index);
    }

    TestUserControl kt;
    QLocale m_locale;
};

TEST_F(UnitPages, ConvertUnitLeavesEqualUnitsToItselfAndReportsFailureAsEmpty) {
    // The service would turn "abc" into the no-value number and "1,50" into "1.5".
    EXPECT_EQ(kt.unitPages.ConvertUnit("abc", "barG", "barG"), "abc");
    EXPECT_EQ(kt.unitPages.ConvertUnit("1,50", "xyz", "xyz"), "1,50");
    EXPECT_EQ(kt.unitPages.ConvertUnit("1", "barG", "degC"), "");
    EXPECT_EQ(kt.unitPages.ConvertUnit("1", "barG", "xyz"), "");

    for (const auto language : {QLocale::English, QLocale::German}) {
        QLocale::setDefault(QLocale(language));
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
        {"barA", "barG"}, {"psiG", "barG"}, {"bar", "bar"},   {"psi", "bar"},
        {"K", "degC"},    {"°F", "degC"},   {"degF", "degC"}, {"°C", "degC"},
        {"kPa", "barG"},  {"mA", "barG"},   {"", "barG"},
    };
    for (const char* model : {"KT520_7", "KT540_1.0", "PL500_2"}) {
        const auto device = CreateDeviceClass(model);
        for (const auto& [unit, expected] : table) {
            EXPECT_EQ(device->ConvertUnitForDevice(unit), expected) << model << " " << unit;
        }
    }
}

TEST_F(UnitPages, ConvertValueForDeviceConvertsOnlyFromAnotherPageUnit) {
    control("lblHAMonitoringSettings", 1).setCaption("psiG");  // HAactuatorPressureUnit
    DeviceClass& device = kt.deviceClass();
    EXPECT_NEAR(Str2Dbl(device.ConvertValueForDevice("14.5037738", "barG", "actuatorPressure")),
                1.0, 1e-5);
    EXPECT_EQ(device.ConvertValueForDevice("abc", "psiG", "actuatorPressure"), "abc");
    // No unit label: the page unit is "noUnit", which the service cannot convert.
    EXPECT_EQ(device.ConvertValueForDevice("1", "barG", "tightShutOff"), "");
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
    QLocale::setDefault(QLocale(QLocale::German));
    supplyPressure("1,5", "2");
    control("cmdResetUnits").setEnabled(true);
    control("optUSUnits").setValue(1);

    kt.unitPages.RefreshAllUnits(false);

    EXPECT_EQ(control("lblHALoadFactor", 5).caption(), "psiG");
    EXPECT_EQ(control("lblHAManualPrestageTrim", 2).caption(), "psiG");
    const std::string value = control("txtLoadFactor", 0).text();
    EXPECT_NE(value.find(','), std::string::npos) << value;
    EXPECT_NEAR(Str2Dbl(value), 1.5 * kPsiPerBar, 1e-4);
    EXPECT_NEAR(Str2Dbl(control("txtHAPrestageTrim", 0).text()), 2 * kPsiPerBar, 1e-4);
    EXPECT_TRUE(kt.messages.empty());
    EXPECT_FALSE(control("cmdResetUnits").enabled());
    // The parameter list shows translated names, in the service's order.
    EXPECT_EQ(control("comSelectParameter").listCount(), 13);
    EXPECT_EQ(control("comSelectParameter").list(0), kt.Translate("supplyPressure"));
}

TEST_F(UnitPages, UnitSystemChangeKeepsEmptyAndInvalidFields) {
    supplyPressure("  ", "1.2.3");
    control("optUSUnits").setValue(1);

    kt.unitPages.RefreshAllUnits(false);

    EXPECT_EQ(control("txtLoadFactor", 0).text(), "  ");
    EXPECT_EQ(control("txtHAPrestageTrim", 0).text(), "1.2.3");
    EXPECT_EQ(control("lblHAManualPrestageTrim", 2).caption(), "psiG");
    ASSERT_EQ(kt.messages.size(), 1U);
    EXPECT_EQ(kt.messages[0], kt.Translate("supplyPressure") + ": 1.2.3  Invalid value");
}

TEST_F(UnitPages, UnitSelectorsChangeOneParameter) {
    supplyPressure("1", "");
    kt.unitPages.RefreshAllUnits(true);
    form::Control& units = control("comSelectUnit");
    form::Control& apply = control("cmdApplyUnitChange");

    control("comSelectParameter").setListIndex(0);
    kt.unitPages.comSelectParameter_Click();
    ASSERT_EQ(units.listCount(), 6);
    EXPECT_EQ(units.text(), "barG");
    EXPECT_FALSE(apply.enabled());

    units.setText("psiG");
    kt.unitPages.comSelectUnit_Click();
    EXPECT_TRUE(apply.enabled());
    kt.unitPages.cmdApplyUnitChange_Click();
    EXPECT_FALSE(apply.enabled());
    EXPECT_EQ(control("lblHALoadFactor", 5).caption(), "psiG");
    EXPECT_NEAR(Str2Dbl(control("txtLoadFactor", 0).text()), kPsiPerBar, 1e-4);
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
