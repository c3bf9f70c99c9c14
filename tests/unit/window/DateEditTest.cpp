// The device date: one date editor in the year's row stands for the form's
// day list, month list and year box, and enters only dates a device holds.
#include "app/window/DateRows.h"
#include "app/window/DesktopSession.h"
#include "app/window/RowGaps.h"
#include "devices/IUserControl.h"

#include <QApplication>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "BoxCloser.h"
#include "WindowTest.h"

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

// A page of three rows: the day, the month and the year of a date, each
// with its caption and mark, and a row below.
struct DatePage {
    DatePage() {
        page.setTop(0);
        page.setHeight(3000);
        int top = 360;
        for (form::Control* field : {&day, &month, &year, &below}) {
            field->setRowPart(true);
            field->setTop(top);
            field->setHeight(315);
            top += 375;
        }
        day.setLook(form::Control::Look::DateDay);
        month.setLook(form::Control::Look::DateMonth);
        year.setLook(form::Control::Look::Date);
        for (int i = 1; i <= 31; ++i) {
            day.addItem(std::to_string(i));
        }
        for (int i = 1; i <= 12; ++i) {
            month.addItem(std::to_string(i));
        }
        for (form::Control* mark : {&dayMark, &yearMark}) {
            mark->setRowPart(true);
            mark->setHeight(240);
        }
        dayMark.setTop(day.top() + 37);
        yearMark.setTop(year.top() + 37);
        caption.setRowPart(true);
        caption.setTop(month.top());
        caption.setHeight(315);
    }
    void hold(int intDay, int intMonth, const std::string& strYear) {
        day.setListIndex(intDay - 1);
        month.setListIndex(intMonth - 1);
        year.setText(strYear);
    }

    form::Form form;
    form::Control& page = form.add(form::ControlKind::Frame, "fraPage", 0);
    form::Control& day = form.add(form::ControlKind::ComboBox, "comDate", 0, &page);
    form::Control& month = form.add(form::ControlKind::ComboBox, "comDate", 1, &page);
    form::Control& year = form.add(form::ControlKind::TextBox, "txtYear", -1, &page);
    form::Control& below = form.add(form::ControlKind::TextBox, "txtBelow", -1, &page);
    form::Control& dayMark = form.add(form::ControlKind::Image, "imgMark", 0, &page);
    form::Control& yearMark = form.add(form::ControlKind::Image, "imgMark", 2, &page);
    form::Control& caption = form.add(form::ControlKind::Label, "lblCaption", 1, &page);
};

TEST(DateRowsTest, TheDateTheControlsHoldOrNoneForWhatNoDeviceHolds) {
    DatePage p;
    const DateParts parts = DatePartsOf(p.form, p.month);
    ASSERT_EQ(parts.day, &p.day);
    ASSERT_EQ(parts.year, &p.year);
    p.hold(15, 3, "2024");
    EXPECT_EQ(DateOf(parts), QDate(2024, 3, 15));
    p.hold(15, 3, " 2024 ");
    EXPECT_EQ(DateOf(parts), QDate(2024, 3, 15));
    // A day past the month's end shows as its last day.
    p.hold(31, 2, "2023");
    EXPECT_EQ(DateOf(parts), QDate(2023, 2, 28));
    for (const char* year : {"", "24", "20244", "2O24", "-202", "1899", "2156", "1,99"}) {
        p.hold(1, 1, year);
        EXPECT_FALSE(DateOf(parts).isValid()) << year;
    }
    p.hold(1, 1, "2155");
    EXPECT_TRUE(DateOf(parts).isValid());
    p.day.setListIndex(-1);
    EXPECT_FALSE(DateOf(parts).isValid());
    // And back: the lists' entries and the year's text.
    const DateEntries entries = EntriesOf(QDate(1999, 12, 7));
    EXPECT_EQ(entries.dayIndex, 6);
    EXPECT_EQ(entries.monthIndex, 11);
    EXPECT_EQ(entries.year, "1999");
}

