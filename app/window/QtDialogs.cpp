#include "app/window/QtDialogs.h"

#include <QMessageBox>

namespace kt500::window {

namespace {

constexpr int kYesNoButtons = 4;

QMessageBox::Icon IconOf(MessageKind kind) {
    switch (kind) {
        case MessageKind::Question:
            return QMessageBox::Question;
        case MessageKind::Error:
            return QMessageBox::Critical;
        case MessageKind::Warning:
            return QMessageBox::Warning;
        case MessageKind::Information:
            break;
    }
    return QMessageBox::Information;
}

}  // namespace

MessageKind QtDialogs::kindOf(int intDialogKind, int intButtonSet, const std::string& strHeader,
                              const std::string& strText) const {
    MessageTexts texts;
    if (m_texts) {
        texts = m_texts();
    }
    return MessageKindOf(intDialogKind, intButtonSet, strHeader, strText, texts);
}

void QtDialogs::ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                            const std::string& strHeader, const std::string& strText,
                            int& intButtonPressed, int& intResult) {
    QMessageBox box(m_parent);
    box.setWindowTitle(QString::fromStdString(strHeader));
    box.setText(QString::fromStdString(strText));
    box.setWindowModality(Qt::ApplicationModal);
    box.setIcon(IconOf(kindOf(intDialogKind, intButtonSet, strHeader, strText)));
    int answer = services::ButtonOk;
    if (intButtonSet == kYesNoButtons) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(intDefaultButton == services::ButtonNo ? QMessageBox::No
                                                                    : QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
        answer = box.exec() == QMessageBox::Yes ? services::ButtonYes : services::ButtonNo;
    } else {
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
    }
    intButtonPressed = answer;
    intResult = answer;
}

}  // namespace kt500::window
