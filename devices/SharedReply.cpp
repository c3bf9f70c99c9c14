// The shape of Reply that the device classes share: progress, the good and
// failed replies, the closing of a group, the report of a failed one and
// the monitoring step. A class's differences are its hooks (DeviceClass.h):
// its item table, the steps after a good reply, the reset node, the error
// codes it does not report and the label of stopped monitoring.
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <stdexcept>

namespace kt500::devices {

namespace {

constexpr std::string_view kMonitoring = "monitoringVariables";

void collectResponses(xml::Node node, std::vector<xml::Node>& responses) {
    if (node.name() == "communicationResponse") {
        responses.push_back(node);
    }
    for (const xml::Node& child : node.childElements()) {
        collectResponses(child, responses);
    }
}

// The items of every response, in document order.
std::vector<xml::Node> allItems(const std::vector<xml::Node>& responses) {
    std::vector<xml::Node> items;
    for (const xml::Node& response : responses) {
        for (const xml::Node& item : response.childElements("item")) {
            items.push_back(item);
        }
    }
    return items;
}

// The items of the responses directly under the document element.
std::vector<xml::Node> topItems(const xml::Document& document) {
    std::vector<xml::Node> items;
    for (const xml::Node& response : document.root().childElements("communicationResponse")) {
        for (const xml::Node& item : response.childElements("item")) {
            items.push_back(item);
        }
    }
    return items;
}

}  // namespace

bool DeviceClass::holdsItem(const std::vector<xml::Node>& items, std::string_view strName) {
    for (const xml::Node& item : items) {
        if (item.attribute("name") == strName) {
            return true;
        }
    }
    return false;
}

void DeviceClass::replyShared(xml::Document& xmlDoc) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    std::vector<xml::Node> responses;
    collectResponses(xmlDoc.root(), responses);
    if (responses.empty()) {
        // A reply that did not parse leaves an empty document: nothing to route.
        return;
    }
    const xml::Node response = responses.front();
    const std::string name = response.attribute("name");
    const std::string responseStatus = response.attribute("responseStatus");
    const std::string access = response.attribute("access");
    const std::string errorCode = response.attribute("errorCode");
    const bool isFinal = session::ToBoolean(response.attribute("isFinal"));

    if (name == "deviceStatus") {
        statusReply(xmlDoc);
        return;
    }
    if (tools.CurrentAutoAction == 1) {
        control.CalibrationValueSet(responseStatus == "ok");
    }
    if (name != kMonitoring) {
        const std::size_t steps = access == "write" ? topItems(xmlDoc).size() : 1;
        for (std::size_t step = 0; step < steps; ++step) {
            control.IncreaseProgress();
        }
    }
    if (tools.DebugLevel == 2) {
        control.ShowMsg("Debug level 2", "XML from BL: " + xmlDoc.toXml());
    }

    if (responseStatus == "local" || responseStatus == "ok") {
        const std::vector<xml::Node> items = allItems(responses);
        if (access != "write") {
            sharedItems(name, items);
            if (name == "flowModification" && isFinal) {
                control.UpdateFlowModificationGraph(0);
            }
        } else {
            if (name.size() > 5 && name.starts_with("reset")) {
                ClearResetDiagnostics();
            }
            if (isFinal) {
                control.form().userControl().setMousePointer(1);
            }
        }
        if (name != kMonitoring) {
            if (tools.OnlineConf && name.size() >= 6 && isFinal) {
                control.ChangeTreeIcon(name.starts_with("reset") ? resetTreeNode() : name, "read");
            }
            control.SetReadVariables(name, isFinal, access, m_blError);
        }
        // After the group has closed, whose clearing of the changed signs
        // would take back what the class shows.
        afterGoodReply(name, access, isFinal, items);
    } else if (name != kMonitoring) {
        sharedGatherError(errorCode, topItems(xmlDoc));
    } else {
        control.ChangeTreeIcon(std::string(kMonitoring), "error");
        m_blMonitoringError = true;
    }

