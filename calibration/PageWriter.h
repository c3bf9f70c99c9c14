// PageWriter: what the calibration procedures write on their pages: a
// prompt or caption by its translation key (the key stays with the control,
// so that a change of language shows the same state in the new language),
// and the visibility of buttons, fields and labels. A control that the form
// does not hold (a page of a family whose form lacks it) takes no write, so
// that one procedure can write the pages of every family that has it.
#pragma once

#include "devices/IUserControl.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace kt500::calibration {

// A control of the form: a plain control (index -1) or an array element.
struct ControlRef {
    std::string_view name;
    int index = -1;
};

class PageWriter {
public:
    explicit PageWriter(devices::IUserControl& control) : m_control(control) {}

    // The control shows the translation of strKey and keeps the key.
    void say(ControlRef control, std::string_view strKey);
    // The same on element `element` of a button array.
    void caption(std::string_view strButtons, int element, std::string_view strKey) {
        say({strButtons, element}, strKey);
    }
    // True when the control shows the translation of strKey.
    [[nodiscard]] bool shows(ControlRef control, std::string_view strKey);
    void show(ControlRef control, bool blVisible);
    void show(std::initializer_list<ControlRef> controls, bool blVisible) {
        for (const ControlRef& control : controls) {
            show(control, blVisible);
        }
    }
    void showButton(std::string_view strButtons, int element, bool blVisible) {
        show({strButtons, element}, blVisible);
    }
    // The text of a field ("" when the form lacks it) and its change.
    [[nodiscard]] std::string text(ControlRef control) const;
    void setText(ControlRef control, const std::string& strText);

    // The control, or nullptr when the form lacks it.
    [[nodiscard]] form::Control* control(ControlRef control) const;

private:
    [[nodiscard]] form::Control* find(ControlRef control) const;

    devices::IUserControl& m_control;
};

}  // namespace kt500::calibration
