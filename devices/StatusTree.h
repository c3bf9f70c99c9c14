// StatusTree: the device status page. TreeView3 holds one leaf for each
// status of the GUIInit document's "deviceStatus", under its group, and each
// node's picture says how the status stands: "ok", "warning", "alarm" or
// "unknown". Which picture a set status shows is the attribute "class" of
// its status node, not a rule of the code. The toolbar's header status sums
// up the tree. The device class's status handler drives these members for
// each "deviceStatus" reply.
#pragma once

#include "devices/IUserControl.h"

#include <string>
#include <vector>

namespace kt500::devices {

class StatusTree {
public:
    explicit StatusTree(IUserControl& control) : m_control(control) {}

    // Fills TreeView3 from deviceStatus/statusGroup of the GUIInit document,
    // each node "unknown" unless it stood before (a rebuild for the texts of
    // another language keeps pictures and expansion). A failure is shown
    // under "StatusTree".
    void BuildStatusTree();
    // Sets the picture of every node tagged with the item's name from the
    // item's value, and lifts the node's parent provisionally.
    void UpdateStatusTree(const std::vector<xml::Node>& xmlStatusList, xml::Node xmlItem);
    // Settles each group's picture from the leaves of the group; a group of
    // clear leaves is "ok" and closed.
    void UpdateStatusParentNodes();
    // The worst picture of the tree in the toolbar's header status.
    void UpdateHeaderStatus();
    // A failed status read: every node and the header "unknown".
    void UnKnownStatus();

private:
    void showHeaderStatus(const std::string& strState);

    IUserControl& m_control;
};

}  // namespace kt500::devices
