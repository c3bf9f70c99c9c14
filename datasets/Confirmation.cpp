#include "datasets/Confirmation.h"

#include "data/PageFields.h"
#include "data/ParameterDocument.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "devices/SeparatedList.h"
#include "services/IDtmDialogs.h"
#include "xml/XPath.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace kt500::datasets {

namespace {

// The counters that the device keeps in its own scale: their old and new
// texts are compared as numbers, not as text.
constexpr std::array<std::string_view, 4> kCounters = {"actuatorFullStrokes", "actuatorReversals",
                                                       "valveFullStrokes", "valveReversals"};

form::ListViewModel* Rows(const form::Form& form) {
    form::Control* list = form.find("lsvConfirmation");
    return list == nullptr ? nullptr : &list->listView();
}

void SetVisible(const form::Form& form, std::string_view name, int index, bool visible) {
    if (form::Control* control = form.find(name, index)) {
        control->setVisible(visible);
    }
}

// The row of a key, else the row of that parameter on that page; 0 when none.
int FindRow(const form::ListViewModel& rows, const std::string& strKey, const std::string& strName,
            const std::string& strFrame) {
    if (const int row = rows.findKey(strKey); row != 0) {
        return row;
    }
    for (int row = 1; row <= rows.count(); ++row) {
        if (rows.subItem(row, kNameColumn) == strName &&
            rows.subItem(row, kPageColumn) == strFrame) {
            return row;
        }
    }
    return 0;
}

}  // namespace

void Confirmation::AddConfirmationRow(const std::string& strName, const std::string& strFrame,
                                      const std::string& strId, const std::string& strOldValue,
                                      const std::string& strNewValue) {
    form::ListViewModel* rows = Rows(m_control.form());
    if (rows == nullptr) {
        return;
    }
    bool blUnchanged = strOldValue == strNewValue;
    if (std::ranges::find(kCounters, strName) != kCounters.end()) {
        devices::DeviceClass& device = m_control.deviceClass();
        auto scaled = [&](const std::string& value) {
            const std::string wire = device.FormatValues(strName, value, "write");
            return devices::Str2Dbl(devices::fDecimalSep(wire.empty() ? value : wire, "."));
        };
        blUnchanged = scaled(strOldValue) == scaled(strNewValue);
    }
    const xml::Node parameter = m_control.ParameterNodeByName(strName);
    if (parameter && parameter.attribute("access") == "read") {
        return;
    }
    const std::string key = strId.empty() ? strName : strId;
    const int row = FindRow(*rows, key, strName, strFrame);
    // A value edited back to what it was leaves nothing pending; the flow
    // page keeps its points, which are written as one curve.
    if (blUnchanged && !strFrame.ends_with("flowModification")) {
        if (row != 0) {
            rows->remove(row);
        }
        return;
    }
    if (row != 0) {
        rows->setSubItem(row, kOldValueColumn, strOldValue);
        rows->setSubItem(row, kNewValueColumn, strNewValue);
        return;
    }
    const int added = rows->add(m_control.Translate(strName), key);
    rows->setSubItem(added, kOldValueColumn, strOldValue);
    rows->setSubItem(added, kNewValueColumn, strNewValue);
    rows->setSubItem(added, kNameColumn, strName);
    rows->setSubItem(added, kPageColumn, strFrame);
    rows->setChecked(added, true);
}

bool Confirmation::AskYesNo(const std::string& strTitle, const std::string& strText) {
    int result = 0;
    m_control.dialogs().ShowMessage(0, 4, 6, strTitle, strText, m_control.buttonPressed(), result);
    return m_control.buttonPressed() == services::ButtonYes;
}

bool Confirmation::HasBlockingEmptyValue() {
    const form::ListViewModel* rows = Rows(m_control.form());
    if (rows == nullptr) {
        return false;
    }
    for (int row = 1; row <= rows->count(); ++row) {
        if (!rows->row(row).checked || !rows->subItem(row, kNewValueColumn).empty()) {
            continue;
        }
        // Only a string may be written empty.
        const xml::Node parameter = m_control.ParameterNodeByName(rows->subItem(row, kNameColumn));
        if (!parameter || parameter.attribute("type") != "stringVal") {
            m_control.ShowMsg(rows->row(row).text, m_control.Translate("nullValue"));
            return true;
        }
    }
    return false;
}

bool Confirmation::HasRefusedValue() {
    const form::Form& form = m_control.form();
    const form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return false;
    }
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string frameArray = device.FrameArrayName();
    std::vector<std::string> pages;
    for (int row = 1; row <= rows->count(); ++row) {
        if (rows->row(row).checked) {
            pages.push_back(rows->subItem(row, kPageColumn));
        }
    }
    const auto refuse = [this](const std::string& strTag) {
        m_control.ShowMsg(m_control.Translate("valueCheck"),
                          m_control.Translate("invalidValue") + " " + m_control.Translate(strTag));
        return true;
    };
    for (const form::Control* field : form.controls()) {
        if (!data::HoldsValue(*field) || field->tag().empty() ||
            !field->has(form::PropertyId::ForeColor)) {
            continue;
        }
        const form::Control* page = data::PageOf(*field, frameArray);
        if (page == nullptr || std::ranges::find(pages, page->tag()) == pages.end()) {
            continue;
        }
        if (field->foreColor() == devices::ColorRefused) {
            return refuse(field->tag());
        }
        if (field->tag() == "deviceDate" && device.GetDeviceDate() == "invalid") {
            return refuse("deviceDate");
        }
    }
    return false;
}

