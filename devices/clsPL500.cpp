#include "devices/clsPL500.h"

#include "devices/DeviceDateFields.h"
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
    return static_cast<std::int16_t>(userControl().form().control("chkPLParams", 17).value());
}

std::string clsPL500::SavedFrames() const {
    std::string frames;
    for (const char* group : {"operationUnit", "general", "leakageMeasurement", "assemblyRelated",
                              "loadFactorTrend", "positionerInformation", "deviceAlertSettings",
                              "statisticAlertSettings", "hartConfiguration"}) {
        frames.append(group);
        frames.push_back(Separator);
    }
    return frames;
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

void clsPL500::SetDeviceDate(std::int16_t intDay, std::int16_t intMonth, std::int16_t intYear) {
    PutDeviceDate(userControl().form(), kDateFields, intDay, intMonth, intYear);
}

std::string clsPL500::GetDeviceDate() {
    return ReadDeviceDate(userControl().form(), kDateFields, true);
}

std::string clsPL500::DeviceDate() {
    return ReadDeviceDate(userControl().form(), kDateFields, false);
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
    for (const auto& [name, element] : own) {
        if (name == strProperty) {
            return element;
        }
    }
    return DeviceClass::propertyElement(strProperty);
}

const SpecialSet* clsPL500::findSpecialSet(std::string_view strRequestGroup,
                                           std::string_view strItem) const {
    return HartSpecialSet(strRequestGroup, strItem);
}

}  // namespace kt500::devices
