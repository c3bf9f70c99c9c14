// PLACEHOLDER while the subsystem is being written; replaced before commit.
#include "devices/Units.h"
#include "devices/MemberMissing.h"

namespace kt500::devices {
std::string Units::ConvertUnit(const std::string&, const std::string&, const std::string&) {
    throw MemberMissing("ConvertUnit");
}
std::string Units::FetchUnitName(const std::string&) {
    throw MemberMissing("FetchUnitName");
}
void Units::RefreshAllUnits(bool) {
    throw MemberMissing("RefreshAllUnits");
}
void Units::ChangeParameterUnit(const std::string&, const std::string&, int, const std::string&) {
    throw MemberMissing("ChangeParameterUnit");
}
void Units::comSelectParameter_Click() {
    throw MemberMissing("comSelectParameter_Click");
}
void Units::comSelectUnit_Click() {
    throw MemberMissing("comSelectUnit_Click");
}
void Units::optUnitSystem_Click() {
    throw MemberMissing("optUnitSystem_Click");
}
void Units::cmdApplyUnitChange_Click() {
    throw MemberMissing("cmdApplyUnitChange_Click");
}

}  // namespace kt500::devices
