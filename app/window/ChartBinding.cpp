// A chart drawn from its chart model with Qt Charts: one line per subset
// (over X data on a scientific graph or a date-time chart, over the point
// number otherwise), the subsets' labels, colours and line types, the
// legend, the titles, and the left, right and bottom axes with their manual
// limits. Changes of the model are merged: the chart is redrawn once per
// short batch, never once per property write. A chart that allows zooming
// zooms by a rubber band (ZoomIn, and ZoomOut when undone); a right click
// raises MouseDown with button 2 and opens the popup: the form's chart
// items (maximize, undo zoom) and the exports as PNG and CSV.
#include "app/window/ChartExport.h"
#include "app/window/WidgetBinding.h"

#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QDateTimeAxis>
#include <QFileDialog>
#include <QLegendMarker>
#include <QLineSeries>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>
#include <QValueAxis>

#include <algorithm>
#include <array>
#include <vector>
#include <limits>
#include <optional>

namespace kt500::window {

namespace {

using form::ChartAxisId;
using form::PropertyId;

// How long changes are gathered before one redraw.
constexpr int kRedrawBatchMs = 40;

// The line type of a subset as a pen: 0 thin solid, 1 dashed, 3 dotted,
// 6 medium solid, 10 thick solid; the rest thin solid.
QPen PenOf(std::uint32_t bgr, int lineType) {
    QPen pen(ColorOf(bgr));
    pen.setWidthF(1.5);
    switch (lineType) {
        case 1:
            pen.setStyle(Qt::DashLine);
            break;
        case 3:
            pen.setStyle(Qt::DotLine);
            break;
        case 6:
            pen.setWidthF(2.5);
            break;
        case 10:
            pen.setWidthF(3.5);
            break;
        default:
            break;
    }
    return pen;
}

// The most labels the bottom axis shows of a chart's point labels.
constexpr int kMostPointLabels = 6;

bool HasPointLabels(const form::ChartModel& model) {
    for (int point = 0; point < model.points(); ++point) {
        if (!model.pointLabel(point).empty()) {
            return true;
        }
    }
    return false;
}

// The point labels on the bottom axis (a trend's running time): every
// few points and the last, each at its point, each text once.
void LabelPoints(QCategoryAxis& axis, const form::ChartModel& model) {
    const int points = model.points();
    const int step = std::max(1, (points + kMostPointLabels - 1) / kMostPointLabels);
    // Each label closes a category that begins before its point.
    axis.setStartValue(-1);
    for (int point = 0; point < points; ++point) {
        if (point % step != 0 && point != points - 1) {
            continue;
        }
        const QString label = Qs(model.pointLabel(point));
        if (!label.isEmpty() && !axis.categoriesLabels().contains(label)) {
            axis.append(label, point);
        }
    }
}

struct Range {
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
    void take(double value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
};

// The axis's limits: manual ones when set, else the data's.
std::pair<double, double> LimitsOf(const form::ChartAxis& model, const Range& data) {
    if (model.manualScaleControl != 0 && model.manualMax > model.manualMin) {
        return {model.manualMin, model.manualMax};
    }
    if (data.low < data.high) {
        return {data.low, data.high};
    }
    if (data.low == data.high) {
        return {data.low - 1.0, data.high + 1.0};
    }
    return {0.0, 1.0};
}

class Chart;

class ChartView final : public QChartView {
public:
    ChartView(Chart& binding, QWidget* parent) : QChartView(parent), m_binding(binding) {
        setRenderHint(QPainter::Antialiasing);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Chart& m_binding;
    QPoint m_pressedAt;
};

class Chart final : public WidgetBinding {
public:
    Chart(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new ChartView(*this, parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
        m_batch.setSingleShot(true);
        m_batch.setInterval(kRedrawBatchMs);
        QObject::connect(&m_batch, &QTimer::timeout, m_widget, [this] { redraw(); });
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::ChartData && !m_batch.isActive()) {
            m_batch.start();
        }
    }
    void mirrorAll() override { redraw(); }

    // The number of redraws so far (one per batch of changes).
    [[nodiscard]] int redraws() const noexcept { return m_redraws; }

