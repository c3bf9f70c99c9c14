#include "data/Uploads.h"

#include "data/ProgramWrite.h"
#include "data/RoleRules.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "xml/XPath.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace kt500::data {

namespace {

constexpr int kHourglass = 11;
// The toolbar's second band holds the upload items.
constexpr int kUploadBand = 1;
constexpr int kNormalPointer = 0;
constexpr std::string_view kProgressReading = "progressReading";

// The signs of lblCommunication, element by element.
constexpr std::array<std::string_view, 5> kSignWords = {"read", "write", "monitoring",
                                                        "calibration", "test"};

// Pages whose group is not their key. The monitoring and trend pages of
// all three families read groups of their own name (docs/uploads.md); the
// live value groups stand here so that a page of that key reads its group.
struct PageGroup {
    std::string_view page;
    std::string_view group;
};
constexpr PageGroup kPageGroups[] = {
    {"monitoringVariables", "monitoringVariables"},
    {"setpoint", "setpoint"},
    {"outputValue", "outputValue"},
    {"leakageSignal", "leakageSignal"},
    {"actuatorPressure", "actuatorPressure"},
    {"pcbTemperature", "pcbTemperature"},
    {"actualTravel", "actualTravel"},
    {"positioningValueAndValveTravel", "positioningValueAndValveTravel"},
    {"travelSetpointAndActualTravel", "travelSetpointAndActualTravel"},
};

// Pages with nothing to read, with the key of the name the message shows.
constexpr PageGroup kNothingToUpload[] = {
    {"resetDiagnostics", "resetDiagnostics"},
    {"testSettings", "testSettings"},
    {"automaticTravelCalibration", "automaticTravelCalibration"},
    {"temperatureSensorCalibration", "temperatureSensorCalibration"},
    {"pressureSensorCalibration", "pressureSensorCalibration"},
    {"positionSensorCalibration", "positionSensorCalibration"},
    {"inputSignalMeasurementCalibration", "inputSignalMeasurementCalibration"},
    {"factoryReset", "factoryReset"},
    {"stepTestValues", "stepTest"},
    {"hysteresisTestValues", "hysteresisTest"},
};

// Pages that show fields of further request groups beside their own: the
// KT540's alert settings hold the stroke and reversal limits of its two
// meter groups. Their reload reads those groups too, so that every field of
// the page shows what the device holds, not what was typed before.
struct PageFeeds {
    std::string_view frame;
    std::array<std::string_view, 2> groups;
};
constexpr PageFeeds kFurtherGroups[] = {
    {"PAalertSettings", {"valveMetersAndLimits", "actuatorMetersAndLimits"}},
};

// The KT520's test settings page reads its settings; the other families'
// test settings pages have nothing to read.
constexpr std::string_view kReadTestSettingsFrame = "HAtestSettings";

const PageGroup* FindPage(std::span<const PageGroup> table, std::string_view strPage) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const PageGroup& entry) { return entry.page == strPage; });
    return found == table.end() ? nullptr : &*found;
}

// The upload groups of the GUIInit document, in document order.
std::vector<xml::Node> UploadGroups(const session::clsTools& tools) {
    const xml::Document* guiInit = tools.RavikDTMParameters();
    if (guiInit == nullptr) {
        return {};
    }
    return xml::XPath(*guiInit, xml::Namespaces{}).select("//uploadGroups/uploadGroup");
}

// The test settings are read as the settings of the chosen test (1 step,
// 2 hysteresis); with no test chosen there is nothing to read.
bool NothingToRead(const session::clsTools& tools, std::string_view strGroup) {
    return strGroup == "testSettings" && tools.CurrentTest != 1 && tools.CurrentTest != 2;
}

form::ToolbarModel& Toolbar(form::Form& form) {
    return form.control("smuiDTM", 1).toolbar();
}

}  // namespace

