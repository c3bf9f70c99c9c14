#include "data/Requests.h"

#include "data/ConfirmationRows.h"
#include "data/PageFields.h"
#include "data/RoleRules.h"
#include "data/ToolsBack.h"
#include "devices/DeviceDateFields.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "devices/MemberMissing.h"

#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace kt500::data {

namespace {

constexpr std::string_view CommunicationNamespace = "x-schema:QDLCommunicationSchema.xml";
constexpr std::int32_t AutoActionTimeout = 10000;

using devices::AppendSeparated;
using devices::SplitSeparated;

form::ToolbarModel& Toolbar(form::Form& form) {
    return form.control("smuiDTM", 1).toolbar();
}

// The value fields of the page shown: a check box, text box or list box
// whose container is the family's page frame tagged CurrentFrame. The first
// field of a tag wins.
std::unordered_map<std::string, form::Control*> PageFields(form::Form& form,
                                                           const std::string& strFrameArray,
                                                           const std::string& strCurrentFrame) {
    std::unordered_map<std::string, form::Control*> fields;
    const form::Control* page = FindPage(form, strFrameArray, strCurrentFrame);
    if (page == nullptr) {
        return fields;
    }
    for (form::Control* field : form.children(page)) {
        const form::ControlKind kind = field->kind();
        if (kind == form::ControlKind::CheckBox || kind == form::ControlKind::TextBox ||
            kind == form::ControlKind::ComboBox) {
            fields.emplace(field->tag(), field);
        }
    }
    return fields;
}

}  // namespace

std::string AutoActionRequest(std::string_view strName) {
    std::string request =
        "<?xml version='1.0'?><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
        "<communicationRequest name='";
    request.append(strName);
    request.append("' access='write'/></dtm>");
    return request;
}

std::string Requests::unitField(const std::string& strName) {
    const std::string unit = m_control.FetchUnitName(strName);
    return unit == "noUnit" ? unit : m_control.deviceClass().ConvertUnitForDevice(unit);
}

