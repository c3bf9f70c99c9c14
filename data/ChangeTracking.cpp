#include "data/ChangeTracking.h"

#include "data/ConfirmationRows.h"
#include "data/DeviceScale.h"
#include "data/PageFields.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <cmath>
#include <cstdio>
#include <vector>

namespace kt500::data {

namespace {

using form::ControlKind;

// The fields of a snapshot: each value is followed by the separator.
std::vector<std::string> SplitSnapshot(const std::string& strValues) {
    if (strValues.empty()) {
        return {};
    }
    return devices::SplitSeparated(strValues);
}

// A list box's entry as the snapshot keeps it: the entry's item data, which
// a change of language keeps, where it names one entry; otherwise "#" and
// the entry's position. "" with no entry chosen.
std::string EntryKey(const form::Control& list, int entry) {
    if (entry < 0 || entry >= list.listCount()) {
        return {};
    }
    const double data = list.itemData(entry);
    for (int other = 0; other < list.listCount(); ++other) {
        if (other != entry && list.itemData(other) == data) {
            return "#" + std::to_string(entry);
        }
    }
    return std::to_string(static_cast<long long>(data));
}

// The entry a snapshot's key names; -1 when none.
int EntryOfKey(const form::Control& list, const std::string& strKey) {
    if (strKey.empty()) {
        return -1;
    }
    if (strKey.front() == '#') {
        const int entry = devices::ToInt16(strKey.substr(1));
        return entry < list.listCount() ? entry : -1;
    }
    for (int entry = 0; entry < list.listCount(); ++entry) {
        if (EntryKey(list, entry) == strKey) {
            return entry;
        }
    }
    return -1;
}

// What the snapshot keeps of a field: the text, for a list box its entry's key.
std::string SnapshotValue(const form::Control& field) {
    if (field.kind() == ControlKind::TextBox) {
        return field.text();
    }
    return EntryKey(field, field.listIndex());
}

bool IsBlank(const std::string& strValue) {
    return strValue.find_first_not_of(' ') == std::string::npos;
}

// The length of a text in characters (the pages keep UTF-8).
std::size_t CharacterCount(const std::string& strText) {
    std::size_t count = 0;
    for (const char byte : strText) {
        if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80U) {
            ++count;
        }
    }
    return count;
}

// A limit of the document in the unit the page shows, with the page's
// decimal sign and one decimal; a limit the service cannot convert stays.
std::string LimitInUnit(services::IDtmUnits& units, const std::string& strLimit,
                        const std::string& strFromUnit, const std::string& strToUnit) {
    float converted = 0.0F;
    bool success = false;
    units.ConvertValue(static_cast<float>(devices::Str2Dbl(strLimit)), strFromUnit, strToUnit,
                       converted, success);
    if (!success) {
        return strLimit;
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", static_cast<double>(converted));
    return devices::fDecimalSep(text);
}

// A limit in the page's scale, with the page's decimal sign.
std::string ScaledText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return devices::fDecimalSep(text);
}

// Keeps CurrentFrame, which keys the snapshots, and puts it back on leaving.
class CurrentFrameGuard {
public:
    explicit CurrentFrameGuard(session::clsTools& tools)
        : m_tools(tools), m_frame(tools.CurrentFrame) {}
    ~CurrentFrameGuard() { m_tools.CurrentFrame = m_frame; }
    CurrentFrameGuard(const CurrentFrameGuard&) = delete;
    CurrentFrameGuard& operator=(const CurrentFrameGuard&) = delete;

private:
    session::clsTools& m_tools;
    std::string m_frame;
};

}  // namespace

