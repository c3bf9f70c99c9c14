// FamilyPageEvents: the choices on the pages that do more than change one
// value: the PROFIBUS positioner's target mode, which rearranges its page,
// and the safety valve controller's leakage measurement switch. Each acts on
// the user's choice only (the list holds the focus); a value the program
// writes into the list raises the same Click and is left alone.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

namespace kt500::data {

class FamilyPageEvents {
public:
    explicit FamilyPageEvents(devices::IUserControl& control) : m_control(control) {}

    void addHandlers(form::EventHandlers& handlers);

    void comPATargetMode_Click(form::Control& list);
    void comPLParams_Click(form::Control& list);

private:
    [[nodiscard]] bool chosenByUser(const form::Control& list) const;
    // The user chose another unit or switched a test interval on or off:
    // the interval (its count field) is changed as if typed.
    void scheduleChanged(int intCountField);

    devices::IUserControl& m_control;
};

}  // namespace kt500::data
