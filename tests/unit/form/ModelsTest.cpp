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
    EXPECT_EQ(tree.at(2).key, "operationUnit");  // N.Index + 1 is a branch's first child
    EXPECT_EQ(tree.indexOf("status"), 4);
    EXPECT_THROW(tree.add("", "status", "again"), std::invalid_argument);
    EXPECT_THROW(tree.add("nowhere", "x", "x"), std::out_of_range);
    EXPECT_THROW((void)tree.at(0), std::out_of_range);
    EXPECT_THROW((void)tree.at(5), std::out_of_range);

    // Removing a branch takes its nodes and the selection among them.
    tree.add("operationUnit", "deeper", "Deeper");
    tree.select("deeper");
    tree.remove("identification");
    EXPECT_EQ(tree.count(), 1);
    EXPECT_EQ(tree.selectedKey(), "");
    EXPECT_EQ(tree.indexOf("status"), 1);
}

TEST(TreeModel, NodePropertiesByName) {
    TreeModel tree("treeNavigation");
    tree.add("", "monitoring", "Monitoring", "monitoring");
    tree.add("monitoring", "monitoringVariables", "Variables", "notRead");
    tree.setProperty("monitoringVariables", "Selected", "1");
    EXPECT_EQ(tree.property("monitoringVariables", "Selected"), "True");
    EXPECT_EQ(tree.property("monitoringVariables", "Parent"), "monitoring");
    EXPECT_EQ(tree.property("monitoring", "Children"), "1");
    EXPECT_THROW((void)tree.property("monitoring", "Colour"), std::invalid_argument);
    EXPECT_THROW(tree.setProperty("monitoring", "Expanded", "perhaps"), std::invalid_argument);
    EXPECT_THROW(tree.setImage("nothing", "read"), std::out_of_range);
}

TEST(ListViewModel, RowsFromOneWithSubItemsAndChecks) {
    ListViewModel rows("lsvConfirmation");
    rows.setCheckBoxes(true);
    const int first = rows.add("HART tag");
    rows.setSubItem(first, 3, "hartTag");  // extends the row
    rows.add("Tag number", "tagNumber");
    rows.setChecked(2, true);
    EXPECT_EQ(rows.subItem(1, 1), "");
    EXPECT_EQ(rows.subItem(2, 9), "");
    EXPECT_EQ(rows.checkedCount(), 1);
    EXPECT_EQ(rows.findKey("tagNumber"), 2);
    rows.remove(1);
    EXPECT_EQ(rows.row(1).text, "Tag number");
    EXPECT_THROW((void)rows.row(0), std::out_of_range);
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

    bar.setProperty("send", "Checked", "True");
    EXPECT_EQ(bar.property("send", "Pressed"), "True");
    EXPECT_EQ(bar.property("uploadAll", "Band"), "1");
    expectThrowNaming<std::out_of_range>({"smuiDTM(1)", "open"}, [&] { (void)bar.item("open"); });
}

TEST(ChartModel, SubsetsAndPointsBoundTheData) {
    ChartModel chart("pegoKT520");
    chart.setSubsets(4);
    chart.setPoints(20);
    chart.setY(3, 19, 42.5);
    chart.setSubsetColor(0, 0xFF0000);
    EXPECT_EQ(chart.option("BarWidth", 0.9), 0.9);
    EXPECT_THROW((void)chart.y(4, 0), std::out_of_range);
    EXPECT_THROW(chart.setX(0, 20, 1.0), std::out_of_range);

    chart.setPoints(10);  // shrinking keeps what still fits
    chart.setSubsets(5);
    EXPECT_EQ(chart.subsetColor(0), 0xFF0000U);
    EXPECT_EQ(chart.y(4, 9), 0.0);
    EXPECT_THROW((void)chart.pointLabel(10), std::out_of_range);
    EXPECT_THROW(chart.setPoints(-1), std::out_of_range);

    // A size beyond the values a chart holds is refused by name and changes nothing.
    expectThrowNaming<std::out_of_range>({"pegoKT520", "200001 points", "1000000 values"},
                                         [&] { chart.setPoints(200001); });
    expectThrowNaming<std::out_of_range>({"pegoKT520", "100001 subsets"},
                                         [&] { chart.setSubsets(100001); });
    EXPECT_EQ(chart.subsets(), 5);
    EXPECT_EQ(chart.points(), 10);
    chart.setPoints(200000);
    EXPECT_EQ(chart.y(4, 199999), 0.0);
}

}  // namespace
}  // namespace kt500::form::test
