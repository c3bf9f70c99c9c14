#include "presentation/Toolbar.h"

#include "data/RoleRules.h"
#include "data/ToolsBack.h"
#include "devices/DeviceClass.h"
#include "presentation/ConfirmationPage.h"
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

form::ToolbarModel& Items(form::Form& form) {
    return form.control("smuiDTM", 1).toolbar();
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
    } else if (strKey == "compare") {
        m_navigation.GoToNode(m_control.deviceClass().ComparePageNode());
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
    ShowConfirmationPage(m_control);
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
    form.control("ProgressBar1").setVisible(false);
    form.control("fraProgress").setVisible(false);
    device.PrintErrorMessages();
    data::GiveToolsBack(m_control);
    device.setSmuiStopPressed(false);
}

void Toolbar::ApplyRole(const std::string& strRole) {
    // Only limits: what the role may use comes back with the mode and with
    // the end of each request, by the same table.
    form::ToolbarModel& items = Items(m_control.form());
    if (!data::RoleAllows(strRole, data::Right::OfflineConfiguration)) {
        items.setEnabled("offlineConf", false);
    }
    if (!data::RoleAllows(strRole, data::Right::Send)) {
        items.setEnabled("send", false);
    }
    for (const data::Right right : {data::Right::Test, data::Right::PLTest,
                                    data::Right::Calibration, data::Right::ResetDiagnostics,
                                    data::Right::FactoryReset}) {
        if (!data::RoleAllows(strRole, right)) {
            data::EnableCommands(m_control.form(), m_control.tools(), right, false);
        }
    }
}

void Toolbar::addHandlers(form::EventHandlers& handlers) {
    handlers.add("smuiDTM", form::EventKind::ToolbarClick,
                 [this](form::FormEvent& event) { smuiDTM_ToolbarClick(event.key); });
}

}  // namespace kt500::presentation
