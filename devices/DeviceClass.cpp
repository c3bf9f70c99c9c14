#include "devices/DeviceClass.h"

#include "devices/DeviceDateFields.h"
#include "devices/Encodings.h"
#include "devices/clsKT520.h"
#include "devices/clsKT540.h"
#include "devices/clsPL500.h"

#include <stdexcept>

namespace kt500::devices {

namespace {

bool inList(std::string_view strList, std::string_view strItem) {
    std::size_t start = 0;
    while (start < strList.size()) {
        const std::size_t end = strList.find(Separator, start);
        const std::string_view entry = strList.substr(
            start, end == std::string_view::npos ? std::string_view::npos : end - start);
        if (entry == strItem) {
            return true;
        }
        if (end == std::string_view::npos) {
            break;
        }
        start = end + 1;
    }
    return false;
}

}  // namespace

IUserControl& DeviceClass::userControl() const {
    if (m_objUserControl == nullptr) {
        throw std::logic_error("Object variable not set: objUserControl");
    }
    return *m_objUserControl;
}

std::int16_t DeviceClass::SelectedTest() {
    form::Control* list = userControl().form().find("comTestType", 1);
    if (list == nullptr || list->listIndex() < 0) {
        throw std::out_of_range("Invalid property array index: comTestType(1) has no selection");
    }
    return static_cast<std::int16_t>(list->itemData(list->listIndex()) + 1);
}

std::string DeviceClass::ConvertUnitForDevice(std::string_view strUnit) const {
    // Gauge pressures in "barG", differences in "bar", temperatures in "degC".
    if (strUnit == "bar" || strUnit == "psi") {
        return "bar";
    }
    if (strUnit == "degC" ||
        strUnit ==
            "\xC2\xB0"
            "C" ||
        strUnit ==
            "\xC2\xB0"
            "F" ||
        strUnit == "degF" || strUnit == "K") {
        return "degC";
    }
    return "barG";
}

std::string DeviceClass::ConvertValueForDevice(const std::string& strCurrentValue,
                                               const std::string& strNewUnit,
                                               const std::string& strParameter) {
    IUserControl& control = userControl();
    const std::string pageUnit = control.FetchUnitName(strParameter);
    if (pageUnit != strNewUnit) {
        return control.ConvertUnit(strCurrentValue, pageUnit, strNewUnit);
    }
    return strCurrentValue;
}

const SpecialSet* DeviceClass::findSpecialSet(std::string_view /*strRequestGroup*/,
                                              std::string_view /*strItem*/) const {
    return nullptr;
}

std::string DeviceClass::SpecialUpploadCase(const std::string& strRequestGroup,
                                            const std::string& strIncludedParam) {
    IUserControl& control = userControl();
    const std::string pageKey = DevicePrefix() + strRequestGroup;
    const SpecialSet* set = findSpecialSet(strRequestGroup, strIncludedParam);

    if (set != nullptr && set->restoreDeclined &&
        control.CheckIfValueChanged(strIncludedParam, false)) {
        // The user declined this item's change in the confirmation list.
        if (strIncludedParam == "deviceDate") {
            for (const char* part : {"deviceDay", "deviceMonth", "deviceDate"}) {
                control.RestoreOldValues(pageKey, part);
            }
        } else {
            control.RestoreOldValues(pageKey, strIncludedParam);
        }
        control.RemoveSpecialCaseItem(strIncludedParam);
        return {};
    }
    if (inList(m_specialCaseItems, strIncludedParam)) {
        return "included";
    }
    if (!control.CheckIfValueChanged(strIncludedParam, true) || set == nullptr) {
        return {};
    }
    // The list keeps the names of the set, the request takes the triples.
    std::size_t field = 0;
    std::size_t start = 0;
    while (start < set->triples.size()) {
        const std::size_t end = set->triples.find(Separator, start);
        if (field % 3 == 0) {
            m_specialCaseItems.append(set->triples.substr(start, end - start));
            m_specialCaseItems.push_back(Separator);
        }
        ++field;
        start = end + 1;
    }
    return std::string(set->triples);
}

void DeviceClass::PrintErrorMessages() {
    IUserControl& control = userControl();
    std::string message;
    std::size_t start = 0;
    const std::string groups = m_strCancelledGroups;
    while (start < groups.size()) {
        const std::size_t end = groups.find(Separator, start);
        message.append(
            groups.substr(start, end == std::string::npos ? std::string::npos : end - start));
        message.append("\r\n");
        if (end == std::string::npos) {
            break;
        }
        start = end + 1;
    }
    m_strCancelledGroups.clear();
    if (!message.empty()) {
        control.ShowMsg(control.Translate("error"), message);
    }
}

void DeviceClass::SetDeviceDate(std::int16_t intDay, std::int16_t intMonth, std::int16_t intYear) {
    if (const DateFields* fields = deviceDateFields()) {
        PutDeviceDate(userControl().form(), *fields, intDay, intMonth, intYear);
    }
}

std::string DeviceClass::GetDeviceDate() {
    const DateFields* fields = deviceDateFields();
    return fields == nullptr ? std::string() : ReadDeviceDate(userControl().form(), *fields, true);
}

std::string DeviceClass::DeviceDate() {
    const DateFields* fields = deviceDateFields();
    if (fields == nullptr) {
        missing("DeviceDate");
    }
    return ReadDeviceDate(userControl().form(), *fields, false);
}

PageElement DeviceClass::propertyElement(std::string_view strProperty) const {
    // The rows that every class addresses in the same place.
    static constexpr std::pair<std::string_view, PageElement> shared[] = {
        {"SupplyPressureTrimUnit", {"lblHAManualPrestageTrim", 2}},
        {"SupplyPressureLimitHighUnit", {"lblPLParamTitle", 68}},
        {"SupplyPressureLimitLowUnit", {"lblPLParamTitle", 69}},
        {"BreakawayPressureLimitHighUnit", {"lblPLParamTitle", 66}},
        {"BreakawayPressureLimitLowUnit", {"lblPLParamTitle", 67}},
        {"ValveTestPressureStepUnit", {"lblPLParamTitle", 72}},
        {"ValveTestBreakawayPressureUnit", {"lblPLParamTitle", 109}},
        {"PressurePeakUnit", {"lblPLParamTitle", 88}},
        {"PressureSetpointLowLimitUnit", {"lblPLParamTitle", 87}},
        {"SupplyPressureTrimValue", {"txtHAPrestageTrim", 0}},
        {"BreakawayPressureLimitHighValue", {"txtPLParams", 13}},
        {"BreakawayPressureLimitLowValue", {"txtPLParams", 14}},
        {"SupplyPressureLimitHighValue", {"txtPLParams", 9}},
        {"SupplyPressureLimitLowValue", {"txtPLParams", 10}},
        {"ValveTestPressureStepValue", {"txtPLParams", 21}},
        {"ValveTestBreakawayPressureValue", {"lblPLParams", 25}},
        {"PressureSetpointLowLimitValue", {"txtPLParams", 46}},
        {"PressurePeakValue", {"txtPLParams", 43}},
    };
    if (const PageElement* element = findIn(shared, strProperty)) {
        return *element;
    }
    missing(strProperty);
}

const PageElement* DeviceClass::findIn(ElementTable table, std::string_view strName) {
    for (const auto& [name, element] : table) {
        if (name == strName) {
            return &element;
        }
    }
    return nullptr;
}

std::string DeviceClass::separatedList(std::initializer_list<std::string_view> names) {
    std::string list;
    for (const std::string_view name : names) {
        list.append(name);
        list.push_back(Separator);
    }
    return list;
}

float DeviceClass::stepEndPointOf(std::string_view strSettingsArray) const {
    const std::string first = elementText({strSettingsArray, 1});
    const std::string second = elementText({strSettingsArray, 2});
    if (first.empty() || second.empty()) {
        return 0.0F;
    }
    return static_cast<float>(Str2Dbl(first) + Str2Dbl(second));
}

form::Control* DeviceClass::findElement(PageElement element) const {
    return userControl().form().find(element.array, element.index);
}

std::string DeviceClass::elementText(PageElement element) const {
    const form::Control* control = findElement(element);
    if (control == nullptr) {
        return {};
    }
    return control->kind() == form::ControlKind::Label ? control->caption() : control->text();
}

void DeviceClass::setElementText(PageElement element, const std::string& strText) const {
    form::Control* control = findElement(element);
    if (control == nullptr) {
        return;
    }
    if (control->kind() == form::ControlKind::Label) {
        control->setCaption(strText);
    } else {
        control->setText(strText);
    }
}

std::string DeviceClass::pageProperty(std::string_view strProperty) {
    return elementText(propertyElement(strProperty));
}

void DeviceClass::setPageProperty(std::string_view strProperty, const std::string& strValue) {
    setElementText(propertyElement(strProperty), strValue);
}

std::unique_ptr<DeviceClass> CreateDeviceClass(std::string_view strDeviceType) {
    if (strDeviceType == "KT540_1.0") {
        return std::make_unique<clsKT540>();
    }
    if (strDeviceType == "PL500_1" || strDeviceType == "PL500_2") {
        return std::make_unique<clsPL500>();
    }
    return std::make_unique<clsKT520>();
}

}  // namespace kt500::devices
