// The charts of the pages: what each builder sets on a chart, and where
// PlaceAllCharts puts each chart of a family. Pure tables, read by Graphs.
#pragma once

#include <span>
#include <string_view>

namespace kt500::presentation {

// One builder of the chart construction.
enum class ChartBuilder {
    TravelDeviation,
    BreakawayPressure,
    LeakageSignal,
    TravelVsTime,
    LoadFactor,
    FlowModification,
    InputSignalVsTravel,
    StepTest,
    HysteresisTest,
    PneumaticsTest,
    ValveTest,
};

// What a builder sets; -1 leaves a switch at the library's default.
struct ChartSetup {
    ChartBuilder builder;
    std::string_view name;  // the control's name on the form
    bool pesgo;             // a scientific graph with X data of its own
    int subsets;
    int points;          // 0: given by the caller (ModificationPoints, the curve)
    int legendSubsets;   // subsets in the legend; -1 all of them
    int plottingMethod;  // -1 default
    double barWidth;     // 0 none
    int comparisonSubsets;
    int fontSize;
    int dataShadows;
    bool manualX;  // ManualScaleControlX 3 beside Y
    int allowZooming;
    bool allowPopup;
    std::string_view yAxisKey;
    std::string_view xAxisKey;
};

// One row of PlaceAllCharts: the chart, its frame element of the family's
// array and the margins and position inside it.
struct ChartPlacement {
    ChartBuilder builder;
    int frameElement;
    int widthMargin;
    int heightMargin;
    int left;
    int top;
};

[[nodiscard]] const ChartSetup& SetupOf(ChartBuilder builder);
// The rows of a device type: "KT540_1.0" the KT540's, "PL500_1" and
// "PL500_2" their own, every other type the KT520's.
[[nodiscard]] std::span<const ChartPlacement> PlacementsOf(std::string_view strDeviceType);
// The frame array of the rows of a device type ("fraKT520", ...).
[[nodiscard]] std::string_view PlacementFrameArray(std::string_view strDeviceType);

}  // namespace kt500::presentation
