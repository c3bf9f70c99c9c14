// GroupFields: which fields and confirmation rows a read of one request
// group answers for. As a rule a group's page shows the group's parameters;
// a page may also show parameters of other groups (the KT540's alert
// settings hold the limits of its two meter groups). A read drops the
// pending edits and changed signs of what it reads: the group's own
// parameters wherever they stand, and the other fields of its page that
// belong to no other group. A field of another group keeps its edit until
// its own group is read, so that a failed read of that group never leaves
// a typed value looking as if the device held it.
#pragma once

#include "devices/IUserControl.h"

#include <set>
#include <string>
#include <string_view>

namespace kt500::data {

class GroupFields {
public:
    GroupFields(devices::IUserControl& control, std::string_view strGroup);

    // Whether the read of the group answers for a field (or row) of
    // parameter strTag on the page with frame tag strPage.
    [[nodiscard]] bool reads(std::string_view strTag, std::string_view strPage) const;
    // The group's own parameters, which it answers for on every page.
    [[nodiscard]] const std::set<std::string, std::less<>>& params() const { return m_params; }

private:
    devices::IUserControl& m_control;
    std::string m_group;
    std::set<std::string, std::less<>> m_params;  // the group's included parameters
};

}  // namespace kt500::data
