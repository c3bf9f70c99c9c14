#include "devices/DeviceClass.h"

#include "devices/DeviceDateFields.h"
#include "devices/Encodings.h"
#include "devices/clsKT520.h"
#include "devices/clsKT540.h"
#include "devices/clsPL500.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::devices {

namespace {}  // namespace

IUserControl& DeviceClass::userControl() const {
    if (m_objUserControl == nullptr) {
        throw std::logic_error("Object variable not set: objUserControl");
    }
    return *m_objUserControl;
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
    if (InSeparated(m_specialCaseItems, strIncludedParam)) {
        return "included";
    }
    if (!control.CheckIfValueChanged(strIncludedParam, true) || set == nullptr) {
        return {};
    }
    // The list keeps the names of the set, the request takes the triples.
    const std::vector<std::string> fields = SplitSeparated(set->triples);
    // A second trigger of a set already in the request (the day and the
    // HART tag of one page) adds nothing: each item goes out once.
    if (fields.size() > 1 && InSeparated(m_specialCaseItems, fields[0])) {
        return "included";
    }
    for (std::size_t field = 0; field + 1 < fields.size(); field += 3) {
        AppendSeparated(m_specialCaseItems, fields[field]);
    }
    return std::string(set->triples);
}

void DeviceClass::PrintErrorMessages() {
    IUserControl& control = userControl();
    std::vector<std::string> groups = SplitSeparated(m_strCancelledGroups);
    if (groups.back().empty()) {
        groups.pop_back();  // behind the last entry's separator
    }
    std::string message;
    for (const std::string& group : groups) {
        message.append(group);
        message.append("\r\n");
    }
    m_strCancelledGroups.clear();
    if (!message.empty()) {
        control.ShowMsg(control.Translate("error"), message);
    }
}

void DeviceClass::closeLiveValueRead(const std::string& strName, bool isFinal,
                                     const std::string& strAccess, bool blFailed) {
    IUserControl& control = userControl();
    if (isFinal && control.tools().IsRequestOpen(strName)) {
        control.SetReadVariables(strName, isFinal, strAccess, blFailed);
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

void DeviceClass::showPage(PageTable table, std::string_view strNodeName) const {
    for (const NodePage& page : table) {
        if (page.node != strNodeName) {
            continue;
        }
        form::Control& frame = userControl().form().control(page.array, page.index);
        frame.setVisible(true);
        session::clsTools& tools = userControl().tools();
        if (page.rule == FrameRule::PageTag) {
            tools.CurrentFrame = frame.tag();
        } else if (page.rule == FrameRule::Fixed) {
            tools.CurrentFrame = std::string(strNodeName);
        }
        return;
    }
}

void DeviceClass::hidePages(PageArrays arrays) const {
    form::Form& form = userControl().form();
    for (const auto& [array, last] : arrays) {
        for (int index = 0; index <= last; ++index) {
            if (form::Control* frame = form.find(array, index)) {
                frame->setVisible(false);
            }
        }
    }
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
        AppendSeparated(list, name);
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

void DeviceClass::setTrendTime(std::string_view strProperty, std::string strText) {
    if (!hasTrendTime(strProperty)) {
        missing(strProperty);
    }
    // The label on the trend's page that shows the span: element n of
    // lblHATrendTime, lblPATrendTime or lblPLTrendTime.
    static constexpr std::string_view labels[] = {"LoadFactorTime", "TravelDeviationTime",
                                                  "TravelVsTimeTime", "BreakawayPressureTime",
                                                  "LeakageSignalTime"};
    const auto label = std::find(std::begin(labels), std::end(labels), strProperty);
    if (label != std::end(labels) && m_objUserControl != nullptr) {
        const std::string array = "lbl" + DevicePrefix() + "TrendTime";
        setElementText(PageElement{array, static_cast<int>(label - std::begin(labels))}, strText);
    }
    for (auto& [name, text] : m_trendTimes) {
        if (name == strProperty) {
            text = std::move(strText);
            return;
        }
    }
    m_trendTimes.emplace_back(strProperty, std::move(strText));
}

std::string DeviceClass::trendTime(std::string_view strProperty) const {
    for (const auto& [name, text] : m_trendTimes) {
        if (name == strProperty) {
            return text;
        }
    }
    return {};
}

float DeviceClass::limitOf(const std::string& strValue) {
    if (strValue.find_first_not_of(' ') == std::string::npos) {
        return 0.0F;
    }
    return static_cast<float>(Str2Dbl(fDecimalSep(strValue, ".")));
}

float DeviceClass::itemLimit(const std::string& strItem) {
    return limitOf(userControl().FetchValueByTag(strItem, false));
}

float DeviceClass::fieldLimit(PageElement element) const {
    return limitOf(elementText(element));
}

void DeviceClass::sendOfflineGroups(std::span<const FrameGroup> groups) {
    session::clsTools& tools = userControl().tools();
    const std::string oldFrame = tools.CurrentFrame;
    for (const auto& [frame, group] : groups) {
        // The request takes the page of the group from CurrentFrame.
        tools.CurrentFrame = frame;
        userControl().SendRequest(std::string(group), "writeOffline");
    }
    tools.CurrentFrame = oldFrame;
}

void DeviceClass::clearFlowPoints(std::string_view strPointArray) const {
    for (int point = 0; point < ModificationPoints(); ++point) {
        setElementText({strPointArray, point}, "");
    }
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
