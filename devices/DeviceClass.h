// DeviceClass: the contract behind which every difference of the device
// models stands. The control holds one of clsKT520, clsKT540, clsPL500 and
// calls its members by name; a member that a class lacks fails at the call
// (MemberMissing), as a run-time failure of the caller's handler. So every
// member here has a default body that throws, and each class overrides only
// the members it has.
#pragma once

#include "devices/IUserControl.h"
#include "devices/MemberMissing.h"
#include "devices/PageTable.h"
#include "devices/SeparatedList.h"
#include "devices/TestCurve.h"
#include "devices/TrendCurve.h"
#include "xml/Document.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kt500::devices {

// One element of a control array of the pages, as the property family of
// units and values addresses it.
struct PageElement {
    std::string_view array;
    int index;
};

// The device date on a page: day and month selectors, year text.
struct DateFields {
    PageElement day;
    PageElement month;
    PageElement year;
};

// Items that the device writes in one command: a change of one member
// forces the others into the request.
struct SpecialSet {
    std::string triples;   // name, type, unit, each followed by the separator
    bool restoreDeclined;  // a declined change of a trigger is put back
};

class DeviceClass {
public:
    virtual ~DeviceClass() = default;
    DeviceClass(const DeviceClass&) = delete;
    DeviceClass& operator=(const DeviceClass&) = delete;

    // The back reference, set once by the control.
    void setObjUserControl(IUserControl* control) noexcept { m_objUserControl = control; }

    // --- Constants and derived properties ---
    [[nodiscard]] virtual std::string ImagePrefix() const = 0;
    [[nodiscard]] virtual std::string DevicePrefix() const = 0;
    [[nodiscard]] virtual std::int16_t EventLogTableIndex() const = 0;
    [[nodiscard]] virtual std::string FrameArrayName() const = 0;
    [[nodiscard]] virtual std::int16_t ModificationPoints() const = 0;
    [[nodiscard]] virtual std::int16_t FlowModificationIndex() const = 0;
    [[nodiscard]] virtual std::string StepTestTime() const = 0;
    [[nodiscard]] virtual std::string HysteresisTestSetpoint() const = 0;
    [[nodiscard]] virtual std::string StepTestValues() const = 0;
    [[nodiscard]] virtual std::string HysteresisTestValues() const = 0;
    [[nodiscard]] virtual std::int16_t MonitorGraphHeight() const = 0;
    [[nodiscard]] virtual std::int16_t MonitoringFrame() const { missing("MonitoringFrame"); }
    [[nodiscard]] virtual std::int16_t DefaultNodeIndex() = 0;
    [[nodiscard]] virtual std::int16_t UseDataPoints() = 0;
    [[nodiscard]] virtual std::int16_t SelectedTest();
    [[nodiscard]] virtual float CurrentStepEndPoint() { missing("CurrentStepEndPoint"); }
    // --- Performance tests (devices/TestParameters.cpp) ---
    // The settings of the step or hysteresis test page before a start:
    // False with no message when no test is chosen, False with the message
    // "invalidValue" when a field is blank or red.
    [[nodiscard]] virtual bool CheckTestParameters() { missing("CheckTestParameters"); }
    // The key figures of a step test on its page; a figure of 0 leaves its
    // label as it was.
    virtual void SetStepTestPerformanceValues(float /*sngDeadTime*/, float /*sngSettling63*/,
                                              float /*sngSettling98*/) {
        missing("SetStepTestPerformanceValues");
    }
    // The safety valve controller's test curves: the gaps closed, then drawn.
    virtual void FormatValveTestValues(TestCurve& /*arrCurve*/) { missing("FormatValveTestValues"); }
    virtual void FormatPneumaticsTestValues(TestCurve& /*arrCurve*/) {
        missing("FormatPneumaticsTestValues");
    }
    // The page date as day, month, year with no check; a model without a
    // device date lacks this member.
    [[nodiscard]] std::string DeviceDate();

    // The groups a data file stores, each followed by the separator.
    [[nodiscard]] virtual std::string SavedFrames() const = 0;
    // The monitoring series' names in series order, each followed by a blank.
    [[nodiscard]] virtual std::string MonitoringHeaders() const = 0;
    [[nodiscard]] virtual bool IsNormalParam(std::string_view strParam) const = 0;
    // The parameter that one which is not normal is computed from (the
    // PL500's schedule days from their interval or timer); "" when none. A
    // write carries the computed value only with its source confirmed.
    [[nodiscard]] virtual std::string_view DerivedFrom(std::string_view /*strParam*/) const {
        return {};
    }
    [[nodiscard]] virtual bool MonitoringVariable(std::string_view strParam) const = 0;