    void rightClick(const QPoint& position) {
        deliver([this] { m_context.form.raiseMouseDown(m_control, 2); });
        QMenu menu;
        for (form::Control* item : m_context.form.elements("mnuPopupItem")) {
            QAction* action = menu.addAction(Qs(item->caption()));
            action->setEnabled(item->enabled());
            const int index = item->index();
            QObject::connect(action, &QAction::triggered, m_widget,
                             [this, index] { popupItem(index); });
        }
        menu.addSeparator();
        QObject::connect(menu.addAction(QObject::tr("Export as PNG...")), &QAction::triggered,
                         m_widget, [this] {
                             const QString path = QFileDialog::getSaveFileName(
                                 m_widget, QString(), Qs(m_control.name()) + ".png",
                                 QStringLiteral("PNG (*.png)"));
                             if (!path.isEmpty()) {
                                 ExportChartPng(*m_widget, path);
                             }
                         });
        QObject::connect(menu.addAction(QObject::tr("Export data as CSV...")), &QAction::triggered,
                         m_widget, [this] {
                             const QString path = QFileDialog::getSaveFileName(
                                 m_widget, QString(), Qs(m_control.name()) + ".csv",
                                 QStringLiteral("CSV (*.csv)"));
                             if (!path.isEmpty()) {
                                 ExportChartCsv(m_control.chart(), path);
                             }
                         });
        menu.exec(m_widget->mapToGlobal(position));
    }

    // After a rubber band: the ranges shown are kept over redraws.
    void zoomed() {
        if (!m_zoom) {
            deliver([this] { m_context.form.raiseZoom(m_control, true); });
        }
        m_zoom = currentRanges();
    }

    void undoZoom() {
        if (!m_zoom) {
            return;
        }
        m_zoom.reset();
        deliver([this] { m_context.form.raiseZoom(m_control, false); });
        redraw();
    }

    [[nodiscard]] bool allowsZooming() const {
        return m_control.chart().option("AllowZooming") != 0.0;
    }

private:
    struct Ranges {
        QPointF x;
        QPointF y;
    };

    void popupItem(int index) {
        if (index == 1) {
            undoZoom();
        } else if (index == 0) {
            // Maximize: the chart alone in a window of its own size.
            if (QWidget* window = m_widget->window()) {
                window->showMaximized();
            }
        }
    }

    [[nodiscard]] std::optional<Ranges> currentRanges() const {
        QChart* chart = m_widget->chart();
        const auto horizontal = chart->axes(Qt::Horizontal);
        const auto vertical = chart->axes(Qt::Vertical);
        if (horizontal.isEmpty() || vertical.isEmpty()) {
            return std::nullopt;
        }
        Ranges ranges;
        if (auto* time = qobject_cast<QDateTimeAxis*>(horizontal.front())) {
            ranges.x = QPointF(time->min().toMSecsSinceEpoch(), time->max().toMSecsSinceEpoch());
        } else if (auto* value = qobject_cast<QValueAxis*>(horizontal.front())) {
            ranges.x = QPointF(value->min(), value->max());
        }
        if (auto* value = qobject_cast<QValueAxis*>(vertical.front())) {
            ranges.y = QPointF(value->min(), value->max());
        }
        return ranges;
    }

    // What a chart looks like apart from its points and ranges: while it
    // stays the same, a redraw only hands the series their new points and
    // the axes their new ranges, and the chart, its axes and its legend
    // are kept (building them again costs more than drawing the points).
    struct Look {
        bool dateTime = false;
        bool ownX = false;
        bool pointLabels = false;
        int subsets = 0;
        int rightFrom = 0;
        int legendSubsets = -1;
        bool marks = false;
        bool zooming = false;
        std::string title;
        std::uint32_t background = 0;
        struct Line {
            std::string label;
            std::uint32_t color = 0;
            int type = 0;
            bool operator==(const Line&) const = default;
        };
        std::vector<Line> lines;
        std::array<std::string, 3> axisTitles;
        bool operator==(const Look&) const = default;
    };

