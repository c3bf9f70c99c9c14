// clsPL500: the device class of the safety valve controller, prefix "PL",
// revisions 1 and 2. All its fields live in the arrays txtPLParams,
// lblPLParams and comPLParams; some values are scaled between device and page.
#pragma once

#include "devices/DeviceClass.h"

namespace kt500::devices {

class clsPL500 : public DeviceClass {
public:
    clsPL500() = default;

    // Elements of the parameter arrays that this class addresses itself.
    static constexpr PageElement DeviceIdLabel{"lblPLParams", 0};
    static constexpr PageElement DaySelector{"comPLParams", 0};
    static constexpr PageElement MonthSelector{"comPLParams", 1};
    static constexpr PageElement YearField{"txtPLParams", 2};
    static constexpr PageElement LeakageSwitch{"comPLParams", 17};
    static constexpr int LeakageFields[] = {28, 29, 30};

    [[nodiscard]] std::string ImagePrefix() const override { return "imgPL"; }
    [[nodiscard]] std::string DevicePrefix() const override { return "PL"; }
    [[nodiscard]] std::int16_t EventLogTableIndex() const override { return 2; }
    [[nodiscard]] std::string FrameArrayName() const override { return "fraPL500"; }
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
    [[nodiscard]] std::int16_t MonitoringFrame() const override { return 2; }
    [[nodiscard]] std::int16_t DefaultNodeIndex() override;
    [[nodiscard]] std::int16_t UseDataPoints() override;

    [[nodiscard]] std::string SavedFrames() const override;
    [[nodiscard]] std::string MonitoringHeaders() const override {
        return "actualTravel leakageSignal actuatorPressure pcbTemperature ";
    }
    [[nodiscard]] bool IsNormalParam(std::string_view strParam) const override;
    [[nodiscard]] bool MonitoringVariable(std::string_view strParam) const override {
        return strParam == "actualTravel";
    }

    std::string FormatValues(const std::string& strId, const std::string& strNewValue,
                             const std::string& strAccess) override;
    [[nodiscard]] const DateFields* deviceDateFields() const override;

    [[nodiscard]] PageElement propertyElement(std::string_view strProperty) const override;

protected:
    [[nodiscard]] const SpecialSet* findSpecialSet(std::string_view strRequestGroup,
                                                   std::string_view strItem) const override;

private:
    // Switches the leakage measurement fields with the measurement time.
    void showLeakageMeasurement(bool blOn);
};

}  // namespace kt500::devices
