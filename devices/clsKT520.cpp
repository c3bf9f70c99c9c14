#include "devices/clsKT520.h"

#include "devices/DeviceDateFields.h"
#include "devices/Encodings.h"
#include "devices/SpecialSets.h"

namespace kt500::devices {

std::int16_t clsKT520::DefaultNodeIndex() {
    return userControl().tools().OnlineConf ? 8 : 2;
}

std::int16_t clsKT520::UseDataPoints() {
    return static_cast<std::int16_t>(userControl().form().control("chkHAMonitoring", 2).value());
}

float clsKT520::CurrentStepEndPoint() {
    const std::string first = elementText({"txtHATestSettings", 1});
    const std::string second = elementText({"txtHATestSettings", 2});
    if (first.empty() || second.empty()) {
        return 0.0F;
    }
    return static_cast<float>(Str2Dbl(first) + Str2Dbl(second));
}

std::string clsKT520::SavedFrames() const {
    std::string frames;
    for (const char* group : {"operationUnit", "valveRelatedConfigurations", "alertSettings",
                              "flowModification", "assemblyRelatedConfiguration", "loadFactor",
                              "positionerInformation", "hartConfiguration"}) {
        frames.append(group);
        frames.push_back(Separator);
    }
    return frames;
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

void clsKT520::SetDeviceDate(std::int16_t intDay, std::int16_t intMonth, std::int16_t intYear) {
    PutDeviceDate(userControl().form(), kDateFields, intDay, intMonth, intYear);
}

std::string clsKT520::GetDeviceDate() {
    return ReadDeviceDate(userControl().form(), kDateFields, true);
}

std::string clsKT520::DeviceDate() {
    return ReadDeviceDate(userControl().form(), kDateFields, false);
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
    for (const auto& [name, element] : own) {
        if (name == strProperty) {
            return element;
        }
    }
    return DeviceClass::propertyElement(strProperty);
}

const SpecialSet* clsKT520::findSpecialSet(std::string_view strRequestGroup,
                                           std::string_view strItem) const {
    return HartSpecialSet(strRequestGroup, strItem);
}

}  // namespace kt500::devices
