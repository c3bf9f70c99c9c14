#include "devices/clsPL500.h"

#include "devices/Encodings.h"
#include "devices/SpecialSets.h"
#include "devices/TestIntervals.h"

#include <initializer_list>

namespace kt500::devices {

namespace {

const DateFields kDateFields{clsPL500::DaySelector, clsPL500::MonthSelector, clsPL500::YearField};

// The number of a wire or page text, whichever decimal sign it carries.
float numberOf(const std::string& strValue) {
    return static_cast<float>(Str2Dbl(fDecimalSep(strValue, ".")));
}

}  // namespace

std::int16_t clsPL500::DefaultNodeIndex() {
    const session::clsTools& tools = userControl().tools();
    if (!tools.OnlineConf) {
        return 2;
    }
    return tools.DeviceRevision == "1" ? 8 : 9;
}

std::int16_t clsPL500::UseDataPoints() {
    // A check box not on the page yet draws no marks.
    const form::Control* box = findElement({"chkPLParams", 17});
    return box != nullptr ? static_cast<std::int16_t>(box->value()) : 0;
}

std::string clsPL500::SavedFrames() const {
    return separatedList({"operationUnit", "general", "leakageMeasurement", "assemblyRelated",
                          "loadFactorTrend", "positionerInformation", "deviceAlertSettings",
                          "statisticAlertSettings", "hartConfiguration"});
}

bool clsPL500::IsNormalParam(std::string_view strParam) const {
    // The intervals and timers go out as parts of their two-part values.
    return strParam != "pneumaticsIntervalD" && strParam != "valveTestIntervalD" &&
           strParam != "pneumaticsTimerD" && strParam != "valveTestTimerD";
}

void clsPL500::showLeakageMeasurement(bool blOn) {
    if (form::Control* selector = findElement(LeakageSwitch)) {
        selector->setListIndex(blOn ? 1 : 0);
    }
    for (const int index : LeakageFields) {
        if (form::Control* field = findElement({"txtPLParams", index})) {
            field->setEnabled(blOn);
        }
    }
}

std::string clsPL500::FormatValues(const std::string& strId, const std::string& strNewValue,
                                   const std::string& strAccess) {
    const bool revisionOne = userControl().tools().DeviceRevision == "1";
    if (strAccess == "read") {
        if (strId == "deviceId") {
            setElementText(DeviceIdLabel, DecodeDeviceID(ToInt32(strNewValue)));
            return strNewValue;
        }
        if (strId == "deviceSerialNumber") {
            return DecodeSerNro(ToInt32(strNewValue));
        }
        if (strId == "valveTestStrokeSize") {
            return revisionOne ? SingleText(numberOf(strNewValue) * 100.0F) : strNewValue;
        }
        if (strId == "leakageSignal") {
            // The same factor as the leakage signal trend.
            return revisionOne ? SingleText(numberOf(strNewValue) * 30.32F) : strNewValue;
        }
        if (strId == "leakageMeasurementTime") {
            showLeakageMeasurement(strNewValue != "0");
            return SingleText(numberOf(strNewValue) / 1000.0F);
        }
        if (strId == "leakageStabilizingTime") {
            return SingleText(numberOf(strNewValue) / 1000.0F);
        }
        for (const ScheduleInterval& interval : ScheduleIntervals) {
            // The count field shows the interval in its unit; the selectors
            // have taken the unit and the switch already.
            if (strId == interval.hours) {
                return SplitTestInterval(strNewValue).count;
            }
        }
        return strNewValue;
    }
    for (const ScheduleInterval& interval : ScheduleIntervals) {
        if (strId == interval.hours) {
            return scheduleHours(interval, strNewValue);
        }
    }
    if (!IsNormalParam(strId)) {
        return scheduleDays(strId);
    }
    if (strId == "deviceSerialNumber") {
        return std::to_string(EnCodeSerNro(strNewValue));
    }
    if (strId == "valveTestStrokeSize") {
        return revisionOne ? SingleText(numberOf(strNewValue) / 100.0F) : strNewValue;
    }
    if (strId == "leakageMeasurementTime" || strId == "leakageStabilizingTime") {
        return SingleText(numberOf(strNewValue) * 1000.0F);
    }
    return strNewValue;
}

const clsPL500::ScheduleInterval* clsPL500::IntervalOfSelector(int intSelector) {
    for (const ScheduleInterval& interval : ScheduleIntervals) {
        if (interval.unit == intSelector || interval.onOff == intSelector) {
            return &interval;
        }
    }
    return nullptr;
}

std::string clsPL500::scheduleHours(const ScheduleInterval& interval,
                                    std::string_view strCount) const {
    const form::Control* count = findElement({"txtPLParams", interval.count});
    const form::Control* unit = findElement({"comPLParams", interval.unit});
    const form::Control* onOff = findElement({"comPLParams", interval.onOff});
    if (count == nullptr || unit == nullptr || onOff == nullptr) {
        return {};
    }
    // A value check asks for the hours of any count ("1" for the scale);
    // a write's own count is the page's.
    const std::string text = strCount.empty() ? count->text() : std::string(strCount);
    // A count the field's check refused is no interval to write.
    if (text.find_first_not_of(' ') == std::string::npos || !IsNum(text)) {
        return {};
    }
    return SingleText(static_cast<float>(
        CombineTestInterval(text, unit->listIndex(), onOff->listIndex())));
}

namespace {
// The timers' days and the timer each is computed from.
constexpr std::pair<std::string_view, std::string_view> ScheduleTimers[] = {
    {"valveTestTimerD", "valveTestTimer"}, {"pneumaticsTimerD", "pneumaticsTestTimer"}};
}  // namespace

std::string_view clsPL500::DerivedFrom(std::string_view strParam) const {
    for (const ScheduleInterval& interval : ScheduleIntervals) {
        if (strParam == interval.days) {
            return interval.hours;
        }
    }
    for (const auto& [days, timer] : ScheduleTimers) {
        if (strParam == days) {
            return timer;
        }
    }
    return {};
}

std::string clsPL500::scheduleDays(std::string_view strDays) const {
    std::string hours;
    for (const ScheduleInterval& interval : ScheduleIntervals) {
        if (strDays == interval.days) {
            hours = scheduleHours(interval);
        }
    }
    for (const auto& [days, timer] : ScheduleTimers) {
        if (strDays == days) {
            hours = settingText(timer);
        }
    }
    if (hours.find_first_not_of(' ') == std::string::npos) {
        return {};
    }
    return std::to_string(WholeDays(numberOf(hours)));
}

void clsPL500::SendOfflineConf() {
    static constexpr FrameGroup groups[] = {
        {"PLoperationUnit", "operationUnit"},
        {"PLgeneral", "general"},
        {"PLassemblyRelated", "assemblyRelated"},
        {"PLleakageMeasurement", "leakageMeasurement"},
        {"PLdeviceAlertSettings", "deviceAlertSettings"},
        {"PLstatisticAlertSettings", "statisticAlertSettings"},
    };
    sendOfflineGroups(groups);
}

form::Control* clsPL500::settingField(std::string_view strItem) const {
    for (form::Control* field : userControl().form().elements("txtPLParams")) {
        if (field->tag() == strItem) {
            return field;
        }
    }
    return nullptr;
}

std::string clsPL500::settingText(std::string_view strItem) const {
    const form::Control* field = settingField(strItem);
    return field != nullptr ? field->text() : std::string();
}

void clsPL500::setSettingText(std::string_view strItem, const std::string& strValue) {
    if (form::Control* field = settingField(strItem)) {
        field->setText(strValue);
    }
}

const DateFields* clsPL500::deviceDateFields() const {
    return &kDateFields;
}

PageElement clsPL500::propertyElement(std::string_view strProperty) const {
    static constexpr std::pair<std::string_view, PageElement> own[] = {
        {"SupplyPressureUnit", {"lblPLParamTitle", 70}},
        {"ActuatorPressureUnit", {"lblPLParamTitle", 24}},
        {"PressureSpanUnit", {"lblHAPressureCalSpan", 0}},
        {"MeasuredTemperatureUnit", {"lblHAAmbientTemperature", 0}},
        {"PcbTemperatureUnit", {"lblPLParamTitle", 25}},
        {"SupplyPressureValue", {"txtPLParams", 6}},
        {"ActuatorPressureValue", {"lblPLParams", 9}},
        {"PressureSpanValue", {"txtHAPressureSensorCal", 0}},
        {"MeasuredTemperatureValue", {"txtHATemperatureSensorCal", 0}},
        {"PcbTemperatureValue", {"lblPLParams", 10}},
    };
    if (const PageElement* element = findIn(own, strProperty)) {
        return *element;
    }
    return DeviceClass::propertyElement(strProperty);
}

const SpecialSet* clsPL500::findSpecialSet(std::string_view strRequestGroup,
                                           std::string_view strItem) const {
    return HartSpecialSet(strRequestGroup, strItem);
}

namespace {

constexpr NodePage kNodePages[] = {
    {"operationUnit", "fraPL500", 0, FrameRule::PageTag},
    {"positionerInformation", "fraPL500", 1, FrameRule::PageTag},
    {"general", "fraPL500", 2, FrameRule::PageTag},
    {"assemblyRelated", "fraPL500", 3, FrameRule::PageTag},
    {"leakageMeasurement", "fraPL500", 4, FrameRule::PageTag},
    {"hartConfiguration", "fraPL500", 19, FrameRule::PageTag},
    {"monitoringVariables", "fraPL500", 5, FrameRule::PageTag},
    {"loadFactorTrend", "fraPL500", 6, FrameRule::PageTag},
    {"breakawayPressureTrend", "fraPL500", 7, FrameRule::PageTag},
    {"leakageSignalTrend", "fraPL500", 8, FrameRule::PageTag},
    {"eventLog", "fraPL500", 9, FrameRule::PageTag},
    {"automaticTravelCalibration", "fraPL500", 15, FrameRule::PageTag},
    {"deviceAlertSettings", "fraPL500", 10, FrameRule::PageTag},
    {"statisticAlertSettings", "fraPL500", 11, FrameRule::PageTag},
    {"resetStatistics", "fraPL500", 12, FrameRule::PageTag},
    {"valveTest", "fraPL500", 13, FrameRule::PageTag},
    {"pneumaticsTest", "fraPL500", 14, FrameRule::PageTag},
    {"counters", "fraPL500", 16, FrameRule::PageTag},
    {"resetAlarms", "fraPL500", 18, FrameRule::PageTag},
    {"settings", "fraCommon", 0, FrameRule::Unchanged},
    {"status", "fraCommon", 4, FrameRule::Fixed},
    {"confirmation1", "fraConfirmation", 0, FrameRule::Unchanged},
    {"confirmation2", "fraConfirmation", 1, FrameRule::Unchanged},
    {"compareConfigurations", "fraConfirmation", 2, FrameRule::Unchanged},
};

constexpr PageArray kPageArrays[] = {{"fraPL500", 19}, {"fraCommon", 5}, {"fraConfirmation", 2}};

}  // namespace

void clsPL500::ShowFrame(const std::string& strNodeName) {
    showPage(kNodePages, strNodeName);
}

void clsPL500::HideFrames() {
    hidePages(kPageArrays);
}

void clsPL500::SetDeviceRevisionChanges() {
    IUserControl& control = userControl();
    form::Form& form = control.form();
    // Every element of a run that is on the form.
    const auto each = [&form](std::string_view array, int first, int last, auto action) {
        for (int index = first; index <= last; ++index) {
            if (form::Control* field = form.find(array, index)) {
                action(*field);
            }
        }
    };
    // The switches and unit selectors of the pages, which no parameter maps.
    const auto fill = [&form](int index, std::initializer_list<std::string> entries) {
        if (form::Control* list = form.find("comPLParams", index)) {
            list->clear();
            for (const std::string& entry : entries) {
                list->addItem(entry);
                list->setItemData(list->newIndex(), list->newIndex());
            }
        }
    };
    const std::string off = control.Translate("off");
    const std::string on = control.Translate("on");
    for (const int index : {LeakageSwitch.index, 12, 13}) {
        fill(index, {off, on});
    }
    for (const int index : {11, 14}) {
        fill(index, {"h", "d"});
    }
    const auto enable = [](form::Control& field) { field.setEnabled(true); };
    const auto hide = [](form::Control& field) { field.setVisible(false); };
    if (control.tools().DeviceRevision != "1") {
        // Revision 2 devices take the valve test timer.
        each("txtPLParams", 41, 41, enable);
        each("lblPLParamTitle", 80, 81, enable);
        return;
    }
    // Revision 1 devices run the pneumatics test with fixed settings and
    // report no key figures nor the time to the next test.
    each("txtPLParams", 42, 45, hide);
    each("lblPLParamTitle", 82, 86, hide);
    each("lblPLParamTitle", 88, 88, hide);
    each("lblPLParamUnit", 42, 45, hide);
    each("imgPLChanged", 42, 45, hide);
    each("lblPLParamTitle", 99, 109, hide);
    each("lblPLParams", 25, 32, hide);
    each("lblPLParamUnit", 125, 126, hide);
}

}  // namespace kt500::devices
