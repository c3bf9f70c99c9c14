// ParameterValues: the values of the parameter document on the pages. A
// page control is tied to its parameter by Tag; this class reads a value
// from the pages (FetchValueByTag), puts one onto them (SetItemValueToGUI),
// fills the closed lists from the mapped parameters, and shows the whole
// data set with each page's tree state (LoadPagesFromDocument).
#pragma once

#include "data/HeldValues.h"
#include "devices/IUserControl.h"
#include "xml/Document.h"

#include <QLocale>

#include <cstdint>
#include <string>
#include <unordered_map>

namespace kt500::data {

class ParameterValues {
public:
    explicit ParameterValues(devices::IUserControl& control) : m_control(control) {}

    // The value of a parameter as a string: from the first control on the
    // family's pages with this Tag, else from the document.
    std::string FetchValueByTag(const std::string& strTagName, bool blCaption);
    // Clears each list box of a mapped parameter on the family's pages or
    // fraCommon and fills it with the entries in the session's language and
    // their values; an entry chosen before (by its value) is chosen again.
    // Runs at start-up and after each change of language.
    void FillMappedParams();
    // The mapping name (a translation key) of a value of a mapped
    // parameter; "" when the parameter has no mapping for it.
    std::string MappedName(const std::string& strName, const std::string& strValue);
    // Fills the day and month selectors of the device date (1 to 31, 1 to 12,
    // item data from 0) where the class has them and the page holds them.
    void FillDateFields();
    // Puts the document's values onto the pages and derives the tree icons.
    void LoadPagesFromDocument();
    // One parameter of a history or event log group of the document, to
    // its trend or list (the Add* members with blInitialize True).
    void ApplyHistoryValue(const std::string& strGroup, xml::Node parameter);
    // One value onto its page: from an item node of a reply, or with
    // strOfflineName given, from the offline arguments.
    void SetItemValueToGUI(xml::Node nodeObj, const std::string& strOfflineName,
                           const std::string& strOfflineValue, const std::string& strOfflineUnit,
                           std::int16_t intValueSynchronised);
    // The group's time stamp on its page, in the locale's short date and long time.
    void UpdateGroupTimeStamp(const std::string& strGroup);
    // The live node is going: the BL's request groups are looked up anew.
    void ForgetLiveGroups();
    // What the device last reported of each parameter, kept by
    // SetItemValueToGUI from the replies.
    [[nodiscard]] HeldValues& held() { return m_held; }

private:
    // Step of SetItemValueToGUI: the value into the first field of the
    // family's pages tagged strName; with blOffline also its colour and mark.
    void putOnPage(const std::string& strName, const std::string& strType,
                   const std::string& strValue, bool blOffline, std::int16_t intValueSynchronised);
    // The valve test's pressure ("bar") in the unit its title shows.
    std::string valveTestPressure(const std::string& strValue);
    // "d.m.yyyy" into the class's date fields; the date fields of the pages
    // get the colour of the value's state.
    void showDeviceDate(const std::string& strValue, std::int16_t intValueSynchronised);

    // A group's time stamp ("yyyy-mm-dd hh:mm:ss") as its label shows it in
    // the locale's short date and long time.
    const std::string& stampCaption(const std::string& strStamp);

    // The BL's request group of a name (the first in document order), from
    // an index of the live document made at its first use.
    xml::Node liveRequestGroup(const xml::Node& live, const std::string& strGroup);

    devices::IUserControl& m_control;
    HeldValues m_held;
    // The BL's request groups by name, for their time stamps; the live node
    // they were taken from (none: not made yet).
    xmlNode* m_liveGroupsOf = nullptr;
    std::unordered_map<std::string, xml::Node> m_liveGroups;
    // The last stamp written as a caption, and the locale it was written in.
    struct StampCaption {
        std::string text;
        QLocale locale;
        std::string caption;
    } m_stamp;
};

}  // namespace kt500::data