TEST(DateRowsTest, TheDayAndMonthRowsAreDrawnByTheDatesRow) {
    DatePage p;
    EXPECT_EQ(DatePlaceOf(p.form, p.caption), DatePlace::Dropped);
    EXPECT_EQ(DatePlaceOf(p.form, p.day), DatePlace::Dropped);
    EXPECT_EQ(DatePlaceOf(p.form, p.dayMark), DatePlace::AtDateMark);
    EXPECT_EQ(DateMarkFor(p.form, p.dayMark), &p.yearMark);
    EXPECT_EQ(DatePlaceOf(p.form, p.year), DatePlace::Own);
    EXPECT_EQ(DatePlaceOf(p.form, p.yearMark), DatePlace::Own);
    EXPECT_EQ(DatePlaceOf(p.form, p.below), DatePlace::Own);
    // The rows below close up over the two rows.
    EXPECT_EQ(RowGapShift(p.form, p.year), 2 * 375);
    EXPECT_EQ(RowGapShift(p.form, p.below), 2 * 375);
    EXPECT_EQ(RowGapShift(p.form, p.day), 0);
    // A control of the page that is no row keeps its place wherever it is.
    p.caption.setRowPart(false);
    EXPECT_EQ(DatePlaceOf(p.form, p.caption), DatePlace::Own);
}

class DateEditTest : public WindowTest {
protected:
    // The KT520's operation unit page, read from the device.
    void readOperationUnit() {
        start("KT520_7");
        node("operationUnit");
        toolbar("uploadCurrent");
    }
    QDateEdit* editor(std::string_view year, int index) {
        return qobject_cast<QDateEdit*>(view().widgetOf(form().control(year, index)));
    }
    std::string device(const std::string& name) {
        return desktop.session().bl().simulatedControl().deviceValue(name).value_or("?");
    }
    // Sends the confirmation list to the device as the user does.
    void send() {
        view().toolbarAction("send")->trigger();
        settle();
        auto* confirm = qobject_cast<QPushButton*>(view().widgetOf(form().control("cmdSend", 8)));
        ASSERT_NE(confirm, nullptr);
        confirm->click();
        settle();
    }

    BoxCloser boxes;
};

TEST_F(DateEditTest, OneEditorShowsTheDateInTheYearsRowAndTheRowsCloseUp) {
    readOperationUnit();

    QDateEdit* edit = editor("txtHAOperationUnit", 2);
    ASSERT_NE(edit, nullptr);
    EXPECT_TRUE(edit->isVisible());
    // The device's own date, whole.
    EXPECT_EQ(edit->date(), QDate::fromString(QString::fromStdString(device("deviceDate")),
                                              QStringLiteral("d.M.yyyy")));
    // The day and month lists have no widget, their captions are not drawn,
    // and the date's row stands where the day's row is in the form.
    const form::Control& day = form().control("comHAOperationUnit", 0);
    EXPECT_EQ(view().widgetOf(day), nullptr);
    EXPECT_EQ(view().widgetOf(form().control("comHAOperationUnit", 1)), nullptr);
    EXPECT_FALSE(view().widgetOf(form().control("lblHAOperationUnitTitle", 3))->isVisible());
    EXPECT_FALSE(view().widgetOf(form().control("lblHAOperationUnitTitle", 4))->isVisible());
    EXPECT_EQ(edit->y(), view().scale().rect(day).top());

    // A date the logic writes into the lists reaches the editor.
    view().gate().run([&] { form().control("comHAOperationUnit", 1).setListIndex(10); });
    EXPECT_EQ(edit->date().month(), 11);
    // Nothing a device can hold: the editor says there is no date.
    view().gate().run([&] { form().control("txtHAOperationUnit", 2).setText("19x0"); });
    EXPECT_EQ(edit->date(), edit->minimumDate());
    EXPECT_EQ(edit->text(), edit->specialValueText());
}

