#include "devices/StatusTree.h"

#include "form/TreeModel.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace kt500::devices {

namespace {

const std::string kOk = "ok";
const std::string kWarning = "warning";
const std::string kAlarm = "alarm";
const std::string kUnknown = "unknown";
// It has a picture of its own but counts only where the device reports it.
const std::string kDeviationAlert = "statusDeviationAlert";

// "alarm" ranks above "warning", and "warning" above every other picture;
// below "warning" the newer picture wins.
const std::string& Lifted(const std::string& strCurrent, const std::string& strImage) {
    if (strCurrent == kAlarm) {
        return kAlarm;
    }
    if (strCurrent == kWarning) {
        return strImage == kAlarm ? kAlarm : kWarning;
    }
    return strImage;
}

form::TreeModel& StatusNodes(IUserControl& control) {
    return control.form().control("TreeView3").tree();
}

// One name may stand on several nodes, so the node keys are the name and,
// from its second node on, the name with a count.
std::string FreeKey(const form::TreeModel& tree, const std::string& strName) {
    std::string key = strName;
    for (int n = 2; tree.find(key) != nullptr; ++n) {
        key = strName + "#" + std::to_string(n);
    }
    return key;
}

// The value of a reply item: the text of its value element.
std::string ItemValue(const xml::Node& xmlItem) {
    const xml::Node value = xmlItem.firstChildElement();
    return value ? value.text() : xmlItem.text();
}

}  // namespace

void StatusTree::BuildStatusTree() {
    try {
        const xml::Document* guiInit = m_control.tools().RavikDTMParameters();
        form::TreeModel& tree = StatusNodes(m_control);
        // A rebuild (the texts of a new language) keeps what the device
        // reported: each node that stands again takes its former picture and
        // expansion.
        const std::vector<form::TreeNode> former = tree.nodes();
        tree.clear();
        if (guiInit == nullptr) {
            // A GUIInit document that did not load leaves the trees empty.
            return;
        }
        const auto addNode = [&](const std::string& strParentKey, const xml::Node& node) {
            const std::string tag = node.attribute("name");
            const std::string key = FreeKey(tree, tag);
            const auto kept = std::ranges::find(former, key, &form::TreeNode::key);
            const bool known = kept != former.end() && kept->tag == tag;
            tree.add(strParentKey, key, m_control.Translate(tag), known ? kept->image : kUnknown);
            tree.setTag(key, tag);
            if (known) {
                tree.setExpanded(key, kept->expanded);
            }
            return key;
        };
        for (const xml::Node& deviceStatus : guiInit->root().childElements("deviceStatus")) {
            for (const xml::Node& group : deviceStatus.childElements("statusGroup")) {
                const std::string groupKey = addNode({}, group);
                for (const xml::Node& status : group.childElements("status")) {
                    addNode(groupKey, status);
                }
            }
        }
    } catch (const std::exception& e) {
        m_control.ShowMsg("StatusTree", e.what());
    }
}

void StatusTree::UpdateStatusTree(const std::vector<xml::Node>& xmlStatusList, xml::Node xmlItem) {
    form::TreeModel& tree = StatusNodes(m_control);
    const std::string name = xmlItem.attribute("name");
    for (int i = 1; i <= tree.count(); ++i) {
        const form::TreeNode& node = tree.at(i);
        if (node.tag != name) {
            continue;
        }
        const std::string key = node.key;
        if (name == kDeviationAlert && !m_control.tools().ShowDeviationAlert) {
            tree.setImage(key, kUnknown);
            return;
        }
        if (ItemValue(xmlItem) == "0") {
            tree.setImage(key, kOk);
        } else {
            // A status node that the list lacks leaves the picture empty.
            std::string image;
            for (const xml::Node& status : xmlStatusList) {
                if (status.attribute("name") == name) {
                    image = status.attribute("class");
                    break;
                }
            }
            tree.setImage(key, image);
        }
        // Provisional until UpdateStatusParentNodes settles the group.
        const std::string parentKey = tree.at(i).parentKey;
        if (!parentKey.empty()) {
            tree.setImage(parentKey, Lifted(tree.node(parentKey).image, tree.node(key).image));
        }
    }
}

void StatusTree::UpdateStatusParentNodes() {
    form::TreeModel& tree = StatusNodes(m_control);
    // Nodes stand parent first, so walking backward meets a group's leaves
    // before the group itself.
    std::string worst = kOk;
    bool noneSet = true;
    for (int i = tree.count(); i >= 1; --i) {
        const form::TreeNode& node = tree.at(i);
        const std::string key = node.key;
        if (tree.hasChildren(key)) {
            if (noneSet) {
                tree.setImage(key, kOk);
                tree.setExpanded(key, false);
            } else {
                // A group with a problem keeps its expansion as the user left it.
                tree.setImage(key, worst);
            }
            worst = kOk;
            noneSet = true;
        } else if (node.image != kOk) {
            noneSet = false;
            worst = Lifted(worst, node.image);
        }
    }
}

void StatusTree::UpdateHeaderStatus() {
    const form::TreeModel& tree = StatusNodes(m_control);
    std::string state = kOk;
    for (const form::TreeNode& node : tree.nodes()) {
        // The deviation alert never lifts the header.
        if (node.image == kUnknown || node.image == kOk || node.tag == kDeviationAlert) {
            continue;
        }
        state = Lifted(state, node.image);
    }
    showHeaderStatus(state);
}

void StatusTree::UnKnownStatus() {
    form::TreeModel& tree = StatusNodes(m_control);
    for (int i = 1; i <= tree.count(); ++i) {
        tree.setImage(tree.at(i).key, kUnknown);
    }
    showHeaderStatus(kUnknown);
}

void StatusTree::showHeaderStatus(const std::string& strState) {
    form::ToolbarModel& toolbar = m_control.form().control("smuiDTM", 1).toolbar();
    toolbar.setText("strHeaderStatus", m_control.Translate(strState));
    toolbar.setPicture("imgHeaderStatus", strState);
}

}  // namespace kt500::devices
