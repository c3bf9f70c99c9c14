#include "monitoring/Monitoring.h"

#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "devices/MemberMissing.h"
#include "devices/SeparatedList.h"
#include "monitoring/AppendToFile.h"
#include "presentation/FileDialog.h"

#include <QLocale>
#include <QTimeZone>

#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace kt500::monitoring {

namespace {

using form::ChartAxis;
using form::ChartAxisId;

constexpr std::string_view kMonitoringNode = "monitoringVariables";
constexpr std::array kMonitoringCommands = {"cmdHAMonitoring", "cmdPAMonitoring",
                                            "cmdPLMonitoring"};
// The value nodes that a page change marks as not read with the group.
constexpr std::array kValueNodes = {"inputSignal", "travelSetpointAndActualTravel",
                                    "actuatorPressure", "pcbTemperature"};

// Days from the chart's day 0 (30 December 1899) to 1 January 1970.
constexpr double kUnixEpochDay = 25569.0;
constexpr double kMsPerDay = 86400000.0;

// The rows of the right-hand axis: label, limits in bar or degrees
// Celsius, and the unit the limits are given in.
struct RightAxisRow {
    std::string_view option;
    std::string_view unitProperty;  // "" for a fixed label
    std::string_view fixedLabel;
    double maximum;
    double minimum;
    std::string_view limitUnit;
};
constexpr std::array kRightAxis = {
    RightAxisRow{"actuatorPressure", "ActuatorPressureUnit", "", 8.0, -1.0, "bar"},
    RightAxisRow{"pcbTemperature", "PcbTemperatureUnit", "", 90.0, -45.0, "degC"},
    RightAxisRow{"inputSignal", "", "mA", 21.0, 3.0, "mA"},
};

std::vector<std::string> fieldsOf(const std::string& strList) {
    std::vector<std::string> fields = devices::SplitSeparated(strList);
    if (!fields.empty() && fields.back().empty()) {
        fields.pop_back();
    }
    return fields;
}

}  // namespace

double DayCount(const QDateTime& dateTime) {
    // The chart counts local days, as the machine shows the time.
    const QDateTime local = dateTime.toLocalTime();
    const QDateTime asUtc(local.date(), local.time(), QTimeZone::utc());
    return kUnixEpochDay + static_cast<double>(asUtc.toMSecsSinceEpoch()) / kMsPerDay;
}

std::string LogValues(const std::vector<std::string>& values, std::string_view strDecimalSymbol) {
    std::string text = ";";
    for (const std::string& value : values) {
        // The value as a 32-bit float reads it, then with two decimals.
        const std::string wire = devices::fDecimalSep(value, ".");
        if (wire.empty() || !devices::IsNum(wire) || wire == "-" ||
            wire.find_first_of("0123456789") == std::string::npos) {
            throw std::invalid_argument("the value \"" + value + "\" is no number");
        }
        const auto number = static_cast<float>(devices::Str2Dbl(wire));
        char buffer[64];
        const auto written = std::to_chars(buffer, buffer + sizeof buffer,
                                           static_cast<double>(number), std::chars_format::fixed, 2);
        text += devices::fDecimalSep(std::string_view(buffer, static_cast<std::size_t>(written.ptr - buffer)),
                                     strDecimalSymbol);
        text += ';';
    }
    return text;
}

Monitoring::Monitoring(devices::IUserControl& control, presentation::Graphs& graphs, Clock clock)
    : m_control(control), m_graphs(graphs), m_clock(std::move(clock)) {}

void Monitoring::addHandlers(form::EventHandlers& handlers) {
    for (const char* name : kMonitoringCommands) {
        handlers.add(name, form::EventKind::Click,
                     [this](form::FormEvent& event) { cmdMonitoring_Click(event.control->index()); });
    }
    for (const char* name : {"optHAMonitoring", "optPAMonitoring"}) {
        handlers.add(name, form::EventKind::Click,
                     [this](form::FormEvent& event) { SetRightAxis(event.control->tag()); });
    }
}