    // --- Alarm limits of the trend charts ---
    [[nodiscard]] virtual float DeviationLimit1() { missing("DeviationLimit1"); }
    [[nodiscard]] virtual float DeviationLimit2() { missing("DeviationLimit2"); }
    [[nodiscard]] virtual float DeviationLimit3() { missing("DeviationLimit3"); }
    [[nodiscard]] virtual float LoadFactorLimit1() { missing("LoadFactorLimit1"); }
    [[nodiscard]] virtual float LoadFactorLimit2() { missing("LoadFactorLimit2"); }
    [[nodiscard]] virtual float LoadFactorLimit3() { missing("LoadFactorLimit3"); }
    [[nodiscard]] virtual float BreakawayPressureLimit1() { missing("BreakawayPressureLimit1"); }
    [[nodiscard]] virtual float BreakawayPressureLimit2() { missing("BreakawayPressureLimit2"); }
    [[nodiscard]] virtual float LeakageSignalLimit1() { missing("LeakageSignalLimit1"); }

    // --- Written properties ---
    // The time span texts of the trend pages; a class without the trend
    // lacks the member.
    void setLoadFactorTime(std::string strText) {
        setTrendTime("LoadFactorTime", std::move(strText));
    }
    void setTravelDeviationTime(std::string strText) {
        setTrendTime("TravelDeviationTime", std::move(strText));
    }
    void setTravelVsTimeTime(std::string strText) {
        setTrendTime("TravelVsTimeTime", std::move(strText));
    }
    void setBreakawayPressureTime(std::string strText) {
        setTrendTime("BreakawayPressureTime", std::move(strText));
    }
    void setLeakageSignalTime(std::string strText) {
        setTrendTime("LeakageSignalTime", std::move(strText));
    }
    // The last time span written under a property name; "" before.
    [[nodiscard]] std::string trendTime(std::string_view strProperty) const;
    // The flow modification procedure's state (KT540).
    [[nodiscard]] virtual bool FlowModCurveLinear() const { missing("FlowModCurveLinear"); }
    virtual void setFlowModCurveLinear(bool /*blLinear*/) { missing("FlowModCurveLinear"); }
    [[nodiscard]] virtual std::int16_t FlowModProgress() const { missing("FlowModProgress"); }
    virtual void setFlowModProgress(std::int16_t /*intProgress*/) { missing("FlowModProgress"); }
    // The page whose reset runs, "alarms" or "statistics" (PL500).
    [[nodiscard]] virtual std::string ResetingFrame() const { missing("ResetingFrame"); }
    virtual void setResetingFrame(std::string /*strFrame*/) { missing("ResetingFrame"); }
    // The pneumatics settings fields (PL500).
    [[nodiscard]] virtual std::string PressurePeakTolerance() { missing("PressurePeakTolerance"); }
    virtual void setPressurePeakTolerance(const std::string& /*strValue*/) {
        missing("PressurePeakTolerance");
    }
    [[nodiscard]] virtual std::string PressureRecoveryTime() { missing("PressureRecoveryTime"); }
    virtual void setPressureRecoveryTime(const std::string& /*strValue*/) {
        missing("PressureRecoveryTime");
    }
    // The text of a point box of the flow modification page: the element
    // that the caller's index picks.
    [[nodiscard]] virtual std::string txtFlowModification(int /*intIndex*/) {
        missing("txtFlowModification");
    }
    // Empties the curve table of the flow modification page before its reload.
    virtual void ClearFlowModificationTable() { missing("ClearFlowModificationTable"); }

    // --- Replies ---
    // Classifies one reply of the BL and distributes it.
    virtual void Reply(xml::Document& /*xmlDoc*/) { missing("Reply"); }
    // A monitoring reply into labels, a log line and a graph string.
    virtual void ArrangeValues() { missing("ArrangeValues"); }
    // After the write reply of a reset group: the reset boxes back to 0.
    virtual void ClearResetDiagnostics() { missing("ClearResetDiagnostics"); }
    // One event log item of a data file (blInit True: the value is the
    // attribute "value") or of an offline reply (the node's text).
    virtual void AddEventLogFromDataFile(xml::Node /*xmlNode*/, bool /*blInit*/) {
        missing("AddEventLogFromDataFile");
    }

