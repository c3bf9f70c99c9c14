#include "data/ReplyRouting.h"

#include "data/ChangeTracking.h"
#include "data/ConfirmationRows.h"
#include "data/GroupFields.h"
#include "data/PageFields.h"
#include "data/ToolsBack.h"
#include "devices/DeviceClass.h"
#include "session/DebugTrace.h"
#include "xml/XPath.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace kt500::data {

namespace {

constexpr std::string_view CommunicationNamespace = "x-schema:QDLCommunicationSchema.xml";
// Steps of the bar that one reply may advance.
constexpr int kProgressSteps = 10;

// ImportFromFile for the length of a replay, also when Reply fails.
class ImportScope {
public:
    explicit ImportScope(session::clsTools& tools) : m_tools(tools) { m_tools.ImportFromFile = true; }
    ~ImportScope() { m_tools.ImportFromFile = false; }
    ImportScope(const ImportScope&) = delete;
    ImportScope& operator=(const ImportScope&) = delete;

private:
    session::clsTools& m_tools;
};

}  // namespace

void ReplyRouting::ItemListFromReply(const std::string& strReply) {
    if (const auto trace =
            session::TraceFor(m_control.tools().DebugLevel, session::TraceKind::RawData, strReply)) {
        m_control.ShowMsg(trace->header, trace->text);
    }

    xml::ParseOptions options;
    const xml::SchemaCollection* schemas = m_control.communicationSchemas();
    if (schemas != nullptr && !schemas->empty()) {
        options.schemas = schemas;
    }
    xml::LoadResult parsed = xml::Document::parse(strReply, options);
    if (!parsed.ok()) {
        // Reply still runs and finds no communicationResponse.
        m_control.ShowMsg("ItemListFromReply", m_control.Translate("parseFailed"));
        xml::Document empty = xml::Document::create("dtm", CommunicationNamespace);
        m_control.deviceClass().Reply(empty);
        return;
    }
    if (m_observer) {
        m_observer(*parsed.document);
    }
    try {
        m_control.deviceClass().Reply(*parsed.document);
    } catch (...) {
        // The failure is shown at the event's boundary; the request it
        // answered must still close, or the toolbar would stay busy.
        closeFailedReply(*parsed.document);
        throw;
    }
}

void ReplyRouting::closeFailedReply(const xml::Document& xmlDoc) {
    const xml::Node response = xmlDoc.root().firstChildElement("communicationResponse");
    if (!response || !session::ToBoolean(response.attribute("isFinal"))) {
        return;
    }
    const std::string name = response.attribute("name");
    if (!m_control.tools().IsRequestOpen(name)) {
        return;
    }
    try {
        SetReadVariables(name, true, response.attribute("access"), true);
    } catch (...) {
        // The first failure is the one the user is shown.
        m_control.tools().CloseRequest(name);
    }
}

void ReplyRouting::ReplayDataFile(const xml::Document& xmlDocument) {
    const ImportScope import(m_control.tools());
    const xml::XPath query(xmlDocument, xml::Namespaces());
    for (const xml::Node& response : query.select("/dtm/communicationResponse")) {
        // Each response on its own, in a document shaped as a reply of the BL.
        xml::Document scratch = xml::Document::create("dtm", response.parent().namespaceUri());
        response.cloneInto(scratch.root());
        m_control.deviceClass().Reply(scratch);
    }
}

