// Monitoring: the live values of the device on the monitoring page. The BL
// reads the group "monitoringVariables" cyclically and paces the loop with
// its replies; the device class's ArrangeValues turns each reply into a
// chart list and a log list, and UpdateMonitoringGraph adds one point per
// series, moves the 3-minute time window and writes the log line. Start
// and stop and the log are the page's two commands, the same on every
// family's page.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"
#include "presentation/Graphs.h"

#include <QDateTime>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::monitoring {

// The time axis: days, as the chart's date-time mode counts them.
inline constexpr double kWindowWidth = 3.0 / 1440.0;
inline constexpr double kWindowStep = 0.5 / 1440.0;
// The chart value of a series the user switched off: below every axis.
inline constexpr std::string_view kHiddenValue = "-500";
// The log file the dialog proposes, in the folder it starts in.
inline constexpr std::string_view kDefaultLogName = "Monitoring.log";

// A date and time as the chart's day count (days since 30 December 1899).
[[nodiscard]] double DayCount(const QDateTime& dateTime);
// One log line's values: ";" then each value with 2 decimals in the
// machine's decimal symbol and a ";" after it. A value that is no number
// throws std::invalid_argument naming it.
[[nodiscard]] std::string LogValues(const std::vector<std::string>& values,
                                    std::string_view strDecimalSymbol);

class Monitoring {
public:
    using Clock = std::function<QDateTime()>;

    // clock gives the current date and time (the system's when empty).
    Monitoring(devices::IUserControl& control, presentation::Graphs& graphs, Clock clock = {});

    // cmdHAMonitoring, cmdPAMonitoring, cmdPLMonitoring; optHAMonitoring and
    // optPAMonitoring (the right-hand axis).
    void addHandlers(form::EventHandlers& handlers);

    // The family's monitoring chart set up empty, with the right-hand axis
    // of the option chosen on the page; once per session.
    void PrepareMonitoringGraph();

    // Element 0 starts and stops, element 1 switches the log.
    void cmdMonitoring_Click(int intIndex);
    void StartMonitorLog();
    void AppendMonitorLogLine(const std::vector<std::string>& values);
    // One point per series from two separator lists; the log line when the
    // log is on.
    void UpdateMonitoringGraph(const std::string& strChartValues, const std::string& strLogValues);
    // Empties the chart and builds it again, keeping the right-hand axis.
    void RestartMonitoringGraph(form::Control& chart);
    // Ends monitoring when its page is left.
    void StopMonitoring();
    // The key of the page a node click shows next.
    void PageChanging(const std::string& strKey);
    // The right-hand axis for an option name ("inputSignal",
    // "actuatorPressure", "pcbTemperature"); other names change nothing.
    void SetRightAxis(const std::string& strOption);

    [[nodiscard]] int pointCounter() const noexcept { return m_intPointCounter; }
    [[nodiscard]] double windowStart() const noexcept { return m_dblWindowStart; }
    [[nodiscard]] double windowEnd() const noexcept { return m_dblWindowEnd; }
    [[nodiscard]] const std::filesystem::path& logFile() const noexcept { return m_logFile; }

private:
    struct FamilyControls {
        std::string_view command;
        std::string_view samplingField;
        std::string_view options;
    };
    [[nodiscard]] const FamilyControls& family() const;
    [[nodiscard]] form::Control& pageChart();
    [[nodiscard]] QDateTime now() const;
    void startMonitoring();
    void stopMonitoring();
    void setLogCaptions(const std::string& strKey);
    // MonitoringFrame of the class; a class without the member counts as 0.
    [[nodiscard]] int monitoringFrame();
    // The line for the time given, opened and closed on its own.
    void appendLogLine(const QDateTime& stamp, const std::vector<std::string>& values);

    devices::IUserControl& m_control;
    presentation::Graphs& m_graphs;
    Clock m_clock;
    int m_intPointCounter = 0;
    // The class's monitoring frame, asked once per session and per start:
    // a class without the member answers by a failure, too dear per reply.
    std::optional<int> m_frame;
    double m_dblWindowStart = 0.0;
    double m_dblWindowEnd = 0.0;
    std::filesystem::path m_logFile;
};

}  // namespace kt500::monitoring