void Requests::SendRequest(const std::string& str_frame, const std::string& str_accessType) {
    session::clsTools& tools = m_control.tools();
    devices::DeviceClass& device = m_control.deviceClass();
    const bool blRead = str_accessType == "read";
    const bool blWriteWord = str_accessType == "write" || str_accessType == "writeOffline";

    if (blRead) {
        // Pending edits of the page give way to the device's values, and the
        // page counts as unread until the final reply.
        RemoveGroupRows(m_control.form(), GroupFields(m_control, str_frame));
        tools.ValuesOk(str_frame, "0");
        if (str_frame == "valveTest" || str_frame == "pneumaticsTest") {
            m_control.EnableTestKeyFigures(true);
        }
    }

    const xml::Node group = m_control.RequestGroupByName(str_frame);
    // While a calibration step or a device action runs, a write sends the
    // whole group as a read would list it.
    const bool blWriteMode =
        blWriteWord && tools.CalibrationStep == 0 && tools.CurrentAutoAction == 0;

    // The curve of the flow page goes out whole, as the page computed it.
    const bool blConfirmedOnly = blWriteMode && str_frame != "flowModification";
    // A write takes the values of the page being written; a changed value
    // of another page goes with that page's own write.
    std::unordered_map<std::string, form::Control*> pageFields;
    if (blWriteMode) {
        pageFields = PageFields(m_control.form(), device.FrameArrayName(), tools.CurrentFrame);
    }
    std::string strItems;
    for (const xml::Node& included : group.childElements("includedParam")) {
        const std::string name = included.attribute("name");
        const xml::Node parameter = m_control.ParameterNodeByName(name);
        if (!parameter) {
            continue;
        }
        const std::string access = parameter.attribute("access");
        std::string special;
        if (!blWriteMode) {
            if (access == "write") {
                continue;
            }
        } else {
            if (access != "readWrite" && access != "write") {
                continue;
            }
            special = device.SpecialUpploadCase(str_frame, name);
            if (!m_control.CheckIfValueChanged(name, true)) {
                continue;
            }
            // What the page does not show is left out: a changed value goes
            // with the write of the page it was edited on. A value the class
            // derives from the page (the PL500's schedule days) is decided
            // below.
            if (special.empty() && name != "deviceDate" && device.IsNormalParam(name) &&
                !pageFields.contains(name)) {
                continue;
            }
            // A value that goes out as a part of another (the days of the
            // PL500's test schedule) comes from the device class, only with
            // its confirmed source, and never empty.
            if (special.empty() && !device.IsNormalParam(name) && !pageFields.contains(name)) {
                const std::string_view source = device.DerivedFrom(name);
                if ((blConfirmedOnly &&
                     (source.empty() || !HasCheckedRow(m_control.form(), source))) ||
                    device.FormatValues(name, "", "write").empty()) {
                    continue;
                }
            }
        }
        if (special.empty()) {
            AppendSeparated(strItems, name);
            AppendSeparated(strItems, parameter.attribute("type"));
            AppendSeparated(strItems, unitField(name));
        } else if (special != "included") {
            strItems.append(special);
        }
    }
    device.setSpecialCaseItems("");

    if (blRead && !tools.ReadGroup && group) {
        form::Control& bar = m_control.form().control("ProgressBar1");
        const std::int16_t count = devices::ToInt16(group.attribute("requestCount"));
        bar.setMax(bar.max() + 10.0 * count);
    }

    AppendSeparated(strItems, str_frame);
    AppendSeparated(strItems, str_accessType);

    const std::string strValues =
        blWriteWord ? valueString(strItems, blConfirmedOnly) : std::string();
    if (str_accessType == "write") {
        rememberWritten(str_frame, strItems, strValues);
    }
    RequestTemplate(strItems, strValues);

    if (str_accessType != "writeOffline") {
        tools.CommunicationSign(str_accessType, "1");
    }
}

void Requests::rememberWritten(const std::string& strGroup, const std::string& strItems,
                               const std::string& strValues) {
    const std::vector<std::string> items = SplitSeparated(strItems);
    const std::vector<std::string> values = SplitSeparated(strValues);
    std::vector<std::pair<std::string, HeldValue>> written;
    for (std::size_t i = 0, v = 0; i + 2 < items.size() && v < values.size(); i += 3, ++v) {
        written.emplace_back(items[i], HeldValue{values[v], items[i + 2]});
    }
    m_held.sent(strGroup, std::move(written));
}

std::string Requests::ownValue(const std::string& strName, const std::string& strUnit) {
    if (m_control.tools().OnlineConf) {
        const HeldValue* held = m_held.find(strName);
        // A reply carries the device's own unit, which an item without a
        // unit ("noUnit") stands for as well.
        if (held != nullptr &&
            (strUnit == "noUnit" || held->unit == strUnit || held->unit == "noUnit")) {
            return held->value;
        }
    }
    // Offline the document is the data set; online it is what the device
    // was given last, before any reply of this session.
    return m_control.ParameterNodeByName(strName).attribute("value");
}

std::string Requests::dataSetValue(const std::string& strName, const std::string& strUnit) {
    const xml::Node parameter = m_control.ParameterNodeByName(strName);
    const std::string value = parameter.attribute("value");
    const std::string unit = parameter.attribute("unit");
    if (strUnit == "noUnit" || unit.empty() || unit == "noUnit" || unit == strUnit ||
        !devices::IsNum(value)) {
        return value;
    }
    const std::string converted = m_control.ConvertUnit(value, unit, strUnit);
    return converted.empty() ? value : converted;
}

