#include "monitoring/EventLog.h"

#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <stdexcept>

namespace kt500::monitoring {

namespace {

constexpr int kQuestionYesNo = 4;

}  // namespace

void EventLog::addHandlers(form::EventHandlers& handlers) {
    handlers.add("cmdResetDiagnostics", form::EventKind::Click,
                 [this](form::FormEvent&) { cmdResetDiagnostics_Click(); });
}

form::ListViewModel& EventLog::list() {
    const std::int16_t element = m_control.deviceClass().EventLogTableIndex();
    form::Control* control = m_control.form().find("lsvEventLog", element);
    if (control == nullptr) {
        throw std::out_of_range("Control array element '" + std::to_string(element) +
                                "' doesn't exist: lsvEventLog");
    }
    return control->listView();
}

void EventLog::AddEventLogEvent(const std::string& strEvent, const std::string& strCount,
                                const std::string& strTime, std::int16_t intIndex,
                                std::int16_t intSubItem) {
    form::ListViewModel& rows = list();
    if (rows.count() == 0) {
        for (int row = 0; row < kEventLogRows; ++row) {
            rows.add("");
        }
    }
    if (!strEvent.empty()) {
        rows.setText(intIndex, m_control.Translate(strEvent));
        rows.setTag(intIndex, strEvent);
    }
    if (!strCount.empty()) {
        rows.setSubItem(intIndex, kEventCountColumn, strCount);
    }
    if (strTime.empty()) {
        return;
    }
    rows.setSubItem(intIndex, intSubItem, devices::fDecimalSep(strTime));
}

void EventLog::ClearEventLog(std::int16_t intIndex) {
    if (form::Control* control = m_control.form().find("lsvEventLog", intIndex)) {
        control->listView().clear();
    }
}

void EventLog::FillEventLog(const std::vector<xml::Node>& items) {
    for (const xml::Node& item : items) {
        try {
            const std::string name = item.attribute("name");
            if (name.size() < 2) {
                continue;
            }
            const std::string base = name.substr(0, name.size() - 2);
            const auto row =
                static_cast<std::int16_t>(devices::ToInt16(name.substr(name.size() - 2)) + 1);
            // A new reading replaces the old one: the list is emptied at the
            // event of row 1. The times and counts of a reading may come in a
            // reply of their own, and must not take back the events before them.
            if (row == 1 && base == "eventLogEvent") {
                ClearEventLog(m_control.deviceClass().EventLogTableIndex());
            }
            const std::string value = item.firstChildElement().text();
            if (base == "eventLogEvent") {
                AddEventLogEvent(value, "", "", row, kEventTimeColumn);
            } else if (base == "eventLogTime") {
                AddEventLogEvent("", "", value, row, kEventTimeColumn);
            } else if (base == "eventLogCount") {
                AddEventLogEvent("", value, "", row, kEventTimeColumn);
            }
        } catch (const std::exception& failure) {
            m_control.ShowMsg("FillEventLog", failure.what());
        }
    }
}

void EventLog::sendCheckedBoxes(const std::string& strArray, int intFirst, int intLast,
                                const std::string& strPage) {
    form::Form& form = m_control.form();
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string frameTag = device.DevicePrefix() + strPage;
    bool blFirst = true;
    for (int index = intFirst; index <= intLast; ++index) {
        form::Control* box = form.find(strArray, index);
        // Only the boxes of the reset page: the array holds other switches too.
        if (box == nullptr || box->tag().empty() || box->value() != 1.0) {
            continue;
        }
        const form::Control* page = box->container();
        while (page != nullptr && page->name() != device.FrameArrayName()) {
            page = page->container();
        }
        if (!strPage.empty() && (page == nullptr || page->tag() != frameTag)) {
            continue;
        }
        if (blFirst && (strPage == "resetStatistics" || strPage == "resetAlarms")) {
            device.setResetingFrame(strPage == "resetAlarms" ? "alarms" : "statistics");
        }
        blFirst = false;
        m_control.SendRequest(box->tag(), "write");
    }
}

void EventLog::cmdResetDiagnostics_Click() {
    int result = 0;
    m_control.dialogs().ShowMessage(0, kQuestionYesNo, services::ButtonYes,
                                    m_control.Translate("resetDiagnostics"),
                                    m_control.Translate("resetDiagnosticsQuestion"),
                                    m_control.buttonPressed(), result);
    if (m_control.buttonPressed() != services::ButtonYes) {
        return;
    }
    switch (m_control.deviceClass().EventLogTableIndex()) {
        case 0:
            sendCheckedBoxes("chkResetDiagnostics", 0, 9, "");
            break;
        case 1:
            sendCheckedBoxes("chkPAResetDiagnostics", 0, 5, "");
            break;
        default:
            sendCheckedBoxes("chkPLParams", 0, 5, "resetStatistics");
            sendCheckedBoxes("chkPLParams", 6, 15, "resetAlarms");
            break;
    }
}

}  // namespace kt500::monitoring