    [[nodiscard]] Look lookOf(const form::ChartModel& model) const {
        Look look;
        look.dateTime = model.option("DateTimeMode") != 0.0;
        look.ownX = model.scientific() || model.option("UsingXDataII") != 0.0;
        look.pointLabels = !look.dateTime && !look.ownX && HasPointLabels(model);
        look.subsets = model.subsets();
        look.rightFrom =
            model.subsets() - static_cast<int>(model.option("RYAxisComparisonSubsets"));
        look.legendSubsets = static_cast<int>(model.option("SubsetsToLegend", -1));
        look.marks = model.option("UseDataPoints") != 0.0;
        look.zooming = allowsZooming();
        look.title =
            model.subTitle().empty() ? model.mainTitle() : model.mainTitle() + "\n" + model.subTitle();
        look.background =
            static_cast<std::uint32_t>(model.option("GraphBackColor", static_cast<double>(0xFFFFFF)));
        for (int subset = 0; subset < model.subsets(); ++subset) {
            look.lines.push_back({model.subsetLabel(subset), model.subsetColor(subset),
                                  model.subsetLineType(subset)});
        }
        look.axisTitles = {model.axis(ChartAxisId::X).label, model.axis(ChartAxisId::Y).label,
                           model.axis(ChartAxisId::RightY).label};
        return look;
    }

    void redraw() {
        m_batch.stop();
        ++m_redraws;
        const form::ChartModel& model = m_control.chart();
        Look look = lookOf(model);
        // Point labels are part of the bottom axis: such a chart is built anew.
        if (!m_look || !(*m_look == look) || look.pointLabels) {
            build(look);
            m_look = std::move(look);
        }
        fill(model);
    }

    // A new chart of the look, its series still without points.
    void build(const Look& look) {
        auto* chart = new QChart();
        chart->setTitle(Qs(look.title));
        chart->setBackgroundBrush(ColorOf(look.background));
        chart->setMargins(QMargins(2, 2, 2, 2));
        chart->legend()->setVisible(look.subsets > 1 && look.legendSubsets != 0);
        chart->legend()->setAlignment(Qt::AlignBottom);

        QAbstractAxis* xAxis = nullptr;
        if (look.dateTime) {
            auto* time = new QDateTimeAxis();
            time->setFormat(QStringLiteral("HH:mm:ss"));
            xAxis = time;
        } else if (look.pointLabels) {
            auto* labelled = new QCategoryAxis();
            labelled->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
            xAxis = labelled;
        } else {
            auto* value = new QValueAxis();
            value->setLabelFormat(QStringLiteral("%g"));
            xAxis = value;
        }
        xAxis->setTitleText(Qs(look.axisTitles[0]));
        auto* yAxis = new QValueAxis();
        yAxis->setTitleText(Qs(look.axisTitles[1]));
        yAxis->setLabelFormat(QStringLiteral("%g"));
        chart->addAxis(xAxis, Qt::AlignBottom);
        chart->addAxis(yAxis, Qt::AlignLeft);
        QValueAxis* rightAxis = nullptr;
        if (look.rightFrom < look.subsets) {
            rightAxis = new QValueAxis();
            rightAxis->setTitleText(Qs(look.axisTitles[2]));
            rightAxis->setLabelFormat(QStringLiteral("%g"));
            chart->addAxis(rightAxis, Qt::AlignRight);
        }
        m_series.clear();
        for (int subset = 0; subset < look.subsets; ++subset) {
            const Look::Line& line = look.lines[static_cast<std::size_t>(subset)];
            auto* series = new QLineSeries();
            series->setName(Qs(line.label));
            series->setPen(PenOf(line.color, line.type));
            series->setPointsVisible(look.marks);
            const bool right = rightAxis != nullptr && subset >= look.rightFrom;
            chart->addSeries(series);
            series->attachAxis(xAxis);
            series->attachAxis(right ? rightAxis : yAxis);
            m_series.push_back(series);
        }
        // A legend entry tells something only with its subset's label: a
        // legend of bare colour marks is left out.
        const auto markers = chart->legend()->markers();
        bool anyLabel = false;
        for (int i = 0; i < markers.size(); ++i) {
            const bool shown = (look.legendSubsets < 0 || i < look.legendSubsets) &&
                               !look.lines[static_cast<std::size_t>(i)].label.empty();
            markers[i]->setVisible(shown);
            anyLabel = anyLabel || shown;
        }
        chart->legend()->setVisible(chart->legend()->isVisible() && anyLabel);
        m_xAxis = xAxis;
        m_yAxis = yAxis;
        m_rightAxis = rightAxis;
        QChart* old = m_widget->chart();
        m_widget->setChart(chart);
        delete old;
        m_widget->setRubberBand(look.zooming ? QChartView::RectangleRubberBand
                                             : QChartView::NoRubberBand);
    }

