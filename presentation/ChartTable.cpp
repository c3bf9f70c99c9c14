#include "presentation/ChartTable.h"

#include <array>
#include <stdexcept>
#include <string>

namespace kt500::presentation {

namespace {

using B = ChartBuilder;

// Trends over a category axis with two limit lines, test and flow charts
// as scientific graphs.
constexpr std::array kSetups = {
    ChartSetup{B::TravelDeviation, "pegoTravelDeviation", false, 4, 20, 2, 1, 0.9, 3, 1, 0, false,
               2, false, "travelDeviationYAxisTitle", "travelDeviationXAxisTitle"},
    ChartSetup{B::BreakawayPressure, "pegoBreakawayPressure", false, 4, 20, 2, 1, 0.9, 3, 1, 0,
               false, 2, false, "", "breakawayPressureXAxisTitle"},
    ChartSetup{B::LeakageSignal, "pegoLeakageSignal", false, 4, 20, 2, 1, 0.9, 3, 1, 0, false, 2,
               false, "leakageSignalYAxisTitle", "leakageSignalXAxisTitle"},
    ChartSetup{B::TravelVsTime, "pegoTravelVsTime", false, 1, 10, 0, 1, 0.9, 0, 1, 0, false, 2,
               false, "travelVsTimeYAxisTitle", "travelVsTimeXAxisTitle"},
    ChartSetup{B::LoadFactor, "pegoLoadFactor", false, 4, 20, 2, 1, 0.9, 3, 1, 0, false, 2, false,
               "loadFactorYAxisTitle", "loadFactorXAxisTitle"},
    ChartSetup{B::FlowModification, "pegoFlowModification", false, 3, 0, 2, 0, 0, 0, 0, 2, false,
               2, false, "", ""},
    ChartSetup{B::InputSignalVsTravel, "pesgoInputSignalVsTravel", true, 1, 0, 2, 0, 0, 0, 0, 2,
               true, 0, false, "", ""},
    ChartSetup{B::StepTest, "pesgoStepTest", true, 1, 50, 0, 0, 0, 0, 1, 2, false, 3, false,
               "stepTestYAxisTitle", "stepTestXAxisTitle"},
    ChartSetup{B::HysteresisTest, "pesgoHysteresisTest", true, 1, 50, 0, -1, 0, 0, 1, 0, true, 3,
               false, "hysteresisTestYAxisTitle", "hysteresisTestXAxisTitle"},
    ChartSetup{B::PneumaticsTest, "pesgoPneumaticsTest", true, 1, 50, 0, 0, 0, 0, 1, 2, true, 3,
               true, "", "pneumaticsTestXAxisTitle"},
    ChartSetup{B::ValveTest, "pesgoValveTest", true, 4, 50, 2, 0, 0, 0, 1, 2, true, 3, true, "",
               "valveTestXAxisTitle"},
};

constexpr std::array kKT520 = {
    ChartPlacement{B::TravelDeviation, 12, 500, 600, 150, 1400},
    ChartPlacement{B::HysteresisTest, 19, 500, 400, 150, 2300},
    ChartPlacement{B::LoadFactor, 14, 500, 600, 150, 1800},
    ChartPlacement{B::FlowModification, 11, 2500, 1200, 420, 1750},
    ChartPlacement{B::InputSignalVsTravel, 11, 2220, 1630, 420, 1750},
    ChartPlacement{B::StepTest, 18, 500, 400, 150, 2300},
    ChartPlacement{B::TravelVsTime, 13, 500, 600, 150, 1400},
};

constexpr std::array kKT540 = {
    ChartPlacement{B::TravelDeviation, 15, 500, 600, 150, 1400},
    ChartPlacement{B::HysteresisTest, 21, 500, 400, 150, 2300},
    ChartPlacement{B::LoadFactor, 16, 500, 600, 150, 1800},
    ChartPlacement{B::FlowModification, 13, 2500, 1200, 380, 2300},
    ChartPlacement{B::InputSignalVsTravel, 13, 2220, 1630, 420, 1750},
    ChartPlacement{B::StepTest, 20, 500, 400, 150, 2300},
    ChartPlacement{B::TravelVsTime, 14, 500, 600, 150, 1400},
};

// The valve test's curve is drawn on the valve test page (its own frame),
// not over the pneumatics curve on the pneumatics test page: the two charts
// would cover each other there (docs/charts-and-monitoring.md).
constexpr int kValveTestPage = 13;

constexpr std::array kPL500_1 = {
    ChartPlacement{B::BreakawayPressure, 7, 500, 600, 150, 1400},
    ChartPlacement{B::LeakageSignal, 8, 500, 600, 150, 1400},
    ChartPlacement{B::LoadFactor, 6, 500, 600, 150, 1800},
    ChartPlacement{B::PneumaticsTest, 14, 500, 400, 150, 2300},
    ChartPlacement{B::ValveTest, kValveTestPage, 500, 400, 150, 2650},
};

constexpr std::array kPL500_2 = {
    ChartPlacement{B::BreakawayPressure, 7, 500, 600, 150, 1400},
    ChartPlacement{B::LeakageSignal, 8, 500, 600, 150, 1400},
    ChartPlacement{B::LoadFactor, 6, 500, 600, 150, 1800},
    ChartPlacement{B::PneumaticsTest, 14, 500, 600, 150, 2300},
    ChartPlacement{B::ValveTest, kValveTestPage, 500, 1000, 150, 2650},
};

}  // namespace

const ChartSetup& SetupOf(ChartBuilder builder) {
    for (const ChartSetup& setup : kSetups) {
        if (setup.builder == builder) {
            return setup;
        }
    }
    throw std::logic_error("no chart builder " + std::to_string(static_cast<int>(builder)));
}

std::span<const ChartPlacement> PlacementsOf(std::string_view strDeviceType) {
    if (strDeviceType == "KT540_1.0") {
        return kKT540;
    }
    if (strDeviceType == "PL500_1") {
        return kPL500_1;
    }
    if (strDeviceType == "PL500_2") {
        return kPL500_2;
    }
    return kKT520;
}

std::string_view PlacementFrameArray(std::string_view strDeviceType) {
    if (strDeviceType == "KT540_1.0") {
        return "fraKT540";
    }
    if (strDeviceType == "PL500_1" || strDeviceType == "PL500_2") {
        return "fraPL500";
    }
    return "fraKT520";
}

}  // namespace kt500::presentation
