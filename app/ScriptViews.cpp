#include "app/ScriptViews.h"

#include "form/Property.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
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

// A day count's time of day, to the millisecond: "08:00:30.500".
std::string TimeOfDay(double dblDays) {
    const auto ms = static_cast<long long>(std::llround((dblDays - std::floor(dblDays)) * 86400000.0));
    char text[32];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld.%03lld", ms / 3600000 % 24,
                  ms / 60000 % 60, ms / 1000 % 60, ms % 1000);
    return text;
}

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

void PrintListRows(const form::Control& listView, std::ostream& out) {
    const form::ListViewModel& rows = listView.listView();
    for (const form::ListRow& row : rows.rows()) {
        out << (row.checked ? "[x]" : "[ ]") << " | " << row.text;
        for (const std::string& subItem : row.subItems) {
            out << " | " << subItem;
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

void PrintChart(const form::Control& chartControl, std::ostream& out, int intLast) {
    const form::ChartModel& chart = chartControl.chart();
    const bool dateTime = chart.option("DateTimeMode") != 0.0;
    const bool ownX = chart.scientific() || chart.option("UsingXDataII") != 0.0;
    int first = 0;
    if (intLast >= 0) {
        out << "points " << chart.points() << '\n';
        first = std::max(0, chart.points() - intLast);
    }
    for (int subset = 0; subset < chart.subsets(); ++subset) {
        out << "subset " << subset << ':';
        for (int point = first; point < chart.points(); ++point) {
            const double x = ownX ? chart.x(subset, point) : point;
            out << ' ' << (dateTime ? TimeOfDay(x) : form::formatNumber(x)) << ','
                << form::formatNumber(chart.y(subset, point));
        }
        out << '\n';
    }
}

void PrintChartLabels(const form::Control& chartControl, std::ostream& out) {
    const form::ChartModel& chart = chartControl.chart();
    out << "labels:";
    for (int point = 0; point < chart.points(); ++point) {
        out << (point == 0 ? " " : " | ") << chart.pointLabel(point);
    }
    out << '\n';
}

void PrintListView(const form::Control& listView, std::ostream& out) {
    const form::ListViewModel& rows = listView.listView();
    const int columns = static_cast<int>(rows.columns().size());
    for (int row = 1; row <= rows.count(); ++row) {
        out << row << " | " << rows.row(row).text << " | " << rows.row(row).tag;
        for (int column = 1; column < columns; ++column) {
            out << " | " << rows.subItem(row, column);
        }
        out << '\n';
    }
}

void PrintFile(const std::string& strPath, std::ostream& out) {
    std::ifstream in(strPath, std::ios::binary);
    if (!in) {
        out << "no file " << strPath << '\n';
        return;
    }
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        out << "| " << line << '\n';
    }
}

}  // namespace kt500::app
