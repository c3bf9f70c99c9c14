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
    static constexpr PageElement TargetModeList{"comPLParams", 3};
    static constexpr PageElement ActualModeList{"comPLActualMode", -1};
    static constexpr PageElement MonitoringState{"lblPLParams", 11};
    // The reset boxes of chkPLParams: the statistics page's set, then the
    // alarms page's set, which runs to element 15 around the monitoring
    // page's two switches (elements 9 and 10).
    struct BoxRange {
        int first;
        int last;
    };
    static constexpr BoxRange StatisticsResetBoxes{0, 5};
    static constexpr BoxRange AlarmResetBoxes{6, 15};
    [[nodiscard]] static constexpr bool IsAlarmResetBox(int intIndex) {
        return intIndex >= AlarmResetBoxes.first && intIndex <= AlarmResetBoxes.last &&
               intIndex != 9 && intIndex != 10;
    }

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
    [[nodiscard]] std::string_view DerivedFrom(std::string_view strParam) const override;
    [[nodiscard]] bool MonitoringVariable(std::string_view strParam) const override {
        return strParam == "actualTravel";
    }
    void ArrangeValues() override;
    [[nodiscard]] std::string MonitorLogHeaders() override;

    [[nodiscard]] float LoadFactorLimit1() override { return fieldLimit({"txtPLParams", 11}); }
    [[nodiscard]] float LoadFactorLimit2() override { return fieldLimit({"txtPLParams", 12}); }
    [[nodiscard]] float LoadFactorLimit3() override { return 0.0F; }
    [[nodiscard]] float BreakawayPressureLimit1() override {
        return fieldLimit({"txtPLParams", 13});
    }
    [[nodiscard]] float BreakawayPressureLimit2() override {
        return fieldLimit({"txtPLParams", 14});
    }
    [[nodiscard]] float LeakageSignalLimit1() override { return fieldLimit({"txtPLParams", 15}); }
    [[nodiscard]] std::string ResetingFrame() const override { return m_resetingFrame; }
    void setResetingFrame(std::string strFrame) override { m_resetingFrame = std::move(strFrame); }
    // The pneumatics settings: the parameter fields tagged with their items.
    [[nodiscard]] std::string PressurePeakTolerance() override {
        return settingText("pressurePeakTolerance");
    }
    void setPressurePeakTolerance(const std::string& strValue) override {
        setSettingText("pressurePeakTolerance", strValue);
    }
    [[nodiscard]] std::string PressureRecoveryTime() override {
        return settingText("pressureRecoveryTime");
    }
    void setPressureRecoveryTime(const std::string& strValue) override {
        setSettingText("pressureRecoveryTime", strValue);
    }

    void Reply(xml::Document& xmlDoc) override;
    // Trends and event log (devices/PL500Trends.cpp).
    void FormatLoadFactorXValues(TrendCurve& arrCurve) override;
    void FormatBreakawayPressureXValues(TrendCurve& arrCurve) override;
    void FormatLeakageSignalXValues(TrendCurve& arrCurve) override;
    void AddEventLogFromDataFile(xml::Node xmlNode, bool blInit) override;
    void ClearResetDiagnostics() override;
    // The leakage measurement switch (comPLParams element 17) took an entry
    // from the user: 0 off, 1 on.
    void LeakageSwitchChanged(int intListIndex);

    // The test schedule's intervals: a count (txtPLParams, tagged with the
    // interval), its unit selector (0 hours, 1 days) and its switch (0 off),
    // which the device keeps as one number of hours.
    struct ScheduleInterval {
        std::string_view hours;  // the interval's parameter, in hours
        std::string_view days;   // the same interval in whole days
        int count;               // txtPLParams
        int unit;                // comPLParams
        int onOff;               // comPLParams
    };
    static constexpr ScheduleInterval ScheduleIntervals[] = {
        {"valveTestInterval", "valveTestIntervalD", 19, 14, 13},
        {"pneumaticsTestInterval", "pneumaticsIntervalD", 23, 11, 12},
    };
    // The interval whose unit selector or switch is element intSelector of
    // comPLParams, or nullptr.
    [[nodiscard]] static const ScheduleInterval* IntervalOfSelector(int intSelector);

    void SetDeviceTypeIdChanges() override {}
    // Revision 2 fields enabled; revision 1 hides the runs of fields that
    // only revision 2 devices fill.
    void SetDeviceRevisionChanges() override;
    void SendOfflineConf() override;

    std::string FormatValues(const std::string& strId, const std::string& strNewValue,
                             const std::string& strAccess) override;
    [[nodiscard]] const DateFields* deviceDateFields() const override;

    [[nodiscard]] PageElement propertyElement(std::string_view strProperty) const override;
    // The two test curves: the samples the device did not record are
    // filled in, then the control draws the curve.
    void FormatValveTestValues(TestCurve& arrCurve) override;
    void FormatPneumaticsTestValues(TestCurve& arrCurve) override;

    void ShowFrame(const std::string& strNodeName) override;
    void HideFrames() override;

protected:
    bool classItems(const std::string& strName, const std::vector<xml::Node>& items) override;
    void afterGoodReply(const std::string& strName, const std::string& strAccess, bool isFinal,
                        const std::vector<xml::Node>& items) override;
    [[nodiscard]] std::string resetTreeNode() const override {
        return m_resetingFrame == "alarms" ? "resetAlarms" : "resetStatistics";
    }
    // The device refuses a selection it does not offer; the page already
    // tells that, so the group is not listed as failed.
    [[nodiscard]] bool reportsFailure(const std::string& strErrorCode) const override {
        return strErrorCode != "hartCmdErrInvalidSelection";
    }
    void monitoringStopped() override;
    [[nodiscard]] const SpecialSet* findSpecialSet(std::string_view strRequestGroup,
                                                   std::string_view strItem) const override;

    [[nodiscard]] bool hasTrendTime(std::string_view strProperty) const override {
        return strProperty == "LoadFactorTime" || strProperty == "BreakawayPressureTime" ||
               strProperty == "LeakageSignalTime";
    }

private:
    // The txtPLParams field whose Tag is the item; nothing when not on the form.
    [[nodiscard]] form::Control* settingField(std::string_view strItem) const;
    [[nodiscard]] std::string settingText(std::string_view strItem) const;
    // The schedule's values as the device keeps them, from the page: an
    // interval in hours, and the whole days of an interval or a timer. Empty
    // while the page holds no value for it (never read), so that nothing
    // empty is written.
    // strCount is the count to write; "" takes the page's count field.
    [[nodiscard]] std::string scheduleHours(const ScheduleInterval& interval,
                                            std::string_view strCount = {}) const;
    [[nodiscard]] std::string scheduleDays(std::string_view strDays) const;
    void setSettingText(std::string_view strItem, const std::string& strValue);
    std::string m_resetingFrame;
    bool m_targetModeInReply = false;
    // Switches the leakage measurement fields with the measurement time.
    void showLeakageMeasurement(bool blOn);
};

}  // namespace kt500::devices
