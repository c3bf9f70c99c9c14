// The device class read by member name, as `device.MEMBER` of a script
// reads it: numbers in decimal, Booleans as True or False, texts as they
// stand. Names match without regard to case, as the system's do.
#pragma once

#include "devices/DeviceClass.h"

#include <optional>
#include <string>
#include <string_view>

namespace kt500::app {

// The member's value, or nothing for a name the contract does not have. A
// member that this class lacks fails as the call would (MemberMissing).
[[nodiscard]] std::optional<std::string> DeviceMember(devices::DeviceClass& device,
                                                      std::string_view strMember);

}  // namespace kt500::app
