#include "devices/clsKT520.h"

#include "devices/Encodings.h"
#include "devices/InputSignalVsTravelChart.h"
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

float clsKT520::fixedLimit(float sngLimit) {
    return userControl().FetchValueByTag("useFixedAlertLimits", false) == "1" ? sngLimit : 0.0F;
}

std::string clsKT520::MonitorLogHeaders() {
    IUserControl& control = userControl();
    const std::string columns[] = {
        control.Translate("time"),
        control.Translate("travelSetpoint") + " [%]",
        control.Translate("actualTravel") + " [%]",
        control.Translate("inputSignal") + " [mA]",
        control.Translate("actuatorPressure") + " [" + pageProperty("ActuatorPressureUnit") + "]",
        control.Translate("pcbTemperature") + " [" + pageProperty("PcbTemperatureUnit") + "]",
    };
    std::string line;
    for (const std::string& column : columns) {
        line += (line.empty() ? "\"" : ";\"") + column + "\"";
    }
    return line;
}

namespace {

void setVisible(form::Form& form, std::string_view name, int index, bool blVisible) {
    if (form::Control* control = form.find(name, index)) {
        control->setVisible(blVisible);
    }
}

}  // namespace

void clsKT520::SetDeviceRevisionChanges() {
    form::Form& form = userControl().form();
    const std::int16_t revision = ToInt16(userControl().tools().DeviceRevision);
    if (revision < 7) {
        // Older devices update the load factor on demand and have no
        // online alerts to reset nor the newer meters.
        setVisible(form, "cmdHALoadFactorUpdate", -1, true);
        setVisible(form, "fraResetOnlineAlerts", -1, false);
        for (const int index : {4, 9, 10, 12}) {
            setVisible(form, "lblHAActuatorAndValveMeters", index, false);
        }
        // The value boxes of those four counters go with their captions.
        for (const int index : {1, 3, 5, 7}) {
            setVisible(form, "lblHAMeterValue", index, false);
        }
    }
    if (revision == 4) {
        setVisible(form, "imgHAAssemblyRelatedConfiguration", 0, false);
        setVisible(form, "lblHAAssemblyRealedConfiguration", 0, false);
        setVisible(form, "comHAValveRelatedConfiguration", 0, false);
        if (form::Control* list = form.find("comHAValveRelatedConfiguration", 1)) {
            list->setEnabled(false);
        }
    }
}

void clsKT520::SetDeviceTypeIdChanges() {
    const session::clsTools& tools = userControl().tools();
    if (tools.DeviceTypeId == "238" && tools.DeviceRevision == "7") {
        form::Form& form = userControl().form();
        setVisible(form, "lblHAAssemblyRealedConfiguration", 4, true);
        setVisible(form, "comHAValveRelatedConfiguration", 4, true);
    }
}

void clsKT520::SendOfflineConf() {
    static constexpr FrameGroup groups[] = {
        {"HAoperationUnit", "operationUnit"},
        {"HAvalveRelatedConfigurations", "valveRelatedConfigurations"},
        {"HAassemblyRelatedConfiguration", "assemblyRelatedConfiguration"},
        {"HAflowModification", "flowModification"},
        {"HAalertSettings", "alertSettings"},
    };
    sendOfflineGroups(groups);
}

namespace {

constexpr NodePage kNodePages[] = {
    {"assemblyRelatedConfiguration", "fraKT520", 0, FrameRule::PageTag},
    {"automaticTravelCalibration", "fraKT520", 1, FrameRule::PageTag},
    {"automaticPrestageTrim", "fraKT520", 2, FrameRule::PageTag},
    {"alertSettings", "fraKT520", 3, FrameRule::PageTag},
    {"actuatorAndValveMeters", "fraKT520", 4, FrameRule::PageTag},
    {"hartConfiguration", "fraKT520", 5, FrameRule::PageTag},
    {"monitoring", "fraKT520", 6, FrameRule::PageTag},
    {"monitoringVariables", "fraKT520", 6, FrameRule::PageTag},
    {"operationUnit", "fraKT520", 7, FrameRule::PageTag},
    {"valveRelatedConfigurations", "fraKT520", 8, FrameRule::PageTag},
    {"positionerInformation", "fraKT520", 9, FrameRule::PageTag},
    {"positionTransmitterCalibration", "fraKT520", 10, FrameRule::PageTag},
    {"flowModification", "fraKT520", 11, FrameRule::PageTag},
    {"travelDeviation", "fraKT520", 12, FrameRule::PageTag},
    {"travelVsTime", "fraKT520", 13, FrameRule::PageTag},
    {"loadFactor", "fraKT520", 14, FrameRule::PageTag},
    {"onlineAlerts", "fraKT520", 15, FrameRule::PageTag},
    {"eventLog", "fraKT520", 16, FrameRule::PageTag},
    {"testSettings", "fraKT520", 17, FrameRule::PageTag},
    {"stepTestValues", "fraKT520", 18, FrameRule::PageTag},
    {"hysteresisTestValues", "fraKT520", 19, FrameRule::PageTag},
    {"resetDiagnostics", "fraKT520", 20, FrameRule::PageTag},
    {"temperatureSensorCalibration", "fraKT520", 21, FrameRule::PageTag},
    {"pressureSensorCalibration", "fraKT520", 22, FrameRule::PageTag},
    {"positionSensorCalibration", "fraKT520", 23, FrameRule::PageTag},
    {"inputSignalMeasurementCalibration", "fraKT520", 24, FrameRule::PageTag},
    {"manualPrestageTrim", "fraKT520", 25, FrameRule::PageTag},
    {"settings", "fraCommon", 0, FrameRule::Unchanged},
    {"hartAddress", "fraCommon", 1, FrameRule::Fixed},
    {"status", "fraCommon", 4, FrameRule::Fixed},
    {"confirmation1", "fraConfirmation", 0, FrameRule::Unchanged},
    {"confirmation2", "fraConfirmation", 1, FrameRule::Unchanged},
    {"compareConfigurations", "fraConfirmation", 2, FrameRule::Unchanged},
};

// The page arrays of the class with their last element.
constexpr PageArray kPageArrays[] = {{"fraKT520", 25}, {"fraCommon", 5}, {"fraConfirmation", 2}};

}  // namespace

void clsKT520::ShowFrame(const std::string& strNodeName) {
    showPage(kNodePages, strNodeName);
}

void clsKT520::HideFrames() {
    hidePages(kPageArrays);
}

bool clsKT520::UpdateInputSignalVsTravelGraph(std::span<const float> arrCurves) {
    // Split range low and high, travel limit low and tight shut-off.
    const auto field = [this](int index) {
        return static_cast<float>(
            Str2Dbl(fDecimalSep(elementText({"txtHAPositionControl", index}), ".")));
    };
    return DrawInputSignalVsTravel(userControl(), arrCurves,
                                   elementText({"comHAValveRelatedConfiguration", 2}),
                                   {field(3), field(4), field(5), field(6)});
}

}  // namespace kt500::devices
