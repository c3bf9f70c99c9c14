#include "presentation/FileDialog.h"

#include "devices/DeviceClass.h"

#include <filesystem>

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

}  // namespace kt500::presentation