QDateTime Monitoring::now() const {
    return m_clock ? m_clock() : QDateTime::currentDateTime();
}

const Monitoring::FamilyControls& Monitoring::family() const {
    static constexpr std::array kFamilies = {
        FamilyControls{"cmdHAMonitoring", "txtHAMonitoring", "optHAMonitoring"},
        FamilyControls{"cmdPAMonitoring", "txtPAMonitoring", "optPAMonitoring"},
        FamilyControls{"cmdPLMonitoring", "", "optPLParams"},
    };
    const std::string prefix = m_control.deviceClass().DevicePrefix();
    return prefix == "PA" ? kFamilies[1] : prefix == "PL" ? kFamilies[2] : kFamilies[0];
}

int Monitoring::monitoringFrame() {
    try {
        return m_control.deviceClass().MonitoringFrame();
    } catch (const devices::MemberMissing&) {
        // The failed read gives an empty value, which counts as 0.
        return 0;
    }
}

form::Control& Monitoring::pageChart() {
    if (!m_frame) {
        m_frame = monitoringFrame();
    }
    return m_graphs.MonitoringChart(*m_frame);
}

void Monitoring::PrepareMonitoringGraph() {
    m_frame.reset();
    devices::DeviceClass& device = m_control.deviceClass();
    form::Control& chart = pageChart();
    m_graphs.BuildMonitoringGraph(chart, device.MonitoringHeaders(), device.UseDataPoints(),
                                  device.MonitorGraphHeight());
    for (form::Control* option : m_control.form().elements(family().options)) {
        if (option->value() != 0.0) {
            SetRightAxis(option->tag());
        }
    }
}

void Monitoring::SetRightAxis(const std::string& strOption) {
    for (const RightAxisRow& row : kRightAxis) {
        if (row.option != strOption) {
            continue;
        }
        std::string label(row.fixedLabel);
        double maximum = row.maximum;
        double minimum = row.minimum;
        if (!row.unitProperty.empty()) {
            label = m_control.deviceClass().pageProperty(row.unitProperty);
            // The limits go through the unit of the page.
            const auto convert = [&](double value) {
                const std::string converted = m_control.ConvertUnit(
                    devices::SingleText(static_cast<float>(value)), std::string(row.limitUnit),
                    label);
                return converted.empty() ? value : devices::Str2Dbl(converted);
            };
            maximum = convert(maximum);
            minimum = convert(minimum);
        }
        form::ChartModel& chart = pageChart().chart();
        ChartAxis axis = chart.axis(ChartAxisId::RightY);
        axis.label = label;
        axis.labelKey.clear();
        axis.manualScaleControl = 3;
        axis.manualMin = minimum;
        axis.manualMax = maximum;
        chart.setAxis(ChartAxisId::RightY, std::move(axis));
        m_control.tools().ComparedMonitoring = strOption;
        return;
    }
}

void Monitoring::cmdMonitoring_Click(int intIndex) {
    session::clsTools& tools = m_control.tools();
    if (intIndex == 0) {
        if (tools.MonitoringFlag) {
            stopMonitoring();
        } else {
            startMonitoring();
        }
        return;
    }
    if (intIndex != 1) {
        return;
    }
    if (tools.MonitorLog) {
        tools.MonitorLog = false;
        setLogCaptions("startLog");
        return;
    }
    presentation::ShowFileDialog(m_control, "logFile", presentation::OpenFileType::MonitoringLog,
                                 "");
    form::Form& form = m_control.form();
    if (form::Control* name = form.find("txtFileName")) {
        const form::Control* folder = form.find("dirOpenFile");
        const std::filesystem::path path = folder ? folder->path() : std::string();
        name->setText((path / kDefaultLogName).string());
    }
}

