// TestSettings: the settings fields of the step and hysteresis tests on the
// KT520 page (comTestType 1, txtHATestSettings) and the KT540 page
// (comTestType 0, txtPATestSettings). Choosing a test writes its defaults;
// leaving a field checks it and its neighbours against the limits of the
// chosen test: a wrong field turns red (fore colour 255), and the message
// is shown only for the field that was left. Typing turns a field black.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <string_view>

namespace kt500::performance {

// The two test pages by their list element.
struct TestSettingsPage {
    int listElement;                 // comTestType element
    std::string_view fields;         // the settings fields, elements 0 to 2
    int stepIndex;                   // the list index of the step test
    int hysteresisIndex;             // ... and of the hysteresis test
    bool negativeStep;               // element 2 may be negative (its size counts)
};

inline constexpr TestSettingsPage KT540TestPage{0, "txtPATestSettings", 1, 2, false};
inline constexpr TestSettingsPage KT520TestPage{1, "txtHATestSettings", 0, 1, true};

class TestSettings {
public:
    explicit TestSettings(devices::IUserControl& control) : m_control(control) {}

    void addHandlers(form::EventHandlers& handlers);

    // The click of comTestType: every field black, then the test's defaults.
    void comTestType_Click(int Index);
    // A settings field lost the focus.
    void TestSettings_LostFocus(const TestSettingsPage& page, int Index);

private:
    enum class Check { Good, Bad, Skipped };
    // Checks one element of the chosen test; the message only when blSay.
    Check CheckField(const TestSettingsPage& page, bool blHysteresis, int intElement, bool blSay);
    void Colour(const TestSettingsPage& page, int intElement, bool blGood);
    void Say(const std::string& strText);

    devices::IUserControl& m_control;
};

}  // namespace kt500::performance
