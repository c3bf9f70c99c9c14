#include "datasets/Undo.h"

#include "data/PageFields.h"
#include "datasets/Confirmation.h"
#include "devices/DeviceClass.h"
#include "xml/XPath.h"

namespace kt500::datasets {

namespace {

// Puts strValue on a field unless it shows it already: a write that changes
// nothing raises no change event, so the field is not marked again.
void PutValue(form::Control& field, const std::string& strValue) {
    if (field.kind() == form::ControlKind::TextBox) {
        if (field.text() != strValue) {
            field.setText(strValue);
        }
        return;
    }
    int entry = -1;
    for (int index = 0; index < field.listCount(); ++index) {
        if (field.list(index) == strValue) {
            entry = index;
            break;
        }
    }
    if (entry != -1 && field.listIndex() != entry) {
        field.setListIndex(entry);
    }
}

}  // namespace

void Undo::ClearPageChanges(const std::string& strFrame) {
    form::Form& form = m_control.form();
    form::Control* list = form.find("lsvConfirmation");
    if (list == nullptr) {
        return;
    }
    form::ListViewModel& rows = list->listView();
    const form::Control* page =
        data::FindPage(form, m_control.deviceClass().FrameArrayName(), strFrame);
    if (page != nullptr) {
        // The program writes here, not the user: the change handlers must
        // not record these values as edits.
        session::clsTools& tools = m_control.tools();
        const bool confirmFlag = tools.ConfirmFlag;
        tools.ConfirmFlag = false;
        for (int row = 1; row <= rows.count(); ++row) {
            if (rows.subItem(row, kPageColumn) != strFrame) {
                continue;
            }
            const std::string name = rows.subItem(row, kNameColumn);
            const std::string value = m_control.FetchValueByTag(name, true);
            for (form::Control* field : data::SnapshotFields(form, *page)) {
                if (field->tag() == name) {
                    PutValue(*field, value);
                }
            }
        }
        tools.ConfirmFlag = confirmFlag;
    }
    for (int row = rows.count(); row >= 1; --row) {
        if (rows.subItem(row, kPageColumn) == strFrame) {
            rows.remove(row);
        }
    }
}

void Undo::UndoAllPages() {
    session::clsTools& tools = m_control.tools();
    const std::string strCurrentFrame = tools.CurrentFrame;
    const xml::Document* guiInit = tools.RavikDTMParameters();
    if (guiInit != nullptr) {
        const std::string prefix = m_control.deviceClass().DevicePrefix();
        const xml::XPath query(*guiInit, xml::Namespaces());
        for (const xml::Node& node : query.select("/dtm/treeView/branch/node[@offline = '1']")) {
            tools.CurrentFrame = prefix + node.attribute("name");
            m_control.RestoreOldValues(tools.CurrentFrame, "");
            ClearPageChanges(tools.CurrentFrame);
        }
    }
    tools.CurrentFrame = strCurrentFrame;
}

}  // namespace kt500::datasets
