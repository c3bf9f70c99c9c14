// clsKT520: the device class of the HART positioner, prefix "HA": the
// reference member of the family.
#pragma once

#include "devices/DeviceClass.h"

namespace kt500::devices {

class clsKT520 : public DeviceClass {
public:
    clsKT520() = default;

    [[nodiscard]] std::string ImagePrefix() const override { return "imgHA"; }
    [[nodiscard]] std::string DevicePrefix() const override { return "HA"; }
    [[nodiscard]] std::int16_t EventLogTableIndex() const override { return 0; }
    [[nodiscard]] std::string FrameArrayName() const override { return "fraKT520"; }
    [[nodiscard]] std::int16_t ModificationPoints() const override { return 11; }
    [[nodiscard]] std::int16_t FlowModificationIndex() const override { return 0; }
    [[nodiscard]] std::string StepTestTime() const override { return "stepTestTime"; }
    [[nodiscard]] std::string HysteresisTestSetpoint() const override {
        return "hysteresisTestSetpoint";
    }
    [[nodiscard]] std::string StepTestValues() const override { return "stepTestValues"; }
    [[nodiscard]] std::string HysteresisTestValues() const override {
        return "hysteresisTestValues";
    }
    [[nodiscard]] std::int16_t MonitorGraphHeight() const override { return 2500; }
    [[nodiscard]] std::int16_t DefaultNodeIndex() override;
    [[nodiscard]] std::int16_t UseDataPoints() override;
    [[nodiscard]] float CurrentStepEndPoint() override;

    [[nodiscard]] std::string SavedFrames() const override;
    [[nodiscard]] std::string MonitoringHeaders() const override {
        return "travelSetpoint actualTravel inputSignal actuatorPressure pcbTemperature ";
    }
    [[nodiscard]] bool IsNormalParam(std::string_view /*strParam*/) const override { return true; }
    [[nodiscard]] bool MonitoringVariable(std::string_view strParam) const override {
        return strParam == "travelSetpoint" || strParam == "valveTravel";
    }

    std::string FormatValues(const std::string& strId, const std::string& strNewValue,
                             const std::string& strAccess) override;
    [[nodiscard]] const DateFields* deviceDateFields() const override;

    [[nodiscard]] PageElement propertyElement(std::string_view strProperty) const override;

protected:
    [[nodiscard]] const SpecialSet* findSpecialSet(std::string_view strRequestGroup,
                                                   std::string_view strItem) const override;
};

}  // namespace kt500::devices
