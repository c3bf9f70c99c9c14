// The launcher: the user chooses the simulated device, online or offline,
// the role and the language of a session, as the frame would pass them.
#pragma once

#include "simulator/SessionOptions.h"

#include <QDialog>

class QComboBox;
class QRadioButton;

namespace kt500::window {

class Launcher final : public QDialog {
public:
    explicit Launcher(const simulator::SessionOptions& preset, QWidget* parent = nullptr);

    [[nodiscard]] simulator::SessionOptions options() const;

private:
    simulator::SessionOptions m_preset;
    QComboBox* m_device;
    QRadioButton* m_online;
    QComboBox* m_role;
    QComboBox* m_language;
};

}  // namespace kt500::window
