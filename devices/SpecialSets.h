// The item sets that one device command writes together: a change of one
// member forces the others into the request. The HART classes share one
// table; the PROFIBUS class has its own blocks.
#pragma once

#include "devices/DeviceClass.h"

#include <string_view>

namespace kt500::devices {

// The set that strItem of strRequestGroup triggers, or nothing.
[[nodiscard]] const SpecialSet* HartSpecialSet(std::string_view strRequestGroup,
                                               std::string_view strItem);
[[nodiscard]] const SpecialSet* ProfibusSpecialSet(std::string_view strRequestGroup,
                                                   std::string_view strItem);

}  // namespace kt500::devices
