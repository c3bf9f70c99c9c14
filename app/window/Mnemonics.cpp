#include "app/window/Mnemonics.h"

namespace kt500::window {

QString WithMnemonic(const QString& text, QString& taken) {
    QString plain = text;
    plain.replace(QLatin1Char('&'), QStringLiteral("&&"));
    for (int i = 0; i < plain.size(); ++i) {
        const QChar letter = plain.at(i).toLower();
        if (plain.at(i) == QLatin1Char('&')) {
            ++i;  // a doubled ampersand
            continue;
        }
        if (letter.isLetter() && !taken.contains(letter)) {
            taken += letter;
            return plain.left(i) + QLatin1Char('&') + plain.mid(i);
        }
    }
    return plain;
}

QChar MnemonicOf(const QString& text) {
    for (int i = 0; i + 1 < text.size(); ++i) {
        if (text.at(i) != QLatin1Char('&')) {
            continue;
        }
        if (text.at(i + 1) == QLatin1Char('&')) {
            ++i;  // a doubled ampersand
            continue;
        }
        return text.at(i + 1).toLower();
    }
    return {};
}

}  // namespace kt500::window
