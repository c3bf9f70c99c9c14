// PLACEHOLDER while the subsystem is being written; replaced before commit.
#include "data/Requests.h"
#include "devices/MemberMissing.h"

namespace kt500::data {
void Requests::SendRequest(const std::string&, const std::string&) { throw devices::MemberMissing("SendRequest"); }
void Requests::RequestTemplate(const std::string&, const std::string&) { throw devices::MemberMissing("RequestTemplate"); }
void Requests::EnableDeviceActions(bool) { throw devices::MemberMissing("EnableDeviceActions"); }

}  // namespace kt500::data
