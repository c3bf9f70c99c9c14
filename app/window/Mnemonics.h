// Mnemonics: the underlined letter that Alt chooses a command by. The
// menus give one to each of their commands, the pages to each of their
// buttons, every letter once among its neighbours.
#pragma once

#include <QString>

namespace kt500::window {

// The text with an ampersand before the first letter that is not in taken
// (which then holds it); ampersands of the text are doubled.
[[nodiscard]] QString WithMnemonic(const QString& text, QString& taken);

// The letter a text's mnemonic marks, lower case; a null character when it
// has none.
[[nodiscard]] QChar MnemonicOf(const QString& text);

}  // namespace kt500::window
