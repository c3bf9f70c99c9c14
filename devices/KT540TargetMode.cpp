// The target mode of the PROFIBUS positioner on its operation mode page.
// Which field acts depends on the mode the block runs in:
//
//   element                                   automatic  manual  remote cascade
//   txtPAOperationMode 0 outputValueRangeLow   enabled            enabled
//   txtPAOperationMode 1 outputValueRangeHigh  enabled            enabled
//   txtPAOperationMode 2 rcasInLimit                               shown
//   comPATargetMode 1    outputValueUnit       enabled            enabled
//   comPATargetMode 2    outputValueQuality              enabled
//   imgPAOperationMode1 0..2                   0 shown   1 shown  2 shown
//
// In manual mode the operator sets the output himself, so the scaling of
// the setpoint does not apply and its quality is the operator's to state;
// the remote cascade limit only exists in remote cascade. The output value
// limit (txtPAOperationMode 3) acts in every mode. Element 0 of
// imgPAOperationMode2 is the sign that the device has reported its mode.
#include "devices/clsKT540.h"

#include <array>

namespace kt500::devices {

namespace {

enum class Effect { Enabled, Visible };

struct ModeRule {
    PageElement element;
    Effect effect;
    std::array<bool, 3> inMode;  // automatic, manual, remote cascade
};

constexpr ModeRule kModeRules[] = {
    {{"txtPAOperationMode", 0}, Effect::Enabled, {true, false, true}},
    {{"txtPAOperationMode", 1}, Effect::Enabled, {true, false, true}},
    {{"txtPAOperationMode", 2}, Effect::Visible, {false, false, true}},
    {{"lblPAOperationModeTitle", 2}, Effect::Visible, {false, false, true}},
    {{"lblPAOperationModeUnit", 2}, Effect::Visible, {false, false, true}},
    {{"comPATargetMode", 1}, Effect::Enabled, {true, false, true}},
    {{"comPATargetMode", 2}, Effect::Enabled, {false, true, false}},
    {{"imgPAOperationMode1", 0}, Effect::Visible, {true, false, false}},
    {{"imgPAOperationMode1", 1}, Effect::Visible, {false, true, false}},
    {{"imgPAOperationMode1", 2}, Effect::Visible, {false, false, true}},
};

}  // namespace

void clsKT540::ArrangeOperationModePage(int intMode) {
    if (intMode < 0 || intMode > 2) {
        return;
    }
    for (const ModeRule& rule : kModeRules) {
        if (form::Control* element = findElement(rule.element)) {
            const bool on = rule.inMode[static_cast<std::size_t>(intMode)];
            if (rule.effect == Effect::Enabled) {
                element->setEnabled(on);
            } else {
                element->setVisible(on);
            }
        }
    }
}

void clsKT540::TargetModeChanged() {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    const form::Control* list = findElement({"comPATargetMode", 0});
    if (list == nullptr) {
        return;
    }
    const int mode = list->listIndex();
    if (mode < 0 || mode > 2) {
        return;
    }
    bool arrange = true;
    if (mode != 0) {
        if (mode == tools.LastTargetMode) {
            return;
        }
        // The mode changes what the block does with the setpoint: the user is
        // told before the page changes. Only the answer 5 of the dialog
        // service keeps the page as it is; the list keeps the new entry.
        int& button = control.buttonPressed();
        int result = 0;
        control.dialogs().ShowMessage(1, 2, 4, control.Translate("targetMode"),
                                      control.Translate("targetModeChange"), button, result);
        arrange = button != 5;
    }
    if (arrange) {
        ArrangeOperationModePage(mode);
    }
    tools.LastTargetMode = static_cast<std::int16_t>(mode);
}

}  // namespace kt500::devices