void Confirmation::ReturnToPage(const std::string& strPage) {
    devices::DeviceClass& device = m_control.deviceClass();
    device.HideFrames();
    device.ShowFrame(strPage);
}

void Confirmation::cmdSend_Click(int Index) {
    if (Index == kFlowPageSend) {
        return;
    }
    if (HasBlockingEmptyValue() || HasRefusedValue()) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    if (!tools.OnlineConf && !AskYesNo(m_control.Translate("offlineConfiguratoin"),
                                       m_control.Translate("offlineConfirm"))) {
        return;
    }
    const std::string strCurrentFrame = tools.CurrentFrame;
    const std::string strPage =
        data::NodeOfFrame(strCurrentFrame, m_control.deviceClass().DevicePrefix());
    const form::ListViewModel* rows = Rows(m_control.form());
    if (rows == nullptr || rows->count() == 0) {
        ReturnToPage(strPage);
        return;
    }
    if (Index == kConfirmationSend) {
        m_control.deviceClass().setCancelledGroups("");
        SendConfirmedValues();
        ReturnToPage(strPage);
        tools.CurrentFrame = strCurrentFrame;
    }
}

void Confirmation::SendConfirmedValues() {
    form::Form& form = m_control.form();
    form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    const bool online = tools.OnlineConf;
    const std::string strAccess = online ? "write" : "writeOffline";

    // The pages of the checked rows, in the order of their first row.
    std::vector<std::string> pages;
    for (const form::ListRow& row : rows->rows()) {
        const std::string page =
            row.subItems.size() >= kPageColumn ? row.subItems[kPageColumn - 1] : std::string();
        if (row.checked && !page.empty() && std::ranges::find(pages, page) == pages.end()) {
            pages.push_back(page);
        }
    }

    form::Control* bar = form.find("ProgressBar1");
    if (online) {
        // Each request gets one step from here and ten from its replies,
        // so the bar closes with the last reply.
        if (bar != nullptr) {
            bar->setMin(0);
            bar->setValue(0);
            bar->setMax(std::max<double>(1.0, 11.0 * static_cast<double>(pages.size())));
        }
        if (form::Control* caption = form.find("lblProgressText")) {
            caption->setCaption(m_control.Translate("progressSending"));
        }
        tools.ShowProgressbar = true;
        SetVisible(form, "fraProgress", -1, true);
        SetVisible(form, "ProgressBar1", -1, true);
    }

    const std::string prefix = m_control.deviceClass().DevicePrefix();
    for (const std::string& page : pages) {
        tools.CurrentFrame = page;
        m_control.SendRequest(data::NodeOfFrame(page, prefix), strAccess);
        if (online && bar != nullptr && bar->value() < bar->max()) {
            bar->setValue(bar->value() + 1);
        }
    }

    // What was sent leaves the list; unticked rows wait for a later send.
    for (int row = rows->count(); row >= 1; --row) {
        if (rows->row(row).checked && !rows->subItem(row, kPageColumn).empty()) {
            rows->remove(row);
        }
    }
}

void Confirmation::cmdCancel_Click() {
    SetVisible(m_control.form(), "fraConfirmation", 0, false);
    devices::DeviceClass& device = m_control.deviceClass();
    device.ShowFrame(data::NodeOfFrame(m_control.tools().CurrentFrame, device.DevicePrefix()));
}

std::string Confirmation::PageOfParameter(const std::string& strName) {
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string frameArray = device.FrameArrayName();
    for (const form::Control* control : m_control.form().controls()) {
        if (control->tag() == strName && data::HoldsValue(*control)) {
            if (const form::Control* page = data::PageOf(*control, frameArray)) {
                return page->tag();
            }
        }
    }
    const xml::Document* dataFile = m_control.xmlDataFile();
    if (dataFile == nullptr) {
        return {};
    }
    const xml::XPath query(
        *dataFile, xml::Namespaces::fromSelection(data::ParameterDocument::SelectionNamespaces));
    for (const xml::Node& group : query.select("//data:requestGroups/data:requestGroup")) {
        for (const xml::Node& included : group.childElements("includedParam")) {
            if (included.attribute("name") == strName) {
                return device.DevicePrefix() + group.attribute("name");
            }
        }
    }
    return {};
}

