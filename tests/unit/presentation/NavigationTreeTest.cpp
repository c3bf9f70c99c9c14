#include "presentation/NavigationTree.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

namespace kt500::presentation {
namespace {

// 1 configuration, 2 operationUnit, 3 alertSettings, 4 diagnostics,
// 5 eventLog, 6 onlineAlerts: two branches of two pages each.
constexpr const char* kTwoBranches =
    "<dtm><treeView>"
    "<branch name='configuration' offline='1'><node name='operationUnit' offline='1'/>"
    "<node name='alertSettings' offline='1'/></branch>"
    "<branch name='diagnostics' offline='1'><node name='eventLog' offline='1'/>"
    "<node name='onlineAlerts' offline='1'/></branch>"
    "</treeView></dtm>";

// A KT520 session whose GUIInit document is the given text.
struct Session {
    explicit Session(bool online, const std::string& guiInit = kTwoBranches)
        : uc(testing::SessionOf("KT520_7", online)) {
        xml::LoadResult loaded = xml::Document::parse(guiInit);
        if (!loaded.ok()) {
            throw std::runtime_error(loaded.message());
        }
        uc.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
        navigation.BuildNavigationTree();
    }
    // The tree, one node a word: key, its parent and its image.
    std::string nodes() {
        std::string text;
        for (const form::TreeNode& node : uc.form().control("treeNavigation").tree().nodes()) {
            text += node.key + "<" + node.parentKey + ">" + node.image + " ";
        }
        return text;
    }
    form::Control& at(const char* name, int element = -1) {
        return uc.form().control(name, element);
    }

    testing::TestUserControl uc;
    NavigationTree navigation{uc};
};

TEST(NavigationTree, BranchesAndNodesAreTestedApart) {
    // "offline" 1: both modes, 2: offline, 3 or none: online. The second
    // branch is online only; offline its children attach to the root added
    // last.
    const std::string guiInit =
        "<dtm><treeView>"
        "<branch name='configuration' offline='1'><node name='operationUnit' offline='1'/>"
        "<node name='alertSettings' offline='3'/></branch>"
        "<branch name='diagnostics' offline='3'><node name='eventLog' offline='1'/>"
        "<node name='onlineAlerts' offline='2'/><node name='status'/></branch>"
        "</treeView></dtm>";
    EXPECT_EQ(Session(true, guiInit).nodes(),
              "configuration<>configuration operationUnit<configuration>notRead "
              "alertSettings<configuration>notRead diagnostics<>diagnostics "
              "eventLog<diagnostics>notRead status<diagnostics>notRead ");
    Session offline(false, guiInit);
    EXPECT_EQ(offline.nodes(),
              "configuration<>configuration operationUnit<configuration>notRead "
              "eventLog<configuration>notRead onlineAlerts<configuration>notRead ");
    // A position outside the tree selects nothing.
    offline.navigation.SelectNode(9);
    EXPECT_EQ(offline.uc.tools().LatestSelectedNode, "operationUnit");
}

TEST(NavigationTree, ClickDuringCalibrationOrFileReadIsDropped) {
    Session s(false);
    for (const std::int16_t action : {1, 2, 3, 4}) {
        s.navigation.NodeClick("operationUnit");
        s.uc.tools().CurrentAutoAction = action;
        s.navigation.NodeClick("eventLog");
        const bool taken = action == 2 || action == 4;
        EXPECT_EQ(s.uc.tools().LatestSelectedNode, taken ? "eventLog" : "operationUnit") << action;
        EXPECT_EQ(s.at("fraKT520", 16).visible(), taken) << action;
        s.uc.tools().CurrentAutoAction = 0;
    }
}

// The pages' own layout is followed by the navigation scenario; these are
// the frames beside them.
TEST(NavigationTree, ToggleTreeLaysOutTheCommonFramesToo) {
    Session s(false);
    for (const auto& [hidden, left, width] : {std::tuple{true, 0, 11175}, {false, 2880, 8415}}) {
        s.navigation.ToggleTree("");
        EXPECT_EQ(s.navigation.treeHidden(), hidden);
        for (form::Control* frame : {&s.at("fraConfirmation", 0), &s.at("fraCommon", 0)}) {
            EXPECT_EQ(frame->left(), left) << frame->displayName();
            EXPECT_EQ(frame->width(), width) << frame->displayName();
        }
        EXPECT_EQ(s.at("TreeView3").width(), s.at("fraCommon", 4).width() - 240);
    }
}

TEST(NavigationTree, ToggleTreeOnTheSettingsPageOrAnUnknownOne) {
    Session s(false);
    s.navigation.ToggleTree("noSuchPage");  // changes nothing
    EXPECT_FALSE(s.navigation.treeHidden());
    EXPECT_TRUE(s.at("treeNavigation").visible());

    s.at("fraCommon", 0).setVisible(true);
    const int pageWidth = s.at("fraKT520", 3).width();
    s.navigation.ToggleTree("alertSettings");
    EXPECT_TRUE(s.navigation.treeHidden());
    EXPECT_EQ(s.at("fraKT520", 3).width(), pageWidth);  // the settings frame takes the width
    EXPECT_EQ(s.at("fraCommon", 0).width(), 11175);
}

}  // namespace
}  // namespace kt500::presentation
