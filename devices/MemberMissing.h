// The failure of a call to a member that an object lacks: the control or a
// device class reached by member name. It is a run-time failure of the
// calling handler, shown under the handler's name like any other.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kt500::devices {

class MemberMissing : public std::runtime_error {
public:
    explicit MemberMissing(std::string_view member)
        : std::runtime_error("Object doesn't support this property or method: " +
                             std::string(member)),
          m_member(member) {}
    [[nodiscard]] const std::string& member() const noexcept { return m_member; }

private:
    std::string m_member;
};

}  // namespace kt500::devices
