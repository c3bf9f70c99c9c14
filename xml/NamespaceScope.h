// Namespace declarations of element trees: finding or declaring the one for a
// URI, and keeping a subtree's namespaces right after it moved under a new
// parent (its former ancestors may have declared what it uses).
#pragma once

#include <libxml/tree.h>

#include <string_view>

namespace kt500::xml {

// The declaration in scope at element for uri, or a new default declaration
// on element itself.
xmlNs* namespaceFor(xmlNode* element, std::string_view uri);

// Points every element and attribute of the subtree at a declaration in scope
// for its namespace URI, declaring on the subtree's nodes what is missing, and
// keeps an element without namespace out of a default namespace of its new
// parent (xmlns="").
void keepNamespacesAfterMove(xmlNode* subtree);

}  // namespace kt500::xml
