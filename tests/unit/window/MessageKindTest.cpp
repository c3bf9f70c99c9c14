// A message box's icon follows what the logic asks: a question, an error, a
// rejected input or information.
#include "app/window/MessageKind.h"

#include <gtest/gtest.h>

namespace kt500::window {
namespace {

const MessageTexts kEnglish{"Error", "Value check", "Parsing failed", "Request failed"};
const MessageTexts kPseudo{"error", "valueCheck", "parseFailed", "errRequestFailed"};

TEST(MessageKind, FollowsTheButtonsTheHeaderAndTheText) {
    const MessageTexts none{};
    const struct {
        int kind, buttons;
        const char* header;
        const char* text;
        const MessageTexts& texts;
        MessageKind expected;
    } cases[] = {
        // A yes/no question, whatever its header.
        {0, 4, "Error", "Reload?", kEnglish, MessageKind::Question},
        // Failed handlers, parse failures and refused requests.
        {0, 1, "cmdSend_Click", "Subscript out of range", kEnglish, MessageKind::Error},
        {0, 1, "IQDLGuiEvent_CommunicationEvent", "x", kEnglish, MessageKind::Error},
        {0, 1, "ItemListFromReply", "Parsing failed", kEnglish, MessageKind::Error},
        {0, 1, "Operation unit", "Parsing failed", kEnglish, MessageKind::Error},
        {0, 1, "RequestTemplate", "Request failed", kEnglish, MessageKind::Error},
        {0, 1, "Error", "Can't open the connection!", kEnglish, MessageKind::Error},
        {0, 1, "error", "operationUnit\r\n", kPseudo, MessageKind::Error},
        // A rejected input, and the warning kind of the service.
        {0, 1, "Value check", "Out of range", kEnglish, MessageKind::Warning},
        {0, 1, "valueCheck", "invalidValue", kPseudo, MessageKind::Warning},
        {1, 2, "Target mode", "The mode changes", kEnglish, MessageKind::Warning},
        // The trace, a page name, a pseudo-language key, a German word.
        {0, 1, "Debug level 1", "Request to BL: <x/>", kEnglish, MessageKind::Information},
        {0, 1, "Test settings", "Nothing to upload", kEnglish, MessageKind::Information},
        {0, 1, "testInfo", "commonTestText1", kPseudo, MessageKind::Information},
        {0, 1, "Testinformation", "Test beendet", kEnglish, MessageKind::Information},
        // Without the session's texts only the neutral marks count.
        {0, 1, "Value check", "x", none, MessageKind::Information},
        {0, 1, "", "", none, MessageKind::Information},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(MessageKindOf(c.kind, c.buttons, c.header, c.text, c.texts), c.expected)
            << c.header << " | " << c.text;
    }
}

}  // namespace
}  // namespace kt500::window
