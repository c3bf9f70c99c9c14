// A trend chart in the window: after the device was read, the load factor
// chart's view shows the device's samples, with the page's limit lines,
// and no legend of unlabelled marks.
#include "app/window/DesktopSession.h"

#include <QChart>
#include <QChartView>
#include <QLineSeries>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace kt500::window {
namespace {

TEST(TrendChartView, TheLoadFactorChartShowsTheValuesOfTheDevice) {
    DesktopSession desktop{KT500_SHARE_DIR, {}};
    simulator::SessionOptions options;
    options.deviceKey = "KT520_7";
    ASSERT_TRUE(desktop.start(options, nullptr, TwipScale()));
    desktop.view().show();
    desktop.settle();
    form::Form& form = desktop.view().form();
    form.raiseToolbarClick(form.control("smuiDTM", 1), "uploadAll");
    desktop.settle();
    form.raiseNodeClick(form.control("treeNavigation"), "loadFactor");
    QTest::qWait(100);

    auto* view = qobject_cast<QChartView*>(desktop.view().widgetOf(form.control("pegoLoadFactor")));
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view->isVisible());
    const auto series = view->chart()->series();
    ASSERT_EQ(series.size(), 4);
    auto* values = qobject_cast<QLineSeries*>(series[0]);
    ASSERT_NE(values, nullptr);
    ASSERT_EQ(values->count(), 20);
    simulator::SimulatedControl& device = desktop.session().bl().simulatedControl();
    for (int point = 0; point < 20; ++point) {
        char name[32];
        std::snprintf(name, sizeof name, "loadFactorVal%02d", point);
        const double sample = std::strtod(device.deviceValue(name).value_or("").c_str(), nullptr);
        EXPECT_NEAR(values->at(point).y(), sample, 1e-4) << name;
    }
    // The alarm limit line stands at the page's limit.
    auto* alarm = qobject_cast<QLineSeries*>(series[1]);
    ASSERT_NE(alarm, nullptr);
    EXPECT_EQ(alarm->at(10).y(), 90.0);
    // Its subsets carry no labels: no legend of bare colour marks.
    EXPECT_FALSE(view->chart()->legend()->isVisible());
}

}  // namespace
}  // namespace kt500::window
