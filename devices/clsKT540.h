// clsKT540: the device class of the PROFIBUS PA positioner, prefix "PA".
// One revision, no device date; process values arrive as PROFIBUS floats.
#pragma once

#include "devices/DeviceClass.h"

namespace kt500::devices {

class clsKT540 : public DeviceClass {
public:
    clsKT540() = default;

    [[nodiscard]] std::string ImagePrefix() const override { return "imgPA"; }
    [[nodiscard]] std::string DevicePrefix() const override { return "PA"; }
    [[nodiscard]] std::int16_t EventLogTableIndex() const override { return 1; }
    [[nodiscard]] std::string FrameArrayName() const override { return "fraKT540"; }
    [[nodiscard]] std::int16_t ModificationPoints() const override { return 21; }
    [[nodiscard]] std::int16_t FlowModificationIndex() const override { return 1; }
    [[nodiscard]] std::string StepTestTime() const override { return "lastSpOrTime"; }
    [[nodiscard]] std::string HysteresisTestSetpoint() const override { return "lastSpOrTime"; }
    [[nodiscard]] std::string StepTestValues() const override { return "testValues"; }
    [[nodiscard]] std::string HysteresisTestValues() const override { return "testValues"; }
    [[nodiscard]] std::int16_t MonitorGraphHeight() const override { return 2800; }
    [[nodiscard]] std::int16_t MonitoringFrame() const override { return 1; }
    [[nodiscard]] std::int16_t DefaultNodeIndex() override;
    [[nodiscard]] std::int16_t UseDataPoints() override;
    [[nodiscard]] float CurrentStepEndPoint() override;
    // The test settings page: comTestType element 0 (its first entry is
    // empty), txtPATestSettings.
    [[nodiscard]] std::int16_t SelectedTest() override;
    [[nodiscard]] bool CheckTestParameters() override {
        return checkTestParametersOf(0, "txtPATestSettings");
    }
    void SetStepTestPerformanceValues(float sngDeadTime, float sngSettling63,
                                      float sngSettling98) override {
        showStepTestFigures("lblPAStepTest", sngDeadTime, sngSettling63, sngSettling98);
    }

    [[nodiscard]] std::string SavedFrames() const override;
    [[nodiscard]] std::string MonitoringHeaders() const override {
        return "setpoint outputValue positioningValue valveTravel actuatorPressure pcbTemperature ";
    }
    [[nodiscard]] bool IsNormalParam(std::string_view strParam) const override;
    [[nodiscard]] bool MonitoringVariable(std::string_view strParam) const override;
    void ArrangeValues() override;
    [[nodiscard]] std::string MonitorLogHeaders() override;

    [[nodiscard]] float DeviationLimit1() override {
        return itemLimit("travelDeviationAlarmLimit");
    }
    [[nodiscard]] float DeviationLimit2() override {
        return itemLimit("travelDeviationWarningLimit");
    }
    [[nodiscard]] float DeviationLimit3() override { return 0.0F; }
    [[nodiscard]] float LoadFactorLimit1() override { return itemLimit("loadFactorAlarmLimit"); }
    [[nodiscard]] float LoadFactorLimit2() override { return itemLimit("loadFactorWarningLimit"); }
    [[nodiscard]] float LoadFactorLimit3() override { return 0.0F; }
    [[nodiscard]] bool FlowModCurveLinear() const override { return m_flowModCurveLinear; }
    void setFlowModCurveLinear(bool blLinear) override { m_flowModCurveLinear = blLinear; }
    // The step of the flow modification procedure, as the page last set it.
    [[nodiscard]] std::int16_t FlowModProgress() const override { return m_flowModProgress; }
    void setFlowModProgress(std::int16_t intProgress) override { m_flowModProgress = intProgress; }
    [[nodiscard]] std::string txtFlowModification(int intIndex) override {
        return elementText({"txtPAFlowModification", intIndex});
    }
    void ClearFlowModificationTable() override { clearFlowPoints("txtPAFlowModification"); }
    // The input signal chart of the flow page, from the working range page:
    // travel limit low and tight shut-off; the input has no split range.
    bool UpdateInputSignalVsTravelGraph(std::span<const float> arrCurves) override;

    // Trends and event log (devices/KT540Trends.cpp).
    void FormatLoadFactorXValues(TrendCurve& arrCurve) override;
    void FormatDeviationXValues(TrendCurve& arrCurve) override;
    void FormatTravelVsTimeXValues(TrendCurve& arrCurve) override;
    void AddEventLogFromDataFile(xml::Node xmlNode, bool blInit) override;
    void ClearResetDiagnostics() override;
    void Reply(xml::Document& xmlDoc) override;
    // A "deviceStatus" reply: the status tree and the header; the item
    // "positioningValue" decides whether the deviation alert shows.
    void DeviceStatus(xml::Document& xmlDoc);
    // The target mode list (comPATargetMode element 0) took a new entry: a
    // question, then the operation mode page rearranged for that mode.
    void TargetModeChanged();
    // Shows and enables the elements of the operation mode page for a
    // target mode (0 automatic, 1 manual, 2 remote cascade).
    void ArrangeOperationModePage(int intMode);

    // One revision: nothing to adapt.
    void SetDeviceRevisionChanges() override {}
    void SetDeviceTypeIdChanges() override {}
    void SendOfflineConf() override;

    std::string FormatValues(const std::string& strId, const std::string& strNewValue,
                             const std::string& strAccess) override;

    [[nodiscard]] PageElement propertyElement(std::string_view strProperty) const override;

    void ShowFrame(const std::string& strNodeName) override;
    void HideFrames() override;
    [[nodiscard]] std::string ComparePageNode() const override { return "compareConfiguration"; }

protected:
    void statusReply(xml::Document& xmlDoc) override { DeviceStatus(xmlDoc); }
    void deviationAlertItem(xml::Node item) override;
    bool classItems(const std::string& strName, const std::vector<xml::Node>& items) override;
    void afterGoodReply(const std::string& strName, const std::string& strAccess, bool isFinal,
                        const std::vector<xml::Node>& items) override;
    void monitoringStopped() override;
    [[nodiscard]] const SpecialSet* findSpecialSet(std::string_view strRequestGroup,
                                                   std::string_view strItem) const override;
    [[nodiscard]] bool hasTrendTime(std::string_view strProperty) const override {
        return strProperty == "LoadFactorTime" || strProperty == "TravelDeviationTime";
    }

private:
    // The curves of the one test group go to the test that is selected.
    void testValues(const std::vector<xml::Node>& items);
    bool m_targetModeInReply = false;
    bool m_flowModCurveLinear = false;
    std::int16_t m_flowModProgress = 0;
};

}  // namespace kt500::devices