TEST_F(DateEditTest, AnEditedDateReachesTheControlsTheConfirmationListAndTheDevice) {
    readOperationUnit();
    QDateEdit* edit = editor("txtHAOperationUnit", 2);
    ASSERT_NE(edit, nullptr);
    const QDate read = edit->date();
    ASSERT_TRUE(read.isValid());

    // The arrow key steps the day, as the user does.
    edit->setFocus(Qt::TabFocusReason);
    edit->setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClick(edit, Qt::Key_Up);
    EXPECT_EQ(form().control("comHAOperationUnit", 0).listIndex(), read.addDays(1).day() - 1);
    // A date chosen from the calendar: every part that differs changes.
    edit->setDate(QDate(2025, 4, 20));
    settle();
    EXPECT_EQ(form().control("comHAOperationUnit", 0).listIndex(), 19);
    EXPECT_EQ(form().control("comHAOperationUnit", 1).listIndex(), 3);
    EXPECT_EQ(form().control("txtHAOperationUnit", 2).text(), "2025");
    const form::ListViewModel& rows = form().control("lsvConfirmation").listView();
    EXPECT_GT(rows.findKey("deviceDate"), 0);
    EXPECT_GT(rows.findKey("deviceDay"), 0);
    // A changed date shows as a change, and its mark stands in its row.
    EXPECT_EQ(edit->palette().color(QPalette::Active, QPalette::Text),
              ColorOf(devices::ColorChanged));
    QWidget* dayMark = nullptr;
    QWidget* dateMark = nullptr;
    for (const form::Control* control : form().controls()) {
        if (DatePlaceOf(form(), *control) == DatePlace::AtDateMark && control->visible()) {
            dayMark = view().widgetOf(*control);
            dateMark = view().widgetOf(*DateMarkFor(form(), *control));
        }
    }
    ASSERT_NE(dayMark, nullptr);
    EXPECT_TRUE(dayMark->isVisible());
    EXPECT_EQ(dayMark->geometry(), dateMark->geometry());
    EXPECT_LE(std::abs(dayMark->geometry().center().y() - edit->geometry().center().y()), 2);

    send();
    EXPECT_EQ(device("deviceDate"), "20.4.2025");
}

TEST_F(DateEditTest, NoDateADeviceCannotHoldCanBeEntered) {
    start("PL500_2", false);
    node("operationUnit");
    QDateEdit* edit = editor("txtPLParams", 2);
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->maximumDate(), LastDeviceDate());
    EXPECT_EQ(edit->minimumDate(), FirstDeviceDate().addDays(-1));

    edit->setDate(QDate(2024, 2, 10));
    settle();
    ASSERT_EQ(form().control("txtPLParams", 2).text(), "2024");
    edit->setFocus(Qt::TabFocusReason);
    // The 31st of February: the editor keeps a real date.
    edit->setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClicks(edit, QStringLiteral("31"));
    QTest::keyClick(edit, Qt::Key_Return);
    settle();
    const DateParts parts = DatePartsOf(form(), form().control("txtPLParams", 2));
    EXPECT_TRUE(DateOf(parts).isValid());
    EXPECT_EQ(DateOf(parts).day(), parts.day->listIndex() + 1);
    // A year past the last a device holds.
    edit->setCurrentSection(QDateTimeEdit::YearSection);
    QTest::keyClicks(edit, QStringLiteral("2156"));
    QTest::keyClick(edit, Qt::Key_Return);
    settle();
    EXPECT_LE(std::stoi(form().control("txtPLParams", 2).text()), 2155);
    // Stepping below the first date gives "no date", which enters nothing.
    edit->setDate(QDate(1900, 1, 1));
    settle();
    ASSERT_EQ(form().control("txtPLParams", 2).text(), "1900");
    edit->setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClick(edit, Qt::Key_Down);
    settle();
    EXPECT_EQ(form().control("txtPLParams", 2).text(), "1900");
    EXPECT_EQ(form().control("comPLParams", 0).listIndex(), 0);
}

TEST_F(DateEditTest, AYearTheLogicRefusesShowsRedInTheEditor) {
    readOperationUnit();
    // The year as a script types it: the logic checks the whole date and
    // refuses it.
    form::Control& year = form().control("txtHAOperationUnit", 2);
    view().gate().run([&] {
        form().raiseGotFocus(year);
        (void)form().raiseKeyPress(year, '2');
        year.setText("2200");
        form().raiseLostFocus(year);
    });
    settle();
    ASSERT_EQ(year.foreColor(), devices::ColorRefused);
    EXPECT_EQ(editor("txtHAOperationUnit", 2)->palette().color(QPalette::Active, QPalette::Text),
              ColorOf(devices::ColorRefused));
}

}  // namespace
}  // namespace kt500::window
