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
    if (!chosenByUser(list)) {
        return;
    }
    if (const auto* interval = devices::clsPL500::IntervalOfSelector(list.index())) {
        scheduleChanged(interval->count);
        return;
    }
    if (list.index() != devices::clsPL500::LeakageSwitch.index) {
        return;
    }
    modelWith<devices::clsPL500>(m_control, "LeakageSwitchChanged")
        .LeakageSwitchChanged(list.listIndex());
}

void FamilyPageEvents::scheduleChanged(int intCountField) {
    form::Form& form = m_control.form();
    form::Control* count = form.find("txtPLParams", intCountField);
    if (count == nullptr || count->tag().empty()) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    if (!tools.value_saved) {
        m_control.SaveOldValues();
        tools.value_saved = true;
    }
    const std::string& frame = tools.CurrentFrame;
    const std::string tag = count->tag();
    // The row shows the count; the write sends it combined with the unit and
    // the switch as the page shows them then.
    m_control.AddConfirmationRow(tag, frame, tag, m_control.GetOldValue(tag, frame),
                                 count->text());
    count->setForeColor(devices::ColorChanged);
    if (frame.size() > 2) {
        m_control.ChangeTreeIcon(frame.substr(2), "changed");
    }
    for (form::Control* mark : form.elements(m_control.deviceClass().ImagePrefix() + "Changed")) {
        if (mark->tag() == tag) {
            mark->setVisible(true);
        }
    }
}

}  // namespace kt500::data
