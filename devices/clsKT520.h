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
    // The test settings page: comTestType element 1, txtHATestSettings.
    [[nodiscard]] bool CheckTestParameters() override {
        return checkTestParametersOf(1, "txtHATestSettings");
    }
    void SetStepTestPerformanceValues(float sngDeadTime, float sngSettling63,
                                      float sngSettling98) override {
        showStepTestFigures("lblHAStepTest", sngDeadTime, sngSettling63, sngSettling98);
    }

    [[nodiscard]] std::string SavedFrames() const override;
    [[nodiscard]] std::string MonitoringHeaders() const override {
        return "travelSetpoint actualTravel inputSignal actuatorPressure pcbTemperature ";
    }
    [[nodiscard]] bool IsNormalParam(std::string_view /*strParam*/) const override { return true; }
    [[nodiscard]] bool MonitoringVariable(std::string_view strParam) const override {
        return strParam == "travelSetpoint" || strParam == "valveTravel";
    }

    // Alarm limits: the fixed ones only when "useFixedAlertLimits" is "1".
    [[nodiscard]] float DeviationLimit1() override { return fixedLimit(10.0F); }
    [[nodiscard]] float DeviationLimit2() override { return fixedLimit(5.0F); }
    [[nodiscard]] float DeviationLimit3() override {
        return itemLimit("travelDeviationTrendLimit");
    }
    [[nodiscard]] float LoadFactorLimit1() override { return fixedLimit(90.0F); }
    [[nodiscard]] float LoadFactorLimit2() override { return fixedLimit(85.0F); }
    [[nodiscard]] float LoadFactorLimit3() override { return itemLimit("loadFactorTrendLimit"); }
    [[nodiscard]] std::string txtFlowModification(int intIndex) override {
        return elementText({"txtHAFlowModification", intIndex});
    }
    void ClearFlowModificationTable() override { clearFlowPoints("txtHAFlowModification"); }

    void Reply(xml::Document& xmlDoc) override;
    void ArrangeValues() override;
    [[nodiscard]] std::string MonitorLogHeaders() override;
    void SetDeviceRevisionChanges() override;
    void SetDeviceTypeIdChanges() override;
    void SendOfflineConf() override;
    void ShowFrame(const std::string& strNodeName) override;
    void HideFrames() override;
    // The chart of the flow modification page that shows the input signal
    // against travel (created with the session's charts).
    bool UpdateInputSignalVsTravelGraph(std::span<const float> arrCurves) override;

    // Trends and event log (devices/KT520Trends.cpp).
    void FormatLoadFactorXValues(TrendCurve& arrCurve) override;
    void FormatDeviationXValues(TrendCurve& arrCurve) override;
    void FormatTravelVsTimeXValues(TrendCurve& arrCurve) override;
    void AddEventLogFromDataFile(xml::Node xmlNode, bool blInit) override;
    void ClearResetDiagnostics() override;

    std::string FormatValues(const std::string& strId, const std::string& strNewValue,
                             const std::string& strAccess) override;
    [[nodiscard]] const DateFields* deviceDateFields() const override;

    [[nodiscard]] PageElement propertyElement(std::string_view strProperty) const override;

protected:
    [[nodiscard]] const SpecialSet* findSpecialSet(std::string_view strRequestGroup,
                                                   std::string_view strItem) const override;
    [[nodiscard]] bool hasTrendTime(std::string_view strProperty) const override {
        return strProperty == "LoadFactorTime" || strProperty == "TravelDeviationTime" ||
               strProperty == "TravelVsTimeTime";
    }

    // The hooks of the shared reply: the trend and test groups go to their
    // charts, a "deviceStatus" push to the status tree and the deviation
    // alert, a monitoring reply while monitoring is off to the state label.
    bool classItems(const std::string& strName, const std::vector<xml::Node>& items) override;
    void statusReply(xml::Document& xmlDoc) override { deviceStatus(xmlDoc); }
    void monitoringStopped() override;

private:
    [[nodiscard]] float fixedLimit(float sngLimit);
    // The "deviceStatus" reply: the status tree and the deviation alert.
    void deviceStatus(xml::Document& xmlDoc);
};

}  // namespace kt500::devices
