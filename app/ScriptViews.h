// What the looking commands of a script print: the trees, the status
// header, the confirmation rows, the toolbar items and chart data, one
// line each, as the form model holds them.
#pragma once

#include "form/Control.h"

#include <ostream>
#include <string>

namespace kt500::app {

// One node a line, two blanks a level: "KEY TEXT [IMAGE]", " *" after the
// selected node.
void PrintTree(const form::Control& tree, std::ostream& out);
// "header IMAGE TEXT" from the header items of the toolbar.
void PrintStatusHeader(const form::Control& toolbar, std::ostream& out);
// "[x] | TEXT | OLD | NEW | NAME | PAGE" for each row of the list view.
void PrintConfirmation(const form::Control& listView, std::ostream& out);
// The rows of any list view: "[x] or [ ]", the text and every sub-item,
// split by " | ".
void PrintListRows(const form::Control& listView, std::ostream& out);
// "KEY enabled=True pressed=False text=TEXT" for each toolbar item.
void PrintToolbar(const form::Control& toolbar, std::ostream& out);
// "subset N: x,y x,y ..." for each subset; a graph's x is the point index,
// a date-time chart's x the time of day. With intLast, first "points N",
// then only the last intLast points of each subset.
void PrintChart(const form::Control& chart, std::ostream& out, int intLast = -1);
// "labels: L0 | L1 | ...": the point labels of a chart.
void PrintChartLabels(const form::Control& chart, std::ostream& out);
// Each row of a list view: "N | TEXT | TAG | SUBITEM1 | SUBITEM2 ...".
void PrintListView(const form::Control& listView, std::ostream& out);

// "| LINE" for each line of a text file; "no file PATH" when it cannot be read.
void PrintFile(const std::string& strPath, std::ostream& out);

}  // namespace kt500::app