bool NothingToUploadOn(std::string_view strFrame) {
    if (strFrame.size() <= 2 || strFrame == kReadTestSettingsFrame) {
        return false;
    }
    return FindPage(kNothingToUpload, strFrame.substr(2)) != nullptr;
}

void DisableUploadTools(form::Form& form) {
    form::ToolbarModel& toolbar = Toolbar(form);
    for (const std::string& key : toolbar.bandItems(kUploadBand)) {
        toolbar.setEnabled(key, false);
    }
}

void Uploads::EnableUploadTools() {
    // The band reads the device: online "uploadCurrent" and each upload
    // group that the GUIInit document names, offline none of them.
    const bool online = Allows(m_control.tools(), Right::Upload);
    form::ToolbarModel& toolbar = Toolbar(m_control.form());
    for (const std::string& key : toolbar.bandItems(kUploadBand)) {
        toolbar.setEnabled(key, online && key == "uploadCurrent");
    }
    if (!online) {
        return;
    }
    for (const xml::Node& group : UploadGroups(m_control.tools())) {
        toolbar.setEnabled(group.attribute("name"), true);
    }
}

void Uploads::RunUploadGroup(const std::string& strGroup) {
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    form::Control& user = form.userControl();
    if (user.mousePointer() == kHourglass) {
        return;
    }
    m_control.deviceClass().setCancelledGroups("");
    user.setMousePointer(kHourglass);

    const std::vector<xml::Node> groups = UploadGroups(tools);
    const auto found = std::find_if(groups.begin(), groups.end(), [&](const xml::Node& group) {
        return group.attribute("name") == strGroup;
    });
    if (found == groups.end()) {
        // No request goes out, so no reply would give the pointer back.
        user.setMousePointer(kNormalPointer);
        return;
    }
    const std::int16_t count = devices::ToInt16(found->attribute("count"));
    const std::vector<xml::Node> members = found->childElements("requestGroup");
    const auto member = [&](int index) {
        if (index >= static_cast<int>(members.size())) {
            throw std::out_of_range("upload group " + strGroup + " counts " +
                                    std::to_string(count) + " request groups but lists " +
                                    std::to_string(members.size()));
        }
        return members[static_cast<std::size_t>(index)].attribute("name");
    };

    // A group with nothing to read (the test settings with no test chosen)
    // stays out of the chain.
    int index = 0;
    while (index < count && NothingToRead(tools, member(index))) {
        ++index;
    }
    if (index >= count) {
        user.setMousePointer(kNormalPointer);
        return;
    }
    // The bar counts every reply of the chain once: the first group's replies
    // by SetProgressBar, each further group's by its own request.
    const std::string first = member(index);
    SetProgressBar(first, std::string(kProgressReading));
    tools.ReadGroup = true;
    m_control.SendRequest(first, "read");
    tools.ReadGroup = false;
    for (++index; index < count; ++index) {
        const std::string name = member(index);
        if (!NothingToRead(tools, name)) {
            m_control.SendRequest(name, "read");
        }
    }
    tools.ReadGroup = true;
    if (tools.OpenRequests.empty()) {
        // The BL refused every request of the chain: the control stays idle.
        return;
    }
    tools.ShowProgressbar = true;
    form.control("fraProgress").setVisible(true);
    form.control("ProgressBar1").setVisible(true);
}

void Uploads::SetProgressBar(const std::string& strRequestGroup, const std::string& strCaption) {
    form::Form& form = m_control.form();
    form::Control& bar = form.control("ProgressBar1");
    bar.setMin(0);
    bar.setValue(0);

    const xml::Node group =
        strRequestGroup == "download" ? xml::Node() : m_control.RequestGroupByName(strRequestGroup);
    if (group) {
        const std::int16_t count = devices::ToInt16(group.attribute("requestCount"));
        bar.setMax(11.0 * count);
        // The bar holds its Value between Min and Max: a group of no replies
        // stands at its end, and the first reply hides the bar.
        bar.setValue(std::min(count + 1.0, bar.max()));
    } else {
        bar.setMax(1);
        bar.setValue(1);
    }
    form.control("lblProgressText").setCaption(m_control.Translate(strCaption));
}

