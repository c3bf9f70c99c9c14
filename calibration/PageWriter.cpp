#include "calibration/PageWriter.h"

namespace kt500::calibration {

form::Control* PageWriter::find(ControlRef control) const {
    const form::Form& form = m_control.form();
    form::Control* found = form.find(control.name, control.index);
    // A family's page may hold a named control as element 0 of an array.
    if (found == nullptr && control.index < 0) {
        found = form.find(control.name, 0);
    }
    return found;
}

void PageWriter::say(ControlRef control, std::string_view strKey) {
    if (form::Control* found = find(control)) {
        std::string key(strKey);
        found->setCaption(m_control.Translate(key));
        found->setCaptionKey(std::move(key));
    }
}

bool PageWriter::shows(ControlRef control, std::string_view strKey) {
    const form::Control* found = find(control);
    return found != nullptr && found->caption() == m_control.Translate(std::string(strKey));
}

void PageWriter::show(ControlRef control, bool blVisible) {
    if (form::Control* found = find(control)) {
        found->setVisible(blVisible);
    }
}

form::Control* PageWriter::control(ControlRef control) const {
    return find(control);
}

std::string PageWriter::text(ControlRef control) const {
    const form::Control* found = find(control);
    return found == nullptr ? std::string() : found->text();
}

void PageWriter::setText(ControlRef control, const std::string& strText) {
    if (form::Control* found = find(control)) {
        // A write of the program: the field's change handler leaves it alone.
        session::clsTools& tools = m_control.tools();
        const bool saved = tools.ConfirmFlag;
        tools.ConfirmFlag = false;
        found->setText(strText);
        tools.ConfirmFlag = saved;
    }
}

}  // namespace kt500::calibration
