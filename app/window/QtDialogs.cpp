#include "app/window/QtDialogs.h"

#include <QMessageBox>

namespace kt500::window {

namespace {

constexpr int kYesNoButtons = 4;

}  // namespace

void QtDialogs::ShowMessage(int /*intDialogKind*/, int intButtonSet, int intDefaultButton,
                            const std::string& strHeader, const std::string& strText,
                            int& intButtonPressed, int& intResult) {
    QMessageBox box(m_parent);
    box.setWindowTitle(QString::fromStdString(strHeader));
    box.setText(QString::fromStdString(strText));
    box.setWindowModality(Qt::ApplicationModal);
    int answer = services::ButtonOk;
    if (intButtonSet == kYesNoButtons) {
        box.setIcon(QMessageBox::Question);
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(intDefaultButton == services::ButtonNo ? QMessageBox::No
                                                                    : QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
        answer = box.exec() == QMessageBox::Yes ? services::ButtonYes : services::ButtonNo;
    } else {
        box.setIcon(QMessageBox::Information);
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
    }
    intButtonPressed = answer;
    intResult = answer;
}

}  // namespace kt500::window