std::string Requests::confirmedDeviceDate() {
    devices::DeviceClass& device = m_control.deviceClass();
    std::string pageDate = device.GetDeviceDate();
    const std::vector<std::string> own = devices::SplitDeviceDate(ownValue("deviceDate", "noUnit"));
    std::vector<std::string> parts = devices::SplitDeviceDate(pageDate);
    if (own.size() != 3 || parts.size() != 3) {
        return pageDate;
    }
    // The year box carries the parameter deviceDate.
    const char* const names[] = {"deviceDay", "deviceMonth", "deviceDate"};
    for (std::size_t part = 0; part < 3; ++part) {
        if (!HasCheckedRow(m_control.form(), names[part])) {
            parts[part] = own[part];
        }
    }
    return parts[0] + "." + parts[1] + "." + parts[2];
}

std::string Requests::valueString(const std::string& strItems, bool blConfirmedOnly) {
    devices::DeviceClass& device = m_control.deviceClass();
    const auto fields =
        PageFields(m_control.form(), device.FrameArrayName(), m_control.tools().CurrentFrame);
    const std::vector<std::string> items = SplitSeparated(strItems);

    std::string strValues;
    // The triples stand before the request name, the access word and the
    // last empty field.
    for (std::size_t i = 0; i + 5 < items.size(); i += 3) {
        const std::string& name = items[i];
        const std::string& type = items[i + 1];
        const std::string& unit = items[i + 2];
        std::string value;
        if (name == "deviceDate") {
            value = blConfirmedOnly ? confirmedDeviceDate() : device.GetDeviceDate();
        } else if (!device.IsNormalParam(name) && !fields.contains(name)) {
            // A part of another value (the days of the PL500's test
            // schedule): the class derives it from what the page holds.
            value = device.FormatValues(name, "", "write");
        } else if (blConfirmedOnly && HasCheckedDataSetRow(m_control.form(), name)) {
            // A row of the data set confirms the data set's value, not the
            // page's rounding of it in another unit.
            value = dataSetValue(name, unit);
        } else if (blConfirmedOnly && !HasCheckedRow(m_control.form(), name)) {
            // A partner written with a confirmed value, or an item the
            // class always writes: the page may show an edit that nobody
            // confirmed, or one the check refused.
            value = ownValue(name, unit);
        } else if (const auto found = fields.find(name); found != fields.end()) {
            const form::Control& field = *found->second;
            switch (field.kind()) {
                case form::ControlKind::CheckBox:
                    value = std::to_string(static_cast<int>(field.value()));
                    break;
                case form::ControlKind::TextBox:
                    value = field.text();
                    if (type != "stringVal" && !value.empty()) {
                        // The wire form, with "." and in the device's unit.
                        const std::string formatted = device.FormatValues(name, value, "write");
                        if (!formatted.empty()) {
                            value = formatted;
                        }
                        value = devices::fDecimalSep(value, ".");
                        if (unit != "noUnit") {
                            value = devices::fDecimalSep(
                                device.ConvertValueForDevice(value, unit, name), ".");
                        }
                    }
                    break;
                default:
                    value = field.listIndex() == -1
                                ? "0"
                                : std::to_string(field.itemData(field.listIndex()));
                    break;
            }
        }
        AppendSeparated(strValues, value);
    }
    return strValues;
}