std::optional<std::string> ChangeTracking::Refusal(const form::Control& control) {
    const std::string tag = control.tag();
    const xml::Node parameter = m_control.ParameterNodeByName(tag);
    std::string minVal = parameter.attribute("minVal");
    std::string maxVal = parameter.attribute("maxVal");
    std::string decimals = parameter.attribute("decimals");
    if (decimals.empty()) {
        decimals = "0";
    }
    const std::string type = parameter.attribute("type");
    const std::string unit = parameter.attribute("unit");

    // The limits are in the document's unit; the page shows the unit system's.
    if (unit != "noUnit" && unit != "%") {
        std::string shownUnit;
        bool success = false;
        m_control.units().GetUnitOfParameter(tag, shownUnit, success);
        if (success && shownUnit != unit) {
            if (!minVal.empty()) {
                minVal = LimitInUnit(m_control.units(), minVal, unit, shownUnit);
            }
            if (!maxVal.empty()) {
                maxVal = LimitInUnit(m_control.units(), maxVal, unit, shownUnit);
            }
        }
    }

    const std::string text = control.text();
    if (text.empty()) {
        return std::nullopt;
    }
    const std::string invalid = m_control.Translate("invalidValue");
    if (type != "stringVal" && devices::IsSerialNumber(tag)) {
        // The page form "yyyy-ww-nnnn" is what goes out encoded; a text it
        // cannot encode (a plain number among them) would reach the device
        // as -1.
        if (devices::EnCodeSerNro(text) == -1) {
            return invalid;
        }
    } else if (type != "stringVal") {
        if (!devices::IsNum(text)) {
            return invalid;
        }
        // A page may show a value in another scale than the device keeps
        // (seconds for milliseconds): the limits and decimals are the
        // device's, so the value is checked as it will be written.
        const double scale = DeviceScale(m_control.deviceClass(), tag);
        if (scale != 1.0) {
            minVal = IsBlank(minVal) ? minVal : ScaledText(devices::Str2Dbl(minVal) / scale);
            maxVal = IsBlank(maxVal) ? maxVal : ScaledText(devices::Str2Dbl(maxVal) / scale);
        }
        const double number = devices::Str2Dbl(text);
        const bool hasDecimals =
            scale == 1.0 ? devices::fDecimalSep(text, ".").find('.') != std::string::npos
                         : std::abs(number * scale - std::round(number * scale)) > 1e-6;
        if (decimals == "0" && hasDecimals) {
            return m_control.Translate("decimalsNotAllowed");
        }
        // Both limits are strict: a value equal to a limit is good.
        const bool belowMin = !IsBlank(minVal) && devices::Str2Dbl(minVal) > number;
        const bool aboveMax = !IsBlank(maxVal) && devices::Str2Dbl(maxVal) < number;
        if (belowMin || aboveMax) {
            return invalid + " Min: " + (IsBlank(minVal) ? "<<<" : minVal) +
                   ", Max: " + (IsBlank(maxVal) ? ">>>" : maxVal);
        }
    } else if (!IsBlank(maxVal) &&
               devices::Str2Dbl(maxVal) < static_cast<double>(CharacterCount(text))) {
        return invalid + " " + m_control.Translate("maxLength") + ": " + maxVal;
    }
    return std::nullopt;
}

bool ChangeTracking::CheckValue(form::Control& control) {
    const std::string tag = control.tag();
    if (tag.empty()) {
        return false;
    }
    if (control.foreColor() == devices::ColorRefused) {
        control.setForeColor(devices::ColorChanged);
    }
    const std::string frameArray = m_control.deviceClass().FrameArrayName();
    if (const std::optional<std::string> refusal = Refusal(control)) {
        m_control.ShowMsg(m_control.Translate("valueCheck"), *refusal);
        control.setForeColor(devices::ColorRefused);
        m_control.ChangeImage(tag, frameArray, "error");
        return false;
    }
    m_control.ChangeImage(tag, frameArray, "changed");
    return true;
}

std::string ChangeTracking::GetOldValue(const std::string& strTag, const std::string& strFrame) {
    const std::vector<std::string> fields = devices::SplitSeparated(m_control.tools().old_values());
    if (fields.size() < 2) {
        return {};
    }
    form::Form& form = m_control.form();
    const form::Control* page = FindPage(form, m_control.deviceClass().FrameArrayName(), strFrame);
    if (page == nullptr) {
        return {};
    }
    const std::vector<form::Control*> snapshot = SnapshotFields(form, *page);
    for (std::size_t position = 0; position < snapshot.size(); ++position) {
        const form::Control& field = *snapshot[position];
        if (field.tag() != strTag) {
            continue;
        }
        if (position >= fields.size()) {
            return {};
        }
        if (field.kind() == ControlKind::TextBox) {
            return fields[position];
        }
        // A list box's entry in the language the page shows now.
        const int entry = EntryOfKey(field, fields[position]);
        return entry < 0 ? std::string() : field.list(entry);
    }
    return {};
}

void ChangeTracking::SaveOldValues() {
    session::clsTools& tools = m_control.tools();
    devices::DeviceClass& deviceClass = m_control.deviceClass();
    form::Form& form = m_control.form();
    const std::string frameArray = deviceClass.FrameArrayName();
    const std::string prefix = deviceClass.DevicePrefix();
    const CurrentFrameGuard restore(tools);
    for (const std::string& name : devices::SplitSeparated(deviceClass.SavedFrames())) {
        if (name.empty()) {
            continue;
        }
        tools.CurrentFrame = prefix + name;
        std::string values;
        if (const form::Control* page = FindPage(form, frameArray, tools.CurrentFrame)) {
            for (const form::Control* field : SnapshotFields(form, *page)) {
                devices::AppendSeparated(values, SnapshotValue(*field));
            }
        }
        tools.set_old_values(values);
    }
}

