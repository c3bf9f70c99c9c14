// The one service object that the frame hands to IDtmActiveXControl_Init.
// The control asks it for the closed services it needs; a service the BL
// does not offer comes back empty.
#pragma once

#include "services/IDtmAddressing.h"
#include "services/IDtmControl.h"
#include "services/IDtmDialogs.h"
#include "services/IDtmUnits.h"

#include <memory>

namespace kt500::services {

class IDtmServiceProvider {
public:
    virtual ~IDtmServiceProvider() = default;

    virtual std::shared_ptr<IDtmControl> control() = 0;
    virtual std::shared_ptr<IDtmDialogs> dialogs() = 0;
    virtual std::shared_ptr<IDtmUnits> units() = 0;
    virtual std::shared_ptr<IDtmAddressing> addressing() = 0;
};

}  // namespace kt500::services
