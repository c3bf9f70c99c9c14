#include "app/ScriptViews.h"

#include "form/Property.h"

#include <string>

namespace kt500::app {

namespace {

int depthOf(const form::TreeModel& tree, const form::TreeNode& node) {
    int depth = 0;
    for (const form::TreeNode* n = &node; !n->parentKey.empty(); n = &tree.node(n->parentKey)) {
        ++depth;
    }
    return depth;
}

// Confirmation columns after the first: old value, new value, name, page.
constexpr int kConfirmationSubItems = 4;

}  // namespace

void PrintTree(const form::Control& treeControl, std::ostream& out) {
    const form::TreeModel& tree = treeControl.tree();
    for (const form::TreeNode& node : tree.nodes()) {
        out << std::string(static_cast<std::size_t>(depthOf(tree, node)) * 2, ' ') << node.key
            << ' ' << node.text << " [" << node.image << ']'
            << (node.key == tree.selectedKey() ? " *" : "") << '\n';
    }
}

void PrintStatusHeader(const form::Control& toolbar, std::ostream& out) {
    const form::ToolbarModel& items = toolbar.toolbar();
    out << "header " << items.item("imgHeaderStatus").picture << ' '
        << items.item("strHeaderStatus").text << '\n';
}

void PrintConfirmation(const form::Control& listView, std::ostream& out) {
    const form::ListViewModel& rows = listView.listView();
    for (int row = 1; row <= rows.count(); ++row) {
        out << (rows.row(row).checked ? "[x]" : "[ ]") << " | " << rows.row(row).text;
        for (int column = 1; column <= kConfirmationSubItems; ++column) {
            out << " | " << rows.subItem(row, column);
        }
        out << '\n';
    }
}

void PrintToolbar(const form::Control& toolbar, std::ostream& out) {
    for (const form::ToolbarItem& item : toolbar.toolbar().items()) {
        out << item.key << " enabled=" << form::formatBoolean(item.enabled)
            << " pressed=" << form::formatBoolean(item.pressed) << " text=" << item.text << '\n';
    }
}

void PrintChart(const form::Control& chartControl, std::ostream& out) {
    const form::ChartModel& chart = chartControl.chart();
    for (int subset = 0; subset < chart.subsets(); ++subset) {
        out << "subset " << subset << ':';
        for (int point = 0; point < chart.points(); ++point) {
            const double x = chart.scientific() ? chart.x(subset, point) : point;
            out << ' ' << form::formatNumber(x) << ','
                << form::formatNumber(chart.y(subset, point));
        }
        out << '\n';
    }
}

}  // namespace kt500::app
