#include "host/SessionData.h"

#include "data/RoleRules.h"
#include "devices/DeviceClass.h"
#include "session/DebugTrace.h"
#include "session/clsTools.h"
#include "session/modRegistry.h"
#include "xml/Document.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <filesystem>

namespace kt500::host {

namespace {

constexpr const char* kSessionNamespace = "x-schema:QDLSessionDataSchema.xml";
constexpr const char* kSessionSchemaFile = "QDLSessionDataSchema.xml";

// The toolbar is element 1 of its control array.
constexpr int kToolbarElement = 1;

constexpr std::array kMonitoringCommands = {"cmdHAMonitoring", "cmdPAMonitoring",
                                            "cmdPLMonitoring"};
// Element 5 of the flow modification pages applies the curve: to the page's
// values offline ("accept"), to the device online ("download").
constexpr std::array kFlowApplyCommands = {"cmdHAFlowModification", "cmdPAFlowModification"};
constexpr int kFlowApplyElement = 5;

// The state label of each family's monitoring page. On the PA and PL pages
// the elements beside the buttons (4 and 5, 9 and 10) show the actuator
// pressure and the PCB temperature, whose unit changes convert them, so the
// state has elements of its own there.
struct PageElement {
    const char* name;
    int index;
};
constexpr std::array kMonitoringStateLabels = {
    PageElement{"lblHAMonitoringSettings", 6},
    PageElement{"lblPAMonValue", 6},
    PageElement{"lblPLParams", 11},
};
// Element 0 of each monitoring command pair starts and stops the monitor.
constexpr int kMonitoringStartElement = 0;

// The monitoring page and the nodes of the values it shows.
constexpr std::array kMonitoringNodes = {
    "monitoringVariables",
    "inputSignal",
    "travelSetpointAndActualTravel",
    "actuatorPressure",
    "pcbTemperature",
    "setpoint",
    "outputValue",
    "positioningValueAndValveTravel",
    "actualTravel",
    "leakageSignal",
};

// The picture of the device model: imgToolbar element by model word.
int ModelPictureElement(const std::string& strModel) {
    if (strModel == "KTQ500") {
        return 1;
    }
    if (strModel == "KTQ500_PT") {
        return 2;
    }
    if (strModel == "PL500") {
        return 3;
    }
    return 4;
}

// The number a text holds, blanks around it allowed; none for any other text.
std::optional<std::int32_t> NumberOf(const std::string& strText) {
    const auto first = strText.find_first_not_of(' ');
    if (first == std::string::npos) {
        return std::nullopt;
    }
    const auto last = strText.find_last_not_of(' ');
    const char* begin = strText.data() + first;
    const char* end = strText.data() + last + 1;
    std::int32_t number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

const xml::SchemaCollection& SessionData::Schemas() {
    if (!m_schemas) {
        m_schemas = std::make_unique<xml::SchemaCollection>();
        const std::filesystem::path file =
            std::filesystem::path(m_control.tools().GUIxmlSchemaPath) / kSessionSchemaFile;
        const std::string error = m_schemas->add(kSessionNamespace, file);
        if (!error.empty()) {
            // Without its schema no session message validates: each one is
            // then reported as not parsed.
            m_debugOutput.write("LoadSessionData - " + error);
        }
    }
    return *m_schemas;
}

void SessionData::LoadSessionData(const std::string& strSessionData, bool blInit) {
    session::clsTools& tools = m_control.tools();
    if (const auto trace = session::TraceFor(tools.DebugLevel, session::TraceKind::SessionData, strSessionData)) {
        m_control.ShowMsg(trace->header, trace->text);
    }

    const std::string previousLanguage = tools.Language;
    xml::LoadResult loaded = xml::Document::parse(strSessionData, {.schemas = &Schemas()});
    if (loaded.ok()) {
        ReadAttributes(loaded.document->root().firstChildElement());
        KeepOfferedLanguage();
    } else {
        // A message that does not parse holds no session: the state of the
        // last good message (or of the construction) stays, and the steps
        // below bring the form into line with it, so that the start-up goes on.
        m_control.ShowMsg("GetSessionData", m_control.Translate("parseFailed"));
    }
    loaded.document.reset();

    form::ToolbarModel& toolbar = m_control.form().control("smuiDTM", kToolbarElement).toolbar();
    ShowDeviceModelPicture();
    ApplyTestRights();
    ApplyMode(toolbar);
    ApplyRoleLimits();
    ApplySavePath();
    tools.setDeviceParameterXml(tools.DeviceType);
    if (!blInit) {
        RefreshPages(tools.Language != previousLanguage);
    }
    StopMonitoringState();
}

void SessionData::ReadAttributes(xml::Node session) {
    session::clsTools& tools = m_control.tools();
    m_privateDialogEnabled = session::ToBoolean(session.attribute("privateDialogEnabled"));
    m_deviceModel = session.attribute("deviceType");
    const std::string revision = session.attribute("revision");
    tools.DeviceType = m_deviceModel + "_" + revision;
    tools.DeviceRevision = revision;
    tools.ActorRole = session.attribute("userRole");
    tools.FrameLanguage = session.attribute("frameLanguage");
    tools.Language = session.attribute("guiLanguage");
    tools.OnlineConf = session::ToBoolean(session.attribute("online"));
    tools.SavePath = session.attribute("savePath");
}

void SessionData::KeepOfferedLanguage() {
    if (!m_languageIds) {
        return;
    }
    const std::vector<std::int32_t> offered = m_languageIds();
    if (offered.empty()) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    // The language in force: Language, or FrameLanguage when Language is 0
    // or no number (as the texts are looked up).
    std::optional<std::int32_t> language = NumberOf(tools.Language);
    if (!language || *language == 0) {
        language = NumberOf(tools.FrameLanguage);
    }
    if (language && std::ranges::find(offered, *language) != offered.end()) {
        return;
    }
    tools.Language = std::to_string(offered.front());
}

void SessionData::ShowDeviceModelPicture() {
    const int shown = ModelPictureElement(m_deviceModel);
    for (form::Control* picture : m_control.form().elements("imgToolbar")) {
        picture->setVisible(picture->index() == shown);
    }
}

void SessionData::ApplyTestRights() {
    for (const data::Right right : {data::Right::Test, data::Right::PLTest}) {
        data::EnableCommands(m_control.form(), m_control.tools(), right, true);
    }
}

void SessionData::ApplyMode(form::ToolbarModel& toolbar) {
    const session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    std::string flowCaption;
    if (!tools.OnlineConf) {
        toolbar.setText("strDtmStatus", m_control.Translate("dtmDisconnected"));
        toolbar.setPicture("imgDtmStatus", "offline");
        flowCaption = m_control.Translate("accept");
        toolbar.setText("strHeaderStatus", m_control.Translate("notMonitored"));
        toolbar.setPicture("imgHeaderStatus", "notMonitored");
    } else {
        toolbar.setText("strDtmStatus", m_control.Translate("dtmConnected"));
        toolbar.setPicture("imgDtmStatus", "online");
        flowCaption = m_control.Translate("download");
        // The device date fields are filled by the start-up from the values
        // the document holds; a session change brings no new date.
    }
    toolbar.setEnabled("offlineConf", data::Allows(tools, data::Right::OfflineConfiguration));
    // The upload band follows the mode both ways.
    m_control.EnableUploadTools();
    for (const char* name : kFlowApplyCommands) {
        if (form::Control* apply = form.find(name, kFlowApplyElement)) {
            apply->setCaption(flowCaption);
        }
    }

    toolbar.setEnabled("send", data::Allows(tools, data::Right::Send));
    data::EnableCommands(form, tools, data::Right::Monitoring, true);
}

void SessionData::ApplyRoleLimits() {
    // The same role table as the toolbar's: one rule for both.
    m_control.ApplyRole(m_control.tools().ActorRole);
}

void SessionData::ApplySavePath() {
    session::clsTools& tools = m_control.tools();
    if (tools.SavePath.empty()) {
        session::modRegistry registry(m_settings, m_debugOutput);
        tools.SavePath = registry.ReadSavePath(m_saveDefault);
    }
    for (const char* name : {"dirOpenFile", "filOpenFile"}) {
        if (form::Control* list = m_control.form().find(name)) {
            list->setPath(tools.SavePath);
        }
    }
}

void SessionData::RefreshPages(bool blLanguageChanged) {
    if (blLanguageChanged) {
        m_control.TranslateForm();
    }
    session::clsTools& tools = m_control.tools();
    if (tools.DTMInitialized) {
        // The mode decides the tree's nodes and the page to show first.
        m_control.BuildNavigationTree();
        devices::DeviceClass& device = m_control.deviceClass();
        device.HideFrames();
        device.ShowFrame(tools.strDefaultFrame());
        m_control.SelectNode(device.DefaultNodeIndex());
    }
}

void SessionData::StopMonitoringState() {
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    const std::string stopped = m_control.Translate("stopped");
    for (const PageElement& label : kMonitoringStateLabels) {
        if (form::Control* state = form.find(label.name, label.index)) {
            state->setCaption(stopped);
        }
    }
    tools.MonitoringFlag = false;
    for (const char* node : kMonitoringNodes) {
        m_control.ChangeTreeIcon(node, "notRead");
    }
    const std::string start = m_control.Translate("start");
    for (const char* name : kMonitoringCommands) {
        if (form::Control* command = form.find(name, kMonitoringStartElement)) {
            command->setCaption(start);
        }
    }
    tools.CommunicationSign("monitoring", "0");
    tools.CurrentAutoAction = 0;
}

}  // namespace kt500::host
