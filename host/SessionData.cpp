// PLACEHOLDER while the subsystem is being written; replaced before commit.
#include "host/SessionData.h"
#include "devices/MemberMissing.h"

namespace kt500::host {
void SessionData::LoadSessionData(const std::string&, bool) {
    throw devices::MemberMissing("LoadSessionData");
}

}  // namespace kt500::host