void Confirmation::cmdAddAllValues_Click() {
    if (!AskYesNo(m_control.Translate("confirmation"),
                  m_control.Translate("addAllParametersConfirmText"))) {
        return;
    }
    const xml::Document* dataFile = m_control.xmlDataFile();
    form::ListViewModel* rows = Rows(m_control.form());
    if (dataFile == nullptr || rows == nullptr) {
        return;
    }
    const xml::XPath query(
        *dataFile, xml::Namespaces::fromSelection(data::ParameterDocument::SelectionNamespaces));
    for (const xml::Node& declared :
         query.select("data:persistentData/data:parameters/data:parameter")) {
        const std::string name = declared.attribute("name");
        // The values live in the BL's node; the copy may be older.
        const xml::Node parameter = m_control.ParameterNodeByName(name);
        const xml::Node source = parameter ? parameter : declared;
        if (source.attribute("access") != "readWrite" || !source.hasAttribute("value") ||
            name == "characterizationControl") {
            continue;
        }
        std::string value = source.attribute("value");
        if (source.attribute("synchronised") != "1") {
            const std::string decimals = source.attribute("decimals");
            const std::string mappingQuery = "data:mappedParams/data:mappedParam[@name=\"" + name +
                                             "\"]/data:mapping[@value=\"" + value + "\"]";
            const xml::Node mapping = value.find('"') == std::string::npos
                                          ? query.selectSingle(mappingQuery)
                                          : xml::Node();
            if (mapping) {
                if (mapping.attribute("name") == "invalid") {
                    continue;
                }
                value = m_control.Translate(mapping.attribute("name"));
            } else if (source.attribute("type") == "floatVal" && !decimals.empty() &&
                       devices::IsNum(value)) {
                const int places = std::clamp<int>(devices::ToInt16(decimals), 0, 15);
                std::array<char, 64> text{};
                std::snprintf(text.data(), text.size(), "%.*f", places, devices::Str2Dbl(value));
                value = devices::fDecimalSep(text.data(), std::nullopt);
            }
        }
        const std::string page = PageOfParameter(name);
        if (!Sendable(source, page, value)) {
            continue;
        }
        // A pending row stays as the user made it.
        if (FindRow(*rows, name, name, page) != 0) {
            continue;
        }
        const int row = rows->add(m_control.Translate(name), name);
        rows->setSubItem(row, kNameColumn, name);
        rows->setSubItem(row, kPageColumn, page);
        rows->setSubItem(row, kOldValueColumn, value);
        rows->setSubItem(row, kNewValueColumn, value);
        rows->setChecked(row, true);
    }
    UpdateSendButton();
}

bool Confirmation::Sendable(const xml::Node& parameter, const std::string& strPage,
                            const std::string& strValue) {
    // Only a string may be written empty: an empty number would stop the
    // whole send.
    if (strValue.empty() && parameter.attribute("type") != "stringVal") {
        return false;
    }
    // The day and month go out inside the device date's row.
    const std::string name = parameter.attribute("name");
    if (name == "deviceDay" || name == "deviceMonth") {
        return false;
    }
    // A value goes out with the write of its page: only the configuration
    // pages of the data set, not the calibration pages or a parameter on no
    // page of the family.
    devices::DeviceClass& device = m_control.deviceClass();
    if (data::FindPage(m_control.form(), device.FrameArrayName(), strPage) == nullptr ||
        !devices::InSeparated(device.SavedFrames(), data::NodeOfFrame(strPage, device.DevicePrefix()))) {
        return false;
    }
    // The test settings are written as the request of the test chosen on
    // their page; with none chosen there is no such request.
    return !strPage.ends_with("testSettings") || m_control.tools().CurrentTest != 0;
}

void Confirmation::cmdUnSelectAll_Click() {
    if (form::ListViewModel* rows = Rows(m_control.form())) {
        for (int row = 1; row <= rows->count(); ++row) {
            rows->setChecked(row, false);
        }
    }
    if (form::Control* send = m_control.form().find("cmdSend", kConfirmationSend)) {
        send->setEnabled(false);
    }
}

void Confirmation::lsvConfirmation_ItemCheck() {
    UpdateSendButton();
}

void Confirmation::UpdateSendButton() {
    const form::ListViewModel* rows = Rows(m_control.form());
    if (form::Control* send = m_control.form().find("cmdSend", kConfirmationSend)) {
        send->setEnabled(rows != nullptr && rows->checkedCount() > 0);
    }
}

void Confirmation::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("cmdSend", EventKind::Click, [this](form::FormEvent& event) {
        cmdSend_Click(event.control == nullptr ? -1 : event.control->index());
    });
    handlers.add("cmdCancel", EventKind::Click, [this](form::FormEvent&) { cmdCancel_Click(); });
    handlers.add("cmdAddAllValues", EventKind::Click,
                 [this](form::FormEvent&) { cmdAddAllValues_Click(); });
    handlers.add("cmdUnSelectAll", EventKind::Click,
                 [this](form::FormEvent&) { cmdUnSelectAll_Click(); });
    handlers.add("lsvConfirmation", EventKind::ItemCheck,
                 [this](form::FormEvent&) { lsvConfirmation_ItemCheck(); });
}

}  // namespace kt500::datasets
