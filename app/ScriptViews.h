// What the looking commands of a script print: the trees, the status
// header, the confirmation rows, the toolbar items and chart data, one
// line each, as the form model holds them.
#pragma once

#include "form/Control.h"

#include <ostream>

namespace kt500::app {

// One node a line, two blanks a level: "KEY TEXT [IMAGE]", " *" after the
// selected node.
void PrintTree(const form::Control& tree, std::ostream& out);
// "header IMAGE TEXT" from the header items of the toolbar.
void PrintStatusHeader(const form::Control& toolbar, std::ostream& out);
// "[x] | TEXT | OLD | NEW | NAME | PAGE" for each row of the list view.
void PrintConfirmation(const form::Control& listView, std::ostream& out);
// "KEY enabled=True pressed=False text=TEXT" for each toolbar item.
void PrintToolbar(const form::Control& toolbar, std::ostream& out);
// "subset N: x,y x,y ..." for each subset; a graph's x is the point index.
void PrintChart(const form::Control& chart, std::ostream& out);

}  // namespace kt500::app