void Uploads::cmdReload() {
    session::clsTools& tools = m_control.tools();
    if (m_control.form().userControl().mousePointer() == kHourglass) {
        return;
    }
    const ReloadTarget target = ResolveReloadGroup(tools.CurrentFrame);
    if (target.group.empty()) {
        return;
    }
    if (tools.value_saved) {
        int& button = m_control.buttonPressed();
        int result = 0;
        m_control.dialogs().ShowMessage(0, 4, 6, "Data changed",
                                        m_control.Translate("reloadConfirmation"), button, result);
        if (button == services::ButtonNo) {
            return;
        }
    }
    // SetProgressBar counts the group's replies; the read adds nothing again.
    SetProgressBar(target.group, target.caption);
    tools.ReadGroup = true;
    if (target.group == "flowModification") {
        resetFlowModification();
    }
    m_control.SendRequest(target.group, "read");
    // Each further group's replies add to the bar's count as a chain's do.
    for (const PageFeeds& feeds : kFurtherGroups) {
        if (feeds.frame != tools.CurrentFrame) {
            continue;
        }
        tools.ReadGroup = false;
        for (const std::string_view group : feeds.groups) {
            m_control.SendRequest(std::string(group), "read");
        }
        tools.ReadGroup = true;
    }
}

void Uploads::resetFlowModification() {
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    devices::DeviceClass& device = m_control.deviceClass();
    if (form::Control* curves = form.find("comFlowModification", device.FlowModificationIndex())) {
        const ProgramWrite write(tools);
        curves->setListIndex(-1);
        curves->setEnabled(false);
    }
    const char* points =
        tools.DeviceType == "KT540_1.0" ? "txtPAFlowModification" : "txtHAFlowModification";
    for (int index = 0; index < device.ModificationPoints(); ++index) {
        if (form::Control* point = form.find(points, index)) {
            point->setEnabled(false);
        }
    }
    device.ClearFlowModificationTable();
}

ReloadTarget Uploads::ResolveReloadGroup(const std::string& strFrame) {
    const std::string key = strFrame.size() > 2 ? strFrame.substr(2) : std::string();
    std::string group = key;
    if (strFrame == kReadTestSettingsFrame && NothingToRead(m_control.tools(), "testSettings")) {
        m_control.ShowMsg(m_control.Translate("testSettings"), m_control.Translate("nothingToUpload"));
        return {};
    }
    if (strFrame == kReadTestSettingsFrame) {
        group = "testSettings";
    } else if (const PageGroup* nothing = FindPage(kNothingToUpload, key)) {
        m_control.ShowMsg(m_control.Translate(std::string(nothing->group)),
                          m_control.Translate("nothingToUpload"));
        return {};
    } else if (const PageGroup* fixed = FindPage(kPageGroups, key)) {
        group = fixed->group;
    }
    if (group == "testValues") {
        session::clsTools& tools = m_control.tools();
        tools.StepTestFlag = false;
        tools.HysteresisTestFlag = false;
    }
    return {group, std::string(kProgressReading)};
}

void Uploads::tmrIconBlink() {
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    const bool blLight = tools.OnCommunication;
    for (std::size_t index = 0; index < kSignWords.size(); ++index) {
        form::Control* sign = form.find("lblCommunication", static_cast<int>(index));
        if (sign == nullptr) {
            continue;
        }
        if (!blLight) {
            sign->setVisible(false);
        } else if (tools.CommunicationSign(kSignWords[index], "")) {
            sign->setVisible(true);
        }
    }
    tools.OnCommunication = !blLight;
}

void Uploads::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("cmdReload", EventKind::Click, [this](form::FormEvent&) { cmdReload(); });
    handlers.add("tmrIconBlink", EventKind::Timer, [this](form::FormEvent&) { tmrIconBlink(); });
}

}  // namespace kt500::data
