#include "devices/StatusTree.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace kt500::devices {
namespace {

using testing::TestUserControl;
using Items = std::vector<std::pair<std::string, std::string>>;

xml::Document Loaded(xml::LoadResult result) {
    if (!result.ok()) {
        throw std::runtime_error(result.message());
    }
    return std::move(*result.document);
}

xml::Document Parsed(const std::string& text) {
    return Loaded(xml::Document::parse(text));
}

class StatusTreeTest : public ::testing::Test {
protected:
    StatusTreeTest() {
        kt.tools().setRavikDTMParameters(std::make_unique<xml::Document>(
            Loaded(xml::Document::load(kt.tools().GUIxmlPath + kt.tools().DeviceParameterXml()))));
        kt.tools().ShowDeviationAlert = true;
    }

    xml::Node guiInit() { return kt.tools().RavikDTMParameters()->root(); }
    // deviceStatus/statusGroup/status of the GUIInit document, as the status handler takes it.
    std::vector<xml::Node> statusList(xml::Node root = {}) {
        std::vector<xml::Node> list;
        for (const xml::Node& group :
             (root ? root : guiInit()).firstChildElement("deviceStatus").childElements()) {
            for (const xml::Node& status : group.childElements("status")) {
                list.push_back(status);
            }
        }
        return list;
    }
    // A good "deviceStatus" reply with these items, handled as the device class does.
    void reply(const Items& items, const std::vector<xml::Node>& list) {
        std::string text = "<communicationResponse name='deviceStatus'>";
        for (const auto& [name, value] : items) {
            text += "<item name='" + name + "' unit='noUnit'><integerVal>" + value +
                    "</integerVal></item>";
        }
        m_reply.emplace(Parsed(text + "</communicationResponse>"));
        for (const xml::Node& item : m_reply->root().childElements("item")) {
            kt.UpdateStatusTree(list, item);
        }
        kt.UpdateStatusParentNodes();
        kt.UpdateHeaderStatus();
    }
    void reply(const Items& items) { reply(items, statusList()); }
    // Every status of the document at "0" but the missing ones, then the given values.
    Items clearExcept(const Items& set, const std::vector<std::string>& missing = {}) {
        Items items;
        for (const xml::Node& status : statusList()) {
            const std::string name = status.attribute("name");
            if (std::find(missing.begin(), missing.end(), name) == missing.end()) {
                items.emplace_back(name, "0");
            }
        }
        items.insert(items.end(), set.begin(), set.end());
        return items;
    }

    form::TreeModel& tree() { return kt.form().control("TreeView3").tree(); }
    std::string image(const std::string& tag) { return tree().node(tag).image; }
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