    // --- Trends: a finished history array turned into its chart's axis
    // (devices/TrendAxis.cpp); each ends at the control's Update*Graph. ---
    virtual void FormatLoadFactorXValues(TrendCurve& /*arrCurve*/) {
        missing("FormatLoadFactorXValues");
    }
    virtual void FormatDeviationXValues(TrendCurve& /*arrCurve*/) {
        missing("FormatDeviationXValues");
    }
    virtual void FormatTravelVsTimeXValues(TrendCurve& /*arrCurve*/) {
        missing("FormatTravelVsTimeXValues");
    }
    virtual void FormatBreakawayPressureXValues(TrendCurve& /*arrCurve*/) {
        missing("FormatBreakawayPressureXValues");
    }
    virtual void FormatLeakageSignalXValues(TrendCurve& /*arrCurve*/) {
        missing("FormatLeakageSignalXValues");
    }
    // The header line of the monitoring log file.
    [[nodiscard]] virtual std::string MonitorLogHeaders() { missing("MonitorLogHeaders"); }
    // Adapts the pages to the revision and the type of the device.
    virtual void SetDeviceRevisionChanges() { missing("SetDeviceRevisionChanges"); }
    virtual void SetDeviceTypeIdChanges() { missing("SetDeviceTypeIdChanges"); }
    // Writes the offline configuration groups to the data set.
    virtual void SendOfflineConf() { missing("SendOfflineConf"); }
    // Draws the input signal against travel chart from the page's curves;
    // False when the valve direction is neither of the two known ones.
    virtual bool UpdateInputSignalVsTravelGraph(std::span<const float> /*arrCurves*/) {
        missing("UpdateInputSignalVsTravelGraph");
    }

    // --- Pages ---
    // Shows the page of a tree node and remembers it in CurrentFrame.
    virtual void ShowFrame(const std::string& /*strNodeName*/) { missing("ShowFrame"); }
    // Hides every page of the class.
    virtual void HideFrames() { missing("HideFrames"); }
    // The tree node of the compare page; the PROFIBUS positioner's class
    // names it in the singular.
    [[nodiscard]] virtual std::string ComparePageNode() const { return "compareConfigurations"; }

    // --- Values on their way in and out ---
    // The page or wire form of a value; "" when the value needs no conversion
    // (the caller then uses it as it is), a blank for a value to clear.
    virtual std::string FormatValues(const std::string& strId, const std::string& strNewValue,
                                     const std::string& strAccess) = 0;
    // The unit in which the device takes a value of this kind.
    [[nodiscard]] virtual std::string ConvertUnitForDevice(std::string_view strUnit) const;
    // A page value in the device's unit.
    virtual std::string ConvertValueForDevice(const std::string& strCurrentValue,
                                              const std::string& strNewUnit,
                                              const std::string& strParameter);
    // Where the class keeps the device date on its pages; nothing when the
    // model has no device date.
    [[nodiscard]] virtual const DateFields* deviceDateFields() const { return nullptr; }
    // The date fields of the page from a device date; nothing without them.
    void SetDeviceDate(std::int16_t intDay, std::int16_t intMonth, std::int16_t intYear);
    // The page date checked for what a device can hold ("invalid"); "" for
    // a model without a device date.
    std::string GetDeviceDate();

    // --- Requests ---
    // "" (handle the item as usual), "included" (already in the request) or
    // the triples of the items to send instead.
    virtual std::string SpecialUpploadCase(const std::string& strRequestGroup,
                                           const std::string& strIncludedParam);
    void setSpecialCaseItems(std::string strItems) { m_specialCaseItems = std::move(strItems); }
    [[nodiscard]] const std::string& CancelledGroups() const noexcept {
        return m_strCancelledGroups;
    }
    void setCancelledGroups(std::string strGroups) { m_strCancelledGroups = std::move(strGroups); }
    [[nodiscard]] bool SmuiStopPressed() const noexcept { return m_smuiStopPressed; }
    void setSmuiStopPressed(bool blPressed) noexcept { m_smuiStopPressed = blPressed; }
    // The document that the last write sequence sent.
    void setDownLoadedXmlDoc(std::shared_ptr<const xml::Document> document) {
        m_downLoadedXmlDoc = std::move(document);
    }
    [[nodiscard]] const xml::Document* downLoadedXmlDoc() const noexcept {
        return m_downLoadedXmlDoc.get();
    }
    // Shows every cancelled group in one message and empties the list.
    virtual void PrintErrorMessages();

