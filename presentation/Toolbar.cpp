#include "presentation/Toolbar.h"

#include "devices/DeviceClass.h"
#include "presentation/FileDialog.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace kt500::presentation {

namespace {

constexpr int kArrowPointer = 1;

constexpr std::array<std::string_view, 6> kUploadGroups = {
    "uploadAll",         "uploadIdentification", "uploadConfiguration",
    "uploadDiagnostics", "uploadOperation",      "uploadAdvanced"};

constexpr std::array kCalibrationCommands = {"cmdHAAutoTravelCalibration",
                                             "cmdPAAutoTravelCalStart",
                                             "cmdHAInputSignalMeasurementCalibration",
                                             "cmdPAPositionSensorCalibration",
                                             "cmdHAPositionTransmitterCalibration",
                                             "cmdHAPressureSensorCalibration",
                                             "cmdPAPressureSensorCalibration",
                                             "cmdHATemperatureSensorCalibration",
                                             "cmdPATemperatureSensorCalibration",
                                             "cmdPLAutocalibration"};

form::ToolbarModel& Items(form::Form& form) {
    return form.control("smuiDTM", 1).toolbar();
}

// Every element of a command, as far as the form holds it.
void SetEnabled(const form::Form& form, const char* strName, bool blEnabled) {
    for (form::Control* command : form.elements(strName)) {
        command->setEnabled(blEnabled);
    }
}

}  // namespace

bool StartDetached(const std::string& strProgram, const std::vector<std::string>& arguments) {
    QStringList list;
    for (const std::string& argument : arguments) {
        list.append(QString::fromStdString(argument));
    }
    return QProcess::startDetached(QString::fromStdString(strProgram), list);
}

void Toolbar::smuiDTM_ToolbarClick(const std::string& strKey) {
    if (m_control.tools().CurrentAutoAction != 0) {
        return;
    }
    if (strKey == "send") {
        ShowConfirmation();
    } else if (strKey == "uploadCurrent") {
        m_control.cmdReload();
    } else if (std::find(kUploadGroups.begin(), kUploadGroups.end(), strKey) !=
               kUploadGroups.end()) {
        m_control.RunUploadGroup(strKey);
    } else if (strKey == "hideTree") {
        m_navigation.ToggleTree("");
    } else if (strKey == "settings") {
        ShowSettings();
    } else if (strKey == "stop") {
        Stop();
    } else if (strKey == "open") {
        ShowFileDialog(m_control, "importFile", OpenFileType::Import, "*.xml");
    } else if (strKey == "save") {
        ShowFileDialog(m_control, "exportFile", OpenFileType::Export, "*.xml");
    } else if (strKey == "offlineConf") {
        // The list view of this form repaints by itself; the page and the
        // send button are as for "send".
        ShowConfirmation();
    } else if (strKey == "undoCurrentPage") {
        UndoCurrentPage();
    } else if (strKey == "undoAll") {
        m_control.UndoAllPages();
    } else if (strKey == "help") {
        StartHelp();
    }
}

void Toolbar::ShowConfirmation() {
    devices::DeviceClass& device = m_control.deviceClass();
    device.HideFrames();
    device.ShowFrame("confirmation1");
    form::Form& form = m_control.form();
    const int checked = form.control("lsvConfirmation").listView().checkedCount();
    form.control("cmdSend", 8).setEnabled(checked > 0);
}

void Toolbar::ShowSettings() {
    m_navigation.LayOutPage("settings");
    // The settings page leaves CurrentFrame at the last real page.
    session::clsTools& tools = m_control.tools();
    const std::string frame = tools.CurrentFrame;
    devices::DeviceClass& device = m_control.deviceClass();
    device.HideFrames();
    device.ShowFrame("settings");
    tools.CurrentFrame = frame;
}

void Toolbar::UndoCurrentPage() {
    const std::string frame = m_control.tools().CurrentFrame;
    m_control.RestoreOldValues(frame, "");
    m_control.ClearPageChanges(frame);
}

void Toolbar::StartHelp() {
    if (!m_control.privateDialogEnabled()) {
        return;
    }
    const std::string file =
        (std::filesystem::path(m_control.tools().InstallPath) / kHelpFile).string();
    try {
        (void)m_starter(m_helpViewer, {file});
    } catch (const std::exception&) {
        // Help is a convenience: a viewer that cannot start is no failure.
    }
}

void Toolbar::Stop() {
    devices::DeviceClass& device = m_control.deviceClass();
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    device.setSmuiStopPressed(true);
    bool blCancelled = false;
    m_control.control().CancelRequests(tools.ConnectionID, blCancelled);
    // The BL answers none of the cancelled requests: nothing is out any more.
    tools.OpenRequests.clear();
    tools.ReadGroup = false;
    form.userControl().setMousePointer(kArrowPointer);
    for (const char* action : {"read", "write", "calibration", "test"}) {
        tools.CommunicationSign(action, "0");
    }
    form::ToolbarModel& items = Items(form);
    items.setEnabled("stop", false);
    items.setEnabled("uploadCurrent", true);
    if (tools.ActorRole != "observer") {
        items.setEnabled("send", true);
    }
    items.setEnabled("settings", true);
    form.control("ProgressBar1").setVisible(false);
    form.control("fraProgress").setVisible(false);
    device.PrintErrorMessages();
    m_control.EnableDeviceActions(true);
    device.setSmuiStopPressed(false);
}

void Toolbar::ApplyRole(const std::string& strRole) {
    const bool observer = strRole == "observer";
    if (!observer && strRole != "operator") {
        return;
    }
    form::Form& form = m_control.form();
    if (observer) {
        form::ToolbarModel& items = Items(form);
        items.setEnabled("offlineConf", false);
        items.setEnabled("send", false);
        for (int element = 0; element <= 3; ++element) {
            if (form::Control* reset = form.find("cmdResetDiagnostics", element)) {
                reset->setEnabled(false);
            }
        }
    }
    m_control.EnableTesting(false);
    for (const char* name : kCalibrationCommands) {
        SetEnabled(form, name, false);
    }
    SetEnabled(form, "cmdPAFactoryReset", false);
}

void Toolbar::addHandlers(form::EventHandlers& handlers) {
    handlers.add("smuiDTM", form::EventKind::ToolbarClick,
                 [this](form::FormEvent& event) { smuiDTM_ToolbarClick(event.key); });
}

}  // namespace kt500::presentation
