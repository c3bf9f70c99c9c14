// Trends: the histories the device stores (load factor, travel deviation,
// travel versus time; breakaway pressure and leakage signal on the safety
// valve controller). Items of a reply or parameters of the document fill
// the control's arrays one sample at a time; a trend over time is complete
// when both its runs (values and time steps, each ending at index 19) have
// arrived, and then the device class turns the time row into the chart's
// axis and hands the array back to Update*Graph, which draws the values
// with the limit lines of the family.
#pragma once

#include "devices/IUserControl.h"
#include "devices/TrendCurve.h"
#include "form/EventHandlers.h"

#include <string>
#include <string_view>

namespace kt500::monitoring {

// The chart controls of the trends (created by the chart layer).
inline constexpr std::string_view kLoadFactorChart = "pegoLoadFactor";
inline constexpr std::string_view kDeviationChart = "pegoTravelDeviation";
inline constexpr std::string_view kTravelVsTimeChart = "pegoTravelVsTime";
inline constexpr std::string_view kBreakawayPressureChart = "pegoBreakawayPressure";
inline constexpr std::string_view kLeakageSignalChart = "pegoLeakageSignal";
// The leakage signal's scale between the device's raw signal and percent.
inline constexpr float kLeakageScale = 30.32F;

class Trends {
public:
    explicit Trends(devices::IUserControl& control);

    // cmdHALoadFactorUpdate.
    void addHandlers(form::EventHandlers& handlers);

    // One sample: an item of a reply (blInitialize False, the value is the
    // node's text) or a parameter of the document (True, its "value").
    // A failure is shown under the member's name and the run goes on.
    void AddLoadFactorValuePair(xml::Node nodeObj, bool blInitialize);
    void AddTravelDeviationValuePair(xml::Node nodeObj, bool blInitialize);
    void AddTravelVsTimeValuePair(xml::Node nodeObj, bool blInitialize);
    void AddBreakawayPressureValuePair(xml::Node nodeObj, bool blInitialize);
    void AddLeakageSignalValuePair(xml::Node nodeObj, bool blInitialize);

    // Values, time labels and limit lines onto the chart; the trend's
    // completion flag becomes False.
    void UpdateLoadFactorGraph(devices::TrendCurve& arrCurve);
    void UpdateDeviationGraph(devices::TrendCurve& arrCurve);
    void UpdateTravelVsTimeGraph(devices::TrendCurve& arrCurve);
    void UpdateBreakawayPressureGraph(devices::TrendCurve& arrCurve);
    void UpdateLeakageSignalGraph(devices::TrendCurve& arrCurve);
    // The limit lines of the deviation and load factor charts afresh from
    // the device class, after the alert settings were read.
    void UpdateLimits();

    // The load factor worked over with the supply pressure on the page, on
    // demand (HART positioner, actuator type 2).
    void cmdHALoadFactorUpdate_Click();

    // The control's arrays.
    devices::TrendCurve arrLoadFactor{devices::TrendCurve::kTimeEntries};
    devices::TrendCurve arrDeviation{devices::TrendCurve::kTimeEntries};
    devices::TrendCurve arrBreakawayPressure{devices::TrendCurve::kTimeEntries};
    devices::TrendCurve arrLeakageSignal{devices::TrendCurve::kTimeEntries};
    devices::TrendCurve arrTravelVsTime{devices::TrendCurve::kTravelEntries};

private:
    // A sample's text (through fDecimalSep to the point) as a 32-bit float;
    // a text that is no number throws.
    [[nodiscard]] static float sampleValue(xml::Node nodeObj, bool blInitialize);
    // A no-sample item goes to its page through SetItemValueToGUI.
    void showItem(xml::Node nodeObj, bool blInitialize);
    // The index in the last two characters of a name.
    [[nodiscard]] static int indexOf(const std::string& strName);
    // Stores one sample of a trend over time; at index 19 the completion by
    // two halves: the first finished run sets the flag, the second formats.
    template <typename Format>
    void storeSample(devices::TrendCurve& arrCurve, int intRow, int intIndex, float sngValue,
                     bool& blFlag, Format format);
    // Values, labels and limit lines of one chart.
    void drawTrend(std::string_view strChart, const devices::TrendCurve& arrCurve,
                   std::initializer_list<float> limits);
    [[nodiscard]] form::ChartModel* chartOf(std::string_view strChart);
    static void redraw(form::ChartModel& chart);

    devices::IUserControl& m_control;
};

}  // namespace kt500::monitoring
