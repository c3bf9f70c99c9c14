#include "devices/DeviceClass.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <tuple>

namespace kt500::devices {
namespace {

using form::ControlKind;
using test::fieldOf;
using testing::SessionOf;
using testing::TestUserControl;

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

TEST(SpecialUpploadCaseFamilies, EachClassTriggersItsOwnSets) {
    const std::tuple<const char*, const char*, const char*, std::string> cases[] = {
        {"PL500_1", "valveRelatedConfigurations", "splitRangeLow", kSplitRange},
        {"KT540_1.0", "inputValueConfiguration", "inputValueUnit",
         joined({"inputValueRangeHigh", "floatVal", "noUnit", "inputValueRangeLow", "floatVal",
                 "noUnit", "inputValueUnit", "integerVal", "noUnit"})},
        {"KT540_1.0", "valveRelatedConfigurations", "splitRangeLow", ""},
        // A changed point drags the 21 points; the characterisation goes alone.
        {"KT540_1.0", "flowModification", "flowVal07",
         [] {
             std::string text;
             for (int point = 0; point <= 20; ++point) {
                 const std::string name =
                     std::string(point < 10 ? "flowVal0" : "flowVal") + std::to_string(point);
                 text += joined({name.c_str(), "floatVal", "noUnit"});
             }
             return text;
         }()},
        {"KT540_1.0", "flowModification", "characterizationControl", ""},
    };
    for (const auto& [model, group, item, triples] : cases) {
        TestUserControl kt(SessionOf(model));
        kt.confirmationRows.emplace(std::set<std::pair<std::string, bool>>{{item, true}});
        EXPECT_EQ(kt.deviceClass().SpecialUpploadCase(group, item), triples) << model;
    }
}

TEST(FormatValues, ConvertsBetweenWireAndPage) {
    // Model, parameter, value, access and the value converted.
    const std::array<const char*, 5> cases[] = {
        {"KT520_7", "kt500SerialNumber", "10001", "read", "1996-01-0001"},
        {"KT520_7", "kt500SerialNumber", "1996-01-0001", "write", "10001"},
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
    for (const auto& [model, id, value, access, expected] : cases) {
        auto& kt = controls[model];
        if (!kt) {
            kt = std::make_unique<TestUserControl>(SessionOf(model));
        }
        EXPECT_EQ(kt->deviceClass().FormatValues(id, value, access), expected)
            << model << " " << id << " " << access << " " << value;
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
        const auto field = [&](ControlKind kind, const char* hartName, const char* plName,
                               int index, const char* tag) {
            return &fieldOf(kt, kind, hart ? hartName : plName, index,
                            hart ? "fraKT520" : "fraPL500", hart ? 7 : 0, tag);
        };
        day = field(ControlKind::ComboBox, "comHAOperationUnit", "comPLParams", 0, "deviceDay");
        month = field(ControlKind::ComboBox, "comHAOperationUnit", "comPLParams", 1, "deviceMonth");
        year = field(ControlKind::TextBox, "txtHAOperationUnit", "txtPLParams", 2, "deviceDate");
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

TEST_P(DeviceDate, MissingDayAndMonthSelectTheSecondEntryAndTheYearMustFitTheDevice) {
    kt.deviceClass().SetDeviceDate(0, 0, 2000);
    EXPECT_EQ(day->listIndex(), 1);
    EXPECT_EQ(month->listIndex(), 1);
    EXPECT_EQ(year->text(), "2000");
    kt.deviceClass().SetDeviceDate(31, 12, 2155);
    EXPECT_EQ(kt.deviceClass().GetDeviceDate(), "31.12.2155");
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
        {"KT520_7", "7", false, 2},
        {"PL500_1", "1", true, 8},
        {"PL500_2", "2", true, 9},
        {"PL500_2", "2", false, 2},
    };
    for (const auto& [model, revision, online, index] : table) {
        const auto device = CreateDeviceClass(model);
        device->setObjUserControl(&kt);
        kt.tools().DeviceRevision = revision;
        kt.tools().OnlineConf = online;
        EXPECT_EQ(device->DefaultNodeIndex(), index) << model << " " << online;
    }
}

TEST(DeviceClassLimits, FixedOnlyWhenChosenElseFromTheFields) {
    TestUserControl hart;
    hart.form().control("txtHAAlertLimit", 0).setText("");      // travelDeviationTrendLimit
    hart.form().control("txtHAAlertLimit", 1).setText("12,5");  // loadFactorTrendLimit
    form::Control& fixed = hart.form().control("comHAAlertSettings", 0);  // useFixedAlertLimits
    DeviceClass& kt520 = hart.deviceClass();
    for (const auto& [entry, limit] : {std::pair{1, 10.0F}, {0, 0.0F}, {-1, 0.0F}}) {
        fixed.setListIndex(entry);
        EXPECT_EQ(kt520.DeviationLimit1(), limit) << entry;
    }
    EXPECT_EQ(kt520.DeviationLimit3(), 0.0F);
    EXPECT_EQ(kt520.LoadFactorLimit3(), 12.5F);

    TestUserControl safety(SessionOf("PL500_2"));
    fieldOf(safety, ControlKind::TextBox, "txtPLParams", 11, "fraPL500").setText(" ");
    fieldOf(safety, ControlKind::TextBox, "txtPLParams", 12, "fraPL500").setText("80,5");
    EXPECT_EQ(safety.deviceClass().LoadFactorLimit1(), 0.0F);
    EXPECT_EQ(safety.deviceClass().LoadFactorLimit2(), 80.5F);
}

TEST(DeviceClassMembers, MembersAbsentFromAClassFailWithTheirName) {
    const float curve[21] = {};
    const std::tuple<const char*, const char*, std::function<void(DeviceClass&)>> cases[] = {
        {"KT520_7", "LeakageSignalLimit1", [](DeviceClass& d) { (void)d.LeakageSignalLimit1(); }},
        {"KT540_1.0", "TravelVsTimeTime", [](DeviceClass& d) { d.setTravelVsTimeTime("1"); }},
        {"PL500_1", "txtFlowModification", [](DeviceClass& d) { (void)d.txtFlowModification(0); }},
        {"PL500_1", "UpdateInputSignalVsTravelGraph",
         [&curve](DeviceClass& d) { (void)d.UpdateInputSignalVsTravelGraph(curve); }},
        {"PL500_2", "NoSuchUnit", [](DeviceClass& d) { (void)d.pageProperty("NoSuchUnit"); }},
    };
    for (const auto& [model, member, call] : cases) {
        const auto device = CreateDeviceClass(model);
        try {
            call(*device);
            ADD_FAILURE() << model << " " << member << " did not fail";
        } catch (const MemberMissing& missing) {
            EXPECT_EQ(missing.member(), member) << model;
        }
    }
}

TEST(DeviceClassMembers, AWrittenPropertyReachesTheFieldOfItsTag) {
    TestUserControl kt(SessionOf("PL500_2"));
    form::Control& peak = fieldOf(kt, ControlKind::TextBox, "txtPLParams", 44, "fraPL500", 14,
                                  "pressurePeakTolerance");
    kt.deviceClass().setPressurePeakTolerance("7");
    EXPECT_EQ(peak.text(), "7");
}

TEST(DeviceClassPages, ShowFrameSettlesCurrentFrame) {
    const std::tuple<const char*, const char*, const char*, int, const char*> table[] = {
        {"KT520_7", "settings", "fraCommon", 0, "before"},
        {"KT520_7", "hartAddress", "fraCommon", 1, "hartAddress"},
        {"KT520_7", "compareConfigurations", "fraConfirmation", 2, "before"},
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
    const std::pair<const char*, const char*> cases[] = {
        {"KT520_7",
         "HAoperationUnit operationUnit|HAvalveRelatedConfigurations valveRelatedConfigurations|"
         "HAassemblyRelatedConfiguration assemblyRelatedConfiguration|HAflowModification "
         "flowModification|HAalertSettings alertSettings|"},
        {"KT540_1.0",
         "PAoperationUnit operationUnit|PAvalveRelatedConfigurations valveRelatedConfigurations|"
         "PAassemblyRelatedConfiguration assemblyRelatedConfiguration|PAflowModification "
         "flowModification|PAalertSettings alertSettings|"},
        {"PL500_1",
         "PLoperationUnit operationUnit|PLgeneral general|PLassemblyRelated assemblyRelated|"
         "PLleakageMeasurement leakageMeasurement|PLdeviceAlertSettings deviceAlertSettings|"
         "PLstatisticAlertSettings statisticAlertSettings|"},
    };
    for (const auto& [key, expected] : cases) {
        TestUserControl kt(SessionOf(key, false));
        std::string sent;
        kt.sendRequestHook = [&](const std::string& group, const std::string& access) {
            EXPECT_EQ(access, "writeOffline");
            sent += kt.tools().CurrentFrame + " " + group + "|";
        };
        kt.tools().CurrentFrame = "settings";
        kt.deviceClass().SendOfflineConf();
        EXPECT_EQ(sent, expected) << key;
        EXPECT_EQ(kt.tools().CurrentFrame, "settings");
    }
}

}  // namespace
}  // namespace kt500::devices
