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

}  // namespace kt500::window
