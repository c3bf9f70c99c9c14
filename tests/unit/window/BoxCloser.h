// For tests of the whole window, whose message boxes are real: closes
// every box that opens, as a user pressing its default button would, and
// keeps what each said.
#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

namespace kt500::window {

class BoxCloser {
public:
    BoxCloser() {
        m_timer.setInterval(20);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                m_seen << box->windowTitle() + QStringLiteral(" | ") + box->text();
                box->done(box->defaultButton() != nullptr
                              ? box->standardButton(box->defaultButton())
                              : QMessageBox::Ok);
            }
        });
        m_timer.start();
    }
    [[nodiscard]] const QStringList& seen() const { return m_seen; }

private:
    QTimer m_timer;
    QStringList m_seen;
};

}  // namespace kt500::window
