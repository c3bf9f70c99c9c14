// Which icon a message box of the logic shows. The logic's messages all
// reach m_pDialogs with the same codes, so the kind is read from what the
// logic asks for: the button set (a yes/no question), the dialog kind (1:
// a warning before a change of the device's behaviour), and the header and
// text that the system's conventions give an error or a rejected input
// (a handler's or routine's name as header, "error", a parse failure, a
// failed request; the value check's header).
#pragma once

#include <string>
#include <string_view>

namespace kt500::window {

enum class MessageKind { Information, Warning, Error, Question };

// The translations, in the session's language, of the texts that mark a
// kind. Empty members match nothing.
struct MessageTexts {
    std::string error;          // Translate("error")
    std::string valueCheck;     // Translate("valueCheck")
    std::string parseFailed;    // Translate("parseFailed")
    std::string requestFailed;  // Translate("errRequestFailed")
};

[[nodiscard]] MessageKind MessageKindOf(int intDialogKind, int intButtonSet,
                                        std::string_view strHeader, std::string_view strText,
                                        const MessageTexts& texts);

}  // namespace kt500::window
