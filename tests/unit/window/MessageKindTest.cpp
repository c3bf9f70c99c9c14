// The icon of a message box follows what the logic asks for: a question,
// an error (a failed handler, a parse failure, a refused request), a
// rejected input, or plain information such as the trace.
#include "app/window/MessageKind.h"
#include "app/window/QtDialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

const MessageTexts kEnglish{"Error", "Value check", "Parsing failed", "Request failed"};
const MessageTexts kPseudo{"error", "valueCheck", "parseFailed", "errRequestFailed"};

TEST(MessageKind, FollowsTheButtonsTheHeaderAndTheText) {
    // A yes/no question, whatever its header.
    EXPECT_EQ(MessageKindOf(0, 4, "Error", "Reload?", kEnglish), MessageKind::Question);
    // The failure guard's handler names and the parse failures' routines.
    EXPECT_EQ(MessageKindOf(0, 1, "cmdSend_Click", "Subscript out of range", kEnglish),
              MessageKind::Error);
    EXPECT_EQ(MessageKindOf(0, 1, "IQDLGuiEvent_CommunicationEvent", "x", kEnglish),
              MessageKind::Error);
    EXPECT_EQ(MessageKindOf(0, 1, "ItemListFromReply", "Parsing failed", kEnglish),
              MessageKind::Error);
    EXPECT_EQ(MessageKindOf(0, 1, "Operation unit", "Parsing failed", kEnglish),
              MessageKind::Error);
    EXPECT_EQ(MessageKindOf(0, 1, "RequestTemplate", "Request failed", kEnglish),
              MessageKind::Error);
    EXPECT_EQ(MessageKindOf(0, 1, "Error", "Can't open the connection!", kEnglish),
              MessageKind::Error);
    // The gathered failures of a sequence go out under the translated "error".
    EXPECT_EQ(MessageKindOf(0, 1, "error", "operationUnit\r\n", kPseudo), MessageKind::Error);
    // A rejected input, and the warning kind of the service.
    EXPECT_EQ(MessageKindOf(0, 1, "Value check", "Out of range", kEnglish), MessageKind::Warning);
    EXPECT_EQ(MessageKindOf(0, 1, "valueCheck", "invalidValue", kPseudo), MessageKind::Warning);
    EXPECT_EQ(MessageKindOf(1, 2, "Target mode", "The mode changes", kEnglish),
              MessageKind::Warning);
    // Information: the trace, a translated page name, a key of the
    // pseudo-language, a German word.
    EXPECT_EQ(MessageKindOf(0, 1, "Debug level 1", "Request to BL: <x/>", kEnglish),
              MessageKind::Information);
    EXPECT_EQ(MessageKindOf(0, 1, "Test settings", "Nothing to upload", kEnglish),
              MessageKind::Information);
    EXPECT_EQ(MessageKindOf(0, 1, "testInfo", "commonTestText1", kPseudo),
              MessageKind::Information);
    EXPECT_EQ(MessageKindOf(0, 1, "Testinformation", "Test beendet", kEnglish),
              MessageKind::Information);
    // Without the session's texts only the neutral marks count.
    EXPECT_EQ(MessageKindOf(0, 1, "Value check", "x", MessageTexts{}), MessageKind::Information);
    EXPECT_EQ(MessageKindOf(0, 1, "", "", MessageTexts{}), MessageKind::Information);
}

QMessageBox::Icon IconShown(QtDialogs& dialogs, int kind, int buttons, const std::string& header,
                            const std::string& text) {
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        icon = box->icon();
        box->reject();
    });
    int pressed = 0;
    int result = 0;
    dialogs.ShowMessage(kind, buttons, 4, header, text, pressed, result);
    return icon;
}

TEST(MessageKind, EachBoxShowsTheIconOfItsKind) {
    QtDialogs dialogs;
    dialogs.setTexts([] { return kEnglish; });
    EXPECT_EQ(IconShown(dialogs, 0, 4, "Data changed", "Reload?"), QMessageBox::Question);
    EXPECT_EQ(IconShown(dialogs, 0, 1, "cmdSend_Click", "Type mismatch"), QMessageBox::Critical);
    EXPECT_EQ(IconShown(dialogs, 0, 1, "Value check", "Out of range"), QMessageBox::Warning);
    EXPECT_EQ(IconShown(dialogs, 0, 1, "Operation unit", "Nothing to upload"),
              QMessageBox::Information);
}

}  // namespace
}  // namespace kt500::window
