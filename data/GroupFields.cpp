#include "data/GroupFields.h"

namespace kt500::data {

GroupFields::GroupFields(devices::IUserControl& control, std::string_view strGroup)
    : m_control(control), m_group(strGroup) {
    if (const xml::Node group = control.RequestGroupByName(strGroup)) {
        for (const xml::Node& included : group.childElements("includedParam")) {
            m_params.insert(included.attribute("name"));
        }
    }
}

bool GroupFields::reads(std::string_view strTag, std::string_view strPage) const {
    if (m_params.contains(strTag)) {
        return true;
    }
    const bool onPage = strPage.size() > 2 && strPage.substr(2) == m_group;
    if (!onPage) {
        return false;
    }
    // A parameter of the document that the group does not read belongs to
    // another group; a group the document does not list answers for its
    // whole page.
    if (m_params.empty() || strTag.empty() || strTag.find('\'') != std::string_view::npos) {
        return true;
    }
    return !m_control.ParameterNodeByName(strTag);
}

}  // namespace kt500::data
