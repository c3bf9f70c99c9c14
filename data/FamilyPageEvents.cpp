#include "data/FamilyPageEvents.h"

#include "devices/clsKT540.h"
#include "devices/clsPL500.h"

namespace kt500::data {

namespace {

// The device class as the model that has the member, or the member's failure.
template <typename Class>
Class& modelWith(devices::IUserControl& control, std::string_view strMember) {
    auto* model = dynamic_cast<Class*>(&control.deviceClass());
    if (model == nullptr) {
        throw devices::MemberMissing(strMember);
    }
    return *model;
}

}  // namespace

void FamilyPageEvents::addHandlers(form::EventHandlers& handlers) {
    const form::Form& form = m_control.form();
    if (form.findArray("comPATargetMode") != nullptr) {
        handlers.add("comPATargetMode", form::EventKind::Click,
                     [this](form::FormEvent& event) { comPATargetMode_Click(*event.control); });
    }
    if (form.findArray("comPLParams") != nullptr) {
        handlers.add("comPLParams", form::EventKind::Click,
                     [this](form::FormEvent& event) { comPLParams_Click(*event.control); });
    }
}

bool FamilyPageEvents::chosenByUser(const form::Control& list) const {
    return m_control.form().focused() == &list;
}

void FamilyPageEvents::comPATargetMode_Click(form::Control& list) {
    if (list.index() != 0 || !chosenByUser(list)) {
        return;
    }
    modelWith<devices::clsKT540>(m_control, "TargetModeChanged").TargetModeChanged();
}

void FamilyPageEvents::comPLParams_Click(form::Control& list) {
    if (list.index() != devices::clsPL500::LeakageSwitch.index || !chosenByUser(list)) {
        return;
    }
    modelWith<devices::clsPL500>(m_control, "LeakageSwitchChanged")
        .LeakageSwitchChanged(list.listIndex());
}

}  // namespace kt500::data
