// NavigationTree: the tree of pages on the left, built from the GUIInit
// document for the mode the session is in. A node's key is its page name.
// It turns a node click into a page change, steps through the tree with the
// two cmdNavigation buttons, and lays the pages out for the tree shown or
// hidden.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace kt500::presentation {

// Whether an entry with this "offline" word is shown in the mode: "1" in
// both, "2" offline only, anything else online only.
[[nodiscard]] bool ShownInMode(std::string_view strOffline, bool blOnline) noexcept;

class NavigationTree {
public:
    // Page geometry in twips beside the tree and across the whole width.
    static constexpr int kPageLeftBesideTree = 2880;
    static constexpr int kPageWidthBesideTree = 8415;
    static constexpr int kPageWidthWithoutTree = 11175;

    explicit NavigationTree(devices::IUserControl& control) : m_control(control) {}

    // Rebuilds treeNavigation, selects the default node and shows the
    // default page alone.
    void BuildNavigationTree();
    // Selects the node at a 1-based position in the tree's order and keeps
    // it as LatestSelectedNode; a position outside the tree selects nothing.
    void SelectNode(int intIndex);

    // A click on a node: a branch expands and stands for its first child; a
    // leaf's page is laid out and shown. Dropped while a calibration or a
    // data file read runs (CurrentAutoAction other than 0, 2, 4).
    void NodeClick(const std::string& strKey);
    // A page opened by a command rather than by the tree: shown as a click
    // would show it, and its node selected, so that the tree never marks
    // another page than the one shown.
    void GoToNode(const std::string& strKey);
    // The two cmdNavigation buttons; both wrap around the tree's ends.
    void GoToPreviousNode();
    void GoToNextNode();
    // Shows or hides the tree and lays out the frame of strFrame (empty: the
    // current page; the settings or confirmation page when that is visible).
    // A name that matches no frame changes nothing.
    void ToggleTree(std::string strFrame);
    // Reapplies the present tree state to the frame of strKey.
    void LayOutPage(const std::string& strKey);

    [[nodiscard]] bool treeHidden() const noexcept { return m_treeHidden; }
    // Told the key of each page that a node click is about to show, before
    // the page changes (the monitoring ends when its page is left).
    void setPageChangeHandler(std::function<void(const std::string&)> handler) {
        m_onPageChange = std::move(handler);
    }

    // treeNavigation NodeClick and cmdNavigation Click.
    void addHandlers(form::EventHandlers& handlers);

private:
    form::TreeModel& tree();
    // The click on the node at a 1-based position (out of range: a failure).
    void ClickAt(int intIndex);

    devices::IUserControl& m_control;
    bool m_treeHidden = false;
    std::function<void(const std::string&)> m_onPageChange;
};

}  // namespace kt500::presentation
