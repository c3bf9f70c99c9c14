#include "data/ChangeTracking.h"

#include "data/PageFields.h"
#include "devices/DeviceClass.h"

#include <vector>

namespace kt500::data {

namespace {

using form::ControlKind;

// The confirmation list's column of the parameter's internal name.
constexpr int kNameColumn = 3;

// The fields of a snapshot: each value is followed by the separator.
std::vector<std::string> SplitSnapshot(const std::string& strValues) {
    if (strValues.empty()) {
        return {};
    }
    return devices::SplitSeparated(strValues);
}

// The entry of a list box whose text is strText; -1 when none.
int EntryOf(const form::Control& list, const std::string& strText) {
    for (int entry = 0; entry < list.listCount(); ++entry) {
        if (list.list(entry) == strText) {
            return entry;
        }
    }
    return -1;
}

}  // namespace

bool ChangeTracking::CheckIfValueChanged(const std::string& strName, bool blChecked) {
    if (!m_control.deviceClass().IsNormalParam(strName)) {
        return true;
    }
    const form::Control* list = m_control.form().find("lsvConfirmation");
    if (list == nullptr) {
        return false;
    }
    const form::ListViewModel& rows = list->listView();
    for (int row = 1; row <= rows.count(); ++row) {
        if (rows.row(row).checked == blChecked && rows.subItem(row, kNameColumn) == strName) {
            return true;
        }
    }
    return false;
}

void ChangeTracking::RestoreOldValues(const std::string& strFrame, const std::string& strTag) {
    host::clsTools& tools = m_control.tools();
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
            field.setListIndex(value.empty() ? -1 : EntryOf(field, value));
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
