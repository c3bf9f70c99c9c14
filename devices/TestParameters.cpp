// The device class members of the performance tests: the check of the test
// settings before a start, the step test's key figures on their page, the
// safety valve controller's curves and the test list of each page.
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "devices/clsKT540.h"
#include "devices/clsPL500.h"

#include <algorithm>
#include <cstdio>

namespace kt500::devices {

namespace {

constexpr std::uint32_t kRed = 255;

std::int16_t SelectedTestOf(form::Form& form, int intListElement) {
    const form::Control* list = form.find("comTestType", intListElement);
    // No entry chosen: no test (the start then does nothing).
    if (list == nullptr || list->listIndex() < 0) {
        return 0;
    }
    return static_cast<std::int16_t>(list->itemData(list->listIndex()) + 1);
}

std::string Trimmed(const std::string& strText) {
    const auto first = strText.find_first_not_of(' ');
    if (first == std::string::npos) {
        return {};
    }
    return strText.substr(first, strText.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::int16_t DeviceClass::SelectedTest() {
    return SelectedTestOf(userControl().form(), 1);
}

std::int16_t clsKT540::SelectedTest() {
    return SelectedTestOf(userControl().form(), 0);
}

bool DeviceClass::checkTestParametersOf(int intListElement, std::string_view strSettingsArray) {
    IUserControl& control = userControl();
    form::Form& form = control.form();
    for (int element = 0; element < 3; ++element) {
        const form::Control* list = form.find("comTestType", intListElement);
        if (list == nullptr || list->listIndex() < 0) {
            return false;
        }
        const form::Control* field = form.find(strSettingsArray, element);
        if (field == nullptr || Trimmed(field->text()).empty() || field->foreColor() == kRed) {
            control.ShowMsg(control.Translate("testSettings"), control.Translate("invalidValue"));
            return false;
        }
    }
    return true;
}

void DeviceClass::showStepTestFigures(std::string_view strLabels, float sngDeadTime,
                                      float sngSettling63, float sngSettling98) {
    const float figures[] = {sngDeadTime, sngSettling63, sngSettling98};
    for (int figure = 0; figure < 3; ++figure) {
        const float value = figures[figure];
        if (value == 0.0F) {
            continue;
        }
        char text[48];
        std::snprintf(text, sizeof text, "%.1f", static_cast<double>(value));
        std::string shown = fDecimalSep(text);
        setElementText({strLabels, 3 + figure}, shown.empty() ? std::string(text) : shown);
    }
}

void clsPL500::FormatValveTestValues(TestCurve& arrCurve) {
    CloseCurveGaps(arrCurve);
    userControl().UpdateValveTestGraph(arrCurve);
}

void clsPL500::FormatPneumaticsTestValues(TestCurve& arrCurve) {
    CloseCurveGaps(arrCurve);
    userControl().UpdatePneumaticsTestGraph(arrCurve);
}

}  // namespace kt500::devices
