#include "app/window/MessageKind.h"

#include <algorithm>
#include <cctype>

namespace kt500::window {

namespace {

constexpr int kYesNoButtons = 4;
constexpr int kWarningKind = 1;

bool Same(std::string_view text, const std::string& translated) {
    return !translated.empty() && text == translated;
}

// A handler's name ("cmdSend_Click") or a routine's ("RequestTemplate",
// "ItemListFromReply"): one word of letters, digits and underscores with an
// underscore in it, or beginning with a capital and holding another. The
// failure guard and the parse failures put these over their messages;
// translated headers are words of the language, and translation keys (the
// pseudo-language's texts) begin small.
bool IsRoutineName(std::string_view header) {
    if (header.empty() || std::isalpha(static_cast<unsigned char>(header.front())) == 0) {
        return false;
    }
    const bool word = std::all_of(header.begin(), header.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
    });
    if (!word) {
        return false;
    }
    if (header.find('_') != std::string_view::npos) {
        return true;
    }
    return std::isupper(static_cast<unsigned char>(header.front())) != 0 &&
           std::any_of(header.begin() + 1, header.end(),
                       [](char c) { return std::isupper(static_cast<unsigned char>(c)) != 0; });
}

}  // namespace

MessageKind MessageKindOf(int intDialogKind, int intButtonSet, std::string_view strHeader,
                          std::string_view strText, const MessageTexts& texts) {
    if (intButtonSet == kYesNoButtons) {
        return MessageKind::Question;
    }
    // The trace is information whatever it carries.
    if (strHeader.substr(0, 12) == "Debug level ") {
        return MessageKind::Information;
    }
    if (strHeader == "Error" || Same(strHeader, texts.error) || Same(strText, texts.parseFailed) ||
        Same(strText, texts.requestFailed)) {
        return MessageKind::Error;
    }
    if (intDialogKind == kWarningKind || Same(strHeader, texts.valueCheck)) {
        return MessageKind::Warning;
    }
    return IsRoutineName(strHeader) ? MessageKind::Error : MessageKind::Information;
}

}  // namespace kt500::window
