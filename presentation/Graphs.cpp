#include "presentation/Graphs.h"

#include "devices/DeviceClass.h"
#include "devices/MemberMissing.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>

namespace kt500::presentation {

namespace {

using form::ChartAxis;
using form::ChartAxisId;
using form::ChartModel;

constexpr std::array kFormCharts = {"pegoKT520",  "pesgoKT520", "pegoKT540",
                                    "pesgoKT540", "pegoPL500",  "pesgoPL500"};
constexpr std::array kMonitoringCharts = {"pegoKT520", "pegoKT540", "pegoPL500"};
// The series that go on the right-hand axis of the monitoring chart.
constexpr std::array kRightAxisSeries = {"inputSignal", "actuatorPressure", "pcbTemperature"};
constexpr const char* kZoomOutKey = "zoomOutTT";

// Line types of the library: 0 a thin solid line, 1 dashed, 3 dotted,
// 6 a medium solid line, 10 a thick solid line.
constexpr int kLineSolid = 0;
constexpr int kLineDash = 1;
constexpr int kLineMediumSolid = 6;

// The limit lines' own colours where the chart gives none of red.
constexpr std::uint32_t kLimitColor1 = 0x00A5FF;  // orange
constexpr std::uint32_t kLimitColor2 = 0x00D7FF;  // gold
constexpr std::uint32_t kRed = 0x0000FF;
constexpr std::uint32_t kBlue = 0xFF0000;
constexpr std::uint32_t kGrey = 0x808080;

void setAxis(ChartModel& chart, ChartAxisId id, std::string_view key, int manual, double low,
             double high) {
    ChartAxis axis = chart.axis(id);
    axis.labelKey = std::string(key);
    axis.manualScaleControl = manual;
    axis.manualMin = low;
    axis.manualMax = high;
    chart.setAxis(id, std::move(axis));
}

void styleTrendSubsets(ChartModel& chart, ChartBuilder builder) {
    const bool redLimits =
        builder == ChartBuilder::BreakawayPressure || builder == ChartBuilder::LeakageSignal;
    chart.setSubsetColor(0, kBlue);
    chart.setSubsetLineType(0, kLineSolid);
    chart.setSubsetColor(1, redLimits ? kRed : kLimitColor1);
    chart.setSubsetLineType(1, kLineDash);
    chart.setSubsetColor(2, redLimits ? kRed : kLimitColor2);
    chart.setSubsetLineType(2, kLineDash);
    chart.setSubsetColor(3, kGrey);
    chart.setSubsetLineType(3, kLineSolid);
}

std::vector<std::string> splitBlanks(const std::string& strText) {
    std::vector<std::string> names;
    std::istringstream in(strText);
    for (std::string name; in >> name;) {
        names.push_back(name);
    }
    return names;
}

}  // namespace

void Graphs::addHandlers(form::EventHandlers& handlers) {
    for (const char* name : kFormCharts) {
        handlers.add(name, form::EventKind::MouseDown,
                     [this](form::FormEvent& event) { Chart_MouseDown(*event.control, event.button); });
        handlers.add(name, form::EventKind::ZoomIn,
                     [this](form::FormEvent& event) { Chart_ZoomIn(*event.control); });
        handlers.add(name, form::EventKind::ZoomOut,
                     [this](form::FormEvent& event) { Chart_ZoomOut(*event.control); });
    }
}

form::Control& Graphs::createChart(const std::string& strName, form::Control* container,
                                   bool pesgo) {
    form::Control& chart = m_control.form().add(form::ControlKind::Chart, strName, -1, container);
    chart.chart().setScientific(pesgo);
    m_created.push_back(strName);
    return chart;
}

form::Control& Graphs::CreatePegoChart(const std::string& strName, form::Control* container) {
    return createChart(strName, container, false);
}

form::Control& Graphs::CreatePesgoChart(const std::string& strName, form::Control* container) {
    return createChart(strName, container, true);
}

void Graphs::DestroyChart(const std::string& strName) {
    const auto it = std::find(m_created.begin(), m_created.end(), strName);
    if (it == m_created.end()) {
        throw std::invalid_argument("no chart of this session is named " + strName);
    }
    m_created.erase(it);
    form::Form& form = m_control.form();
    if (form::Control* chart = form.find(strName)) {
        if (m_popupChart == chart) {
            m_popupChart = nullptr;
        }
        form.remove(*chart);
    }
}

void Graphs::RemoveDeviceCharts() {
    while (!m_created.empty()) {
        const std::string name = m_created.back();
        DestroyChart(name);
    }
}

void Graphs::PlaceChart(form::Control& chart, const form::Control& frame, int intTop, int intLeft,
                        int intHeightMargin, int intWidthMargin) {
    chart.setWidth(frame.width() - intWidthMargin);
    chart.setTop(intTop);
    chart.setHeight(frame.height() - intHeightMargin);
    chart.setLeft(intLeft);
}

void Graphs::PlaceAllCharts() {
    form::Form& form = m_control.form();
    session::clsTools& tools = m_control.tools();
    const std::string_view frames = PlacementFrameArray(tools.DeviceType);
    for (const ChartPlacement& row : PlacementsOf(tools.DeviceType)) {
        const ChartSetup& setup = SetupOf(row.builder);
        form::Control& frame = form.control(frames, row.frameElement);
        form::Control* chart = form.find(setup.name);
        if (chart == nullptr) {
            chart = setup.pesgo ? &CreatePesgoChart(std::string(setup.name), &frame)
                                : &CreatePegoChart(std::string(setup.name), &frame);
        } else if (chart->container() != &frame) {
            form.setContainer(*chart, &frame);
        }
        int points = setup.points;
        if (row.builder == ChartBuilder::FlowModification) {
            points = m_control.deviceClass().ModificationPoints();
        }
        BuildChart(*chart, row.builder, points);
        PlaceChart(*chart, frame, row.top, row.left, row.heightMargin, row.widthMargin);
    }
    ShowOneFlowChart();
}

void Graphs::ShowOneFlowChart() {
    // The flow page's two charts share one place; every set-up ends by
    // showing its chart, so the page's check box decides again which one
    // the user sees: the flow curves when checked (or with no check box),
    // else the input signal.
    form::Form& form = m_control.form();
    const form::Control* check = form.find("chkFlowModification");
    form::Control* flowChart = form.find(SetupOf(ChartBuilder::FlowModification).name);
    form::Control* inputChart = form.find(SetupOf(ChartBuilder::InputSignalVsTravel).name);
    if (flowChart == nullptr || inputChart == nullptr) {
        return;
    }
    const bool blFlowCurves = check == nullptr || check->value() == 1;
    flowChart->setVisible(blFlowCurves);
    inputChart->setVisible(!blFlowCurves);
}

void Graphs::applyCommon(ChartModel& chart) {
    chart.setOption("AllowCustomization", 0);
    chart.setOption("DisableClipping", 0);
    chart.setOption("MainTitleBold", 1);
    chart.setOption("GraphBackColor", kGraphBackColor);
    chart.setOption("FontSizeGlobalCntl", 1.2);
    chart.setOption("GridLineControl", 0);
    chart.setOption("NoHelp", 1);
}

void Graphs::BuildChart(form::Control& control, ChartBuilder builder, int intPoints) {
    const ChartSetup& setup = SetupOf(builder);
    ChartModel& chart = control.chart();
    applyCommon(chart);
    chart.setScientific(setup.pesgo);
    chart.setOption("AllowZooming", setup.allowZooming);
    chart.setOption("AllowPopup", setup.allowPopup ? 1 : 0);
    chart.setSubsets(setup.subsets);
    chart.setPoints(setup.points > 0 ? setup.points : std::max(intPoints, 0));
    chart.setOption("SubsetsToLegend", setup.legendSubsets);
    if (setup.plottingMethod >= 0) {
        chart.setOption("PlottingMethod", setup.plottingMethod);
    }
    if (setup.barWidth > 0.0) {
        chart.setOption("BarWidth", setup.barWidth);
    }
    if (setup.comparisonSubsets > 0) {
        chart.setOption("ComparisonSubsets", setup.comparisonSubsets);
    }
    chart.setOption("FontSize", setup.fontSize);
    chart.setOption("DataShadows", setup.dataShadows);

    const bool percentOfTravel = builder == ChartBuilder::TravelVsTime;
    setAxis(chart, ChartAxisId::Y, setup.yAxisKey, 3, 0.0, percentOfTravel ? 100.0 : 0.0);
    setAxis(chart, ChartAxisId::X, setup.xAxisKey, setup.manualX ? 3 : 0, 0.0, 0.0);

    switch (builder) {
        case ChartBuilder::TravelDeviation:
        case ChartBuilder::BreakawayPressure:
        case ChartBuilder::LeakageSignal:
        case ChartBuilder::LoadFactor:
            styleTrendSubsets(chart, builder);
            break;
        case ChartBuilder::FlowModification: {
            const std::array lineTypes = {10, 3, 1};
            for (int subset = 0; subset < 3; ++subset) {
                chart.setSubsetLineType(subset, lineTypes[static_cast<std::size_t>(subset)]);
            }
            // The curve's points are the tenths or twentieths of the signal.
            for (int point = 0; point < chart.points(); ++point) {
                chart.setPointLabel(point, std::to_string(point));
            }
            chart.setOption("SimpleLineLegend", 1);
            // The flow procedure decides which of the two charts of its page shows.
            control.setVisible(false);
            chart.setOption("PEactions", 0);
            return;
        }
        case ChartBuilder::StepTest:
        case ChartBuilder::PneumaticsTest:
            chart.setSubsetLineType(0, kLineMediumSolid);
            break;
        case ChartBuilder::HysteresisTest:
            chart.setSubsetLineType(0, kLineMediumSolid);
            chart.setX(0, 0, 0.1);
            chart.setY(0, 0, 0.1);
            break;
        case ChartBuilder::ValveTest:
            chart.setOption("ShowAnnotations", 1);
            chart.setOption("VertLineAnnotation", -1);
            chart.setOption("VertLineAnnotationType", 0);
            chart.setOption("VertLineAnnotationColor", 0);
            chart.setOption("VertLineAnnotationAxis", 0);
            break;
        case ChartBuilder::TravelVsTime:
        case ChartBuilder::InputSignalVsTravel:
            break;
    }
    TranslateChart(chart, [this](const std::string& key) { return m_control.Translate(key); });
    chart.setOption("PEactions", 0);
    control.setVisible(true);
}

form::Control& Graphs::getInputSignalVsTravelGraphObject() {
    return m_control.form().control(SetupOf(ChartBuilder::InputSignalVsTravel).name);
}

form::Control& Graphs::MonitoringChart(int intMonitoringFrame) {
    if (intMonitoringFrame < 0 || intMonitoringFrame >= static_cast<int>(kMonitoringCharts.size())) {
        throw std::out_of_range("no monitoring chart for the page " +
                                std::to_string(intMonitoringFrame));
    }
    return m_control.form().control(kMonitoringCharts[static_cast<std::size_t>(intMonitoringFrame)]);
}

void Graphs::BuildMonitoringGraph(form::Control& control, const std::string& strHeaders,
                                  int intUseDataPoints, int intHeight) {
    ChartModel& chart = control.chart();
    const std::vector<std::string> names = splitBlanks(strHeaders);
    applyCommon(chart);
    chart.setScientific(false);
    chart.setOption("PrepareImages", 1);
    chart.setOption("AllowPopup", 1);
    chart.setOption("AllowZooming", 1);
    chart.setOption("DateTimeMode", 1);
    chart.setOption("UsingXDataII", 1);
    chart.setOption("SimpleLineLegend", 1);
    chart.setOption("PlottingMethod", 17);
    chart.setOption("PlottingMethodII", 0);
    chart.setOption("FontSize", 1);
    chart.setOption("UseDataPoints", intUseDataPoints);
    // The chart grows point by point up to the limit, then it is rebuilt.
    chart.setPoints(0);
    chart.setSubsets(static_cast<int>(names.size()));
    int rightAxisFrom = static_cast<int>(names.size());
    for (int subset = 0; subset < chart.subsets(); ++subset) {
        const std::string& name = names[static_cast<std::size_t>(subset)];
        chart.setSubsetLabelKey(subset, name);
        chart.setSubsetColor(subset, kMonitoringColors[static_cast<std::size_t>(subset) % 6]);
        chart.setSubsetLineType(subset, kLineSolid);
        if (rightAxisFrom == chart.subsets() &&
            std::find(kRightAxisSeries.begin(), kRightAxisSeries.end(), name) !=
                kRightAxisSeries.end()) {
            rightAxisFrom = subset;
        }
    }
    chart.setOption("RYAxisComparisonSubsets", chart.subsets() - rightAxisFrom);
    // The left axis holds the travels in percent; a switched-off series
    // (-500) lies below it.
    setAxis(chart, ChartAxisId::Y, "", 3, -10.0, 110.0);
    setAxis(chart, ChartAxisId::X, "time", 3, 0.0, 0.0);
    ChartAxis right = chart.axis(ChartAxisId::RightY);
    right.manualScaleControl = 3;
    chart.setAxis(ChartAxisId::RightY, std::move(right));
    TranslateChart(chart, [this](const std::string& key) { return m_control.Translate(key); });
    chart.setOption("PEactions", 0);
    if (intHeight > 0) {
        chart.setOption("MonitorGraphHeight", intHeight);
    }
    control.setVisible(true);
}

void Graphs::TranslateGraphs() {
    const auto translate = [this](const std::string& key) { return m_control.Translate(key); };
    for (form::Control* control : m_control.form().controls()) {
        if (control->kind() == form::ControlKind::Chart) {
            TranslateChart(control->chart(), translate);
        }
    }
}

void Graphs::TranslateChart(ChartModel& chart,
                            const std::function<std::string(const std::string&)>& translate) {
    for (int subset = 0; subset < chart.subsets(); ++subset) {
        const std::string key = chart.subsetLabelKey(subset);
        if (!key.empty()) {
            chart.setSubsetLabel(subset, translate(key));
        }
    }
    if (!chart.mainTitleKey().empty()) {
        chart.setMainTitle(translate(chart.mainTitleKey()));
    }
    if (!chart.subTitleKey().empty()) {
        chart.setSubTitle(translate(chart.subTitleKey()));
    }
    for (const ChartAxisId id : {ChartAxisId::X, ChartAxisId::Y, ChartAxisId::RightY}) {
        ChartAxis axis = chart.axis(id);
        if (!axis.labelKey.empty()) {
            axis.label = translate(axis.labelKey);
            chart.setAxis(id, std::move(axis));
        }
    }
}

void Graphs::Chart_MouseDown(form::Control& chart, int intButton) {
    if (intButton != 2) {
        return;
    }
    form::Form& form = m_control.form();
    // The undo item is offered only while the chart is zoomed.
    if (form::Control* undo = form.find("mnuPopupItem", 1)) {
        undo->setEnabled(chart.tag() == kZoomOutKey);
    }
    m_popupChart = &chart;
    if (form::Control* popup = form.find("mnuGraphsPopup")) {
        popup->setTag(chart.displayName());
    }
}

void Graphs::Chart_ZoomIn(form::Control& chart) {
    chart.setToolTipText(m_control.Translate(kZoomOutKey));
    chart.setTag(kZoomOutKey);
}

void Graphs::Chart_ZoomOut(form::Control& chart) {
    chart.setToolTipText("");
    chart.setTag("");
    if (form::Control* undo = m_control.form().find("mnuPopupItem", 1)) {
        undo->setEnabled(false);
    }
}

}  // namespace kt500::presentation