void ReplyRouting::SetReadVariables(const std::string& strRequestName, bool IsFinal,
                                    const std::string& strAccessType, bool blError) {
    if (!IsFinal) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    form::Form& form = m_control.form();
    tools.ValuesOk(strRequestName, "1");

    // The last open request's final reply ends the busy state, however far
    // the bar got: a failed group may answer in fewer pieces than it counts.
    const bool blLast = tools.CloseRequest(strRequestName);
    if (tools.CurrentAutoAction == 0) {
        m_control.UpdateGroupTimeStamp(strRequestName);
        if (blLast) {
            CloseBusyState(m_control, strAccessType);
            // The pages hold what the device holds: the next edit takes a
            // new snapshot.
            tools.value_saved = false;
        }
    }

    if (strAccessType == "read") {
        RemoveGroupRows(form, GroupFields(m_control, strRequestName));
    }
    if (!blError) {
        m_control.ClearChangedSigns(strRequestName);
    }
    if (strAccessType == "write") {
        // What the device took is its own value from now on.
        if (blError) {
            m_held.notWritten(strRequestName);
        } else {
            m_held.written(strRequestName);
        }
    }
    if ((strAccessType == "write" || strAccessType == "writeOffline") && !blError) {
        // An undo goes back to what the device now holds.
        KeepWrittenValues(m_control, strRequestName);
    }
    if (blLast && strAccessType == "write" && !blError) {
        RemoveCheckedRows(form);
    }
    if (strRequestName == "alertSettings") {
        m_control.UpdateLimits();
    }
}

void ReplyRouting::IncreaseProgress() {
    const std::int16_t action = m_control.tools().CurrentAutoAction;
    if (action != 0 && action != 4) {
        return;
    }
    form::Form& form = m_control.form();
    form::Control& bar = form.control("ProgressBar1");
    if (!bar.visible()) {
        return;
    }
    for (int step = 0; step < kProgressSteps; ++step) {
        if (bar.value() < bar.max() - 1) {
            bar.setValue(bar.value() + 1);
        } else {
            bar.setVisible(false);
            form.control("fraProgress").setVisible(false);
            break;
        }
    }
}

void ReplyRouting::ClearChangedSigns(const std::string& strRequestGroup) {
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string frameArray = device.FrameArrayName();
    const std::string imagePrefix = device.ImagePrefix();
    // The test values page shows the test settings as well.
    std::vector<std::string> groups{strRequestGroup};
    if (strRequestGroup == "testValues") {
        groups.emplace_back("testSettings");
    }
    form::Form& form = m_control.form();
    for (const std::string& group : groups) {
        const GroupFields read(m_control, group);
        // A copy: the clearing must not see the index made again under it.
        const std::vector<form::Control*> pages =
            m_pageControls.pagesOfGroup(form, frameArray, group);
        for (const form::Control* page : pages) {
            for (form::Control* control : m_pageControls.on(form, frameArray, *page)) {
                if (read.reads(control->tag(), page->tag())) {
                    clearChangedSign(*control, imagePrefix);
                }
            }
        }
        // The group's own parameters on the pages of other groups.
        for (const std::string& name : read.params()) {
            for (form::Control* control : form.tagged(name)) {
                const form::Control* page = PageOf(*control, frameArray);
                if (page != nullptr &&
                    std::find(pages.begin(), pages.end(), page) == pages.end()) {
                    clearChangedSign(*control, imagePrefix);
                }
            }
        }
    }
}

void ReplyRouting::clearChangedSign(form::Control& control, const std::string& imagePrefix) {
    const form::ControlKind kind = control.kind();
    const bool blField = kind == form::ControlKind::TextBox || kind == form::ControlKind::ComboBox;
    const bool blMark = control.name().starts_with(imagePrefix);
    // A value still waiting in an unchecked row keeps its signs.
    if ((blField || blMark) && !m_control.CheckIfValueChanged(control.tag(), false)) {
        if (blField) {
            control.setForeColor(devices::ColorSynchronised);
        } else {
            control.setVisible(false);
        }
    }
}

void ReplyRouting::ChangeImage(const std::string& strTag, const std::string& strContainer,
                               const std::string& strImage) {
    const std::string imagePrefix = m_control.deviceClass().ImagePrefix();
    const std::string picture = strImage == "error" ? "error" : "changed";
    for (form::Control* control : m_control.form().tagged(strTag)) {
        if (control->name().starts_with(imagePrefix) && LiesOn(*control, strContainer)) {
            control->setPicture(picture);
        }
    }
}

}  // namespace kt500::data
