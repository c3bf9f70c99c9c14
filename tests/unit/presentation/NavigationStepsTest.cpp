#include "presentation/NavigationTree.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::presentation {
namespace {

using testing::TestUserControl;

// 1 configuration, 2 operationUnit, 3 alertSettings, 4 diagnostics,
// 5 eventLog, 6 onlineAlerts: two branches of two pages each.
constexpr const char* kGuiInit =
    "<dtm><treeView>"
    "<branch name='configuration' offline='1'><node name='operationUnit' offline='1'/>"
    "<node name='alertSettings' offline='1'/></branch>"
    "<branch name='diagnostics' offline='1'><node name='eventLog' offline='1'/>"
    "<node name='onlineAlerts' offline='1'/></branch>"
    "</treeView></dtm>";

struct Navigation : ::testing::Test {
    Navigation() {
        xml::LoadResult loaded = xml::Document::parse(kGuiInit);
        if (!loaded.ok()) {
            throw std::runtime_error(loaded.message());
        }
        uc.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
        navigation.BuildNavigationTree();
    }
    form::TreeModel& tree() { return uc.form().control("treeNavigation").tree(); }
    form::Control& page(int element) { return uc.form().control("fraKT520", element); }
    void startAt(const std::string& key) {
        navigation.NodeClick(key);
        tree().select(key);
    }

    TestUserControl uc{testing::SessionOf("KT520_7", false)};
    NavigationTree navigation{uc};
};

TEST_F(Navigation, SteppingSkipsBranchesAndWrapsAtBothEnds) {
    const struct {
        const char* from;
        bool forward;
        const char* shown;   // LatestSelectedNode afterwards
        const char* marked;  // the tree's selection afterwards
        const char* frame;
    } cases[] = {
        {"alertSettings", true, "eventLog", "eventLog", "HAeventLog"},
        {"eventLog", false, "alertSettings", "alertSettings", "HAalertSettings"},
        // Forward from the last node clicks node 2 and marks node 3.
        {"onlineAlerts", true, "operationUnit", "alertSettings", "HAoperationUnit"},
        // Backward from node 2 wraps to the last node.
        {"operationUnit", false, "onlineAlerts", "onlineAlerts", "HAonlineAlerts"},
    };
    for (const auto& c : cases) {
        startAt(c.from);
        c.forward ? navigation.GoToNextNode() : navigation.GoToPreviousNode();
        EXPECT_EQ(uc.tools().LatestSelectedNode, c.shown) << c.from;
        EXPECT_EQ(tree().selectedKey(), c.marked) << c.from;
        EXPECT_EQ(uc.tools().CurrentFrame, c.frame) << c.from;
    }
}

TEST_F(Navigation, BranchClickShowsItsFirstChildAndExpands) {
    navigation.NodeClick("diagnostics");
    EXPECT_TRUE(tree().node("diagnostics").expanded);
    EXPECT_EQ(uc.tools().LatestSelectedNode, "eventLog");
    EXPECT_TRUE(page(16).visible());
    EXPECT_FALSE(page(7).visible());
}

TEST_F(Navigation, ClickDuringCalibrationOrFileReadIsDropped) {
    for (const std::int16_t action : {1, 2, 3, 4}) {
        navigation.NodeClick("operationUnit");
        uc.tools().CurrentAutoAction = action;
        navigation.NodeClick("eventLog");
        const bool taken = action == 2 || action == 4;
        EXPECT_EQ(uc.tools().LatestSelectedNode, taken ? "eventLog" : "operationUnit") << action;
        EXPECT_EQ(page(16).visible(), taken) << action;
        uc.tools().CurrentAutoAction = 0;
    }
}

TEST_F(Navigation, ToggleTreeSwitchesTheLayout) {
    form::Form& form = uc.form();
    const struct {
        bool hidden;
        int left;
        int width;
    } states[] = {{true, 0, 11175}, {false, 2880, 8415}};
    for (const auto& s : states) {
        navigation.ToggleTree("");
        EXPECT_EQ(navigation.treeHidden(), s.hidden);
        EXPECT_EQ(form.control("smuiDTM", 1).toolbar().item("hideTree").pressed, s.hidden);
        EXPECT_EQ(form.control("treeNavigation").visible(), !s.hidden);
        EXPECT_EQ(form.control("cmdNavigation", 0).visible(), s.hidden);
        EXPECT_EQ(form.control("cmdNavigation", 1).visible(), s.hidden);
        for (form::Control* frame :
             {&page(7), &form.control("fraConfirmation", 0), &form.control("fraCommon", 0)}) {
            EXPECT_EQ(frame->left(), s.left) << frame->displayName();
            EXPECT_EQ(frame->width(), s.width) << frame->displayName();
        }
        EXPECT_EQ(form.control("TreeView3").width(), form.control("fraCommon", 4).width() - 240);
    }
}

TEST_F(Navigation, ToggleTreeOnTheSettingsPageOrAnUnknownOne) {
    navigation.ToggleTree("noSuchPage");  // changes nothing
    EXPECT_FALSE(navigation.treeHidden());
    EXPECT_TRUE(uc.form().control("treeNavigation").visible());

    uc.form().control("fraCommon", 0).setVisible(true);
    const int pageWidth = page(3).width();
    navigation.ToggleTree("alertSettings");
    EXPECT_TRUE(navigation.treeHidden());
    EXPECT_EQ(page(3).width(), pageWidth);  // the settings frame takes the width
    EXPECT_EQ(uc.form().control("fraCommon", 0).width(), 11175);
}

TEST_F(Navigation, PageClickedWhileTreeHiddenTakesTheFullWidth) {
    navigation.ToggleTree("");
    navigation.NodeClick("alertSettings");
    EXPECT_TRUE(navigation.treeHidden());
    EXPECT_EQ(page(3).left(), 0);
    EXPECT_EQ(page(3).width(), 11175);
}

}  // namespace
}  // namespace kt500::presentation
