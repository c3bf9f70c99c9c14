// The file page (fraCommon element 2): the folder and file lists with which
// the user picks a data file, a log file or a curve file. What happens on
// confirmation follows OpenFileType and belongs to the file's own subsystem.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace kt500::presentation {

// OpenFileType of the file page.
enum class OpenFileType : std::int16_t { Import = 0, MonitoringLog = 1, Export = 2, Curve = 3 };

// Hides the pages, prepares the file page (pattern, proposed name, header
// Translate(strHeaderKey), OpenFileType) and shows it. The proposed name is
// empty except on export: the folder of dirOpenFile with the device key and
// ".xml". Controls the page does not hold are passed over.
void ShowFileDialog(devices::IUserControl& control, const std::string& strHeaderKey,
                    OpenFileType intOpenFileType, const std::string& strPattern);

// The file page's two commands (cmdOpenFile): both bring back the page from
// before the dialog; element 0 then acts on the name in txtFileName by
// OpenFileType, element 1 empties it. Each subsystem gives the action of
// its file type; a type without one fails by the member's name.
class FilePage {
public:
    explicit FilePage(devices::IUserControl& control) : m_control(control) {}
    void addHandlers(form::EventHandlers& handlers);
    void setAction(OpenFileType intOpenFileType, std::function<void()> action);
    void cmdOpenFile_Click(int intIndex);
    // The lists act together: a new drive opens its folder, a new folder
    // lists its files, a click on a file names it (with its folder) in
    // txtFileName, and cmdOpenFile element 0 is enabled while that name is
    // not blank.
    void drvOpenFile_Change();
    void dirOpenFile_Change();
    void filOpenFile_Click();
    void txtFileName_Change();

private:
    devices::IUserControl& m_control;
    std::array<std::function<void()>, 4> m_actions;
};

}  // namespace kt500::presentation