    // The model's points into the series, one replace each, and the ranges
    // of the axes: the manual limits, or else the data's.
    void fill(const form::ChartModel& model) {
        const Look& look = *m_look;
        Range xRange;
        Range yRange;
        Range rightRange;
        EpochOfLocalDays epochOf;
        for (int subset = 0; subset < look.subsets; ++subset) {
            const bool right = m_rightAxis != nullptr && subset >= look.rightFrom;
            QList<QPointF> points;
            points.reserve(model.points());
            for (int point = 0; point < model.points(); ++point) {
                const double x = look.ownX ? model.x(subset, point) : point;
                const double y = model.y(subset, point);
                const double plotX = look.dateTime ? static_cast<double>(epochOf(x)) : x;
                points.append(QPointF(plotX, y));
                xRange.take(x);
                (right ? rightRange : yRange).take(y);
            }
            m_series[static_cast<std::size_t>(subset)]->replace(points);
        }

        const auto [xLow, xHigh] = LimitsOf(model.axis(ChartAxisId::X), xRange);
        if (auto* time = qobject_cast<QDateTimeAxis*>(m_xAxis)) {
            time->setRange(DateTimeOfDays(xLow), DateTimeOfDays(xHigh));
        } else if (auto* labelled = qobject_cast<QCategoryAxis*>(m_xAxis)) {
            labelled->setRange(xLow, xHigh);
            LabelPoints(*labelled, model);
        } else {
            static_cast<QValueAxis*>(m_xAxis)->setRange(xLow, xHigh);
        }
        scale(*m_yAxis, model.axis(ChartAxisId::Y), yRange);
        if (m_rightAxis != nullptr) {
            scale(*m_rightAxis, model.axis(ChartAxisId::RightY), rightRange);
        }
        if (m_zoom) {
            // A zoom stays over new points until it is undone.
            if (auto* time = qobject_cast<QDateTimeAxis*>(m_xAxis)) {
                time->setRange(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(m_zoom->x.x())),
                               QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(m_zoom->x.y())));
            } else {
                static_cast<QValueAxis*>(m_xAxis)->setRange(m_zoom->x.x(), m_zoom->x.y());
            }
            m_yAxis->setRange(m_zoom->y.x(), m_zoom->y.y());
        }
    }

    static void scale(QValueAxis& axis, const form::ChartAxis& model, const Range& data) {
        const auto [low, high] = LimitsOf(model, data);
        axis.setRange(low, high);
    }

    ChartView* m_widget;
    QTimer m_batch;
    int m_redraws = 0;
    std::optional<Ranges> m_zoom;
    // The look the chart was built for, its series and axes.
    std::optional<Look> m_look;
    std::vector<QLineSeries*> m_series;
    QAbstractAxis* m_xAxis = nullptr;
    QValueAxis* m_yAxis = nullptr;
    QValueAxis* m_rightAxis = nullptr;
};

void ChartView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        m_binding.rightClick(event->position().toPoint());
        return;
    }
    m_pressedAt = event->position().toPoint();
    QChartView::mousePressEvent(event);
}

void ChartView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        // The popup's undo takes the place of the view's own zoom out.
        return;
    }
    const bool banding = rubberBand() != QChartView::NoRubberBand;
    QChartView::mouseReleaseEvent(event);
    // A band drawn, not a plain click, zooms.
    const QPoint moved = event->position().toPoint() - m_pressedAt;
    if (banding && event->button() == Qt::LeftButton && moved.manhattanLength() > 4) {
        m_binding.zoomed();
    }
}

}  // namespace

std::unique_ptr<WidgetBinding> MakeChartBinding(form::Control& control, ViewContext& context,
                                                QWidget* parent) {
    if (control.kind() != form::ControlKind::Chart) {
        return nullptr;
    }
    return std::make_unique<Chart>(control, context, parent);
}

}  // namespace kt500::window
