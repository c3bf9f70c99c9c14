// NavigationTree: the tree of pages on the left, built from the GUIInit
// document for the mode the session is in. A node's key is its page name.
#pragma once

#include "devices/IUserControl.h"

#include <string_view>

namespace kt500::presentation {

// Whether an entry with this "offline" word is shown in the mode: "1" in
// both, "2" offline only, anything else online only.
[[nodiscard]] bool ShownInMode(std::string_view strOffline, bool blOnline) noexcept;

class NavigationTree {
public:
    explicit NavigationTree(devices::IUserControl& control) : m_control(control) {}

    // Rebuilds treeNavigation, selects the default node and shows the
    // default page.
    void BuildNavigationTree();
    // Selects the node at a 1-based position in the tree's order and keeps
    // it as LatestSelectedNode; a position outside the tree selects nothing.
    void SelectNode(int intIndex);

private:
    devices::IUserControl& m_control;
};

}  // namespace kt500::presentation
