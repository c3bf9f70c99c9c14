// clsKT520::Reply: where every communicationResponse of the BL turns into
// page values, trend points, progress and error reporting; and the private
// handler of the "deviceStatus" push.
#include "devices/Encodings.h"
#include "devices/clsKT520.h"

#include <cmath>
#include <stdexcept>

namespace kt500::devices {

namespace {

constexpr std::string_view kMonitoring = "monitoringVariables";

// Every communicationResponse element at or below node, in document order.
void collectResponses(xml::Node node, std::vector<xml::Node>& responses) {
    if (node.name() == "communicationResponse") {
        responses.push_back(node);
    }
    for (const xml::Node& child : node.childElements()) {
        collectResponses(child, responses);
    }
}

// "//communicationResponse/item": the items of every response.
std::vector<xml::Node> allItems(const std::vector<xml::Node>& responses) {
    std::vector<xml::Node> items;
    for (const xml::Node& response : responses) {
        for (const xml::Node& item : response.childElements("item")) {
            items.push_back(item);
        }
    }
    return items;
}

// "communicationResponse/item" under the document element.
std::vector<xml::Node> topItems(const xml::Document& document) {
    std::vector<xml::Node> items;
    for (const xml::Node& response : document.root().childElements("communicationResponse")) {
        for (const xml::Node& item : response.childElements("item")) {
            items.push_back(item);
        }
    }
    return items;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

bool beginsWithReset(std::string_view name) {
    return name.starts_with("reset");
}

}  // namespace

void clsKT520::Reply(xml::Document& xmlDoc) {
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
        deviceStatus(xmlDoc);
        return;
    }
    if (tools.CurrentAutoAction == 1) {
        control.CalibrationValueSet(responseStatus == "ok");
    }
    if (name != kMonitoring) {
        // A write advances the progress by its items, a read by one step.
        const std::size_t steps = access == "write" ? topItems(xmlDoc).size() : 1;
        for (std::size_t step = 0; step < steps; ++step) {
            control.IncreaseProgress();
        }
    }
    if (tools.DebugLevel == 2) {
        control.ShowMsg("Debug level 2", "XML from BL: " + xmlDoc.toXml());
    }

    if (responseStatus == "local" || responseStatus == "ok") {
        if (access != "write") {
            distributeItems(name, allItems(responses));
            if (name == "flowModification" && isFinal) {
                control.UpdateFlowModificationGraph(0);
            }
        } else {
            if (name.size() > 5 && beginsWithReset(name)) {
                ClearResetDiagnostics();
            }
            if (isFinal) {
                control.form().userControl().setMousePointer(1);
            }
        }
        if (name != kMonitoring) {
            if (tools.OnlineConf && name.size() >= 6 && isFinal) {
                control.ChangeTreeIcon(beginsWithReset(name) ? "resetDiagnostics" : name, "read");
            }
            control.SetReadVariables(name, isFinal, access, m_blError);
        }
    } else if (name != kMonitoring) {
        gatherError(errorCode, topItems(xmlDoc));
    } else {
        // A failed monitoring reply shows only on the tree; the next good
        // one clears it.
        control.ChangeTreeIcon(std::string(kMonitoring), "error");
        m_blMonitoringError = true;
    }

    if (isFinal && m_blError) {
        // A sequence the user stopped ends without a report, on purpose.
        if (!m_smuiStopPressed) {
            std::string entry = control.Translate(name);
            if (!m_strErrorText.empty()) {
                entry += " (" + m_strErrorText + ")";
            }
            AppendSeparated(m_strCancelledGroups, entry);
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

    // A "local" monitoring reply carries no live values for the chart.
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
            setElementText({"lblHAMonitoringSettings", 6}, control.Translate("stopped"));
        }
    }
}

void clsKT520::distributeItems(const std::string& strName, const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    if (strName == "eventLog" && tools.OnlineConf) {
        control.FillEventLog(items);
        return;
    }
    for (const xml::Node& item : items) {
        if (strName == "travelDeviation") {
            control.AddTravelDeviationValuePair(item, false);
        } else if (strName == "loadFactor") {
            control.AddLoadFactorValuePair(item, false);
        } else if (strName == "travelVsTime") {
            control.AddTravelVsTimeValuePair(item, false);
        } else if (strName == "stepTestValues") {
            control.AddStepTestValuePair(item);
        } else if (strName == "hysteresisTestValues") {
            control.AddHysteresisTestValuePair(item);
        } else if (strName == "eventLog") {
            AddEventLogFromDataFile(item, false);
        } else {
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
}

void clsKT520::gatherError(const std::string& strErrorCode,
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

void clsKT520::deviceStatus(xml::Document& xmlDoc) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    const xml::Node response = xmlDoc.root().firstChildElement("communicationResponse");
    const std::int16_t revision = ToInt16(tools.DeviceRevision);
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
    // The software revision decides whether a revision 7 device has the
    // deviation alert; it must come before "travelSetpoint" in the reply.
    std::string swRevision;
    for (const xml::Node& item : topItems(xmlDoc)) {
        if (revision == 7) {
            const std::string itemName = item.attribute("name");
            const std::string text = item.text();
            if (itemName == "swRevision") {
                swRevision = isBlank(text) ? "7" : text;
            } else if (itemName == "travelSetpoint") {
                if (swRevision != "7") {
                    tools.ShowDeviationAlert = true;
                } else if (isBlank(text)) {
                    tools.ShowDeviationAlert = false;
                } else {
                    const double value = Str2Dbl(fDecimalSep(text, "."));
                    const auto rounded = static_cast<float>(std::round(value * 1000.0) / 1000.0);
                    tools.ShowDeviationAlert = rounded != 0.0F;
                }
            }
        }
        control.UpdateStatusTree(statusList, item);
    }
    control.UpdateStatusParentNodes();
    control.UpdateHeaderStatus();
}

}  // namespace kt500::devices