    if (isFinal && m_blError) {
        // A sequence the user stopped ends without a report, on purpose; so
        // does a failure whose code the class does not report.
        if (!m_smuiStopPressed) {
            if (reportsFailure(errorCode)) {
                std::string entry = control.Translate(name);
                if (!m_strErrorText.empty()) {
                    entry += " (" + m_strErrorText + ")";
                }
                AppendSeparated(m_strCancelledGroups, entry);
            }
            tools.ValuesOk(name, "0");
            control.form().userControl().setMousePointer(1);
            control.ChangeTreeIcon(name, "error");
            control.SetReadVariables(name, isFinal, access, m_blError);
        }
        m_blError = false;
        m_strErrorText.clear();
    }

    if (name == kMonitoring) {
        closeLiveValueRead(name, isFinal, access,
                           responseStatus != "ok" && responseStatus != "local");
    }

    if (name == kMonitoring && responseStatus == "ok") {
        if (tools.MonitoringFlag) {
            ArrangeValues();
            control.UpdateMonitoringGraph(tools.MonitoringValues, m_strGraphValues);
            m_strGraphValues.clear();
            tools.MonitoringValues.clear();
            if (m_blMonitoringError) {
                control.ChangeTreeIcon(std::string(kMonitoring), "read");
                m_blMonitoringError = false;
            }
        } else {
            monitoringStopped();
        }
    }
}

void DeviceClass::sharedItems(const std::string& strName, const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    if (classItems(strName, items)) {
        return;
    }
    if (strName == "eventLog") {
        if (tools.OnlineConf) {
            control.FillEventLog(items);
        } else {
            for (const xml::Node& item : items) {
                AddEventLogFromDataFile(item, false);
            }
        }
        return;
    }
    for (const xml::Node& item : items) {
        control.SetItemValueToGUI(item, "", "", "", 0);
        if (strName == kMonitoring) {
            // Name and value in the page's unit for the chart and the log.
            const std::string itemName = item.attribute("name");
            const std::string unit = item.attribute("unit");
            std::string value = item.text();
            if (unit != "mA" && unit != "noUnit") {
                value = control.ConvertUnit(value, unit, control.FetchUnitName(itemName));
            }
            AppendSeparated(tools.MonitoringValues, itemName);
            AppendSeparated(tools.MonitoringValues, value);
        }
    }
}

void DeviceClass::sharedGatherError(const std::string& strErrorCode,
                                    const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    m_blError = true;
    // The report says why: the BL's error code in the user's language, each
    // code once in a group's sequence.
    const std::string reason = control.Translate(strErrorCode.empty() ? "error" : strErrorCode);
    if (m_strErrorText.find(reason) != std::string::npos) {
        return;
    }
    if (!m_strErrorText.empty()) {
        m_strErrorText += ", ";
    }
    m_strErrorText += reason;
    if (strErrorCode == "missingItems") {
        m_strErrorText += ": ";
        for (const xml::Node& item : items) {
            const std::string itemName = item.attribute("name");
            control.ChangeImage(itemName, FrameArrayName(), "error");
            m_strErrorText += control.Translate(itemName) + ", ";
        }
        // Only the blank goes: the message shows the list ending in a comma.
        m_strErrorText.pop_back();
    }
}

void DeviceClass::statusReply(xml::Document& xmlDoc) {
    sharedDeviceStatus(xmlDoc);
}

void DeviceClass::sharedDeviceStatus(xml::Document& xmlDoc) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    const xml::Node response = xmlDoc.root().firstChildElement("communicationResponse");
    if (response.attribute("responseStatus") != "ok") {
        control.UnKnownStatus();
        return;
    }
    const xml::Document* parameters = tools.RavikDTMParameters();
    if (parameters == nullptr) {
        throw std::logic_error("Object variable not set: RavikDTMParameters");
    }
    std::vector<xml::Node> statusList;
    for (const xml::Node& group :
         parameters->root().firstChildElement("deviceStatus").childElements("statusGroup")) {
        for (const xml::Node& status : group.childElements("status")) {
            statusList.push_back(status);
        }
    }
    for (const xml::Node& item : topItems(xmlDoc)) {
        deviationAlertItem(item);
        control.UpdateStatusTree(statusList, item);
    }
    control.UpdateStatusParentNodes();
    control.UpdateHeaderStatus();
}

}  // namespace kt500::devices
