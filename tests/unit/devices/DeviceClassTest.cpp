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
using testing::SessionOf;
using testing::TestUserControl;

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
        TestUserControl kt(SessionOf(c.model));
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
            kt = std::make_unique<TestUserControl>(SessionOf(c.model));
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
    TestUserControl kt(SessionOf("PL500_2"));
    form::Control& measuring =
        kt.addField(ControlKind::ComboBox, "comPLParams", 17, "fraPL500", 0, "");
    measuring.addItem("off");
    measuring.addItem("on");
    std::vector<form::Control*> fields;
    for (const int index : {28, 29, 30}) {
        fields.push_back(
            &kt.addField(ControlKind::TextBox, "txtPLParams", index, "fraPL500", 0, ""));
    }
    for (const auto& [time, shown, measures] :
         {std::tuple{"0", "0", false}, std::tuple{"1500", "1.5", true}}) {
        EXPECT_EQ(kt.deviceClass().FormatValues("leakageMeasurementTime", time, "read"), shown);
        EXPECT_EQ(measuring.listIndex(), measures ? 1 : 0);
        for (const form::Control* field : fields) {
            EXPECT_EQ(field->enabled(), measures) << time;
        }
    }
}

class DeviceDate : public ::testing::TestWithParam<const char*> {
protected:
    DeviceDate() : kt(SessionOf(GetParam())) {
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
    TestUserControl kt(SessionOf("KT540_1.0"));
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

    TestUserControl safety(SessionOf("PL500_2"));
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
        {"KT520_7", "MonitoringFrame", [](DeviceClass& d) { (void)d.MonitoringFrame(); }},
        {"KT520_7", "LeakageSignalLimit1", [](DeviceClass& d) { (void)d.LeakageSignalLimit1(); }},
        {"KT520_7", "BreakawayPressureTime",
         [](DeviceClass& d) { d.setBreakawayPressureTime("1"); }},
        {"KT540_1.0", "DeviceDate", [](DeviceClass& d) { (void)d.DeviceDate(); }},
        {"KT540_1.0", "TravelVsTimeTime", [](DeviceClass& d) { d.setTravelVsTimeTime("1"); }},
        {"PL500_1", "CurrentStepEndPoint", [](DeviceClass& d) { (void)d.CurrentStepEndPoint(); }},
        {"PL500_1", "txtFlowModification", [](DeviceClass& d) { (void)d.txtFlowModification(0); }},
        {"PL500_1", "UpdateInputSignalVsTravelGraph",
         [&curve](DeviceClass& d) { (void)d.UpdateInputSignalVsTravelGraph(curve); }},
        {"PL500_2", "NoSuchUnit", [](DeviceClass& d) { (void)d.pageProperty("NoSuchUnit"); }},
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

TEST(DeviceClassMembers, WrittenPropertiesReachTheirPlaces) {
    TestUserControl kt(SessionOf("PL500_2"));
    DeviceClass& device = kt.deviceClass();
    device.setLeakageSignalTime("12,5");
    EXPECT_EQ(device.trendTime("LeakageSignalTime"), "12,5");
    form::Control& peak = kt.addField(ControlKind::TextBox, "txtPLParams", 90, "fraPL500", 0,
                                      "pressurePeakTolerance");
    device.setPressurePeakTolerance("7");
    EXPECT_EQ(peak.text(), "7");
}

TEST(DeviceClassPages, ShowFrameSettlesCurrentFrame) {
    const std::tuple<const char*, const char*, const char*, int, const char*> table[] = {
        {"KT520_7", "operationUnit", "fraKT520", 7, "HAoperationUnit"},
        {"KT520_7", "settings", "fraCommon", 0, "before"},
        {"KT520_7", "hartAddress", "fraCommon", 1, "hartAddress"},
        {"KT520_7", "compareConfigurations", "fraConfirmation", 2, "before"},
        {"KT540_1.0", "monitoring", "fraKT540", 5, "PAmonitoringVariables"},
        {"KT540_1.0", "paAddress", "fraCommon", 3, "paAddress"},
        {"KT540_1.0", "compareConfiguration", "fraConfirmation", 2, "before"},
        {"PL500_2", "resetAlarms", "fraPL500", 18, "PLresetAlarms"},
    };
    std::map<std::string, std::unique_ptr<TestUserControl>> controls;
    for (const auto& [key, node, array, index, frame] : table) {
        auto& kt = controls[key];
        if (!kt) {
            kt = std::make_unique<TestUserControl>(SessionOf(key));
        }
        kt->tools().CurrentFrame = "before";
        kt->deviceClass().HideFrames();
        kt->deviceClass().ShowFrame(node);
        EXPECT_TRUE(kt->form().control(array, index).visible()) << key << " " << node;
        EXPECT_EQ(kt->tools().CurrentFrame, frame) << key << " " << node;
    }
    // The singular and the plural are not interchangeable on the PROFIBUS class.
    TestUserControl& pa = *controls["KT540_1.0"];
    pa.deviceClass().HideFrames();
    pa.deviceClass().ShowFrame("compareConfigurations");
    EXPECT_FALSE(pa.form().control("fraConfirmation", 2).visible());

    // A node outside the table shows nothing and keeps CurrentFrame.
    TestUserControl& kt = *controls["KT520_7"];
    kt.deviceClass().HideFrames();
    kt.tools().CurrentFrame = "before";
    kt.deviceClass().ShowFrame("noSuchNode");
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
        {"PL500_1",
         "PLoperationUnit operationUnit|PLgeneral general|PLassemblyRelated "
         "assemblyRelated|PLleakageMeasurement leakageMeasurement|"
         "PLdeviceAlertSettings deviceAlertSettings|PLstatisticAlertSettings "
         "statisticAlertSettings|"},
    };
    for (const auto& [model, expected] : models) {
        TestUserControl kt(SessionOf(model, false));
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

TEST(DeviceClassPages, RevisionAndTypeChangesOfTheHartPositioner) {
    TestUserControl kt;
    const auto field = [&kt](ControlKind kind, const char* name, int index, int page = 0) {
        return &fieldOf(kt, kind, name, index, "fraKT520", page);
    };
    form::Control* cmd = field(ControlKind::CommandButton, "cmdHALoadFactorUpdate", -1, 14);
    form::Control* reset = field(ControlKind::Frame, "fraResetOnlineAlerts", -1, 20);
    std::vector<form::Control*> meters;
    for (const int i : {4, 9, 10, 12}) {
        meters.push_back(field(ControlKind::Label, "lblHAActuatorAndValveMeters", i, 4));
    }
    form::Control* image = field(ControlKind::Image, "imgHAAssemblyRelatedConfiguration", 0);
    form::Control* label0 = field(ControlKind::Label, "lblHAAssemblyRealedConfiguration", 0);
    form::Control* label4 = field(ControlKind::Label, "lblHAAssemblyRealedConfiguration", 4);
    std::vector<form::Control*> lists;
    for (const int i : {0, 1, 4}) {
        lists.push_back(field(ControlKind::ComboBox, "comHAValveRelatedConfiguration", i, 8));
    }
    for (form::Control* shown : {reset, image, label0, lists[0]}) {
        shown->setVisible(true);
    }
    for (form::Control* meter : meters) {
        meter->setVisible(true);
    }
    lists[1]->setEnabled(true);
    for (form::Control* hidden : {cmd, label4, lists[2]}) {
        hidden->setVisible(false);
    }
    const auto apply = [&kt](const char* revision, const char* typeId) {
        kt.tools().DeviceRevision = revision;
        kt.tools().DeviceTypeId = typeId;
        kt.deviceClass().SetDeviceRevisionChanges();
        kt.deviceClass().SetDeviceTypeIdChanges();
    };

    apply("7", "200");
    EXPECT_FALSE(cmd->visible());
    EXPECT_TRUE(reset->visible());
    EXPECT_TRUE(meters[0]->visible());
    EXPECT_FALSE(label4->visible());

    // Older revisions update the load factor on demand; the type change is for 7 only.
    apply("6", "238");
    EXPECT_TRUE(cmd->visible());
    EXPECT_FALSE(reset->visible());
    for (const form::Control* meter : meters) {
        EXPECT_FALSE(meter->visible()) << meter->displayName();
    }
    EXPECT_TRUE(image->visible());
    EXPECT_TRUE(lists[1]->enabled());
    EXPECT_FALSE(label4->visible());

    apply("7", "238");
    EXPECT_TRUE(label4->visible());
    EXPECT_TRUE(lists[2]->visible());

    // Revision 4 has no valve related selection.
    apply("4", "200");
    EXPECT_FALSE(image->visible());
    EXPECT_FALSE(label0->visible());
    EXPECT_FALSE(lists[0]->visible());
    EXPECT_FALSE(lists[1]->enabled());
}

}  // namespace
}  // namespace kt500::devices
