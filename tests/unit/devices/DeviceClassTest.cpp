#include "devices/DeviceClass.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <tuple>

namespace kt500::devices {
namespace {

using form::ControlKind;
using testing::TestUserControl;

simulator::SessionOptions session(const std::string& deviceKey, bool online = true) {
    simulator::SessionOptions options;
    options.deviceKey = deviceKey;
    options.online = online;
    return options;
}

std::string joined(std::initializer_list<const char*> fields) {
    std::string text;
    for (const char* field : fields) {
        text.append(field);
        text.append(Separator);
    }
    return text;
}

const std::string kSplitRange =
    joined({"splitRangeLow", "floatVal", "noUnit", "splitRangeHigh", "floatVal", "noUnit"});

class SpecialUpploadCase : public ::testing::Test {
protected:
    SpecialUpploadCase() { kt.confirmationRows.emplace(); }
    std::string ask(const std::string& group, const std::string& item) {
        return kt.deviceClass().SpecialUpploadCase(group, item);
    }
    TestUserControl kt;
};

TEST_F(SpecialUpploadCase, DeclinedChangeOfATriggerIsRestoredAndLeavesTheList) {
    *kt.confirmationRows = {{"hartTag", false}, {"deviceDate", false}, {"flowVal03", false}};
    EXPECT_EQ(ask("operationUnit", "hartTag"), "");
    EXPECT_EQ(ask("operationUnit", "deviceDate"), "");
    // The flow curve has no declined case: an unchecked point is just not sent.
    EXPECT_EQ(ask("flowModification", "flowVal03"), "");
    EXPECT_EQ(kt.calls, (std::vector<std::string>{
                            "RestoreOldValues HAoperationUnit hartTag",
                            "RemoveSpecialCaseItem hartTag",
                            "RestoreOldValues HAoperationUnit deviceDay",
                            "RestoreOldValues HAoperationUnit deviceMonth",
                            "RestoreOldValues HAoperationUnit deviceDate",
                            "RemoveSpecialCaseItem deviceDate",
                        }));
}

TEST_F(SpecialUpploadCase, ASetGoesOutOnceForAllItsMembers) {
    *kt.confirmationRows = {
        {"splitRangeLow", true}, {"splitRangeHigh", true}, {"message", true}, {"message", false}};
    EXPECT_EQ(ask("valveRelatedConfigurations", "splitRangeHigh"), kSplitRange);
    EXPECT_EQ(ask("valveRelatedConfigurations", "splitRangeLow"), "included");
    EXPECT_EQ(ask("valveRelatedConfigurations", "splitRangeHigh"), "included");
    // "message" of the operation unit is written on its own.
    EXPECT_EQ(ask("operationUnit", "message"), "");
    // An unchanged member of a set is no trigger.
    EXPECT_EQ(ask("alertSettings", "valveReversalsLimit"), "");
    EXPECT_TRUE(kt.calls.empty());

    // The next request starts with an empty list.
    kt.deviceClass().setSpecialCaseItems("");
    EXPECT_EQ(ask("valveRelatedConfigurations", "splitRangeLow"), kSplitRange);
}

TEST(SpecialUpploadCaseWithChangeTracking, DeclinedRowPutsTheFieldBack) {
    TestUserControl kt;
    form::Control& field =
        kt.addField(ControlKind::TextBox, "txtHAOperationUnit", 0, "fraKT520", 7, "hartTag");
    field.setText("NEW");
    kt.tools().CurrentFrame = "HAoperationUnit";
    kt.tools().set_old_values("OLD" + std::string(Separator));
    form::ListViewModel& rows = kt.form().control("lsvConfirmation").listView();
    const int row = rows.add(kt.Translate("hartTag"));
    rows.setSubItem(row, 3, "hartTag");

    EXPECT_EQ(kt.deviceClass().SpecialUpploadCase("operationUnit", "hartTag"), "");
    EXPECT_EQ(field.text(), "OLD");
}

TEST(SpecialUpploadCaseFamilies, EachClassTriggersItsOwnSets) {
    struct Case {
        const char* model;
        const char* group;
        const char* item;
        std::string triples;
    };
    const Case cases[] = {
        {"PL500_1", "valveRelatedConfigurations", "splitRangeLow", kSplitRange},
        {"KT540_1.0", "inputValueConfiguration", "inputValueUnit",
         joined({"inputValueRangeHigh", "floatVal", "noUnit", "inputValueRangeLow", "floatVal",
                 "noUnit", "inputValueUnit", "integerVal", "noUnit"})},
        {"KT540_1.0", "valveRelatedConfigurations", "splitRangeLow", ""},
    };
    for (const Case& c : cases) {
        TestUserControl kt(session(c.model));
        kt.confirmationRows.emplace(std::set<std::pair<std::string, bool>>{{c.item, true}});
        EXPECT_EQ(kt.deviceClass().SpecialUpploadCase(c.group, c.item), c.triples) << c.model;
    }
}

TEST(FormatValues, ConvertsBetweenWireAndPage) {
    struct Case {
        const char* model;
        const char* id;
        const char* value;
        const char* access;
        const char* expected;
    };
    const Case cases[] = {
        {"KT520_7", "kt500SerialNumber", "10001", "read", "1996-01-0001"},
        {"KT520_7", "kt500SerialNumber", "1996-01-0001", "write", "10001"},
        {"KT520_7", "kt500SerialNumber", "1996-53-0001", "write", "-1"},
        {"KT520_7", "hartTag", "TAG", "read", ""},
        {"KT540_1.0", "outputValue", "+Inf", "read", " "},
        {"KT540_1.0", "setpoint", "NaN", "read", " "},
        {"KT540_1.0", "positioningValue", "-Inf", "read", "-Inf"},
        {"KT540_1.0", "outputValue", "+Inf", "write", "+Inf"},
        {"KT540_1.0", "kt500SerialNumber", "12345678901234", "read", "1234567890"},
        {"PL500_1", "leakageSignal", "2", "read", "60.64"},
        {"PL500_2", "leakageSignal", "2", "read", "2"},
        {"PL500_1", "valveTestStrokeSize", "0,25", "read", "25"},
        {"PL500_1", "valveTestStrokeSize", "25", "write", "0.25"},
        {"PL500_2", "valveTestStrokeSize", "25", "write", "25"},
        {"PL500_2", "leakageStabilizingTime", "2500", "read", "2.5"},
        {"PL500_2", "leakageStabilizingTime", "2,5", "write", "2500"},
        {"PL500_2", "deviceSerialNumber", "520000", "read", "1996-52-0000"},
        {"PL500_2", "hartTag", "TAG", "write", "TAG"},
    };
    std::map<std::string, std::unique_ptr<TestUserControl>> controls;
    for (const Case& c : cases) {
        auto& kt = controls[c.model];
        if (!kt) {
            kt = std::make_unique<TestUserControl>(session(c.model));
        }
        EXPECT_EQ(kt->deviceClass().FormatValues(c.id, c.value, c.access), c.expected)
            << c.model << " " << c.id << " " << c.access << " " << c.value;
    }
}

TEST(FormatValues, DeviceIdOfTheHartPositionerShowsOnItsLabel) {
    TestUserControl kt;
    form::Control& label =
        kt.addField(ControlKind::Label, "lblHAPositionerInformation", 14, "fraKT520", 9, "");
    EXPECT_EQ(kt.deviceClass().FormatValues("deviceId", "10001", "read"), "");
    EXPECT_EQ(label.caption(), "1996-01-0001");
}

TEST(FormatValues, LeakageMeasurementTimeSwitchesItsFields) {
    TestUserControl kt(session("PL500_2"));
    form::Control& measuring =
        kt.addField(ControlKind::ComboBox, "comPLParams", 17, "fraPL500", 0, "");
    measuring.addItem("off");
    measuring.addItem("on");
    std::vector<form::Control*> fields;
    for (const int index : {28, 29, 30}) {
        fields.push_back(
            &kt.addField(ControlKind::TextBox, "txtPLParams", index, "fraPL500", 0, ""));
    }
    DeviceClass& device = kt.deviceClass();

    EXPECT_EQ(device.FormatValues("leakageMeasurementTime", "0", "read"), "0");
    EXPECT_EQ(measuring.listIndex(), 0);
    for (const form::Control* field : fields) {
        EXPECT_FALSE(field->enabled());
    }
    EXPECT_EQ(device.FormatValues("leakageMeasurementTime", "1500", "read"), "1.5");
    EXPECT_EQ(measuring.listIndex(), 1);
    for (const form::Control* field : fields) {
        EXPECT_TRUE(field->enabled());
    }
}

class DeviceDate : public ::testing::TestWithParam<const char*> {
protected:
    DeviceDate() : kt(session(GetParam())) {
        const bool hart = std::string(GetParam()) == "KT520_7";
        const std::string page = hart ? "fraKT520" : "fraPL500";
        const int pageIndex = hart ? 7 : 0;
        day = &kt.addField(ControlKind::ComboBox, hart ? "comHAOperationUnit" : "comPLParams", 0,
                           page, pageIndex, "deviceDay");
        month = &kt.addField(ControlKind::ComboBox, hart ? "comHAOperationUnit" : "comPLParams", 1,
                             page, pageIndex, "deviceMonth");
        year = &kt.addField(ControlKind::TextBox, hart ? "txtHAOperationUnit" : "txtPLParams", 2,
                            page, pageIndex, "deviceDate");
        for (int i = 1; i <= 31; ++i) {
            day->addItem(std::to_string(i));
            if (i <= 12) {
                month->addItem(std::to_string(i));
            }
        }
    }
    TestUserControl kt;
    form::Control* day;
    form::Control* month;
    form::Control* year;
};

TEST_P(DeviceDate, MissingDayAndMonthSelectTheSecondEntry) {
    kt.deviceClass().SetDeviceDate(0, 0, 2000);
    EXPECT_EQ(day->listIndex(), 1);
    EXPECT_EQ(month->listIndex(), 1);
    EXPECT_EQ(year->text(), "2000");
    kt.deviceClass().SetDeviceDate(31, 12, 2155);
    EXPECT_EQ(kt.deviceClass().GetDeviceDate(), "31.12.2155");
}

TEST_P(DeviceDate, YearMustFitTheDevice) {
    kt.deviceClass().SetDeviceDate(3, 4, 1900);
    EXPECT_EQ(kt.deviceClass().GetDeviceDate(), "3.4.1900");
    for (const char* bad : {"2156", "1899", "", "    ", "155", "20155", "2o15", "1,99"}) {
        year->setText(bad);
        EXPECT_EQ(kt.deviceClass().GetDeviceDate(), "invalid") << bad;
        EXPECT_EQ(kt.deviceClass().DeviceDate(), std::string("3.4.") + bad);
    }
}

INSTANTIATE_TEST_SUITE_P(HartClasses, DeviceDate, ::testing::Values("KT520_7", "PL500_1"));

TEST(DeviceClassMembers, ProfibusClassHasNoDeviceDate) {
    TestUserControl kt(session("KT540_1.0"));
    kt.deviceClass().SetDeviceDate(1, 1, 2000);
    EXPECT_EQ(kt.deviceClass().GetDeviceDate(), "");
}

TEST(DeviceClassMembers, DefaultNodeIndexByModeAndRevision) {
    TestUserControl kt;
    const std::tuple<const char*, const char*, bool, int> table[] = {
        {"KT520_7", "7", true, 8},      {"KT520_7", "7", false, 2}, {"KT540_1.0", "1.0", true, 13},
        {"KT540_1.0", "1.0", false, 2}, {"PL500_1", "1", true, 8},  {"PL500_2", "2", true, 9},
        {"PL500_1", "1", false, 2},     {"PL500_2", "2", false, 2},
    };
    for (const auto& [model, revision, online, index] : table) {
        const auto device = CreateDeviceClass(model);
        device->setObjUserControl(&kt);
        kt.tools().DeviceRevision = revision;
        kt.tools().OnlineConf = online;
        EXPECT_EQ(device->DefaultNodeIndex(), index) << model << " " << online;
    }
}

TEST(DeviceClassMembers, AMemberAClassLacksFailsWithItsName) {
    const auto expectMissing = [](const char* model, const char* member, auto call) {
        const auto device = CreateDeviceClass(model);
        try {
            call(*device);
            ADD_FAILURE() << model << " " << member << " did not fail";
        } catch (const MemberMissing& missing) {
            EXPECT_EQ(missing.member(), member) << model;
        }
    };
    expectMissing("KT520_7", "MonitoringFrame", [](DeviceClass& d) { (void)d.MonitoringFrame(); });
    expectMissing("KT540_1.0", "DeviceDate", [](DeviceClass& d) { (void)d.DeviceDate(); });
    expectMissing("PL500_1", "CurrentStepEndPoint",
                  [](DeviceClass& d) { (void)d.CurrentStepEndPoint(); });
    expectMissing("PL500_2", "NoSuchUnit",
                  [](DeviceClass& d) { (void)d.pageProperty("NoSuchUnit"); });
}

}  // namespace
}  // namespace kt500::devices
