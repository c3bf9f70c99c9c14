// The status tree of the KT520's GUIInit document. The scenario "time"
// shows a status from the BL lifting its group and the header.
#include "devices/StatusTree.h"
#include "unit/devices/DeviceTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace kt500::devices {
namespace {

using Items = std::vector<std::pair<std::string, std::string>>;

class StatusTreeTest : public ::testing::Test {
protected:
    StatusTreeTest() {
        test::LoadGuiInit(kt);
        kt.tools().ShowDeviationAlert = true;
        kt.BuildStatusTree();
    }

    // deviceStatus/statusGroup/status of a GUIInit document, as the status handler takes it.
    std::vector<xml::Node> statusList(const xml::Document* guiInit = nullptr) {
        std::vector<xml::Node> list;
        for (const xml::Node& group : (guiInit ? guiInit : kt.tools().RavikDTMParameters())
                                          ->root()
                                          .firstChildElement("deviceStatus")
                                          .childElements()) {
            for (const xml::Node& status : group.childElements("status")) {
                list.push_back(status);
            }
        }
        return list;
    }
    // A good "deviceStatus" reply: every status of the document at "0" but
    // the missing ones, then the items given; handled as the device class does.
    void reply(const Items& set, const std::vector<std::string>& missing = {},
               const xml::Document* guiInit = nullptr) {
        std::string text = "<communicationResponse name='deviceStatus'>";
        const auto add = [&text](const std::string& name, const std::string& value) {
            text += "<item name='" + name + "'><integerVal>" + value + "</integerVal></item>";
        };
        for (const xml::Node& status : statusList()) {
            const std::string name = status.attribute("name");
            if (std::find(missing.begin(), missing.end(), name) == missing.end()) {
                add(name, "0");
            }
        }
        for (const auto& [name, value] : set) {
            add(name, value);
        }
        const xml::Document document = test::Parsed(text + "</communicationResponse>");
        for (const xml::Node& item : document.root().childElements("item")) {
            kt.UpdateStatusTree(statusList(guiInit), item);
        }
        kt.UpdateStatusParentNodes();
        kt.UpdateHeaderStatus();
    }

    form::TreeModel& tree() { return kt.form().control("TreeView3").tree(); }
    std::string image(const std::string& key) { return tree().node(key).image; }
    std::vector<std::string> images() {
        std::vector<std::string> all;
        for (const form::TreeNode& node : tree().nodes()) {
            all.push_back(node.image);
        }
        return all;
    }
    std::string header() {
        const form::ToolbarModel& toolbar = kt.form().control("smuiDTM", 1).toolbar();
        EXPECT_EQ(toolbar.item("strHeaderStatus").text,
                  kt.Translate(toolbar.item("imgHeaderStatus").picture));
        return toolbar.item("imgHeaderStatus").picture;
    }

