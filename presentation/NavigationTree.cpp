#include "presentation/NavigationTree.h"

#include "devices/DeviceClass.h"

namespace kt500::presentation {

bool ShownInMode(std::string_view strOffline, bool blOnline) noexcept {
    if (strOffline == "1") {
        return true;
    }
    if (strOffline == "2") {
        return !blOnline;
    }
    return blOnline;
}

void NavigationTree::BuildNavigationTree() {
    host::clsTools& tools = m_control.tools();
    form::TreeModel& tree = m_control.form().control("treeNavigation").tree();
    tree.clear();
    if (const xml::Document* guiInit = tools.RavikDTMParameters()) {
        std::string lastRoot;
        for (const xml::Node& treeView : guiInit->root().childElements("treeView")) {
            for (const xml::Node& branch : treeView.childElements("branch")) {
                const std::string name = branch.attribute("name");
                if (ShownInMode(branch.attribute("offline"), tools.OnlineConf)) {
                    tree.add("", name, m_control.Translate(name), name);
                    lastRoot = name;
                }
                // A child attaches to the root added last, also when its
                // own branch was left out.
                for (const xml::Node& node : branch.childElements()) {
                    const std::string key = node.attribute("name");
                    if (ShownInMode(node.attribute("offline"), tools.OnlineConf)) {
                        tree.add(lastRoot, key, m_control.Translate(key), "notRead");
                    }
                }
            }
        }
    }
    devices::DeviceClass& device = m_control.deviceClass();
    SelectNode(device.DefaultNodeIndex());
    tools.CurrentFrame = device.DevicePrefix() + tools.strDefaultFrame();
    device.ShowFrame(tools.strDefaultFrame());
}

void NavigationTree::SelectNode(int intIndex) {
    form::TreeModel& tree = m_control.form().control("treeNavigation").tree();
    if (intIndex < 1 || intIndex > tree.count()) {
        return;
    }
    const std::string key = tree.at(intIndex).key;
    tree.select(key);
    m_control.tools().LatestSelectedNode = key;
}

}  // namespace kt500::presentation
