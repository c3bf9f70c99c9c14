// Graphs (modGraphs): the chart layer. Creates the family's charts of a
// session on their pages, builds each with its subsets, legend, line types,
// colours, axes and titles, places them in their frames, translates them
// after a language change, sets up the monitoring chart, and handles the
// charts' events (the right-button popup and the zoom tool tips). Charts
// live in the form as controls of kind Chart; the window draws them.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"
#include "presentation/ChartTable.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::presentation {

// The common look of every chart of the layer.
inline constexpr std::uint32_t kGraphBackColor = 0xE0E0E0;
// The monitoring chart's series colours (BGR): blue, red, green, magenta,
// dark cyan, brown.
inline constexpr std::uint32_t kMonitoringColors[6] = {0xFF0000, 0x0000FF, 0x008000,
                                                       0xFF00FF, 0x808000, 0x004080};
// The most points a monitoring series holds before the chart is rebuilt.
inline constexpr int kMonitoringPointLimit = 999;

class Graphs {
public:
    explicit Graphs(devices::IUserControl& control) : m_control(control) {}

    void addHandlers(form::EventHandlers& handlers);

    // A chart control of the given name in container: a graph over the
    // point number (Pego) or a scientific graph (Pesgo).
    form::Control& CreatePegoChart(const std::string& strName, form::Control* container);
    form::Control& CreatePesgoChart(const std::string& strName, form::Control* container);
    // Removes a chart this session created; a name it did not create is no chart.
    void DestroyChart(const std::string& strName);
    // Removes every chart the session created.
    void RemoveDeviceCharts();

    // Width and Height from the frame less the margins, Top and left as given.
    static void PlaceChart(form::Control& chart, const form::Control& frame, int intTop,
                           int intLeft, int intHeightMargin, int intWidthMargin);
    // Once per session: creates (or takes from the form) every chart of the
    // device type's placement table, builds and places it.
    void PlaceAllCharts();
    // Shows the one of the flow page's two charts that its check box asks for.
    void ShowOneFlowChart();
    // The names of the charts PlaceAllCharts created, in creation order.
    [[nodiscard]] const std::vector<std::string>& sessionCharts() const noexcept {
        return m_created;
    }

    // Sets up a chart by its builder; intPoints is used where the builder
    // takes its points from the caller.
    void BuildChart(form::Control& chart, ChartBuilder builder, int intPoints);
    // The input signal against travel chart of the flow page.
    [[nodiscard]] form::Control& getInputSignalVsTravelGraphObject();

    // The monitoring chart of the family: pegoKT520, pegoKT540 or pegoPL500
    // by MonitoringFrame (0, 1, 2).
    [[nodiscard]] form::Control& MonitoringChart(int intMonitoringFrame);
    // Sets up the monitoring chart empty: one subset per name of
    // strHeaders (blank-separated), its colours and labels, the time axis,
    // marks at the points when intUseDataPoints is 1. The series from the
    // first right-axis name on are compared on the right-hand axis.
    void BuildMonitoringGraph(form::Control& chart, const std::string& strHeaders,
                              int intUseDataPoints, int intHeight);

    // Rewrites the subset labels, titles and axis titles of every chart
    // by their language keys.
    void TranslateGraphs();
    static void TranslateChart(form::ChartModel& chart,
                               const std::function<std::string(const std::string&)>& translate);

    // The chart events of the form's charts.
    void Chart_MouseDown(form::Control& chart, int intButton);
    void Chart_ZoomIn(form::Control& chart);
    void Chart_ZoomOut(form::Control& chart);
    // The chart whose popup the last right click opened, or nullptr.
    [[nodiscard]] form::Control* popupChart() const noexcept { return m_popupChart; }

private:
    form::Control& createChart(const std::string& strName, form::Control* container, bool pesgo);
    static void applyCommon(form::ChartModel& chart);

    devices::IUserControl& m_control;
    std::vector<std::string> m_created;
    form::Control* m_popupChart = nullptr;
};

}  // namespace kt500::presentation
