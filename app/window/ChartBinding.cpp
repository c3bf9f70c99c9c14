// A chart drawn from its chart model with Qt Charts: one line per subset
// (over X data on a scientific graph, over the point number otherwise), the
// subsets' labels, colours and line types, the titles, and the axes with
// their manual limits. A right click raises MouseDown with button 2.
#include "app/window/WidgetBinding.h"

#include <QChart>
#include <QChartView>
#include <QLineSeries>
#include <QMouseEvent>
#include <QValueAxis>

#include <algorithm>
#include <limits>

namespace kt500::window {

namespace {

using form::ChartAxisId;
using form::PropertyId;

class ChartView final : public QChartView {
public:
    ChartView(form::Control& control, ViewContext& context, QWidget* parent)
        : QChartView(parent), m_control(control), m_context(context) {
        setRenderHint(QPainter::Antialiasing);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::RightButton) {
            m_context.gate.run([this] { m_context.form.raiseMouseDown(m_control, 2); });
            return;
        }
        QChartView::mousePressEvent(event);
    }

private:
    form::Control& m_control;
    ViewContext& m_context;
};

// The line type of a subset as a pen style: 0 solid, 1 dashed, 3 dotted,
// the rest solid.
Qt::PenStyle PenStyleOf(int lineType) {
    switch (lineType) {
        case 1:
            return Qt::DashLine;
        case 3:
            return Qt::DotLine;
        default:
            return Qt::SolidLine;
    }
}

class Chart final : public WidgetBinding {
public:
    Chart(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new ChartView(control, context, parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    void mirror(PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == PropertyId::ChartData) {
            redraw();
        }
    }
    void mirrorAll() override { redraw(); }

private:
    void redraw() {
        const form::ChartModel& model = m_control.chart();
        auto* chart = new QChart();
        chart->setTitle(Qs(model.subTitle().empty() ? model.mainTitle()
                                                    : model.mainTitle() + "\n" + model.subTitle()));
        chart->setBackgroundBrush(ColorOf(static_cast<std::uint32_t>(
            model.option("GraphBackColor", static_cast<double>(0xFFFFFF)))));
        chart->legend()->setVisible(model.subsets() > 1);
        chart->setMargins(QMargins(2, 2, 2, 2));

        auto* xAxis = new QValueAxis();
        auto* yAxis = new QValueAxis();
        chart->addAxis(xAxis, Qt::AlignBottom);
        chart->addAxis(yAxis, Qt::AlignLeft);
        double minX = std::numeric_limits<double>::max();
        double maxX = std::numeric_limits<double>::lowest();
        double minY = minX;
        double maxY = maxX;
        for (int subset = 0; subset < model.subsets(); ++subset) {
            auto* series = new QLineSeries();
            series->setName(Qs(model.subsetLabel(subset)));
            QPen pen(ColorOf(model.subsetColor(subset)));
            pen.setStyle(PenStyleOf(model.subsetLineType(subset)));
            pen.setWidthF(1.5);
            series->setPen(pen);
            for (int point = 0; point < model.points(); ++point) {
                const double x = model.scientific() ? model.x(subset, point) : point;
                const double y = model.y(subset, point);
                series->append(x, y);
                minX = std::min(minX, x);
                maxX = std::max(maxX, x);
                minY = std::min(minY, y);
                maxY = std::max(maxY, y);
            }
            chart->addSeries(series);
            series->attachAxis(xAxis);
            series->attachAxis(yAxis);
        }
        scale(*xAxis, model.axis(ChartAxisId::X), minX, maxX);
        scale(*yAxis, model.axis(ChartAxisId::Y), minY, maxY);
        QChart* old = m_widget->chart();
        m_widget->setChart(chart);
        delete old;
    }

    static void scale(QValueAxis& axis, const form::ChartAxis& model, double low, double high) {
        axis.setTitleText(Qs(model.label));
        if (model.manualScaleControl != 0 && model.manualMax > model.manualMin) {
            axis.setRange(model.manualMin, model.manualMax);
        } else if (low < high) {
            axis.setRange(low, high);
        } else if (low == high) {
            axis.setRange(low - 1.0, high + 1.0);
        }
        axis.setLabelFormat(QStringLiteral("%g"));
    }

    ChartView* m_widget;
};

}  // namespace

std::unique_ptr<WidgetBinding> MakeChartBinding(form::Control& control, ViewContext& context,
                                                QWidget* parent) {
    if (control.kind() != form::ControlKind::Chart) {
        return nullptr;
    }
    return std::make_unique<Chart>(control, context, parent);
}

}  // namespace kt500::window
