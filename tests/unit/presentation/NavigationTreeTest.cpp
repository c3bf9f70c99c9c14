#include "presentation/NavigationTree.h"

#include "devices/clsKT520.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::presentation {
namespace {

using testing::TestUserControl;

class ShowingKT520 final : public devices::clsKT520 {
public:
    explicit ShowingKT520(std::vector<std::string>& calls) : m_calls(calls) {}
    void ShowFrame(const std::string& strNodeName) override {
        m_calls.push_back("ShowFrame " + strNodeName);
    }

private:
    std::vector<std::string>& m_calls;
};

// A session whose GUIInit document is the given text.
struct Session {
    explicit Session(bool online, const std::string& guiInit)
        : uc(testing::SessionOf("KT520_7", online)) {
        xml::LoadResult loaded = xml::Document::parse(guiInit);
        if (!loaded.ok()) {
            throw std::runtime_error(loaded.message());
        }
        uc.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
        uc.setDeviceClass(std::make_unique<ShowingKT520>(uc.calls));
    }
    // The tree, one node a line: key, its parent and its image.
    std::string tree() {
        std::string text;
        for (const form::TreeNode& node : uc.form().control("treeNavigation").tree().nodes()) {
            text += node.key + "<" + node.parentKey + ">" + node.image + " ";
        }
        return text;
    }
    TestUserControl uc;
    NavigationTree navigation{uc};
};

TEST(NavigationTree, OfflineWordDecidesTheModes) {
    const struct {
        const char* word;
        bool online;
        bool offline;
    } cases[] = {{"1", true, true}, {"2", false, true}, {"3", true, false}, {"", true, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(ShownInMode(c.word, true), c.online) << c.word;
        EXPECT_EQ(ShownInMode(c.word, false), c.offline) << c.word;
    }
}

TEST(NavigationTree, BranchesAndNodesAreTestedApart) {
    // The second branch is online only; offline its children attach to the
    // root added last.
    const std::string guiInit =
        "<dtm><treeView>"
        "<branch name='configuration' offline='1'><node name='operationUnit' offline='1'/>"
        "<node name='alertSettings' offline='3'/></branch>"
        "<branch name='diagnostics' offline='3'><node name='eventLog' offline='1'/>"
        "<node name='onlineAlerts' offline='2'/></branch>"
        "</treeView></dtm>";
    Session online(true, guiInit);
    online.navigation.BuildNavigationTree();
    EXPECT_EQ(online.tree(),
              "configuration<>configuration operationUnit<configuration>notRead "
              "alertSettings<configuration>notRead diagnostics<>diagnostics "
              "eventLog<diagnostics>notRead ");

    Session offline(false, guiInit);
    offline.navigation.BuildNavigationTree();
    EXPECT_EQ(offline.tree(),
              "configuration<>configuration operationUnit<configuration>notRead "
              "eventLog<configuration>notRead onlineAlerts<configuration>notRead ");
}

TEST(NavigationTree, DefaultNodeIsSelectedAndTheDefaultPageShown) {
    Session offline(false,
                    "<dtm><treeView><branch name='configuration' offline='1'>"
                    "<node name='operationUnit' offline='1'/><node name='alertSettings' "
                    "offline='1'/></branch></treeView></dtm>");
    offline.navigation.BuildNavigationTree();
    // Offline the default node is the second in the tree's order.
    EXPECT_EQ(offline.uc.form().control("treeNavigation").tree().selectedKey(), "operationUnit");
    EXPECT_EQ(offline.uc.tools().CurrentFrame, "HAoperationUnit");
    EXPECT_EQ(offline.uc.calls.back(), "ShowFrame operationUnit");

    // A position outside the tree selects nothing.
    offline.navigation.SelectNode(9);
    EXPECT_EQ(offline.uc.tools().LatestSelectedNode, "operationUnit");
}

}  // namespace
}  // namespace kt500::presentation
