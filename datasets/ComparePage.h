// ComparePage: the page "compareConfigurations" (fraConfirmation element 2).
// It lists, group by group, every saved parameter with its value in the
// device (the last online read), in the session's data set and in a chosen
// data file, all in the data set's form and unit, and marks the rows whose
// values differ (numbers within a tolerance the user sets, text exactly).
// The user may show differences only, and take the file's or the device's
// value of the ticked rows onto the pages: each goes in as the user's own
// edit would, through the change tracking, the confirmation list and send.
// The rows that differ carry a comparison mark on their pages too.
#pragma once

#include "datasets/DataFiles.h"
#include "devices/IUserControl.h"
#include "form/EventHandlers.h"
#include "xml/Document.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kt500::datasets {

// The columns of lsvCompare's sub-items.
inline constexpr int kCompareDevice = 1;
inline constexpr int kCompareDataSet = 2;
inline constexpr int kCompareFile = 3;
inline constexpr int kCompareUnit = 4;
inline constexpr int kCompareDiffers = 5;
inline constexpr int kCompareName = 6;
inline constexpr int kComparePage = 7;
// cmdCompare's elements: read the file named, take the file's values, take
// the device's values.
inline constexpr int kCompareLoadFile = 0;
inline constexpr int kCompareTakeFile = 1;
inline constexpr int kCompareTakeDevice = 2;
// The picture of a comparison mark.
inline constexpr const char* kComparePicture = "compare";

class ComparePage {
public:
    // strShowPage shows a page by its node key, as a click in the tree does.
    ComparePage(devices::IUserControl& control, DataFiles& files,
                std::function<void(const std::string&)> showPage)
        : m_control(control), m_files(files), m_showPage(std::move(showPage)) {}

    // Keeps the values of a good online read: the device column.
    void RecordDeviceReply(const xml::Document& xmlReply);
    // Fills the list from the three sources and puts the marks on the pages.
    void FillComparePage();
    // Clears the comparison marks of every saved group's parameters.
    void ResetCompareInfo();
    // Shows or hides the marks of the pages of the family.
    void ShowPageImages(bool bVisible);

    void cmdCompare_Click(int intIndex);
    void addHandlers(form::EventHandlers& handlers);

private:
    struct Reading {
        std::string value;
        std::string unit;
    };
    // A value in the data set's unit, for comparing with it.
    std::string inDataSetUnit(const std::string& strName, const Reading& reading);
    void loadFile();
    // Puts the chosen source's value of every ticked row on its page.
    void takeValues(int intSource);
    // One value onto its field as the user's edit; False when no field
    // on the family's pages takes it.
    bool putOnPage(const std::string& strName, const std::string& strValue);

    devices::IUserControl& m_control;
    DataFiles& m_files;
    std::function<void(const std::string&)> m_showPage;
    std::map<std::string, Reading, std::less<>> m_device;
    std::map<std::string, Reading, std::less<>> m_file;
};

}  // namespace kt500::datasets
