#include "devices/clsKT540.h"

#include "devices/Encodings.h"
#include "devices/InputSignalVsTravelChart.h"
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

void clsKT540::SendOfflineConf() {
    static constexpr FrameGroup groups[] = {
        {"PAoperationUnit", "operationUnit"},
        {"PAvalveRelatedConfigurations", "valveRelatedConfigurations"},
        {"PAassemblyRelatedConfiguration", "assemblyRelatedConfiguration"},
        {"PAflowModification", "flowModification"},
        {"PAalertSettings", "alertSettings"},
    };
    sendOfflineGroups(groups);
}

PageElement clsKT540::propertyElement(std::string_view strProperty) const {
    static constexpr std::pair<std::string_view, PageElement> own[] = {
        {"SupplyPressureUnit", {"lblPALoadFactor", 5}},
        {"ActuatorPressureUnit", {"lblPAMonTitle", 0}},
        {"PressureSpanUnit", {"lblPAPressureCalSpan", 0}},
        {"MeasuredTemperatureUnit", {"lblPAMeasuredTemperature", 1}},
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

namespace {

constexpr NodePage kNodePages[] = {
    {"operationUnit", "fraKT540", 7, FrameRule::PageTag},
    {"positionerInformation", "fraKT540", 9, FrameRule::PageTag},
    {"valveRelatedConfigurations", "fraKT540", 8, FrameRule::PageTag},
    {"assemblyRelatedConfiguration", "fraKT540", 2, FrameRule::PageTag},
    {"monitoring", "fraKT540", 5, FrameRule::PageTag},
    {"monitoringVariables", "fraKT540", 5, FrameRule::PageTag},
    {"flowModification", "fraKT540", 13, FrameRule::PageTag},
    {"travelDeviation", "fraKT540", 15, FrameRule::PageTag},
    {"travelVsTime", "fraKT540", 14, FrameRule::PageTag},
    {"loadFactor", "fraKT540", 16, FrameRule::PageTag},
    {"onlineDiagnosticsHistory", "fraKT540", 17, FrameRule::PageTag},
    {"eventLog", "fraKT540", 18, FrameRule::PageTag},
    {"testSettings", "fraKT540", 19, FrameRule::PageTag},
    {"stepTestValues", "fraKT540", 20, FrameRule::PageTag},
    {"hysteresisTestValues", "fraKT540", 21, FrameRule::PageTag},
    {"automaticTravelCalibration", "fraKT540", 22, FrameRule::PageTag},
    {"actuatorAndValveMeters", "fraKT540", 4, FrameRule::PageTag},
    {"alertSettings", "fraKT540", 1, FrameRule::PageTag},
    {"resetDiagnostics", "fraKT540", 23, FrameRule::PageTag},
    {"temperatureSensorCalibration", "fraKT540", 24, FrameRule::PageTag},
    {"pressureSensorCalibration", "fraKT540", 25, FrameRule::PageTag},
    {"positionSensorCalibration", "fraKT540", 26, FrameRule::PageTag},
    {"inputValueConfiguration", "fraKT540", 3, FrameRule::PageTag},
    {"operationMode", "fraKT540", 6, FrameRule::PageTag},
    {"factoryReset", "fraKT540", 10, FrameRule::PageTag},
    {"valveInformation", "fraKT540", 11, FrameRule::PageTag},
    {"actuatorInformation", "fraKT540", 0, FrameRule::PageTag},
    {"workingRangeConfiguration", "fraKT540", 12, FrameRule::PageTag},
    {"simulation", "fraKT540", 27, FrameRule::PageTag},
    {"writeProtection", "fraKT540", 28, FrameRule::PageTag},
    {"maintenance", "fraKT540", 29, FrameRule::PageTag},
    {"failSafeAction", "fraKT540", 30, FrameRule::PageTag},
    {"settings", "fraCommon", 0, FrameRule::Unchanged},
    {"paAddress", "fraCommon", 3, FrameRule::Fixed},
    {"status", "fraCommon", 4, FrameRule::Fixed},
    {"confirmation1", "fraConfirmation", 0, FrameRule::Unchanged},
    {"confirmation2", "fraConfirmation", 1, FrameRule::Unchanged},
    {"compareConfiguration", "fraConfirmation", 2, FrameRule::Unchanged},
};

constexpr PageArray kPageArrays[] = {{"fraKT540", 30}, {"fraCommon", 5}, {"fraConfirmation", 2}};

}  // namespace

void clsKT540::ShowFrame(const std::string& strNodeName) {
    showPage(kNodePages, strNodeName);
}

void clsKT540::HideFrames() {
    hidePages(kPageArrays);
}

bool clsKT540::UpdateInputSignalVsTravelGraph(std::span<const float> arrCurves) {
    const auto field = [this](int index) {
        return static_cast<float>(
            Str2Dbl(fDecimalSep(elementText({"txtPAWorkingRangeConfiguration", index}), ".")));
    };
    return DrawInputSignalVsTravel(userControl(), arrCurves,
                                   elementText({"comPAInputSignalDirection", 2}),
                                   {NoSingle, NoSingle, field(0), field(2)});
}

}  // namespace kt500::devices