void Requests::RequestTemplate(const std::string& strItems, const std::string& strValues) {
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();

    xml::ParseOptions options;
    const xml::SchemaCollection* schemas = m_control.communicationSchemas();
    if (schemas != nullptr && !schemas->empty()) {
        options.schemas = schemas;
    }
    xml::LoadResult parsed = xml::Document::parse(RequestTemplateText, options);
    std::shared_ptr<xml::Document> document;
    if (parsed.ok()) {
        document = std::make_shared<xml::Document>(std::move(*parsed.document));
    } else {
        // The send still runs, with nothing in the request.
        m_control.ShowMsg("RequestTemplate", m_control.Translate("parseFailed"));
    }

    const std::vector<std::string> items = SplitSeparated(strItems);
    if (items.size() < 3) {
        throw std::out_of_range("RequestTemplate: the item string holds no request name");
    }
    const std::size_t last = items.size() - 1;
    const std::string& access = items[last - 1];
    const std::vector<std::string> values =
        strValues.empty() ? std::vector<std::string>() : SplitSeparated(strValues);
    const auto valueAt = [&values](std::size_t index) -> const std::string& {
        if (index >= values.size()) {
            throw std::out_of_range("RequestTemplate: no value for item " + std::to_string(index));
        }
        return values[index];
    };

    std::string strXml;
    // The name the request goes out with; its final reply comes back under it.
    std::string name = items[last - 2];
    if (document) {
        xml::Node request = document->root().firstChildElement("communicationRequest");
        if (name == "testSettings") {
            if (tools.CurrentTest == 1) {
                name = "stepResponseTest";
            } else if (tools.CurrentTest == 2) {
                name = "hysteresisTest";
            } else {
                name = request.attribute("name");
            }
        }
        request.setAttribute("name", name);
        request.setAttribute("access", access);

        xml::Node first = request.firstChildElement("item");
        first.setAttribute("name", items[0]);
        first.setAttribute("unit", items[2]);
        first.firstChildElement("floatVal").remove();

        const auto addValue = [&](xml::Node item, std::size_t index) {
            xml::Node value = item.appendElement(items[index + 1], CommunicationNamespace);
            if (!values.empty()) {
                value.setText(valueAt(index / 3));
            }
        };
        // Each further item is a copy of the first, which holds only its
        // name and unit by now; a new element in the request's namespace is
        // that copy without a second declaration of the namespace.
        for (std::size_t i = 3; i + 2 < last - 2; i += 3) {
            xml::Node copy = request.appendElement("item");
            copy.setAttribute("name", items[i]);
            copy.setAttribute("unit", items[i + 2]);
            addValue(copy, i);
        }
        addValue(first, 0);
        strXml = document->toXml();
    }

    if (tools.DebugLevel == 1) {
        m_control.ShowMsg("Debug level 1", "Request to BL: " + strXml);
    }
    if (access != "read") {
        // What the confirmation of this write will be compared against.
        m_control.deviceClass().setDownLoadedXmlDoc(document);
    } else {
        form.control("fraProgress").setVisible(true);
        if (tools.ShowProgressbar) {
            form.control("ProgressBar1").setVisible(true);
        }
    }

    services::IDtmControl& bl = m_control.control();
    bool blAccepted = false;
    if (tools.CurrentAutoAction == 2) {
        bl.SendAutoAction(tools.ConnectionID, strXml, AutoActionTimeout, blAccepted);
        Toolbar(form).setEnabled("uploadCurrent", false);
        Toolbar(form).setEnabled("send", false);
    } else {
        bl.PostRequest(tools.ConnectionID, strXml, blAccepted);
        if (tools.OnlineConf) {
            form::ToolbarModel& toolbar = Toolbar(form);
            toolbar.setEnabled("stop", true);
            for (const char* key : {"uploadCurrent", "send", "settings"}) {
                toolbar.setEnabled(key, false);
            }
            m_control.EnableDeviceActions(false);
        }
    }
    if (!blAccepted) {
        refused();
    } else if (tools.CurrentAutoAction != 2) {
        tools.OpenRequests.push_back(name);
    }
}

void Requests::refused() {
    session::clsTools& tools = m_control.tools();
    // With other requests of a chain still out, their last reply ends the
    // busy state; with none, nothing is pending and the control is idle, so
    // that the next upload can start.
    if (tools.OpenRequests.empty()) {
        for (const char* action : {"write", "test"}) {
            tools.CommunicationSign(action, "0");
        }
        CloseBusyState(m_control, "read");
    }
    m_control.ShowMsg("RequestTemplate", m_control.Translate("errRequestFailed"));
}

}  // namespace kt500::data