void Monitoring::startMonitoring() {
    session::clsTools& tools = m_control.tools();
    m_frame.reset();
    RestartMonitoringGraph(pageChart());
    tools.MonitoringFlag = true;
    bool success = false;
    m_control.control().StartMonitoringRequests(tools.ConnectionID, 0, success);
    m_control.ChangeTreeIcon(std::string(kMonitoringNode), "read");
    if (form::Control* command = m_control.form().find(family().command, 0)) {
        command->setCaption(m_control.Translate("stop"));
        command->setTag("stop");
    }
    tools.CommunicationSign("monitoring", "1");
}

void Monitoring::stopMonitoring() {
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    if (form::Control* field = form.find(family().samplingField)) {
        field->setEnabled(true);
    }
    m_control.control().StopMonitoringRequests(tools.ConnectionID);
    tools.MonitoringFlag = false;
    m_control.ChangeTreeIcon(std::string(kMonitoringNode), "notRead");
    if (form::Control* command = form.find(family().command, 0)) {
        command->setCaption(m_control.Translate("start"));
        command->setTag("start");
    }
    tools.CommunicationSign("monitoring", "0");
}

void Monitoring::StopMonitoring() {
    session::clsTools& tools = m_control.tools();
    if (!tools.MonitoringFlag) {
        return;
    }
    tools.MonitoringFlag = false;
    tools.CommunicationSign("monitoring", "0");
    if (form::Control* toolbar = m_control.form().find("smuiDTM", 1)) {
        toolbar->toolbar().setText("strDtmStatus", "Stopped");
    }
    m_control.control().StopMonitoringRequests(tools.ConnectionID);
    m_control.ChangeTreeIcon(std::string(kMonitoringNode), "notRead");
    for (const char* node : kValueNodes) {
        m_control.ChangeTreeIcon(node, "notRead");
    }
    if (form::Control* command = m_control.form().find(family().command, 0)) {
        command->setCaption(m_control.Translate("start"));
        command->setTag("start");
    }
}

void Monitoring::PageChanging(const std::string& strKey) {
    if (strKey != kMonitoringNode) {
        StopMonitoring();
    }
}

void Monitoring::setLogCaptions(const std::string& strKey) {
    const std::string caption = m_control.Translate(strKey);
    for (const char* name : kMonitoringCommands) {
        if (form::Control* command = m_control.form().find(name, 1)) {
            command->setCaption(caption);
        }
    }
}

void Monitoring::StartMonitorLog() {
    const form::Control& name = m_control.form().control("txtFileName");
    const std::filesystem::path file(name.text());
    std::ofstream out(file, std::ios::out | std::ios::trunc);
    if (!out) {
        throw std::runtime_error("the log file " + file.string() + " cannot be opened");
    }
    const QDateTime stamp = now();
    out << "\"DTM Log " << QLocale::system().toString(stamp.date(), QLocale::ShortFormat).toStdString()
        << "\"\n"
        << m_control.deviceClass().MonitorLogHeaders() << '\n';
    out.close();
    if (!out) {
        throw std::runtime_error("the log file " + file.string() + " cannot be written");
    }
    m_logFile = file;
    m_control.tools().MonitorLog = true;
    setLogCaptions("stopLog");
}

void Monitoring::AppendMonitorLogLine(const std::vector<std::string>& values) {
    appendLogLine(now(), values);
}

void Monitoring::appendLogLine(const QDateTime& stamp, const std::vector<std::string>& values) {
    // A line that cannot be formatted or written is lost alone: the log
    // stays on and monitoring goes on.
    try {
        const QTime time = stamp.time();
        const auto twoDigits = [](std::string& text, int number) {
            text += static_cast<char>('0' + number / 10 % 10);
            text += static_cast<char>('0' + number % 10);
        };
        std::string line;
        line.reserve(64);
        twoDigits(line, time.hour());
        line += ':';
        twoDigits(line, time.minute());
        line += ':';
        twoDigits(line, time.second());
        line += LogValues(values, devices::MachineDecimalSymbol());
        line += '\n';
        // Opened and closed for each line, in one write: the file can be
        // read while it grows, and a crash loses at most this line.
        switch (AppendToFile(m_logFile, line)) {
            case Appended::Done:
                break;
            case Appended::NotOpened:
                throw std::runtime_error("the log file " + m_logFile.string() + " cannot be opened");
            case Appended::NotWritten:
                throw std::runtime_error("the log file " + m_logFile.string() + " cannot be written");
        }
    } catch (const std::exception& failure) {
        m_control.ShowMsg("AppendMonitorLogLine", failure.what());
    }
}

