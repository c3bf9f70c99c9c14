// PLACEHOLDER while the subsystem is being written; replaced before commit.
#include "data/ParameterValues.h"
#include "devices/MemberMissing.h"

namespace kt500::data {
std::string ParameterValues::FetchValueByTag(const std::string&, bool) { throw devices::MemberMissing("FetchValueByTag"); }
void ParameterValues::FillMappedParams() { throw devices::MemberMissing("FillMappedParams"); }
void ParameterValues::FillDateFields() { throw devices::MemberMissing("FillDateFields"); }
void ParameterValues::ApplyInitialValues() { throw devices::MemberMissing("ApplyInitialValues"); }
void ParameterValues::SetItemValueToGUI(xml::Node, const std::string&, const std::string&, const std::string&, std::int16_t) { throw devices::MemberMissing("SetItemValueToGUI"); }
void ParameterValues::UpdateGroupTimeStamp(const std::string&) { throw devices::MemberMissing("UpdateGroupTimeStamp"); }

}  // namespace kt500::data
