// The monitoring chart's view mirrors the chart model after its batched
// redraw, and its CSV and PNG exports hold the chart.
#include "app/window/ChartExport.h"
#include "WindowTest.h"

#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QDateTimeAxis>
#include <QFile>
#include <QLineSeries>
#include <QTemporaryDir>
#include <QTest>
#include <QValueAxis>

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

class ChartViewTest : public WindowTest {
protected:
    void SetUp() override { start("KT520_7"); }
    QChartView* chart() { return qobject_cast<QChartView*>(widget("pegoKT520")); }
    // Monitoring for a while of virtual time, then the batch redraw.
    void monitor(int ms) {
        form().raiseClick(form().control("cmdHAMonitoring", 0));
        desktop.session().wait(ms);
        form().raiseClick(form().control("cmdHAMonitoring", 0));
        QTest::qWait(100);
    }
};

TEST_F(ChartViewTest, TheViewMirrorsTheModelsSeriesPointsAndAxes) {
    form().raiseNodeClick(form().control("treeNavigation"), "monitoringVariables");
    monitor(5000);
    const form::ChartModel& model = form().control("pegoKT520").chart();
    ASSERT_GT(model.points(), 5);
    QChartView* chartView = chart();
    ASSERT_NE(chartView, nullptr);
    const auto series = chartView->chart()->series();
    ASSERT_EQ(series.size(), model.subsets());
    for (int subset = 0; subset < model.subsets(); ++subset) {
        auto* line = qobject_cast<QLineSeries*>(series[subset]);
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(line->name().toStdString(), model.subsetLabel(subset));
        ASSERT_EQ(line->count(), model.points());
        EXPECT_EQ(line->at(model.points() - 1).y(), model.y(subset, model.points() - 1));
        EXPECT_EQ(line->at(0).x(),
                  static_cast<double>(DateTimeOfDays(model.x(subset, 0)).toMSecsSinceEpoch()));
    }
    // A date-time axis below, travel on the left, the chosen option on the right.
    EXPECT_EQ(chartView->chart()->axes(Qt::Horizontal).size(), 1);
    EXPECT_NE(qobject_cast<QDateTimeAxis*>(chartView->chart()->axes(Qt::Horizontal).front()),
              nullptr);
    const auto vertical = chartView->chart()->axes(Qt::Vertical);
    ASSERT_EQ(vertical.size(), 2);
    auto* right = qobject_cast<QValueAxis*>(vertical[1]);
    ASSERT_NE(right, nullptr);
    EXPECT_EQ(right->titleText(), "mA");
    EXPECT_EQ(right->max(), 21.0);
    EXPECT_TRUE(chartView->chart()->legend()->isVisible());
}

TEST_F(ChartViewTest, NewPointsKeepTheChartAndANewLookBuildsItAgain) {
    form().raiseNodeClick(form().control("treeNavigation"), "monitoringVariables");
    form().raiseClick(form().control("cmdHAMonitoring", 0));
    desktop.session().wait(2000);
    QTest::qWait(100);
    QChartView* chartView = chart();
    ASSERT_NE(chartView, nullptr);
    QChart* before = chartView->chart();
    const form::ChartModel& model = form().control("pegoKT520").chart();
    const int pointsBefore = model.points();
    // More points: the same chart, its series holding them all.
    desktop.session().wait(2000);
    form().raiseClick(form().control("cmdHAMonitoring", 0));
    QTest::qWait(100);
    ASSERT_GT(model.points(), pointsBefore);
    EXPECT_EQ(chartView->chart(), before);
    ASSERT_FALSE(chartView->chart()->series().isEmpty());
    EXPECT_EQ(qobject_cast<QLineSeries*>(chartView->chart()->series().front())->count(),
              model.points());
    // Another right-hand axis: its title and limits on a chart built anew.
    form().raiseClick(form().control("optHAMonitoring", 2));
    QTest::qWait(100);
    EXPECT_NE(chartView->chart(), before);
    const auto vertical = chartView->chart()->axes(Qt::Vertical);
    ASSERT_EQ(vertical.size(), 2);
    auto* right = qobject_cast<QValueAxis*>(vertical[1]);
    ASSERT_NE(right, nullptr);
    EXPECT_EQ(right->titleText().toStdString(), model.axis(form::ChartAxisId::RightY).label);
    EXPECT_EQ(right->max(), model.axis(form::ChartAxisId::RightY).manualMax);
}

TEST(EpochOfLocalDaysTest, GivesTheInstantOfEveryLocalDayCount) {
    // In a zone with summer time: points a few seconds apart over an hour
    // and a half, and far apart over a year, across both changes.
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Europe/Berlin");
    EpochOfLocalDays epochOf;
    for (double days = 46000.0; days < 46000.0625; days += 0.00003) {
        ASSERT_EQ(epochOf(days), DateTimeOfDays(days).toMSecsSinceEpoch()) << days;
    }
    for (double days = 46000.3; days < 46366.0; days += 0.7) {
        EXPECT_EQ(epochOf(days), DateTimeOfDays(days).toMSecsSinceEpoch()) << days;
    }
    // The day before summer time begins, at noon, and the day after: an
    // hour less between them than the day counts say.
    EXPECT_EQ(epochOf(46110.5) - epochOf(46108.5), 2 * 86'400'000 - 3'600'000);
    if (zone.isNull()) {
        qunsetenv("TZ");
    } else {
        qputenv("TZ", zone);
    }
}

TEST_F(ChartViewTest, TheExportedCsvHoldsEveryPoint) {
    monitor(3000);
    const form::ChartModel& model = form().control("pegoKT520").chart();
    QTemporaryDir folder;
    const QString path = folder.filePath("monitoring.csv");
    ASSERT_TRUE(ExportChartCsv(model, path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), model.points() + 1);
    EXPECT_TRUE(lines[0].startsWith("x;" + QString::fromStdString(model.subsetLabel(0))));
    const QStringList last = lines.back().split(';');
    ASSERT_EQ(last.size(), model.subsets() + 1);
    EXPECT_EQ(last[1].toDouble(), model.y(0, model.points() - 1));
    EXPECT_EQ(last[0], DateTimeOfDays(model.x(0, model.points() - 1)).toString(Qt::ISODateWithMs));
    EXPECT_FALSE(ExportChartCsv(model, folder.filePath("no/such/folder/x.csv")));
    ASSERT_NE(chart(), nullptr);
    EXPECT_TRUE(ExportChartPng(*chart(), folder.filePath("monitoring.png")));
    EXPECT_GT(QFile(folder.filePath("monitoring.png")).size(), 0);
}

}  // namespace
}  // namespace kt500::window
