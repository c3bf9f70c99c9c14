#include "presentation/FileDialog.h"

#include "devices/DeviceClass.h"
#include "devices/MemberMissing.h"

#include <exception>
#include <filesystem>
#include <string_view>

namespace kt500::presentation {

void ShowFileDialog(devices::IUserControl& control, const std::string& strHeaderKey,
                    OpenFileType intOpenFileType, const std::string& strPattern) {
    form::Form& form = control.form();
    session::clsTools& tools = control.tools();
    control.deviceClass().HideFrames();
    if (form::Control* files = form.find("filOpenFile")) {
        files->setPattern(strPattern);
    }
    if (form::Control* name = form.find("txtFileName")) {
        std::string proposed;
        if (intOpenFileType == OpenFileType::Export) {
            const form::Control* folder = form.find("dirOpenFile");
            const std::filesystem::path path = folder ? folder->path() : std::string();
            proposed = (path / (tools.DeviceType + ".xml")).string();
        }
        name->setText(proposed);
    }
    if (form::Control* header = form.find("lblOpenFileDlgHeader")) {
        header->setCaption(control.Translate(strHeaderKey));
    }
    tools.OpenFileType = static_cast<std::int16_t>(intOpenFileType);
    form.control("fraCommon", 2).setVisible(true);
}

void FilePage::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("cmdOpenFile", EventKind::Click,
                 [this](form::FormEvent& event) { cmdOpenFile_Click(event.control->index()); });
    handlers.add("drvOpenFile", EventKind::Change, [this](form::FormEvent&) { drvOpenFile_Change(); });
    handlers.add("dirOpenFile", EventKind::Change, [this](form::FormEvent&) { dirOpenFile_Change(); });
    handlers.add("filOpenFile", EventKind::Click, [this](form::FormEvent&) { filOpenFile_Click(); });
    handlers.add("txtFileName", EventKind::Change, [this](form::FormEvent&) { txtFileName_Change(); });
}

void FilePage::drvOpenFile_Change() {
    form::Form& form = m_control.form();
    if (form::Control* folders = form.find("dirOpenFile")) {
        folders->setPath(form.control("drvOpenFile").drive());
        dirOpenFile_Change();
    }
}

void FilePage::dirOpenFile_Change() {
    form::Form& form = m_control.form();
    if (form::Control* files = form.find("filOpenFile")) {
        files->setPath(form.control("dirOpenFile").path());
    }
}

void FilePage::filOpenFile_Click() {
    form::Form& form = m_control.form();
    const form::Control& files = form.control("filOpenFile");
    if (files.fileName().empty()) {
        return;
    }
    form.control("txtFileName").setText(
        (std::filesystem::path(files.path()) / files.fileName()).string());
}

void FilePage::txtFileName_Change() {
    form::Form& form = m_control.form();
    if (form::Control* confirm = form.find("cmdOpenFile", 0)) {
        const std::string& text = form.control("txtFileName").text();
        confirm->setEnabled(text.find_first_not_of(" \t") != std::string::npos);
    }
}

void FilePage::setAction(OpenFileType intOpenFileType, std::function<void()> action) {
    m_actions.at(static_cast<std::size_t>(intOpenFileType)) = std::move(action);
}

void FilePage::cmdOpenFile_Click(int intIndex) {
    // The members that act on a confirmed file, by OpenFileType.
    static constexpr std::array<std::string_view, 4> kMembers = {
        "LoadValuesFromFile", "StartMonitorLog", "CreateSaveXml", "LoadCurveFile"};
    form::Form& form = m_control.form();
    session::clsTools& tools = m_control.tools();
    form.control("fraCommon", 2).setVisible(false);
    m_control.deviceClass().ShowFrame(tools.CurrentFrame.size() > 2 ? tools.CurrentFrame.substr(2)
                                                                    : std::string());
    form::Control& name = form.control("txtFileName");
    if (intIndex == 1) {
        name.setText("");
        return;
    }
    if (intIndex != 0 || name.text().empty()) {
        return;
    }
    try {
        const auto type = static_cast<std::size_t>(tools.OpenFileType);
        if (type >= m_actions.size() || !m_actions[type]) {
            throw devices::MemberMissing(type < kMembers.size() ? kMembers[type] : "OpenFileType");
        }
        m_actions[type]();
    } catch (const devices::MemberMissing&) {
        throw;
    } catch (const std::exception&) {
        m_control.ShowMsg("cmdOpenFile", m_control.Translate("fileOpenFailed"));
    }
}

}  // namespace kt500::presentation
