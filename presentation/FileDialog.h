// The file page (fraCommon element 2): the folder and file lists with which
// the user picks a data file, a log file or a curve file. What happens on
// confirmation follows OpenFileType and belongs to the file's own subsystem.
#pragma once

#include "devices/IUserControl.h"

#include <cstdint>
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

}  // namespace kt500::presentation