bool ChangeTracking::CheckIfValueChanged(const std::string& strName, bool blChecked) {
    if (!m_control.deviceClass().IsNormalParam(strName)) {
        return true;
    }
    return HasRow(m_control.form(), strName, blChecked);
}

void ChangeTracking::RestoreOldValues(const std::string& strFrame, const std::string& strTag) {
    session::clsTools& tools = m_control.tools();
    const std::vector<std::string> fields = SplitSnapshot(tools.old_values());
    if (!strTag.empty() && fields.empty()) {
        return;
    }
    devices::DeviceClass& deviceClass = m_control.deviceClass();
    form::Form& form = m_control.form();
    const form::Control* page = FindPage(form, deviceClass.FrameArrayName(), strFrame);
    if (page == nullptr) {
        return;
    }
    const bool online = tools.OnlineConf;

    const std::vector<form::Control*> snapshot = SnapshotFields(form, *page);
    for (std::size_t position = 0; position < snapshot.size(); ++position) {
        form::Control& field = *snapshot[position];
        // A field the snapshot does not reach keeps what it shows.
        if ((!strTag.empty() && field.tag() != strTag) || position >= fields.size()) {
            continue;
        }
        const std::string& value = fields[position];
        if (field.kind() == ControlKind::TextBox) {
            field.setText(value);
        } else {
            field.setListIndex(EntryOfKey(field, value));
        }
        // A text the check refuses (a refused edit that stood on the page
        // when the snapshot was taken) comes back red: it is not the
        // device's value, and it is never sent.
        if (field.kind() == ControlKind::TextBox && !field.tag().empty() && Refusal(field)) {
            field.setForeColor(devices::ColorRefused);
            continue;
        }
        if (online) {
            field.setForeColor(devices::ColorRestored);
        }
    }
    // Offline the data set still differs from the device: marks stay.
    if (online) {
        const std::string imagePrefix = deviceClass.ImagePrefix();
        for (form::Control* control : form.controls()) {
            if (control->name().starts_with(imagePrefix) &&
                (strTag.empty() || control->tag() == strTag) &&
                form::Form::isInside(*control, *page)) {
                control->setVisible(false);
            }
        }
    }
}

void KeepWrittenValues(devices::IUserControl& control, const std::string& strRequestGroup) {
    session::clsTools& tools = control.tools();
    devices::DeviceClass& deviceClass = control.deviceClass();
    form::Form& form = control.form();
    const CurrentFrameGuard restore(tools);
    tools.CurrentFrame = deviceClass.DevicePrefix() + strRequestGroup;
    const form::Control* page = FindPage(form, deviceClass.FrameArrayName(), tools.CurrentFrame);
    std::vector<std::string> fields = SplitSnapshot(tools.old_values());
    if (page == nullptr || fields.empty()) {
        return;
    }
    const std::vector<form::Control*> snapshot = SnapshotFields(form, *page);
    std::string values;
    for (std::size_t position = 0; position < snapshot.size(); ++position) {
        const form::Control& field = *snapshot[position];
        std::string value = position < fields.size() ? fields[position] : std::string();
        // A field with a row still waits for a send, a red one holds a
        // refused text: their snapshot values stay.
        if (!field.tag().empty() && !HasRow(form, field.tag()) &&
            field.foreColor() != devices::ColorRefused) {
            value = SnapshotValue(field);
        }
        devices::AppendSeparated(values, value);
    }
    tools.set_old_values(values);
}

void ChangeTracking::RemoveSpecialCaseItem(const std::string& strItem) {
    form::Control* list = m_control.form().find("lsvConfirmation");
    if (list == nullptr) {
        return;
    }
    form::ListViewModel& rows = list->listView();
    for (int row = rows.count(); row >= 1; --row) {
        if (rows.row(row).text == strItem) {
            rows.remove(row);
        }
    }
}

void ChangeTracking::ChangeTreeIcon(const std::string& str_name, const std::string& str_access) {
    form::Form& form = m_control.form();
    // Values that a running read puts on a page must not mark it.
    const form::Control* progress = form.find("fraProgress");
    if (str_access == "changed" && progress != nullptr && progress->visible()) {
        return;
    }
    form::Control* tree = form.find("treeNavigation");
    if (tree == nullptr || tree->tree().find(str_name) == nullptr) {
        return;
    }
    tree->tree().setImage(str_name, str_access);
}

}  // namespace kt500::data
