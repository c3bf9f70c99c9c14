// The page table of a device class: which frame a navigation node shows
// and how CurrentFrame follows. The classes differ only in their tables.
#pragma once

#include <span>
#include <string_view>
#include <utility>

namespace kt500::devices {

// How a node's page settles CurrentFrame: to the frame's Tag (the family
// pages), to the node's name (the address and status pages), or not at all
// (settings and confirmation pages).
enum class FrameRule { PageTag, Fixed, Unchanged };

struct NodePage {
    std::string_view node;
    std::string_view array;
    int index;
    FrameRule rule;
};

// A page array with its last element.
using PageArray = std::pair<std::string_view, int>;

using PageTable = std::span<const NodePage>;
using PageArrays = std::span<const PageArray>;

}  // namespace kt500::devices