    testing::TestUserControl kt{testing::SessionOf("KT520_7")};
};

TEST_F(StatusTreeTest, BuildsGroupsWithTheirStatusesAllUnknown) {
    ASSERT_EQ(tree().count(), 20);
    EXPECT_EQ(tree().at(1).text, kt.Translate("statusGroupTravel"));
    EXPECT_EQ(tree().at(2).tag, "statusTravelDeviation");
    EXPECT_EQ(tree().at(2).parentKey, tree().at(1).key);
    EXPECT_EQ(images(), std::vector<std::string>(20, "unknown"));

    // UnKnownStatus paints tree and header unknown again.
    reply({{"statusMemoryError", "1"}});
    ASSERT_EQ(header(), "alarm");
    kt.UnKnownStatus();
    EXPECT_EQ(images(), std::vector<std::string>(20, "unknown"));
    EXPECT_EQ(header(), "unknown");

    // Without a GUIInit document the tree is left empty, with no message.
    kt.tools().setRavikDTMParameters(nullptr);
    kt.BuildStatusTree();
    EXPECT_EQ(tree().count(), 0);
    EXPECT_TRUE(kt.messages.empty());
}

TEST_F(StatusTreeTest, ARebuildForAnotherLanguageKeepsWhatTheDeviceReported) {
    reply({{"statusMemoryError", "1"}, {"statusTravelDeviation", "0"}});
    tree().setExpanded("statusGroupElectronics", true);
    const std::vector<std::string> before = images();
    kt.tools().Language = "1031";
    kt.BuildStatusTree();
    EXPECT_EQ(images(), before);
    EXPECT_TRUE(tree().node("statusGroupElectronics").expanded);
    EXPECT_EQ(tree().node("statusMemoryError").text, kt.Translate("statusMemoryError"));
    EXPECT_NE(kt.Translate("statusMemoryError"), "statusMemoryError");
}

TEST_F(StatusTreeTest, OnlyZeroClearsAStatusElseItsClassShows) {
    for (const auto& [value, alarmStatus, warningStatus] :
         {std::tuple{"0", "ok", "ok"}, {"00", "alarm", "warning"}, {" 0", "alarm", "warning"}}) {
        reply({{"statusTravelDeviation", value}, {"statusActuatorPressure", value}});
        EXPECT_EQ(image("statusTravelDeviation"), alarmStatus) << "'" << value << "'";
        EXPECT_EQ(image("statusActuatorPressure"), warningStatus) << "'" << value << "'";
    }
    // A status without a class, or not in the list, shows no picture.
    const xml::Document list = test::Parsed(
        "<dtm><deviceStatus><statusGroup name='g'><status name='statusTravelDeviation'/>"
        "</statusGroup></deviceStatus></dtm>");
    reply({{"statusTravelDeviation", "1"}, {"statusTravelLimitLow", "1"}}, {}, &list);
    EXPECT_EQ(image("statusTravelDeviation"), "");
    EXPECT_EQ(image("statusTravelLimitLow"), "");
}

TEST_F(StatusTreeTest, AllClearGroupsAreOkAndClosedWhileAGroupWithAProblemKeepsItsState) {
    for (const form::TreeNode& node : tree().nodes()) {
        tree().setExpanded(node.key, true);
    }
    reply({});
    EXPECT_EQ(image("statusGroupPressure"), "ok");
    EXPECT_FALSE(tree().node("statusGroupPressure").expanded);
    EXPECT_EQ(header(), "ok");

    // One status that the reply leaves out stays unknown: its group shows
    // that, the header does not, and the group keeps its expansion.
    tree().setExpanded("statusGroupPressure", true);
    kt.UnKnownStatus();
    reply({}, {"statusActuatorPressure"});
    EXPECT_EQ(image("statusGroupPressure"), "unknown");
    EXPECT_TRUE(tree().node("statusGroupPressure").expanded);
    EXPECT_EQ(image("statusGroupTravel"), "ok");
    EXPECT_EQ(header(), "ok");
}

TEST_F(StatusTreeTest, AlarmOutranksWarningInEitherOrderAndWarningUnknown) {
    // With the classes swapped the alarm leaf comes last in the tree.
    const xml::Document swapped = test::Parsed(
        "<dtm><deviceStatus><statusGroup name='statusGroupTravel'>"
        "<status name='statusTravelDeviation' class='warning'/>"
        "<status name='statusTravelLimitHigh' class='alarm'/>"
        "</statusGroup></deviceStatus></dtm>");
    const Items forward = {{"statusTravelDeviation", "1"}, {"statusTravelLimitHigh", "1"}};
    const Items backward = {{"statusTravelLimitHigh", "1"}, {"statusTravelDeviation", "1"}};
    for (const xml::Document* list : {static_cast<const xml::Document*>(nullptr), &swapped}) {
        for (const Items* items : {&forward, &backward}) {
            kt.UnKnownStatus();
            reply(*items, {}, list);
            EXPECT_EQ(image("statusGroupTravel"), "alarm") << (list != nullptr);
            EXPECT_EQ(header(), "alarm") << (list != nullptr);
        }
    }
    // An unknown leaf before or after a warning one gives way to it.
    for (const char* unknown : {"statusTravelDeviation", "statusTravelLimitHigh"}) {
        kt.UnKnownStatus();
        reply({{"statusTravelLimitLow", "1"}}, {unknown});
        EXPECT_EQ(image("statusGroupTravel"), "warning") << unknown;
        EXPECT_EQ(header(), "warning") << unknown;
    }
}

TEST_F(StatusTreeTest, DeviationAlertIsUnknownWhenTheDeviceDoesNotReportIt) {
    kt.tools().ShowDeviationAlert = false;
    for (const char* value : {"0", "1"}) {
        reply({{"statusDeviationAlert", value}});
        EXPECT_EQ(image("statusDeviationAlert"), "unknown") << value;
        EXPECT_EQ(image("statusGroupTravel"), "unknown") << value;
        EXPECT_EQ(header(), "ok") << value;
    }
    kt.tools().ShowDeviationAlert = true;
    reply({{"statusDeviationAlert", "1"}});
    EXPECT_EQ(image("statusDeviationAlert"), "warning");

    // The leaf itself is never counted in the header.
    kt.UnKnownStatus();
    tree().setImage("statusDeviationAlert", "alarm");
    kt.UpdateHeaderStatus();
    EXPECT_EQ(header(), "ok");
}

TEST_F(StatusTreeTest, ItemsReachEveryNodeOfTheirNameAndOnlyThose) {
    // The same status under a second group.
    kt.tools()
        .RavikDTMParameters()
        ->root()
        .firstChildElement("deviceStatus")
        .childElements("statusGroup")
        .back()
        .appendElement("status")
        .setAttribute("name", "statusTravelDeviation");
    kt.BuildStatusTree();
    const std::vector<std::string> before = images();
    const xml::Document other =
        test::Parsed("<item name='statusNoSuchThing'><integerVal>1</integerVal></item>");
    kt.UpdateStatusTree(statusList(), other.root());
    EXPECT_EQ(images(), before);

    reply({{"statusTravelDeviation", "1"}});
    EXPECT_EQ(image("statusGroupCalibration"), "alarm");
    EXPECT_EQ(image("statusTravelDeviation#2"), "alarm");
}

}  // namespace
}  // namespace kt500::devices