    TestUserControl kt{testing::SessionOf("KT520_7")};
    std::optional<xml::Document> m_reply;
};

TEST_F(StatusTreeTest, BuildsGroupsWithTheirStatusesAllUnknown) {
    kt.BuildStatusTree();
    ASSERT_EQ(tree().count(), 20);
    const form::TreeNode& group = tree().at(1);
    EXPECT_EQ(group.tag, "statusGroupTravel");
    EXPECT_EQ(group.text, kt.Translate("statusGroupTravel"));
    EXPECT_EQ(group.parentKey, "");
    EXPECT_EQ(tree().at(2).tag, "statusTravelDeviation");
    EXPECT_EQ(tree().at(2).parentKey, group.key);
    EXPECT_EQ(tree().at(6).tag, "statusGroupPressure");
    EXPECT_EQ(tree().at(6).parentKey, "");
    EXPECT_EQ(images(), std::vector<std::string>(20, "unknown"));
    EXPECT_TRUE(kt.messages.empty());

    // UnKnownStatus paints tree and header unknown again.
    reply(clearExcept({{"statusMemoryError", "1"}}));
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

TEST_F(StatusTreeTest, OnlyZeroClearsAStatus) {
    kt.BuildStatusTree();
    const struct {
        const char* value;
        const char* alarmStatus;
        const char* warningStatus;
    } cases[] = {{"0", "ok", "ok"},
                 {"00", "alarm", "warning"},
                 {" 0", "alarm", "warning"},
                 {"1", "alarm", "warning"}};
    for (const auto& c : cases) {
        reply({{"statusTravelDeviation", c.value}, {"statusActuatorPressure", c.value}});
        EXPECT_EQ(image("statusTravelDeviation"), c.alarmStatus) << "'" << c.value << "'";
        EXPECT_EQ(image("statusActuatorPressure"), c.warningStatus) << "'" << c.value << "'";
    }
}

TEST_F(StatusTreeTest, AllClearGroupsAreOkAndClosedWhileAGroupWithAProblemKeepsItsState) {
    kt.BuildStatusTree();
    for (const form::TreeNode& node : tree().nodes()) {
        tree().setExpanded(node.key, true);
    }
    reply(clearExcept({}));
    for (const char* group : {"statusGroupTravel", "statusGroupPressure", "statusGroupElectronics",
                              "statusGroupDiagnostics", "statusGroupCalibration"}) {
        EXPECT_EQ(image(group), "ok") << group;
        EXPECT_FALSE(tree().node(group).expanded) << group;
    }
    EXPECT_EQ(header(), "ok");

    // One status that the reply leaves out stays unknown: its group shows
    // that, the header does not, and the group keeps its expansion.
    tree().setExpanded("statusGroupPressure", true);
    kt.UnKnownStatus();
    reply(clearExcept({}, {"statusActuatorPressure"}));
    EXPECT_EQ(image("statusActuatorPressure"), "unknown");
    EXPECT_EQ(image("statusGroupPressure"), "unknown");
    EXPECT_TRUE(tree().node("statusGroupPressure").expanded);
    EXPECT_EQ(image("statusGroupTravel"), "ok");
    EXPECT_EQ(header(), "ok");
}

TEST_F(StatusTreeTest, AlarmOutranksWarningInEitherOrder) {
    kt.BuildStatusTree();
    // With the classes swapped the alarm leaf comes last in the tree.
    xml::Document swapped = Parsed(
        "<dtm><deviceStatus><statusGroup name='statusGroupTravel'>"
        "<status name='statusTravelDeviation' class='warning'/>"
        "<status name='statusTravelLimitHigh' class='alarm'/>"
        "</statusGroup></deviceStatus></dtm>");
    const Items forward = {{"statusTravelDeviation", "1"}, {"statusTravelLimitHigh", "1"}};
    const Items backward = {{"statusTravelLimitHigh", "1"}, {"statusTravelDeviation", "1"}};
    for (const bool swap : {false, true}) {
        for (const Items* items : {&forward, &backward}) {
            kt.UnKnownStatus();
            reply(clearExcept(*items), swap ? statusList(swapped.root()) : statusList());
            EXPECT_EQ(image("statusGroupTravel"), "alarm") << swap;
            EXPECT_EQ(header(), "alarm") << swap;
        }
    }
    reply(clearExcept({{"statusTravelLimitLow", "1"}, {"statusStrokesLimit", "1"}}));
    EXPECT_EQ(image("statusGroupTravel"), "warning");
    EXPECT_EQ(image("statusGroupDiagnostics"), "warning");
    EXPECT_EQ(header(), "warning");

    // An unknown leaf before or after a warning one gives way to it.
    for (const char* unknown : {"statusTravelDeviation", "statusTravelLimitHigh"}) {
        kt.UnKnownStatus();
        reply(clearExcept({{"statusTravelLimitLow", "1"}}, {unknown}));
        EXPECT_EQ(image("statusGroupTravel"), "warning") << unknown;
        EXPECT_EQ(header(), "warning") << unknown;
    }
}

TEST_F(StatusTreeTest, DeviationAlertIsUnknownWhenTheDeviceDoesNotReportIt) {
    kt.BuildStatusTree();
    kt.tools().ShowDeviationAlert = false;
    for (const char* value : {"0", "1"}) {
        reply(clearExcept({{"statusDeviationAlert", value}}));
        EXPECT_EQ(image("statusDeviationAlert"), "unknown") << value;
        EXPECT_EQ(image("statusGroupTravel"), "unknown") << value;
        EXPECT_EQ(header(), "ok") << value;
    }
    kt.tools().ShowDeviationAlert = true;
    reply(clearExcept({{"statusDeviationAlert", "1"}}));
    EXPECT_EQ(image("statusDeviationAlert"), "warning");

    // The leaf itself is never counted in the header.
    kt.UnKnownStatus();
    tree().setImage("statusDeviationAlert", "alarm");
    kt.UpdateHeaderStatus();
    EXPECT_EQ(header(), "ok");
}

TEST_F(StatusTreeTest, ClassComesFromTheStatusListAndMayBeMissing) {
    kt.BuildStatusTree();
    xml::Document list = Parsed(
        "<dtm><deviceStatus><statusGroup name='g'>"
        "<status name='statusTravelDeviation'/>"
        "</statusGroup></deviceStatus></dtm>");
    reply({{"statusTravelDeviation", "1"}, {"statusTravelLimitLow", "1"}}, statusList(list.root()));
    EXPECT_EQ(image("statusTravelDeviation"), "");  // node without a class
    EXPECT_EQ(image("statusTravelLimitLow"), "");   // name not in the list
}

TEST_F(StatusTreeTest, ItemsReachEveryNodeOfTheirNameAndOnlyThose) {
    // The same status under a second group.
    guiInit()
        .firstChildElement("deviceStatus")
        .childElements("statusGroup")
        .back()
        .appendElement("status")
        .setAttribute("name", "statusTravelDeviation");
    kt.BuildStatusTree();
    const std::vector<std::string> before = images();
    m_reply.emplace(Parsed("<item name='statusNoSuchThing'><integerVal>1</integerVal></item>"));
    kt.UpdateStatusTree(statusList(), m_reply->root());
    EXPECT_EQ(images(), before);

    reply(clearExcept({{"statusTravelDeviation", "1"}}));
    EXPECT_EQ(image("statusGroupTravel"), "alarm");
    EXPECT_EQ(image("statusGroupCalibration"), "alarm");
    EXPECT_EQ(tree().node("statusTravelDeviation#2").image, "alarm");
}

}  // namespace
}  // namespace kt500::devices