    // --- The unit and value property family ---
    // By property name ("SupplyPressureUnit", "PcbTemperatureValue", ...):
    // the text of the page element behind it. A name outside the family is
    // a missing member.
    [[nodiscard]] std::string pageProperty(std::string_view strProperty);
    void setPageProperty(std::string_view strProperty, const std::string& strValue);
    // The element behind a property of the family on this class.
    [[nodiscard]] virtual PageElement propertyElement(std::string_view strProperty) const;

protected:
    DeviceClass() = default;
    [[noreturn]] static void missing(std::string_view strMember) { throw MemberMissing(strMember); }
    // objUserControl, through the private accessor; a failure when unset.
    [[nodiscard]] IUserControl& userControl() const;
    // The set of items that a change of strItem forces into the request,
    // or nothing; SpecialUpploadCase runs the same steps over it on every class.
    [[nodiscard]] virtual const SpecialSet* findSpecialSet(std::string_view strRequestGroup,
                                                           std::string_view strItem) const;
    // The text of a page element: a label's caption, else its text; "" and
    // no write when the element is not on the form yet.
    [[nodiscard]] std::string elementText(PageElement element) const;
    void setElementText(PageElement element, const std::string& strText) const;
    // The monitoring loop's replies close nothing; a read of the live values
    // that the user asked for (the page's upload) closes as any request does
    // at its final reply, good or failed.
    void closeLiveValueRead(const std::string& strName, bool isFinal, const std::string& strAccess,
                            bool blFailed);
    [[nodiscard]] form::Control* findElement(PageElement element) const;

    // Shows the page of a node by the class's table. A node outside the
    // table shows nothing: there is no shared element cursor to fall back
    // on, and CurrentFrame stays as it is.
    void showPage(PageTable table, std::string_view strNodeName) const;
    // Hides every element of the page arrays that is on the form.
    void hidePages(PageArrays arrays) const;

    // The element of a property in a class's table, or nothing.
    using ElementTable = std::span<const std::pair<std::string_view, PageElement>>;
    [[nodiscard]] static const PageElement* findIn(ElementTable table, std::string_view strName);
    // The names, each followed by the separator.
    [[nodiscard]] static std::string separatedList(std::initializer_list<std::string_view> names);
    // The end point of a step test: the sum of elements 1 and 2 of the test
    // settings fields when both hold text, else 0.
    [[nodiscard]] float stepEndPointOf(std::string_view strSettingsArray) const;
    // CheckTestParameters over the test list element and settings fields of
    // a page.
    [[nodiscard]] bool checkTestParametersOf(int intListElement,
                                             std::string_view strSettingsArray);
    // SetStepTestPerformanceValues onto elements 3 to 5 of a label array.
    void showStepTestFigures(std::string_view strLabels, float sngDeadTime, float sngSettling63,
                             float sngSettling98);
    // Empties the point boxes 0 to ModificationPoints - 1 of a flow page.
    void clearFlowPoints(std::string_view strPointArray) const;

    // The trend time spans this class carries, by property name.
    [[nodiscard]] virtual bool hasTrendTime(std::string_view /*strProperty*/) const {
        return false;
    }
    void setTrendTime(std::string_view strProperty, std::string strText);
    // Row 1, entries 0 to 19, becomes a running time axis from the age of
    // the oldest point towards 0; the span goes to strTimeProperty.
    void runningTimeAxis(TrendCurve& arrCurve, std::string_view strTimeProperty);
    // Row 1, entries 0 to 19, rounded through their text with one decimal.
    static void roundTimeRow(TrendCurve& arrCurve);
    // Whether row 0 still holds an empty slot (-1.0) of the safety valve
    // controller's trends.
    [[nodiscard]] static bool holdsEmptySlot(const TrendCurve& arrCurve);
    // The event log items of a data file or an offline reply, on every
    // class; blWithCount takes "eventLogCount" too.
    void eventLogItem(xml::Node xmlNode, bool blInit, bool blWithCount);
    // Sets the reset boxes of an array, elements intFirst to intLast, to 0.
    void clearResetBoxes(std::string_view strArray, int intFirst, int intLast) const;
    // A number of a page or item text, 0 when the text is blank.
    [[nodiscard]] static float limitOf(const std::string& strValue);
    // An item's value as a limit (FetchValueByTag), 0 when empty.
    [[nodiscard]] float itemLimit(const std::string& strItem);
    // A page element's text as a limit, 0 when blank or not on the form.
    [[nodiscard]] float fieldLimit(PageElement element) const;
    // Sets CurrentFrame and writes each group offline, in order; CurrentFrame
    // gets its old value back at the end.
    using FrameGroup = std::pair<std::string_view, std::string_view>;
    void sendOfflineGroups(std::span<const FrameGroup> groups);

