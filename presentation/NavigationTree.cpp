#include "presentation/NavigationTree.h"

#include "devices/DeviceClass.h"
#include "form/Control.h"

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
    session::clsTools& tools = m_control.tools();
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
    // The default page stands alone: the page in view (the settings page,
    // say, after a language change) gives way.
    device.HideFrames();
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

form::TreeModel& NavigationTree::tree() {
    return m_control.form().control("treeNavigation").tree();
}

void NavigationTree::NodeClick(const std::string& strKey) {
    const std::int16_t action = m_control.tools().CurrentAutoAction;
    if (action != 0 && action != 2 && action != 4) {
        return;
    }
    form::TreeModel& nodes = tree();
    if (nodes.hasChildren(strKey)) {
        // A branch has no page of its own: it stands for its first child.
        nodes.setExpanded(strKey, true);
        NodeClick(nodes.at(nodes.indexOf(strKey) + 1).key);
        return;
    }
    if (m_onPageChange) {
        m_onPageChange(strKey);
    }
    LayOutPage(strKey);
    m_control.tools().LatestSelectedNode = strKey;
    devices::DeviceClass& device = m_control.deviceClass();
    device.HideFrames();
    device.ShowFrame(strKey);
}

void NavigationTree::GoToNode(const std::string& strKey) {
    NodeClick(strKey);
    if (m_control.tools().LatestSelectedNode == strKey) {
        tree().select(strKey);
    }
}

void NavigationTree::LayOutPage(const std::string& strKey) {
    // ToggleTree applies the row of the state it finds and flips the flag;
    // handing it the opposite state reapplies the present layout to the
    // frame, and the flag is put back afterwards.
    const bool hidden = m_treeHidden;
    m_treeHidden = !hidden;
    ToggleTree(strKey);
    m_treeHidden = hidden;
}

void NavigationTree::ClickAt(int intIndex) {
    NodeClick(tree().at(intIndex).key);
}

void NavigationTree::GoToPreviousNode() {
    form::TreeModel& nodes = tree();
    const int current = nodes.indexOf(m_control.tools().LatestSelectedNode);
    if (current == 2) {
        // Node 2 is the first leaf: wrap to the last node.
        const int last = nodes.count();
        ClickAt(last);
        nodes.select(nodes.at(last).key);
        return;
    }
    const int target = nodes.hasChildren(nodes.at(current - 1).key) ? current - 2 : current - 1;
    ClickAt(target);
    nodes.select(m_control.tools().LatestSelectedNode);
}

void NavigationTree::GoToNextNode() {
    form::TreeModel& nodes = tree();
    const int current = nodes.indexOf(m_control.tools().LatestSelectedNode);
    if (current == nodes.count()) {
        // Wrap: node 2 is clicked and node 3 is marked, in step with the
        // backward wrap, which takes node 2 for the first leaf.
        ClickAt(2);
        nodes.select(nodes.at(3).key);
        return;
    }
    // A branch is stepped over to its first child, except "status", whose
    // node is a page of its own.
    const form::TreeNode& next = nodes.at(current + 1);
    const int target =
        nodes.hasChildren(next.key) && next.key != "status" ? current + 2 : current + 1;
    ClickAt(target);
    nodes.select(nodes.at(target).key);
}

namespace {

void SetGeometry(form::Control* frame, int intLeft, int intWidth) {
    if (frame != nullptr) {
        frame->setLeft(intLeft);
        frame->setWidth(intWidth);
    }
}

}  // namespace

void NavigationTree::ToggleTree(std::string strFrame) {
    form::Form& form = m_control.form();
    if (strFrame.empty()) {
        strFrame = m_control.tools().CurrentFrame;
    }
    form::Control* settings = form.find("fraCommon", 0);
    form::Control* confirmation = form.find("fraConfirmation", 0);
    if (settings != nullptr && settings->visible()) {
        strFrame = "settings";
    }
    if (confirmation != nullptr && confirmation->visible()) {
        strFrame = "confirmation1";
    }
    const std::string prefixed = m_control.deviceClass().DevicePrefix() + strFrame;
    form::Control* found = nullptr;
    for (form::Control* control : form.controls()) {
        if (control->kind() == form::ControlKind::Frame &&
            (control->tag() == strFrame || control->tag() == prefixed)) {
            found = control;
            break;
        }
    }
    if (found == nullptr) {
        return;
    }

    const bool showTree = m_treeHidden;
    const int left = showTree ? kPageLeftBesideTree : 0;
    const int width = showTree ? kPageWidthBesideTree : kPageWidthWithoutTree;
    form.control("smuiDTM", 1).toolbar().setPressed("hideTree", !showTree);
    form.control("treeNavigation").setVisible(showTree);
    SetGeometry(found, left, width);
    form::Control* statusPage = form.find("fraCommon", 4);
    if (form::Control* statusTree = form.find("TreeView3"); statusTree && statusPage) {
        statusTree->setWidth(statusPage->width() - 240);
    }
    for (const int element : {0, 1}) {
        if (form::Control* step = form.find("cmdNavigation", element)) {
            step->setVisible(!showTree);
        }
    }
    SetGeometry(confirmation, left, width);
    SetGeometry(settings, left, width);
    m_treeHidden = !m_treeHidden;
}

void NavigationTree::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("treeNavigation", EventKind::NodeClick,
                 [this](form::FormEvent& event) { NodeClick(event.key); });
    handlers.add("cmdNavigation", EventKind::Click, [this](form::FormEvent& event) {
        if (event.control->index() == 0) {
            GoToPreviousNode();
        } else if (event.control->index() == 1) {
            GoToNextNode();
        }
    });
}

}  // namespace kt500::presentation
