// The items of a reply body for tests of the reply handlers: the body is
// wrapped in one root so that its <item> elements can be walked.
#pragma once

#include "xml/Document.h"

#include <string>
#include <vector>

namespace kt500::testing {

struct ReplyItems {
    explicit ReplyItems(const std::string& body)
        : document(std::move(*xml::Document::parse("<r>" + body + "</r>").document)) {}
    std::vector<xml::Node> all() const { return document.root().childElements("item"); }
    xml::Document document;
};

}  // namespace kt500::testing
