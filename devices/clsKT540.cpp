#include "devices/clsKT540.h"

#include "devices/Encodings.h"
#include "devices/SpecialSets.h"

namespace kt500::devices {

std::int16_t clsKT540::DefaultNodeIndex() {
    return userControl().tools().OnlineConf ? 13 : 2;
}

std::int16_t clsKT540::UseDataPoints() {
    // A check box not on the page yet draws no marks.
    const form::Control* box = findElement({"chkPAMonitoring", 4});
    return box != nullptr ? static_cast<std::int16_t>(box->value()) : 0;
}

float clsKT540::CurrentStepEndPoint() {
    return stepEndPointOf("txtPATestSettings");
}

std::string clsKT540::SavedFrames() const {
    return separatedList(
        {"operationUnit", "valveRelatedConfigurations", "alertSettings", "flowModification",
         "assemblyRelatedConfiguration", "operationMode", "actuatorInformation",
         "inputValueConfiguration", "workingRangeConfiguration", "loadFactor", "simulation",
         "writeProtection", "maintenance", "failSafeAction", "valveInformation", "factoryReset"});
}

bool clsKT540::IsNormalParam(std::string_view strParam) const {
    // The meters are shown but never written as parameters of their own.
    return strParam != "actuatorFullStrokes" && strParam != "actuatorReversals" &&
           strParam != "valveFullStrokes" && strParam != "valveReversals";
}

bool clsKT540::MonitoringVariable(std::string_view strParam) const {
    return strParam == "setpoint" || strParam == "outputValue" || strParam == "positioningValue" ||
           strParam == "valveTravel";
}

std::string clsKT540::FormatValues(const std::string& strId, const std::string& strNewValue,
                                   const std::string& strAccess) {
    if (strAccess != "read") {
        return strNewValue;
    }
    if (strId == "kt500SerialNumber") {
        return strNewValue.substr(0, 10);
    }
    if ((strId == "outputValue" || strId == "setpoint") &&
        (strNewValue == "+Inf" || strNewValue == "NaN" || strNewValue == "-Inf")) {
        // Cleared, not "no conversion": an empty result would leave the
        // value as it came. A blank number shows as an empty field.
        return " ";
    }
    return strNewValue;
}

PageElement clsKT540::propertyElement(std::string_view strProperty) const {
    static constexpr std::pair<std::string_view, PageElement> own[] = {
        {"SupplyPressureUnit", {"lblPALoadFactor", 5}},
        {"ActuatorPressureUnit", {"lblPAMonTitle", 0}},
        {"PressureSpanUnit", {"lblPAPressureCalSpan", 0}},
        {"MeasuredTemperatureUnit", {"lblPAMeasuredTemperatureUnit", 0}},
        {"PcbTemperatureUnit", {"lblPAMonTitle", 1}},
        {"SupplyPressureValue", {"txtPALoadFactor", 0}},
        {"ActuatorPressureValue", {"lblPAMonValue", 4}},
        {"PressureSpanValue", {"txtPAPressureSensorCal", 0}},
        {"MeasuredTemperatureValue", {"txtPATemperatureSensorCal", 0}},
        {"PcbTemperatureValue", {"lblPAMonValue", 5}},
    };
    if (const PageElement* element = findIn(own, strProperty)) {
        return *element;
    }
    return DeviceClass::propertyElement(strProperty);
}

const SpecialSet* clsKT540::findSpecialSet(std::string_view strRequestGroup,
                                           std::string_view strItem) const {
    return ProfibusSpecialSet(strRequestGroup, strItem);
}

}  // namespace kt500::devices
