// PLACEHOLDER while the subsystem is being written; replaced before commit.
#include "data/ChangeTracking.h"
#include "devices/MemberMissing.h"

namespace kt500::data {
bool ChangeTracking::CheckIfValueChanged(const std::string&, bool) { throw devices::MemberMissing("CheckIfValueChanged"); }
void ChangeTracking::RestoreOldValues(const std::string&, const std::string&) { throw devices::MemberMissing("RestoreOldValues"); }
void ChangeTracking::RemoveSpecialCaseItem(const std::string&) { throw devices::MemberMissing("RemoveSpecialCaseItem"); }
void ChangeTracking::ChangeTreeIcon(const std::string&, const std::string&) { throw devices::MemberMissing("ChangeTreeIcon"); }

}  // namespace kt500::data
