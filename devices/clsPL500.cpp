#include "devices/clsPL500.h"

#include "devices/Encodings.h"
#include "devices/SpecialSets.h"

namespace kt500::devices {

namespace {

const DateFields kDateFields{clsPL500::DaySelector, clsPL500::MonthSelector, clsPL500::YearField};

// The number of a wire or page text, whichever decimal sign it carries.
float numberOf(const std::string& strValue) {
    return static_cast<float>(Str2Dbl(fDecimalSep(strValue, ".")));
}

}  // namespace

std::int16_t clsPL500::DefaultNodeIndex() {
    const host::clsTools& tools = userControl().tools();
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
        return strNewValue;
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

const DateFields* clsPL500::deviceDateFields() const {
    return &kDateFields;
}

PageElement clsPL500::propertyElement(std::string_view strProperty) const {
    static constexpr std::pair<std::string_view, PageElement> own[] = {
        {"SupplyPressureUnit", {"lblHALoadFactor", 5}},
        {"ActuatorPressureUnit", {"lblPLParamTitle", 24}},
        {"PressureSpanUnit", {"lblHAPressureCalSpan", 0}},
        {"MeasuredTemperatureUnit", {"lblHAAmbientTemperature", 0}},
        {"PcbTemperatureUnit", {"lblPLParamTitle", 25}},
        {"SupplyPressureValue", {"txtLoadFactor", 0}},
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

}  // namespace kt500::devices
