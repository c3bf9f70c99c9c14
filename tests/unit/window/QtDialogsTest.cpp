#include "app/window/MessageKind.h"
#include "app/window/QtDialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace kt500::window {
namespace {

// Shows a box and, once it is open, lets press act on it; returns the
// button the service reports and what the box offered.
struct Shown {
    int pressed = 0;
    int result = 0;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

Shown Show(int buttonSet, int defaultButton, const std::function<void(QMessageBox&)>& press,
           const std::string& header = "Data changed", const std::string& text = "Reload?") {
    Shown shown;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        shown.buttons = box->standardButtons();
        shown.defaultButton = box->standardButton(box->defaultButton());
        shown.title = box->windowTitle();
        shown.icon = box->icon();
        press(*box);
    });
    QtDialogs dialogs;
    dialogs.setTexts([] { return MessageTexts{"Error", "Value check", "", ""}; });
    dialogs.ShowMessage(0, buttonSet, defaultButton, header, text, shown.pressed, shown.result);
    return shown;
}

TEST(QtDialogs, AQuestionAnswersYesOrNoAndAMessageOk) {
    const Shown no = Show(4, 6, [](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
    EXPECT_EQ(no.buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(no.defaultButton, QMessageBox::Yes);
    EXPECT_EQ(no.title, QStringLiteral("Data changed"));
    EXPECT_EQ(no.pressed, services::ButtonNo);
    EXPECT_EQ(no.result, services::ButtonNo);

    const Shown yes = Show(4, 7, [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    EXPECT_EQ(yes.defaultButton, QMessageBox::No);
    EXPECT_EQ(yes.pressed, services::ButtonYes);

    // Escape on a question is No, never Yes.
    const Shown escaped = Show(4, 6, [](QMessageBox& box) { box.reject(); });
    EXPECT_EQ(escaped.pressed, services::ButtonNo);

    const Shown message =
        Show(1, 4, [](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
    EXPECT_EQ(message.buttons, QMessageBox::Ok);
    EXPECT_EQ(message.pressed, services::ButtonOk);
}

TEST(QtDialogs, EachBoxShowsTheIconOfItsKind) {
    const auto icon = [](int buttons, const std::string& header, const std::string& text) {
        return Show(buttons, 4, [](QMessageBox& box) { box.reject(); }, header, text).icon;
    };
    EXPECT_EQ(icon(4, "Data changed", "Reload?"), QMessageBox::Question);
    EXPECT_EQ(icon(1, "cmdSend_Click", "Type mismatch"), QMessageBox::Critical);
    EXPECT_EQ(icon(1, "Value check", "Out of range"), QMessageBox::Warning);
    EXPECT_EQ(icon(1, "Operation unit", "Nothing to upload"), QMessageBox::Information);
}

}  // namespace
}  // namespace kt500::window
