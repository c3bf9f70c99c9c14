#include "app/window/ChartExport.h"

#include <QDateTime>
#include <QPixmap>
#include <QSaveFile>
#include <QTimeZone>

#include <cmath>

namespace kt500::window {

namespace {

constexpr double kUnixEpochDay = 25569.0;
constexpr double kMsPerDay = 86400000.0;

QString CsvField(const QString& text) {
    if (!text.contains(QLatin1Char(';')) && !text.contains(QLatin1Char('"')) &&
        !text.contains(QLatin1Char('\n'))) {
        return text;
    }
    QString quoted = text;
    quoted.replace(QStringLiteral("\""), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

}  // namespace

QDateTime DateTimeOfDays(double dblDays) {
    const auto ms = static_cast<qint64>(std::llround((dblDays - kUnixEpochDay) * kMsPerDay));
    const QDateTime asUtc = QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc());
    return QDateTime(asUtc.date(), asUtc.time());
}

qint64 EpochOfLocalDays::operator()(double dblDays) {
    constexpr qint64 kQuarterHourMs = 15 * 60 * 1000;
    const auto wall = static_cast<qint64>(std::llround((dblDays - kUnixEpochDay) * kMsPerDay));
    const qint64 quarter = wall >= 0 ? wall / kQuarterHourMs : (wall + 1) / kQuarterHourMs - 1;
    if (!m_known || quarter != m_quarter) {
        m_known = true;
        m_quarter = quarter;
        m_offsetMs = wall - DateTimeOfDays(dblDays).toMSecsSinceEpoch();
    }
    return wall - m_offsetMs;
}

QString ChartCsv(const form::ChartModel& chart) {
    const bool dateTime = chart.option("DateTimeMode") != 0.0;
    const bool ownX = chart.scientific() || chart.option("UsingXDataII") != 0.0;
    QString text = QStringLiteral("x");
    for (int subset = 0; subset < chart.subsets(); ++subset) {
        text += QLatin1Char(';') + CsvField(QString::fromStdString(chart.subsetLabel(subset)));
    }
    text += QLatin1Char('\n');
    for (int point = 0; point < chart.points(); ++point) {
        const double x = ownX && chart.subsets() > 0 ? chart.x(0, point) : point;
        text += dateTime ? DateTimeOfDays(x).toString(Qt::ISODateWithMs) : QString::number(x, 'g', 10);
        for (int subset = 0; subset < chart.subsets(); ++subset) {
            text += QLatin1Char(';') + QString::number(chart.y(subset, point), 'g', 10);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

bool ExportChartCsv(const form::ChartModel& chart, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        return false;
    }
    file.write(ChartCsv(chart).toUtf8());
    return file.commit();
}

bool ExportChartPng(QWidget& view, const QString& path) {
    return view.grab().save(path, "PNG");
}

}  // namespace kt500::window
