// Moves the elements of a document that stand in no namespace into one, so
// that a document written without a namespace (a data file) can be checked
// against the schema of that namespace.
#pragma once

#include "xml/Document.h"

#include <string_view>

namespace kt500::xml {

// Every element without a namespace takes namespaceUri, declared once on the
// document element unless it is in scope there already. Elements already in
// a namespace keep it; whatever the root declares, nothing is refused.
void MoveIntoNamespace(Document& document, std::string_view namespaceUri);

}  // namespace kt500::xml
