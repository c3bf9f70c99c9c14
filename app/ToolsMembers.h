// The session state (clsTools) read by member name, as `tools.MEMBER` of a
// script reads it: Booleans as True or False, numbers in decimal, texts as
// they stand. Names match without regard to case, as the system's do.
#pragma once

#include "session/clsTools.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::app {

// The member's value, or nothing for a name clsTools does not have.
[[nodiscard]] std::optional<std::string> ToolsMember(const session::clsTools& tools,
                                                     std::string_view strMember);
// Every member name the table knows, in declaration order.
[[nodiscard]] std::vector<std::string_view> ToolsMemberNames();

}  // namespace kt500::app
