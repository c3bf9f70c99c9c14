#include "devices/DeviceClass.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <functional>
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

// A page field: the form's own when it has the element, else one added to
// the page given. Either way it carries the Tag given.
form::Control& fieldOf(TestUserControl& kt, ControlKind kind, const std::string& name, int index,
                       const std::string& frameArray = "fraKT520", int frameIndex = 0,
                       const std::string& tag = "") {
    if (form::Control* field = kt.form().find(name, index)) {
        if (!tag.empty()) {
            field->setTag(tag);
        }
        return *field;
    }
    return kt.addField(kind, name, index, frameArray, frameIndex, tag);
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
        fieldOf(kt, ControlKind::TextBox, "txtHAOperationUnit", 0, "fraKT520", 7, "hartTag");
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
        fieldOf(kt, ControlKind::Label, "lblHAPositionerInformation", 14, "fraKT520", 9);
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
        day = &fieldOf(kt, ControlKind::ComboBox, hart ? "comHAOperationUnit" : "comPLParams", 0,
                       page, pageIndex, "deviceDay");
        month = &fieldOf(kt, ControlKind::ComboBox, hart ? "comHAOperationUnit" : "comPLParams", 1,
                         page, pageIndex, "deviceMonth");
        year = &fieldOf(kt, ControlKind::TextBox, hart ? "txtHAOperationUnit" : "txtPLParams", 2,
                        page, pageIndex, "deviceDate");
        day->clear();
        month->clear();
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

namespace kt500::devices {
namespace {

using form::ControlKind;
using testing::TestUserControl;

// An item's value as FetchValueByTag finds it: on its page field, else in
// the parameter document.
void setItem(TestUserControl& kt, const std::string& name, const std::string& value) {
    for (form::Control* control : kt.form().controls()) {
        if (control->tag() != name) {
            continue;
        }
        if (control->kind() == ControlKind::ComboBox) {
            // One entry for a number, none selected for a blank.
            control->clear();
            if (!value.empty()) {
                control->addItem(value);
                control->setItemData(0, std::stoi(value));
                control->setListIndex(0);
            }
            return;
        }
        if (control->kind() == ControlKind::TextBox) {
            control->setText(value);
            return;
        }
    }
    kt.ParameterNodeByName(name).setAttribute("value", value);
}

TEST(DeviceClassLimits, FromItemsOrFields) {
    TestUserControl hart;
    setItem(hart, "travelDeviationTrendLimit", "");
    setItem(hart, "loadFactorTrendLimit", "12,5");
    DeviceClass& kt520 = hart.deviceClass();
    setItem(hart, "useFixedAlertLimits", "1");
    EXPECT_EQ(kt520.DeviationLimit1(), 10.0F);
    EXPECT_EQ(kt520.DeviationLimit2(), 5.0F);
    EXPECT_EQ(kt520.LoadFactorLimit1(), 90.0F);
    EXPECT_EQ(kt520.LoadFactorLimit2(), 85.0F);
    for (const char* notFixed : {"0", "", "2"}) {
        setItem(hart, "useFixedAlertLimits", notFixed);
        EXPECT_EQ(kt520.DeviationLimit1(), 0.0F) << notFixed;
        EXPECT_EQ(kt520.LoadFactorLimit2(), 0.0F) << notFixed;
    }
    EXPECT_EQ(kt520.DeviationLimit3(), 0.0F);
    EXPECT_EQ(kt520.LoadFactorLimit3(), 12.5F);

    TestUserControl safety(session("PL500_2"));
    for (const auto& [index, text] : {std::pair{11, " "}, {12, "80,5"}, {15, "3"}}) {
        fieldOf(safety, ControlKind::TextBox, "txtPLParams", index, "fraPL500").setText(text);
    }
    DeviceClass& pl500 = safety.deviceClass();
    EXPECT_EQ(pl500.LoadFactorLimit1(), 0.0F);
    EXPECT_EQ(pl500.LoadFactorLimit2(), 80.5F);
    EXPECT_EQ(pl500.LeakageSignalLimit1(), 3.0F);
    EXPECT_EQ(pl500.LoadFactorLimit3(), 0.0F);
}

TEST(DeviceClassMembers, MembersAbsentFromAClassFailWithTheirName) {
    struct Case {
        const char* model;
        const char* member;
        std::function<void(DeviceClass&)> call;
    };
    const float curve[21] = {};
    const Case cases[] = {
        {"KT520_7", "BreakawayPressureLimit1",
         [](DeviceClass& d) { (void)d.BreakawayPressureLimit1(); }},
        {"KT520_7", "LeakageSignalLimit1", [](DeviceClass& d) { (void)d.LeakageSignalLimit1(); }},
        {"KT520_7", "BreakawayPressureTime",
         [](DeviceClass& d) { d.setBreakawayPressureTime("1"); }},
        {"KT520_7", "LeakageSignalTime", [](DeviceClass& d) { d.setLeakageSignalTime("1"); }},
        {"KT520_7", "FlowModCurveLinear", [](DeviceClass& d) { d.setFlowModCurveLinear(true); }},
        {"KT520_7", "FlowModProgress", [](DeviceClass& d) { d.setFlowModProgress(1); }},
        {"KT520_7", "ResetingFrame", [](DeviceClass& d) { (void)d.ResetingFrame(); }},
        {"KT520_7", "PressurePeakTolerance",
         [](DeviceClass& d) { (void)d.PressurePeakTolerance(); }},
        {"KT520_7", "PressureRecoveryTime", [](DeviceClass& d) { d.setPressureRecoveryTime("1"); }},
        {"KT540_1.0", "BreakawayPressureLimit2",
         [](DeviceClass& d) { (void)d.BreakawayPressureLimit2(); }},
        {"KT540_1.0", "TravelVsTimeTime", [](DeviceClass& d) { d.setTravelVsTimeTime("1"); }},
        {"KT540_1.0", "ResetingFrame", [](DeviceClass& d) { d.setResetingFrame("alarms"); }},
        {"KT540_1.0", "PressurePeakTolerance",
         [](DeviceClass& d) { d.setPressurePeakTolerance("1"); }},
        {"PL500_1", "DeviationLimit1", [](DeviceClass& d) { (void)d.DeviationLimit1(); }},
        {"PL500_1", "DeviationLimit3", [](DeviceClass& d) { (void)d.DeviationLimit3(); }},
        {"PL500_1", "TravelDeviationTime", [](DeviceClass& d) { d.setTravelDeviationTime("1"); }},
        {"PL500_1", "TravelVsTimeTime", [](DeviceClass& d) { d.setTravelVsTimeTime("1"); }},
        {"PL500_1", "FlowModCurveLinear", [](DeviceClass& d) { (void)d.FlowModCurveLinear(); }},
        {"PL500_1", "txtFlowModification", [](DeviceClass& d) { (void)d.txtFlowModification(0); }},
        {"PL500_1", "UpdateInputSignalVsTravelGraph",
         [&curve](DeviceClass& d) { (void)d.UpdateInputSignalVsTravelGraph(curve); }},
    };
    for (const Case& c : cases) {
        const auto device = CreateDeviceClass(c.model);
        try {
            c.call(*device);
            ADD_FAILURE() << c.model << " " << c.member << " did not fail";
        } catch (const MemberMissing& missing) {
            EXPECT_EQ(missing.member(), c.member) << c.model;
        }
    }
}

TEST(DeviceClassMembers, WrittenPropertiesKeepTheirValues) {
    TestUserControl kt(session("PL500_2"));
    DeviceClass& device = kt.deviceClass();
    device.setLeakageSignalTime("12,5");
    EXPECT_EQ(device.trendTime("LeakageSignalTime"), "12,5");
    device.setResetingFrame("alarms");
    EXPECT_EQ(device.ResetingFrame(), "alarms");
    form::Control& peak = kt.addField(ControlKind::TextBox, "txtPLParams", 90, "fraPL500", 0,
                                      "pressurePeakTolerance");
    device.setPressurePeakTolerance("7");
    EXPECT_EQ(peak.text(), "7");
    EXPECT_EQ(device.PressureRecoveryTime(), "");
}

TEST(DeviceClassPages, TheOtherFamiliesHaveTheirOwnPageTables) {
    const std::tuple<const char*, const char*, const char*, int, const char*> table[] = {
        {"KT540_1.0", "monitoring", "fraKT540", 5, "PAmonitoringVariables"},
        {"KT540_1.0", "failSafeAction", "fraKT540", 30, "PAfailSafeAction"},
        {"KT540_1.0", "paAddress", "fraCommon", 3, "paAddress"},
        {"KT540_1.0", "compareConfiguration", "fraConfirmation", 2, "before"},
        {"PL500_2", "hartConfiguration", "fraPL500", 19, "PLhartConfiguration"},
        {"PL500_2", "resetAlarms", "fraPL500", 18, "PLresetAlarms"},
    };
    for (const auto& [key, node, array, index, frame] : table) {
        TestUserControl kt(session(key));
        kt.tools().CurrentFrame = "before";
        kt.deviceClass().HideFrames();
        kt.deviceClass().ShowFrame(node);
        EXPECT_TRUE(kt.form().control(array, index).visible()) << node;
        EXPECT_EQ(kt.tools().CurrentFrame, frame) << node;
    }
    // The singular and the plural are not interchangeable on the PROFIBUS class.
    TestUserControl pa(session("KT540_1.0"));
    pa.deviceClass().HideFrames();
    pa.deviceClass().ShowFrame("compareConfigurations");
    EXPECT_FALSE(pa.form().control("fraConfirmation", 2).visible());
}

TEST(DeviceClassPages, ShowFrameSettlesCurrentFrame) {
    TestUserControl kt;
    DeviceClass& device = kt.deviceClass();
    const std::tuple<const char*, const char*, int, const char*> table[] = {
        {"operationUnit", "fraKT520", 7, "HAoperationUnit"},
        {"monitoring", "fraKT520", 6, "HAmonitoringVariables"},
        {"manualPrestageTrim", "fraKT520", 25, "HAmanualPrestageTrim"},
        {"settings", "fraCommon", 0, "before"},
        {"hartAddress", "fraCommon", 1, "hartAddress"},
        {"status", "fraCommon", 4, "status"},
        {"confirmation2", "fraConfirmation", 1, "before"},
        {"compareConfigurations", "fraConfirmation", 2, "before"},
    };
    for (const auto& [node, array, index, frame] : table) {
        kt.tools().CurrentFrame = "before";
        device.HideFrames();
        device.ShowFrame(node);
        EXPECT_TRUE(kt.form().control(array, index).visible()) << node;
        EXPECT_EQ(kt.tools().CurrentFrame, frame) << node;
    }
    // A node outside the table shows nothing and keeps CurrentFrame.
    device.HideFrames();
    kt.tools().CurrentFrame = "before";
    device.ShowFrame("noSuchNode");
    EXPECT_EQ(kt.tools().CurrentFrame, "before");
    for (const char* array : {"fraKT520", "fraCommon", "fraConfirmation"}) {
        for (const form::Control* page : kt.form().elements(array)) {
            EXPECT_FALSE(page->visible()) << page->displayName();
        }
    }
}

TEST(DeviceClassMembers, SendOfflineConfWritesEachGroupWithItsPage) {
    const std::pair<const char*, const char*> models[] = {
        {"KT520_7",
         "HAoperationUnit operationUnit|HAvalveRelatedConfigurations "
         "valveRelatedConfigurations|HAassemblyRelatedConfiguration "
         "assemblyRelatedConfiguration|HAflowModification flowModification|"
         "HAalertSettings alertSettings|"},
        {"KT540_1.0",
         "PAoperationUnit operationUnit|PAvalveRelatedConfigurations "
         "valveRelatedConfigurations|PAassemblyRelatedConfiguration "
         "assemblyRelatedConfiguration|PAflowModification flowModification|"
         "PAalertSettings alertSettings|"},
        {"PL500_1",
         "PLoperationUnit operationUnit|PLgeneral general|PLassemblyRelated "
         "assemblyRelated|PLleakageMeasurement leakageMeasurement|"
         "PLdeviceAlertSettings deviceAlertSettings|PLstatisticAlertSettings "
         "statisticAlertSettings|"},
    };
    for (const auto& [model, expected] : models) {
        TestUserControl kt(session(model, false));
        std::string sent;
        kt.sendRequestHook = [&](const std::string& group, const std::string& access) {
            EXPECT_EQ(access, "writeOffline");
            sent += kt.tools().CurrentFrame + " " + group + "|";
        };
        kt.tools().CurrentFrame = "status";
        kt.deviceClass().SendOfflineConf();
        EXPECT_EQ(sent, expected);
        EXPECT_EQ(kt.tools().CurrentFrame, "status");
    }
}

TEST(DeviceClassMembers, MonitorLogHeadersOfTheHartPositioner) {
    TestUserControl kt;
    fieldOf(kt, ControlKind::Label, "lblHAMonitoringSettings", 1, "fraKT520", 6).setCaption("bar");
    fieldOf(kt, ControlKind::Label, "lblHAMonitoringSettings", 2, "fraKT520", 6).setCaption("degC");
    const auto t = [&kt](const char* key) { return "\"" + kt.Translate(key); };
    EXPECT_EQ(kt.deviceClass().MonitorLogHeaders(),
              t("time") + "\";" + t("travelSetpoint") + " [%]\";" + t("actualTravel") + " [%]\";" +
                  t("inputSignal") + " [mA]\";" + t("actuatorPressure") + " [bar]\";" +
                  t("pcbTemperature") + " [degC]\"");
}

class RevisionChanges : public ::testing::Test {
protected:
    RevisionChanges() {
        cmd = &fieldOf(kt, ControlKind::CommandButton, "cmdHALoadFactorUpdate", -1, "fraKT520", 14);
        reset = &fieldOf(kt, ControlKind::Frame, "fraResetOnlineAlerts", -1, "fraKT520", 20);
        for (const int i : {4, 9, 10, 12}) {
            meters.push_back(
                &fieldOf(kt, ControlKind::Label, "lblHAActuatorAndValveMeters", i, "fraKT520", 4));
        }
        image = &fieldOf(kt, ControlKind::Image, "imgHAAssemblyRelatedConfiguration", 0);
        for (const int i : {0, 4}) {
            labels[i] = &fieldOf(kt, ControlKind::Label, "lblHAAssemblyRealedConfiguration", i);
        }
        for (const int i : {0, 1, 4}) {
            lists[i] = &fieldOf(kt, ControlKind::ComboBox, "comHAValveRelatedConfiguration", i,
                                "fraKT520", 8);
        }
        for (form::Control* shown :
             {reset, image, labels[0], lists[0], meters[0], meters[1], meters[2], meters[3]}) {
            shown->setVisible(true);
        }
        lists[1]->setEnabled(true);
        cmd->setVisible(false);
        labels[4]->setVisible(false);
        lists[4]->setVisible(false);
    }
    void apply(const char* revision, const char* typeId) {
        kt.tools().DeviceRevision = revision;
        kt.tools().DeviceTypeId = typeId;
        kt.deviceClass().SetDeviceRevisionChanges();
        kt.deviceClass().SetDeviceTypeIdChanges();
    }
    TestUserControl kt;
    form::Control* cmd;
    form::Control* reset;
    std::vector<form::Control*> meters;
    form::Control* image;
    std::map<int, form::Control*> labels;
    std::map<int, form::Control*> lists;
};

TEST_F(RevisionChanges, RevisionSevenKeepsThePages) {
    apply("7", "200");
    EXPECT_FALSE(cmd->visible());
    EXPECT_TRUE(reset->visible());
    EXPECT_TRUE(meters[0]->visible());
    EXPECT_FALSE(labels[4]->visible());
    apply("7", "238");
    EXPECT_TRUE(labels[4]->visible());
    EXPECT_TRUE(lists[4]->visible());
}

TEST_F(RevisionChanges, OlderRevisionsUpdateTheLoadFactorOnDemand) {
    apply("6", "238");
    EXPECT_TRUE(cmd->visible());
    EXPECT_FALSE(reset->visible());
    for (const form::Control* meter : meters) {
        EXPECT_FALSE(meter->visible()) << meter->displayName();
    }
    EXPECT_TRUE(image->visible());
    EXPECT_TRUE(lists[1]->enabled());
    EXPECT_FALSE(labels[4]->visible());  // the type change is for revision 7 only
}

TEST_F(RevisionChanges, RevisionFourHasNoValveRelatedSelection) {
    apply("4", "200");
    EXPECT_TRUE(cmd->visible());
    EXPECT_FALSE(meters[3]->visible());
    EXPECT_FALSE(image->visible());
    EXPECT_FALSE(labels[0]->visible());
    EXPECT_FALSE(lists[0]->visible());
    EXPECT_FALSE(lists[1]->enabled());
}

}  // namespace
}  // namespace kt500::devices
