// The tree, list view, toolbar and chart models inside controls.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::form::test {
namespace {

TEST(TreeModel, KeepsInsertionOrderAsOverallIndex) {
    TreeModel tree("treeNavigation");
    tree.add("", "identification", "Identification", "identification");
    tree.add("identification", "operationUnit", "Operation unit", "notRead");
    tree.add("identification", "positionerInformation", "Positioner", "notRead");
    tree.add("", "status", "Status", "status");
    EXPECT_EQ(tree.count(), 4);
    EXPECT_EQ(tree.at(2).key, "operationUnit");  // N.Index + 1 is a branch's first child
    EXPECT_EQ(tree.indexOf("status"), 4);
    EXPECT_TRUE(tree.hasChildren("identification"));
    EXPECT_FALSE(tree.hasChildren("status"));
    EXPECT_EQ(tree.children("identification"),
              (std::vector<std::string>{"operationUnit", "positionerInformation"}));
    EXPECT_THROW(tree.add("", "status", "again"), std::invalid_argument);
    EXPECT_THROW(tree.add("nowhere", "x", "x"), std::out_of_range);
    EXPECT_THROW((void)tree.at(0), std::out_of_range);
    EXPECT_THROW((void)tree.at(5), std::out_of_range);
    EXPECT_THROW(tree.setImage("nothing", "read"), std::out_of_range);
}

TEST(TreeModel, RemovingABranchTakesItsNodesAndSelection) {
    TreeModel tree("TreeView3");
    tree.add("", "a", "A");
    tree.add("a", "a1", "A1");
    tree.add("a1", "a11", "A11");
    tree.add("", "b", "B");
    tree.select("a11");
    tree.remove("a");
    EXPECT_EQ(tree.count(), 1);
    EXPECT_EQ(tree.selectedKey(), "");
    EXPECT_EQ(tree.indexOf("b"), 1);
}

TEST(TreeModel, NodePropertiesByName) {
    TreeModel tree("treeNavigation");
    tree.add("", "monitoring", "Monitoring", "monitoring");
    tree.add("monitoring", "monitoringVariables", "Variables", "notRead");
    tree.setProperty("monitoring", "Expanded", "True");
    tree.setProperty("monitoringVariables", "Image", "read");
    tree.setProperty("monitoringVariables", "Selected", "1");
    EXPECT_EQ(tree.property("monitoring", "Expanded"), "True");
    EXPECT_EQ(tree.property("monitoringVariables", "Image"), "read");
    EXPECT_EQ(tree.property("monitoringVariables", "Selected"), "True");
    EXPECT_EQ(tree.property("monitoringVariables", "Parent"), "monitoring");
    EXPECT_EQ(tree.property("monitoring", "Children"), "1");
    EXPECT_THROW((void)tree.property("monitoring", "Colour"), std::invalid_argument);
    EXPECT_THROW(tree.setProperty("monitoring", "Expanded", "perhaps"), std::invalid_argument);
}

TEST(ListViewModel, RowsFromOneWithSubItemsAndChecks) {
    ListViewModel rows("lsvConfirmation");
    rows.setCheckBoxes(true);
    const int first = rows.add("HART tag");
    rows.setSubItem(first, 3, "hartTag");  // extends the row
    rows.setSubItem(first, 4, "HAoperationUnit");
    rows.add("Tag number", "tagNumber");
    rows.setChecked(2, true);
    EXPECT_EQ(rows.count(), 2);
    EXPECT_EQ(rows.subItem(1, 3), "hartTag");
    EXPECT_EQ(rows.subItem(1, 1), "");
    EXPECT_EQ(rows.subItem(2, 9), "");
    EXPECT_EQ(rows.checkedCount(), 1);
    EXPECT_EQ(rows.findKey("tagNumber"), 2);
    rows.remove(1);
    EXPECT_EQ(rows.row(1).text, "Tag number");
    EXPECT_THROW((void)rows.row(0), std::out_of_range);
    EXPECT_THROW((void)rows.row(2), std::out_of_range);
    EXPECT_THROW(rows.setSubItem(1, 0, "x"), std::out_of_range);
    EXPECT_THROW(rows.add("again", "tagNumber"), std::invalid_argument);
}

TEST(ToolbarModel, ItemsByKeyInBands) {
    ToolbarModel bar("smuiDTM(1)");
    bar.addBand("commands");
    bar.addBand("upload");
    bar.addItem(toolbarItem("send", 0));
    bar.addItem(toolbarItem("uploadCurrent", 1));
    bar.addItem(toolbarItem("uploadAll", 1));
    EXPECT_EQ(bar.bandItems(1), (std::vector<std::string>{"uploadCurrent", "uploadAll"}));
    EXPECT_THROW(bar.addItem(toolbarItem("send", 0)), std::invalid_argument);
    EXPECT_THROW(bar.addItem(toolbarItem("late", 2)), std::out_of_range);

    bar.setProperty("send", "Enabled", "False");
    bar.setProperty("send", "Checked", "True");
    bar.setText("send", "Send");
    EXPECT_EQ(bar.property("send", "Enabled"), "False");
    EXPECT_EQ(bar.property("send", "Pressed"), "True");
    EXPECT_EQ(bar.property("send", "Text"), "Send");
    EXPECT_EQ(bar.property("uploadAll", "Band"), "1");
    try {
        (void)bar.item("open");
        FAIL();
    } catch (const std::out_of_range& e) {
        EXPECT_NE(std::string(e.what()).find("smuiDTM(1)"), std::string::npos);
        EXPECT_NE(std::string(e.what()).find("open"), std::string::npos);
    }
}

TEST(ChartModel, SubsetsAndPointsBoundTheData) {
    ChartModel chart("pegoKT520");
    chart.setSubsets(4);
    chart.setPoints(20);
    chart.setY(3, 19, 42.5);
    chart.setSubsetColor(0, 0xFF0000);
    chart.setSubsetLineType(1, 1);
    chart.setOption("AllowZooming", 2);
    EXPECT_EQ(chart.y(3, 19), 42.5);
    EXPECT_EQ(chart.option("AllowZooming"), 2.0);
    EXPECT_EQ(chart.option("BarWidth", 0.9), 0.9);
    EXPECT_THROW((void)chart.y(4, 0), std::out_of_range);
    EXPECT_THROW(chart.setX(0, 20, 1.0), std::out_of_range);

    chart.setPoints(10);  // shrinking keeps what still fits
    chart.setSubsets(5);
    EXPECT_EQ(chart.subsetColor(0), 0xFF0000U);
    EXPECT_EQ(chart.y(4, 9), 0.0);
    EXPECT_THROW((void)chart.pointLabel(10), std::out_of_range);
    EXPECT_THROW(chart.setPoints(-1), std::out_of_range);
}

TEST(ChartModel, ReportsChangesThroughItsControl) {
    Form form;
    ChangeLog changes;
    changes.attach(form);
    Control& chart = form.add(ControlKind::Chart, "pesgoKT520");
    chart.chart().setMainTitle("Step test");
    chart.chart().setMainTitle("Step test");
    chart.chart().setSubsets(1);
    EXPECT_EQ(changes.lines,
              (std::vector<std::string>{"pesgoKT520.ChartData", "pesgoKT520.ChartData"}));
}

}  // namespace
}  // namespace kt500::form::test
