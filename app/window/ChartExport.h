// The exports a chart's popup offers: the picture of the chart view as PNG
// and the chart's points as CSV (one row per point: the point's X, then
// each subset's Y, under a header of the subsets' labels). Users attach
// both to their reports.
#pragma once

#include "form/ChartModel.h"

#include <QString>
#include <QWidget>

namespace kt500::window {

// The CSV text of a chart model; a date-time chart's X as ISO date and time.
[[nodiscard]] QString ChartCsv(const form::ChartModel& chart);
// Writes the CSV of the chart; False when the file cannot be written.
bool ExportChartCsv(const form::ChartModel& chart, const QString& path);
// Writes the picture of the widget as PNG; False when it cannot be written.
bool ExportChartPng(QWidget& view, const QString& path);

// A day count of the date-time charts (days since 30 December 1899, local
// time) as a date and time, and back.
[[nodiscard]] QDateTime DateTimeOfDays(double dblDays);

// Day counts as the instants (milliseconds since 1970, UTC) that a date-time
// axis plots: the same as DateTimeOfDays(days).toMSecsSinceEpoch(), with the
// machine's offset from UTC looked up once per quarter hour of local time
// instead of once per point (the offset changes only at a transition, and
// transitions fall on a quarter hour). A chart of a thousand points a
// series, redrawn many times a second, would otherwise spend its time
// asking the time zone.
class EpochOfLocalDays {
public:
    [[nodiscard]] qint64 operator()(double dblDays);

private:
    qint64 m_quarter = 0;
    qint64 m_offsetMs = 0;
    bool m_known = false;
};

}  // namespace kt500::window
