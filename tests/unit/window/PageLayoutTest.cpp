// Hidden rows, on/off lists, grouped counts, model names, Alt letters and
// trend charts as the pages show them.
#include "app/window/DesktopSession.h"
#include "app/window/RowGaps.h"
#include "WindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineSeries>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

namespace kt500::window {
namespace {

class PageLayoutTest : public WindowTest {
protected:
    void uploadAll() { toolbar("uploadAll"); }
};

TEST_F(PageLayoutTest, RowsBelowAHiddenRowCloseUpAndMoveBackWhenItShows) {
    start("KT520_7");
    node("valveRelatedConfigurations");
    // The position transmitter row (element 4) is hidden on a plain KT520:
    // the split range row follows the input signal row at one row's pitch.
    QWidget* direction = widget("comHAValveRelatedConfiguration", 2);
    QWidget* splitLow = widget("txtHAPositionControl", 3);
    const int pitch = view().scale().pixels(375);
    EXPECT_EQ(splitLow->y() - direction->y(), pitch);
    EXPECT_EQ(RowGapShift(form(), form().control("txtHAPositionControl", 3)), 450);
    // Shown, the row takes its room back; the rows below move down by it.
    const int before = splitLow->y();
    form().control("comHAValveRelatedConfiguration", 4).setVisible(true);
    form().control("lblHAAssemblyRealedConfiguration", 4).setVisible(true);
    EXPECT_EQ(splitLow->y(), before + view().scale().pixels(450));
    EXPECT_EQ(RowGapShift(form(), form().control("txtHAPositionControl", 3)), 0);
    // What lies under the rows keeps its place.
    EXPECT_EQ(RowGapShift(form(), form().control("lblTimeStamp", 8)), 0);
}

TEST_F(PageLayoutTest, AnOnOffListIsACheckBoxThatChoosesAsTheListWould) {
    start("KT540_1.0");
    node("simulation");
    form::Control& list = form().control("comPASimulation", 0);
    auto* box = qobject_cast<QCheckBox*>(widget("comPASimulation", 0));
    ASSERT_NE(box, nullptr);
    ASSERT_EQ(list.itemData(list.listIndex()), 0);
    EXPECT_FALSE(box->isChecked());
    EXPECT_EQ(box->text().toStdString(), list.list(list.listIndex()));

    // The user ticks it and moves on: the list holds the on entry, the
    // change is marked and waits on the confirmation list.
    box->setFocus(Qt::MouseFocusReason);
    box->click();
    widget("txtPASimulation", 0)->setFocus(Qt::TabFocusReason);
    settle();
    EXPECT_EQ(list.itemData(list.listIndex()), 1);
    EXPECT_TRUE(box->isChecked());
    EXPECT_EQ(list.foreColor(), 0xff0000U);
    EXPECT_EQ(form().control("lsvConfirmation").listView().count(), 1);

    // The program choosing the off entry unticks it.
    list.setListIndex(0);
    EXPECT_FALSE(box->isChecked());
    // The other families' switches are check boxes too.
    start("KT520_7");
    EXPECT_NE(qobject_cast<QCheckBox*>(widget("comHAHartConfiguration", 1)), nullptr);
    EXPECT_NE(qobject_cast<QComboBox*>(widget("comHAHartConfiguration", 0)), nullptr);
    start("PL500_2");
    for (int index : {12, 13, 17}) {
        EXPECT_NE(qobject_cast<QCheckBox*>(widget("comPLParams", index)), nullptr) << index;
    }
}

TEST(GroupedDigits, GroupsWholeCountsByThreesAndLeavesOtherTextsAlone) {
    const QChar gap(0x202F);
    EXPECT_EQ(GroupedDigits(QStringLiteral("183204")), QStringLiteral("183") + gap + "204");
    EXPECT_EQ(GroupedDigits(QStringLiteral("1000000")),
              QStringLiteral("1") + gap + "000" + gap + "000");
    EXPECT_EQ(GroupedDigits(QStringLiteral("-4500")), QStringLiteral("-4") + gap + "500");
    EXPECT_EQ(GroupedDigits(QStringLiteral("999")), QStringLiteral("999"));
    for (const char* text : {"", "-", "18250.5", "1 000", "n/a", "12a"}) {
        EXPECT_EQ(GroupedDigits(QString::fromLatin1(text)), QString::fromLatin1(text)) << text;
    }
}

TEST_F(PageLayoutTest, CountersAreGroupedAndTheDeviceTypeShowsItsModel) {
    start("KT520_7");
    uploadAll();
    node("actuatorAndValveMeters");
    const form::Control& strokes = form().control("lblHAMeterValue", 0);
    auto* shown = qobject_cast<QLabel*>(view().widgetOf(strokes));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(strokes.caption(), "183204");
    EXPECT_EQ(shown->text(), GroupedDigits(QStringLiteral("183204")));
    EXPECT_NE(shown->text(), QStringLiteral("183204"));

    node("positionerInformation");
    const form::Control& type = form().control("lblHAPositionerInformation", 1);
    auto* model = qobject_cast<QLabel*>(view().widgetOf(type));
    EXPECT_EQ(type.caption(), "232");  // the logic keeps the device's number
    EXPECT_EQ(model->text(), QStringLiteral("KT520"));
    EXPECT_EQ(model->toolTip(), QStringLiteral("232"));

    start("KT540_1.0");
    uploadAll();
    EXPECT_EQ(qobject_cast<QLabel*>(widget("lblPAPositionerInformation", 1))->text(),
              QStringLiteral("KT540"));
}

// The mnemonic letter of a button's text, lower case.
QChar Mnemonic(const QString& text) {
    const qsizetype at = text.indexOf(QRegularExpression(QStringLiteral("&[^&]")));
    return at < 0 ? QChar() : text.at(at + 1).toLower();
}

TEST_F(PageLayoutTest, EachPagesButtonsHaveTheirOwnAltLetters) {
    for (const char* device : {"KT520_7", "KT540_1.0", "PL500_2"}) {
        start(device);
        view().setReservedMnemonics(QStringLiteral("fdvh"));
        for (const form::Control* page : form().children(nullptr)) {
            if (page->kind() != form::ControlKind::Frame) {
                continue;
            }
            std::set<QChar> letters;
            for (const form::Control* control : form().controls()) {
                auto* button = qobject_cast<QPushButton*>(view().widgetOf(*control));
                if (control->kind() != form::ControlKind::CommandButton || button == nullptr ||
                    !form::Form::isInside(*control, *page) ||
                    !std::any_of(control->caption().begin(), control->caption().end(),
                                 [](char c) { return std::isalpha(static_cast<unsigned char>(c)); })) {
                    continue;
                }
                const QChar letter = Mnemonic(button->text());
                const std::string name = button->objectName().toStdString();
                ASSERT_FALSE(letter.isNull()) << device << " " << name;
                EXPECT_FALSE(QStringLiteral("fdvh").contains(letter)) << name;
                EXPECT_TRUE(letters.insert(letter).second) << device << " " << name;
            }
        }
    }
}

TEST_F(PageLayoutTest, AltAndTheButtonsLetterPressesIt) {
    start("KT520_7");
    node("monitoringVariables");
    form::Control& start = form().control("cmdHAMonitoring", 0);
    const std::string idle = start.caption();
    auto* button = qobject_cast<QPushButton*>(view().widgetOf(start));
    ASSERT_NE(button, nullptr);
    const QChar letter = Mnemonic(button->text());
    ASSERT_FALSE(letter.isNull());
    QTest::keyClick(&view(), letter.toLatin1(), Qt::AltModifier);
    QTest::qWait(300);  // a mnemonic presses the button as a short animation
    settle();
    EXPECT_EQ(desktop.session().control().m_objTools->MonitoringFlag, true);
    EXPECT_NE(start.caption(), idle);
    // A new caption (the stop command) gets its letter too.
    EXPECT_FALSE(Mnemonic(button->text()).isNull());
}

TEST_F(PageLayoutTest, TheTrendChartShowsTheSamplesWithTheRunningTimeAndThePageTheTimeSpan) {
    start("KT520_7");
    uploadAll();
    node("loadFactor");
    QTest::qWait(100);  // the chart's batched redraw
    const form::ChartModel& model = form().control("pegoLoadFactor").chart();
    auto* chart = qobject_cast<QChartView*>(widget("pegoLoadFactor"));
    ASSERT_NE(chart, nullptr);
    EXPECT_TRUE(chart->isVisible());
    const auto axes = chart->chart()->axes(Qt::Horizontal);
    ASSERT_EQ(axes.size(), 1);
    auto* time = qobject_cast<QCategoryAxis*>(axes.front());
    ASSERT_NE(time, nullptr);
    const QStringList labels = time->categoriesLabels();
    ASSERT_GE(labels.size(), 2);
    EXPECT_LE(labels.size(), 7);
    // From the oldest point's age towards now.
    EXPECT_EQ(labels.front().toStdString(), model.pointLabel(0));
    EXPECT_EQ(labels.back().toStdString(), model.pointLabel(model.points() - 1));
    EXPECT_LT(labels.front().toDouble(), labels.back().toDouble());

    // The page says the span, the age of the oldest point.
    const std::string span = form().control("lblHATrendTime", 0).caption();
    EXPECT_FALSE(span.empty());
    EXPECT_NEAR(std::stod(span), -std::stod(model.pointLabel(0)), 0.05);
    EXPECT_EQ(qobject_cast<QLabel*>(widget("lblHATrendTime", 0))->text().toStdString(), span);

    // The device's samples, the alarm limit line at the page's limit, and no
    // legend of unlabelled marks.
    const auto series = chart->chart()->series();
    ASSERT_EQ(series.size(), 4);
    auto* values = qobject_cast<QLineSeries*>(series[0]);
    ASSERT_TRUE(values != nullptr && values->count() == 20);
    simulator::SimulatedControl& device = desktop.session().bl().simulatedControl();
    for (int point = 0; point < 20; ++point) {
        const std::string name = (point < 10 ? "loadFactorVal0" : "loadFactorVal") +
                                 std::to_string(point);
        EXPECT_NEAR(values->at(point).y(), std::stod(device.deviceValue(name).value_or("nan")),
                    1e-4)
            << name;
    }
    EXPECT_EQ(qobject_cast<QLineSeries*>(series[1])->at(10).y(), 90.0);
    EXPECT_FALSE(chart->chart()->legend()->isVisible());
}


}  // namespace
}  // namespace kt500::window