    // --- The shape of Reply that the PROFIBUS and safety valve classes share
    // (devices/SharedReply.cpp); each difference is one of the hooks below.
    void replyShared(xml::Document& xmlDoc);
    // A "deviceStatus" reply: the status tree and the header.
    virtual void statusReply(xml::Document& xmlDoc);
    // Whether an item of a "deviceStatus" reply decides ShowDeviationAlert;
    // called for every item before it reaches the status tree.
    virtual void deviationAlertItem(xml::Node /*item*/) {}
    // The items of a good read of a group with a row of the class's item
    // table; False leaves them to the shared rows (event log, page values).
    virtual bool classItems(const std::string& /*strName*/,
                            const std::vector<xml::Node>& /*items*/) {
        return false;
    }
    // After the items of a good read or write, before the group closes.
    virtual void afterGoodReply(const std::string& /*strName*/, const std::string& /*strAccess*/,
                                bool /*isFinal*/, const std::vector<xml::Node>& /*items*/) {}
    // The tree node that a good final reply of a reset group marks "read".
    [[nodiscard]] virtual std::string resetTreeNode() const { return "resetDiagnostics"; }
    // Whether a failed group with this error code is reported to the user.
    [[nodiscard]] virtual bool reportsFailure(const std::string& /*strErrorCode*/) const {
        return true;
    }
    // The monitoring reply while monitoring is off: the page's state label.
    virtual void monitoringStopped() { missing("monitoringStopped"); }
    // The shared status walk: every item to the tree, then parents and header.
    void sharedDeviceStatus(xml::Document& xmlDoc);
    // Good read: each item to the class's table, the event log or its page.
    void sharedItems(const std::string& strName, const std::vector<xml::Node>& items);
    // Failed reply: the error flag and the text of the failed group, the
    // translated error code once a group, the missing items behind it.
    void sharedGatherError(const std::string& strErrorCode, const std::vector<xml::Node>& items);
    // Whether a reply holds an item of that name.
    [[nodiscard]] static bool holdsItem(const std::vector<xml::Node>& items,
                                        std::string_view strName);
    // One monitored series of a family: the item's name, the page switch
    // that shows it on the chart (a check box or an option), and whether its
    // value is kept as the set point or the travel of the deviation label.
    enum class MonitoringKeep { None, Setpoint, Travel };
    struct MonitoringSeries {
        std::string_view name;
        PageElement shownBy;
        MonitoringKeep keep;
    };
    // ArrangeValues over a family's series: MonitoringValues (name, value,
    // name, value, ...) becomes the chart list in the series' order, with
    // "-500" for a series switched off, the graph values the log list with
    // every value; the deviation element shows set point less travel.
    void arrangeMonitoringValues(std::span<const MonitoringSeries> series,
                                 PageElement deviation);

    // Reply state of a sequence: the error flag, the monitoring error flag,
    // the error text and the graph values that ArrangeValues leaves.
    bool m_blError = false;
    bool m_blMonitoringError = false;
    std::string m_strErrorText;
    std::string m_strGraphValues;

    std::string m_specialCaseItems;
    std::string m_strCancelledGroups;
    bool m_smuiStopPressed = false;
    std::shared_ptr<const xml::Document> m_downLoadedXmlDoc;

private:
    IUserControl* m_objUserControl = nullptr;
    std::vector<std::pair<std::string, std::string>> m_trendTimes;
};

// The class for a device key: "KT540_1.0" a clsKT540, "PL500_1" and
// "PL500_2" a clsPL500, anything else a clsKT520.
[[nodiscard]] std::unique_ptr<DeviceClass> CreateDeviceClass(std::string_view strDeviceType);

}  // namespace kt500::devices