void Monitoring::UpdateMonitoringGraph(const std::string& strChartValues,
                                       const std::string& strLogValues) {
    // One reading of the clock for the chart's point and the log's line.
    const QDateTime stamp = now();
    const double current = DayCount(stamp);
    if (m_intPointCounter >= presentation::kMonitoringPointLimit) {
        RestartMonitoringGraph(pageChart());
    }
    form::Control& control = pageChart();
    const std::vector<std::string> chartValues = fieldsOf(strChartValues);
    if (m_control.tools().MonitorLog) {
        appendLogLine(stamp, fieldsOf(strLogValues));
    }
    form::ChartModel& chart = control.chart();
    const int point = m_intPointCounter;
    if (chart.points() <= point) {
        chart.setPoints(point + 1);
    }
    for (int series = 0; series < chart.subsets(); ++series) {
        const std::string value = static_cast<std::size_t>(series) < chartValues.size()
                                      ? chartValues[static_cast<std::size_t>(series)]
                                      : std::string();
        chart.setX(series, point, current);
        // The value as a 32-bit float holds it, kept as its shortest decimal.
        const auto single = static_cast<float>(devices::Str2Dbl(devices::fDecimalSep(value, ".")));
        chart.setY(series, point, devices::Str2Dbl(devices::SingleText(single)));
    }
    ++m_intPointCounter;
    if (current >= m_dblWindowEnd) {
        m_dblWindowEnd += kWindowStep;
        m_dblWindowStart = m_dblWindowEnd - kWindowWidth;
        ChartAxis axis = chart.axis(ChartAxisId::X);
        axis.manualMin = m_dblWindowStart;
        axis.manualMax = m_dblWindowEnd;
        chart.setAxis(ChartAxisId::X, std::move(axis));
        chart.setOption("ZoomMinX", m_dblWindowStart);
        chart.setOption("ZoomMaxX", m_dblWindowEnd);
    }
    chart.setOption("PEnarg1", point);
    chart.setOption("PEnarg2", point);
    chart.setOption("PEactions", 2);
    chart.setOption("PEactions", 3);
}

void Monitoring::RestartMonitoringGraph(form::Control& control) {
    form::ChartModel& chart = control.chart();
    const ChartAxis right = chart.axis(ChartAxisId::RightY);
    const int subsets = chart.subsets();
    const double compared = chart.option("RYAxisComparisonSubsets");
    chart.setOption("PEactions", 20);
    chart.setPoints(0);
    devices::DeviceClass& device = m_control.deviceClass();
    m_graphs.BuildMonitoringGraph(control, device.MonitoringHeaders(), device.UseDataPoints(),
                                  device.MonitorGraphHeight());
    chart.setSubsets(subsets);
    chart.setOption("RYAxisComparisonSubsets", compared);
    chart.setAxis(ChartAxisId::RightY, right);
    m_intPointCounter = 0;
    // The window opens at the restart and moves on by its step.
    m_dblWindowStart = DayCount(now());
    m_dblWindowEnd = m_dblWindowStart + kWindowWidth;
    ChartAxis axis = chart.axis(ChartAxisId::X);
    axis.manualMin = m_dblWindowStart;
    axis.manualMax = m_dblWindowEnd;
    chart.setAxis(ChartAxisId::X, std::move(axis));
    chart.setOption("ZoomMinX", m_dblWindowStart);
    chart.setOption("ZoomMaxX", m_dblWindowEnd);
}

}  // namespace kt500::monitoring
