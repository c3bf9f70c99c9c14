#include "app/window/Launcher.h"

#include "app/window/FrameTexts.h"
#include "simulator/DeviceCatalogue.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QRadioButton>

namespace kt500::window {

namespace {

// The roles of the session data, in rising rights.
constexpr const char* kRoles[] = {"observer",         "operator",      "maintenance",
                                  "planningEngineer", "administrator", "oemService"};

struct LanguageChoice {
    const char* id;
    const char* name;
};
constexpr LanguageChoice kLanguages[] = {
    {"1033", "English"}, {"1031", "Deutsch"}, {"9999", "Translation keys"}};

void Select(QComboBox& box, const std::string& data) {
    const int found = box.findData(QString::fromStdString(data));
    box.setCurrentIndex(found >= 0 ? found : 0);
}

}  // namespace

Launcher::Launcher(const simulator::SessionOptions& preset, QWidget* parent)
    : QDialog(parent),
      m_preset(preset),
      m_device(new QComboBox(this)),
      m_online(new QRadioButton(FrameTexts(preset.language).text(FrameText::Online), this)),
      m_role(new QComboBox(this)),
      m_language(new QComboBox(this)) {
    // The launcher speaks the language of the session it starts from.
    const FrameTexts texts(preset.language);
    setWindowTitle(texts.text(FrameText::LauncherTitle));
    for (const simulator::DeviceModel& model : simulator::DeviceCatalogue::models()) {
        m_device->addItem(QString::fromStdString(model.key + "  (" + model.name + ")"),
                          QString::fromStdString(model.key));
    }
    Select(*m_device, preset.deviceKey);
    for (const char* role : kRoles) {
        m_role->addItem(texts.roleName(role), QString::fromUtf8(role));
    }
    Select(*m_role, preset.role);
    for (const LanguageChoice& language : kLanguages) {
        m_language->addItem(QString::fromUtf8(language.name), QString::fromUtf8(language.id));
    }
    Select(*m_language, preset.language);

    auto* offline = new QRadioButton(texts.text(FrameText::LauncherOffline), this);
    (preset.online ? m_online : offline)->setChecked(true);
    auto* mode = new QHBoxLayout();
    mode->addWidget(m_online);
    mode->addWidget(offline);
    mode->addStretch();

    auto* form = new QFormLayout();
    form->addRow(texts.text(FrameText::LauncherDevice), m_device);
    form->addRow(texts.text(FrameText::LauncherMode), mode);
    form->addRow(texts.text(FrameText::LauncherRole), m_role);
    form->addRow(texts.text(FrameText::LauncherLanguage), m_language);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

simulator::SessionOptions Launcher::options() const {
    simulator::SessionOptions options = m_preset;
    options.deviceKey = m_device->currentData().toString().toStdString();
    options.online = m_online->isChecked();
    options.role = m_role->currentData().toString().toStdString();
    options.language = m_language->currentData().toString().toStdString();
    options.frameLanguage = options.language;
    return options;
}

}  // namespace kt500::window
