#include "app/HeadlessLife.h"

#include "form/FormLoader.h"
#include "session/QtSettingsStore.h"
#include "host/RavikKT500.h"
#include "simulator/BuiltInBL.h"

#include <QStandardPaths>

namespace kt500::app {

namespace {

void printBoxes(simulator::HeadlessDialogs& dialogs, std::ostream& out) {
    for (const auto& box : dialogs.takeBoxes()) {
        out << "  message " << box.header << " | " << box.text << '\n';
    }
}

}  // namespace

int RunHeadlessLife(const InstallLayout& layout, const simulator::SessionOptions& options,
                    std::ostream& out) {
    const std::filesystem::path forms = layout.shareDir / "forms";
    const form::FormLoader loader(layout.shareDir / "schemas" /
                                  std::string(form::FormLoader::kSchemaFileName));
    auto formModel = std::make_unique<form::Form>();
    loader.load(*formModel, form::FormLoader::standardFiles(forms));
    out << "form: " << formModel->controls().size() << " controls from " << forms.string() << '\n';

    session::QtSettingsStore settings = session::QtSettingsStore::ForInstallation(layout.prefix);
    session::QtDebugOutput debugOutput;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    host::ControlPlatform platform{
        settings, debugOutput,
        session::PathDefaults::UnderShare(layout.shareDir.string(),
                                       (documents + QStringLiteral("/KT500 DTM/")).toStdString())};

    host::RavikKT500 control(std::move(formModel), platform);
    const session::clsTools& tools = *control.m_objTools;
    out << "constructed: settings of " << layout.prefix.toStdString() << "/etc/kt500-dtm\n"
        << "  Xml Datafile Path = " << tools.GUIxmlPath << '\n'
        << "  Xml Schema Path = " << tools.GUIxmlSchemaPath << '\n'
        << "  Install Path = " << tools.InstallPath << '\n'
        << "  Debug Level = " << tools.DebugLevel << '\n';

    simulator::BuiltInBL bl(options, layout.shareDir);
    const bool started = control.IDtmActiveXControl_Init("", "", bl);
    form::Form& form = control.form();
    const form::ToolbarModel& toolbar = form.control("smuiDTM", 1).toolbar();
    out << (started ? "connected" : "start-up failed") << ": built-in BL, device "
        << options.deviceKey << '\n'
        << "  ConnectionID = " << tools.ConnectionID << '\n'
        << "  DeviceName = " << tools.DeviceName << ", DeviceTypeId = " << tools.DeviceTypeId
        << ", revision = " << toolbar.item("revision").text << '\n'
        << "  parameter document: " << (control.xmlDataFile() != nullptr ? "loaded" : "not loaded") << '\n'
        << "  GUIInit document: "
        << (tools.RavikDTMParameters() != nullptr
                ? "loaded (" + tools.DeviceParameterXml() + ")"
                : "not loaded (" + tools.DeviceParameterXml() + ")")
        << '\n';
    const form::Control& languages = form.control("comSelectLanguage");
    out << "  languages:";
    for (int i = 0; i < languages.listCount(); ++i) {
        out << ' ' << languages.list(i) << " (" << languages.itemData(i) << ')'
            << (i == languages.listIndex() ? "*" : "")
            << (i + 1 < languages.listCount() ? "," : "");
    }
    out << "\n  session: DeviceType = " << tools.DeviceType << ", role = " << tools.ActorRole
        << ", " << (tools.OnlineConf ? "online" : "offline") << ", Language = " << tools.Language
        << ", SavePath = " << tools.SavePath << '\n'
        << "  toolbar: " << toolbar.item("strDtmStatus").text << ", send "
        << (toolbar.item("send").enabled ? "enabled" : "disabled") << ", offlineConf "
        << (toolbar.item("offlineConf").enabled ? "enabled" : "disabled") << '\n'
        << "  device class: " << control.deviceClass().FrameArrayName() << " (prefix "
        << control.deviceClass().DevicePrefix() << ")\n"
        << "  data set locked: " << (form.control("imgLockedDataset").visible() ? "yes" : "no")
        << "\n  DTMInitialized = " << (tools.DTMInitialized ? "True" : "False") << '\n';
    printBoxes(*bl.headlessDialogs(), out);

    control.IDtmActiveXControl_PrepareToRelease();
    out << "released: connection " << (bl.simulatedControl().connected() ? "still open" : "closed")
        << '\n';
    printBoxes(*bl.headlessDialogs(), out);
    return started ? 0 : 1;
}

}  // namespace kt500::app
