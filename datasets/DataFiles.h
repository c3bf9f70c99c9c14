// DataFiles: a device's saved groups written to an XML data file and read
// back. The file is a recording of replies: a loaded file goes through the
// same reply routing (the device class's Reply) as values that came from
// the device. A file is checked whole before any of it reaches a page
// (DataFileRead), and written safely (SafeSave).
#pragma once

#include "data/ReplyRouting.h"
#include "datasets/DataFileRead.h"
#include "datasets/SafeSave.h"
#include "devices/IUserControl.h"

#include <string>

namespace kt500::datasets {

class DataFiles {
public:
    DataFiles(devices::IUserControl& control, data::ReplyRouting& replies, SafeSave& writer)
        : m_control(control), m_replies(replies), m_writer(writer) {}

    // Loads the file named in txtFileName and replays its responses with
    // ImportFromFile set. A refused file is named in a message with the
    // reason, and nothing on the pages changes. Returns True when loaded.
    bool LoadValuesFromFile();
    // Writes the saved groups to the file named in txtFileName (".xml"
    // appended when missing) and reports success, or the reason it failed
    // with the previous file left as it was. Returns True when saved.
    bool CreateSaveXml();

    // The data file document of the pages' values, as CreateSaveXml writes it.
    [[nodiscard]] xml::Document SaveDocument();
    // The device's saved groups, their parameters and value kinds.
    [[nodiscard]] DataFileShape Shape();
    // Reads and checks a file; the document when it may be replayed. A
    // refusal is shown under strSource.
    [[nodiscard]] std::optional<xml::Document> ReadChecked(const std::string& strPath,
                                                           const std::string& strSource);
    // The value of a parameter as the file holds it: the page's value with
    // the exceptions of the device date, the device type, and the serial
    // numbers, which are stored packed.
    [[nodiscard]] std::string SaveValue(const std::string& strName, const std::string& strType);

private:
    devices::IUserControl& m_control;
    data::ReplyRouting& m_replies;
    SafeSave& m_writer;
};

}  // namespace kt500::datasets
