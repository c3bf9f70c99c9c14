#include "devices/clsKT520.h"

#include "devices/Encodings.h"
#include "devices/SpecialSets.h"

namespace kt500::devices {

std::int16_t clsKT520::DefaultNodeIndex() {
    return userControl().tools().OnlineConf ? 8 : 2;
}

std::int16_t clsKT520::UseDataPoints() {
    // A check box not on the page yet draws no marks.
    const form::Control* box = findElement({"chkHAMonitoring", 2});
    return box != nullptr ? static_cast<std::int16_t>(box->value()) : 0;
}

float clsKT520::CurrentStepEndPoint() {
    return stepEndPointOf("txtHATestSettings");
}

std::string clsKT520::SavedFrames() const {
    return separatedList({"operationUnit", "valveRelatedConfigurations", "alertSettings",
                          "flowModification", "assemblyRelatedConfiguration", "loadFactor",
                          "positionerInformation", "hartConfiguration"});
}

std::string clsKT520::FormatValues(const std::string& strId, const std::string& strNewValue,
                                   const std::string& strAccess) {
    if (strAccess == "read" && strId == "deviceId") {
        setElementText({"lblHAPositionerInformation", 14}, DecodeDeviceID(ToInt32(strNewValue)));
        return {};
    }
    if (strId == "kt500SerialNumber") {
        if (strAccess == "read") {
            return DecodeSerNro(ToInt32(strNewValue));
        }
        return std::to_string(EnCodeSerNro(strNewValue));
    }
    return {};
}

namespace {

const DateFields kDateFields{
    {"comHAOperationUnit", 0}, {"comHAOperationUnit", 1}, {"txtHAOperationUnit", 2}};

}  // namespace

const DateFields* clsKT520::deviceDateFields() const {
    return &kDateFields;
}

PageElement clsKT520::propertyElement(std::string_view strProperty) const {
    static constexpr std::pair<std::string_view, PageElement> own[] = {
        {"SupplyPressureUnit", {"lblHALoadFactor", 5}},
        {"ActuatorPressureUnit", {"lblHAMonitoringSettings", 1}},
        {"PressureSpanUnit", {"lblHAPressureCalSpan", 0}},
        {"MeasuredTemperatureUnit", {"lblHAAmbientTemperature", 0}},
        {"PcbTemperatureUnit", {"lblHAMonitoringSettings", 2}},
        {"SupplyPressureValue", {"txtLoadFactor", 0}},
        {"ActuatorPressureValue", {"lblHAMonitoringSettings", 10}},
        {"PressureSpanValue", {"txtHAPressureSensorCal", 0}},
        {"MeasuredTemperatureValue", {"txtHATemperatureSensorCal", 0}},
        {"PcbTemperatureValue", {"lblHAMonitoringSettings", 11}},
    };
    if (const PageElement* element = findIn(own, strProperty)) {
        return *element;
    }
    return DeviceClass::propertyElement(strProperty);
}

const SpecialSet* clsKT520::findSpecialSet(std::string_view strRequestGroup,
                                           std::string_view strItem) const {
    return HartSpecialSet(strRequestGroup, strItem);
}

}  // namespace kt500::devices
