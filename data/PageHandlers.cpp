#include "data/PageHandlers.h"

#include "data/ConfirmationRows.h"
#include "data/PageFields.h"
#include "devices/DeviceClass.h"

#include <array>

namespace kt500::data {

namespace {

using form::EventKind;

// The value fields of one page and its changed marks ("" where none).
struct PageInstance {
    std::string_view listBox;
    std::array<std::string_view, 2> textBoxes;
    std::array<std::string_view, 2> marks;
};

constexpr std::array<PageInstance, 26> kPages{{
    // HART positioner
    {"comHAAlertSettings", {"txtHAAlertLimit", ""}, {"imgHAAlertSettings", ""}},
    {"comAssemblyRelatedConfiguration",
     {"txtHAAssemblyRelatedConfiguration", ""},
     {"imgHAAssemblyRelatedConfiguration", ""}},
    {"comHAValveRelatedConfiguration", {"", ""}, {"", ""}},
    {"comHAHartConfiguration", {"txtHAHartConfiguration", ""}, {"imgHAHartConfiguration", ""}},
    {"comHAOperationUnit", {"txtHAOperationUnit", ""}, {"imgHAOperationUnit", ""}},
    {"", {"txtHAPositionControl", ""}, {"imgHAPositionControl", ""}},
    {"", {"txtHAPositionerInformation", ""}, {"imgHAPositionerInformation", ""}},
    {"", {"txtLoadFactor", ""}, {"imgHALoadfactor", ""}},
    {"", {"txtHAPrestageTrim", ""}, {"", ""}},
    // PROFIBUS positioner
    {"comPAFailAction", {"txtPAFailActions", ""}, {"imgPAFailSafeAction", ""}},
    {"comPASimulation", {"txtPASimulation", ""}, {"imgPASimulation", ""}},
    {"comPAInputSignalDirection",
     {"txtPAInputValueConfiguration", ""},
     {"imgPAInputSignalDirection", "imgPAInputValueConfiguration"}},
    {"comPATargetMode", {"txtPAOperationMode", ""}, {"imgPAOperationMode1", "imgPAOperationMode2"}},
    {"comPAWriteProtection", {"", ""}, {"imgPAWriteProtection", ""}},
    {"comPAActuatorInformation", {"", ""}, {"imgPAActuatorInformation", ""}},
    {"comPAFactoryReset", {"", ""}, {"imgPAFactoryReset", ""}},
    // The flow page's points belong to the flow modification procedure.
    {"comPAFlowModification", {"", ""}, {"imgPAFlowModification", ""}},
    {"", {"txtPAActuatorInformation", ""}, {"imgPAActuatorInformation", ""}},
    {"", {"txtPAAlertLimits", ""}, {"imgPAAlertSettings", ""}},
    {"", {"txtPADeadAngle", "txtPAPositionControl"}, {"imgPAPositionControl", ""}},
    {"", {"txtPALoadFactor", ""}, {"imgPALoadFactor", ""}},
    {"", {"txtPAMaintenance", ""}, {"imgPAMaintenance", ""}},
    {"", {"txtPAOperationUnit", ""}, {"imgPAOperationUnit", ""}},
    {"", {"txtPAValveInformation", ""}, {"imgPAValveInformation", ""}},
    {"", {"txtPAWorkingRangeConfiguration", ""}, {"imgPAWorkingRangeConfiguration", ""}},
    // Safety valve controller
    {"comPLParams", {"txtPLParams", ""}, {"imgPLChanged", ""}},
}};

bool OnForm(const form::Form& form, std::string_view strName) {
    return !strName.empty() && form.findArray(strName) != nullptr;
}

// What a list box shows: its entry's text, "" with none chosen.
std::string EntryText(const form::Control& list) {
    const int entry = list.listIndex();
    return entry < 0 ? std::string() : list.list(entry);
}

}  // namespace

void PageHandlers::addHandlers(form::EventHandlers& handlers) {
    const form::Form& form = m_control.form();
    for (const PageInstance& page : kPages) {
        const std::span<const std::string_view> marks(page.marks);
        if (OnForm(form, page.listBox)) {
            handlers.add(page.listBox, EventKind::GotFocus,
                         [this](form::FormEvent& event) { ListBox_GotFocus(*event.control); });
            handlers.add(page.listBox, EventKind::LostFocus, [this, marks](form::FormEvent& event) {
                ListBox_LostFocus(*event.control, marks);
            });
        }
        for (const std::string_view textBox : page.textBoxes) {
            if (!OnForm(form, textBox)) {
                continue;
            }
            handlers.add(textBox, EventKind::GotFocus,
                         [this](form::FormEvent&) { TextBox_GotFocus(); });
            handlers.add(textBox, EventKind::KeyPress,
                         [this](form::FormEvent& event) { TextBox_KeyPress(*event.control); });
            handlers.add(textBox, EventKind::Change, [this, marks](form::FormEvent& event) {
                TextBox_Change(*event.control, marks);
            });
            // The year box of a family that splits the device date into
            // day, month and year is checked as a whole date.
            handlers.add(textBox, EventKind::LostFocus, [this](form::FormEvent& event) {
                TextBox_LostFocus(*event.control,
                                  event.control->tag() == "deviceDate" &&
                                      m_control.deviceClass().deviceDateFields() != nullptr);
            });
        }
    }
}

void PageHandlers::ListBox_GotFocus(form::Control& list) {
    session::clsTools& tools = m_control.tools();
    tools.ConfirmFlag = false;
    SaveOnce();
    tools.ChangedFrame = tools.CurrentFrame;
    tools.OldValueForConfirm = m_control.GetOldValue(list.tag(), tools.ChangedFrame);
}

void PageHandlers::ListBox_LostFocus(form::Control& list, std::span<const std::string_view> marks) {
    if (list.tag().empty()) {
        // A switch of the page, no parameter: its own handler did the work.
        return;
    }
    session::clsTools& tools = m_control.tools();
    const std::string newText = EntryText(list);
    if (!tools.ConfirmFlag) {
        AddRow(list, newText);
        tools.ConfirmFlag = true;
    }
    const bool changed = tools.OldValueForConfirm != newText;
    list.setForeColor(changed ? devices::ColorChanged : devices::ColorSynchronised);
    if (changed) {
        m_control.ChangeTreeIcon(PageNode(list), "changed");
    }
    ShowMark(list, marks, changed);
}

void PageHandlers::TextBox_GotFocus() {
    // Nothing of this field is pending yet: leaving it untouched adds no row,
    // whatever the program wrote into fields before.
    m_control.tools().ConfirmFlag = true;
}

void PageHandlers::TextBox_KeyPress(form::Control& /*text*/) {
    SaveOnce();
    m_control.tools().ConfirmFlag = true;
}

void PageHandlers::TextBox_Change(form::Control& text, std::span<const std::string_view> marks) {
    // Only the user edits the field that has the focus; the program's own
    // writes (start-up, replies, units, captions) are not edits.
    if (m_control.form().focused() != &text) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    text.setForeColor(devices::ColorChanged);
    m_control.ChangeTreeIcon(PageNode(text), "changed");
    ShowMark(text, marks, true);
    tools.ConfirmFlag = false;
    tools.ChangedFrame = tools.CurrentFrame;
    tools.OldValueForConfirm = m_control.GetOldValue(text.tag(), tools.ChangedFrame);
}

void PageHandlers::TextBox_LostFocus(form::Control& text, bool blDateField) {
    session::clsTools& tools = m_control.tools();
    // A refused value stays red in its field and is not sent: a row of an
    // earlier edit of the field no longer stands for what the field holds.
    if (!m_control.CheckValue(text) || (blDateField && !CheckDeviceDate(text))) {
        RemoveParameterRow(m_control.form(), text.tag());
        return;
    }
    if (!tools.ConfirmFlag) {
        AddRow(text, text.text());
        tools.ConfirmFlag = true;
    }
}

bool PageHandlers::CheckDeviceDate(form::Control& year) {
    if (m_control.deviceClass().GetDeviceDate() != "invalid") {
        return true;
    }
    m_control.ShowMsg(
        m_control.Translate("valueCheck"),
        m_control.Translate("invalidValue") + " " + m_control.Translate("deviceDate"));
    year.setForeColor(devices::ColorRefused);
    m_control.ChangeImage(year.tag(), m_control.deviceClass().FrameArrayName(), "error");
    return false;
}

void PageHandlers::SaveOnce() {
    session::clsTools& tools = m_control.tools();
    if (!tools.value_saved) {
        m_control.SaveOldValues();
        tools.value_saved = true;
    }
}

void PageHandlers::AddRow(const form::Control& field, const std::string& strNewValue) {
    const session::clsTools& tools = m_control.tools();
    m_control.AddConfirmationRow(field.tag(), tools.ChangedFrame, field.tag(),
                                 tools.OldValueForConfirm, strNewValue);
}

std::string PageHandlers::PageNode(const form::Control& field) {
    const form::Control* page = PageOf(field, m_control.deviceClass().FrameArrayName());
    const std::string& frame = page != nullptr ? page->tag() : m_control.tools().CurrentFrame;
    return frame.size() > 2 ? frame.substr(2) : std::string();
}

void PageHandlers::ShowMark(const form::Control& field, std::span<const std::string_view> marks,
                            bool blVisible) {
    const form::Form& form = m_control.form();
    for (const std::string_view mark : marks) {
        for (form::Control* element : form.elements(mark)) {
            if (element->tag() == field.tag()) {
                element->setVisible(blVisible);
            }
        }
    }
}

}  // namespace kt500::data
