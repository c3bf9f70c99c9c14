// The control's life: construction, the start-up against the BL, and the
// release, each in the order the frame relies on.
#include "host/RavikKT500.h"

#include <filesystem>
#include <limits>
#include <optional>
#include <stdexcept>

namespace kt500::host {

namespace {

constexpr const char* kCommunicationNamespace = "x-schema:QDLCommunicationSchema.xml";
constexpr const char* kDatafileNamespace = "x-schema:QDLDatafileSchema.xml";
constexpr const char* kTypeInfoNamespace = "x-schema:QDLDeviceTypeInfoSchema.xml";

// The curve list of the flow characteristic pages, in list order.
constexpr const char* kFlowCurveNames[] = {
    "",     "Linear",     "1/25",     "Quick 1/25", "1/33",    "Quick 1/33",
    "1/50", "Quick 1/50", "Dovra L1", "Dovra R",    "Dovra M", "Custom",
};

std::string joined(const std::string& strFolder, const std::string& strFile) {
    return (std::filesystem::path(strFolder) / strFile).string();
}

// The control's own copy of the BL's parameter document, validated against
// the data file's schemas; none when the node is missing, nests too deep or
// does not validate.
std::optional<xml::Document> ValidatedCopy(const xml::Node& parameterNode,
                                           const xml::SchemaCollection& schemas) {
    if (!parameterNode.isElement() || !parameterNode.nestsWithin(xml::kMaxNesting)) {
        return std::nullopt;
    }
    // A copy of the tree, not its text parsed again: the node is already a
    // well-formed tree, and only the schema has something to say about it.
    xml::Document copy = xml::Document::create("dtm");
    copy.setRoot(parameterNode);
    try {
        if (!schemas.validate(copy).empty()) {
            return std::nullopt;
        }
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
    return copy;
}

}  // namespace

void RavikKT500::UserControl_Initialize() {
    m_platform.debugOutput.write("KT500 DTMGUI UserControl_Initialize entering..");
    form::Control& user = m_form->userControl();
    const int pointer = user.mousePointer();
    user.setMousePointer(kHourglass);

    m_objTools = std::make_unique<session::clsTools>();
    m_objTools->CurrentAutoAction = 0;
    m_objTools->SmartUIPaint = false;
    m_objTools->OnlineConf = true;
    m_objTools->DTMInitialized = false;

    ReadRegistrySettings();

    m_communicationSchemas = std::make_unique<xml::SchemaCollection>();
    const std::string schemaError = m_communicationSchemas->add(
        kCommunicationNamespace,
        joined(m_objTools->GUIxmlSchemaPath, "QDLCommunicationSchema.xml"));
    if (!schemaError.empty()) {
        // Every request and reply is checked against this schema; without it
        // the replies cannot be read, so say so at once.
        m_platform.debugOutput.write("UserControl_Initialize - " + schemaError);
    }

    m_objTools->Language = "1033";
    m_objTools->value_saved = false;
    m_objTools->ConfirmFlag = true;
    m_objTools->StatusRequesCount = 0;
    m_objTools->MonitoringValues.clear();

    form::ToolbarModel& toolbar = m_form->control("smuiDTM", 1).toolbar();
    toolbar.setPicture("imgHeaderStatus", "notMonitored");
    m_objTools->ConnectionID = 0;

    for (const int element : {0, 1}) {
        form::Control& curves = m_form->control("comFlowModification", element);
        curves.clear();
        for (const char* name : kFlowCurveNames) {
            curves.addItem(name);
        }
    }
    // Every slot of the flow curves is marked empty; the presets are constant.
    m_arrFlowCurves.fill(-1.0F);

    m_objTools->FlowModificationStep = 0;
    m_objTools->CalibrationStep = 0;
    m_objTools->TestStep = 0;
    m_objTools->ShowDeviationAlert = true;
    m_objTools->DeviationFlag = false;
    m_objTools->LoadFactorFlag = false;
    m_objTools->StepTestFlag = false;
    m_objTools->HysteresisTestFlag = false;
    m_objTools->PneumaticsTestFlag = false;
    m_objTools->ValveTestFlag = false;
    m_objTools->ShowProgressbar = true;
    m_objTools->ImportFromFile = false;
    m_objTools->CurrentAutoAction = 0;

    for (std::size_t page = 0; page < session::clsTools::ValidityPageCount; ++page) {
        m_objTools->ValuesOk(session::clsTools::SnapshotPages()[page], "1");
    }

    // No BL yet: the header shows the control disconnected and no device.
    toolbar.setPicture("imgDtmStatus", "offline");
    toolbar.setText("strDtmStatus", "");
    toolbar.setText("deviceType", "");
    user.setMousePointer(pointer);
}

void RavikKT500::ReadRegistrySettings() {
    session::modRegistry registry(m_platform.settings, m_platform.debugOutput);
    const session::PathDefaults& defaults = m_platform.defaults;
    m_objTools->GUIxmlPath = registry.ReadSetting(session::modRegistry::FilePathsKey, "Xml Datafile Path",
                                                  defaults.XmlDatafilePath);
    m_objTools->GUIxmlSchemaPath =
        registry.ReadSetting(session::modRegistry::FilePathsKey, "Xml Schema Path", defaults.XmlSchemaPath);
    m_objTools->InstallPath =
        registry.ReadSetting(session::modRegistry::FilePathsKey, "Install Path", defaults.InstallPath);
    m_objTools->DebugLevel = registry.ReadDebugLevel();
}

bool RavikKT500::IDtmActiveXControl_Init(const std::string& connectionParameter,
                                         const std::string& secondText,
                                         services::IDtmServiceProvider& serviceObject) {
    if (m_released || m_objTools == nullptr) {
        throw std::logic_error("IDtmActiveXControl_Init: the control has been released");
    }
    form::Control& user = m_form->userControl();
    const int pointer = user.mousePointer();
    const bool done = Guard("IDtmActiveXControl_Init", [&] {
        m_connectionParameter = connectionParameter;
        m_secondText = secondText;
        m_pControl = serviceObject.control();
        m_pAddressing = serviceObject.addressing();
        m_pDialogs = serviceObject.dialogs();
        m_pUnits = serviceObject.units();
        if (!m_pControl) {
            throw std::runtime_error("the service object offers no connection to the BL");
        }
        user.setMousePointer(kHourglass);

        OpenConnectionStep();
        LoadParameterDocument();
        ReadPublishedInfo();

        m_session.LoadSessionData(m_sessionData, true);

        FillLanguageList();
        LoadGuiInitDocument();
        CreateDeviceClass();

        // The family's charts on their pages, the monitoring chart empty.
        m_graphs.PlaceAllCharts();
        m_monitoring.PrepareMonitoringGraph();
        m_tests.PlaceTestCommands();
        m_flow.PlaceFlowControls();
        // Not part of the control yet, and skipped here: the pop-up menu entries.
        m_objDeviceClass->SetDeviceTypeIdChanges();
        m_objDeviceClass->SetDeviceRevisionChanges();
        BuildStatusTree();
        m_navigation.BuildNavigationTree();

        // The captions of the language; this also fills the mapped lists
        // that the values below choose from.
        m_captions.TranslateForm();
        m_values.FillDateFields();
        m_values.LoadPagesFromDocument();
        m_units.RefreshAllUnits(true);
        m_uploads.EnableUploadTools();
        m_changes.ChangeTreeIcon("monitoringVariables", "notRead");
        // The PL500 parameter boxes that take effect at start-up come with
        // the PL500 pages.

        m_objTools->SmartUIPaint = true;
        m_objTools->DTMInitialized = true;
        ShowDataSetLock(m_dataSetLocked);
    });
    user.setMousePointer(pointer);
    return done;
}

void RavikKT500::OpenConnectionStep() {
    std::int32_t connectionId = 0;
    bool success = false;
    m_sessionData.clear();
    m_pControl->OpenConnection(*this, m_connectionParameter, connectionId, m_sessionData,
                               m_parameterNode, m_pLanguage, m_dataSetLocked, success);
    if (!success) {
        ShowMsg("Error", "Can't open the connection!");
    }
    if (connectionId < std::numeric_limits<std::int16_t>::min() ||
        connectionId > std::numeric_limits<std::int16_t>::max()) {
        throw std::overflow_error("Overflow: the connection identifier " +
                                  std::to_string(connectionId) + " does not fit ConnectionID");
    }
    m_objTools->ConnectionID = static_cast<std::int16_t>(connectionId);
}

void RavikKT500::LoadParameterDocument() {
    // Written out only when the trace shows it.
    if (m_objTools->DebugLevel == static_cast<std::int16_t>(session::TraceKind::ParameterXml)) {
        Trace(session::TraceKind::ParameterXml, m_parameterNode.toXml());
    }
    m_dataFileSchemas = std::make_unique<xml::SchemaCollection>();
    for (const auto& [ns, file] : {std::pair{kDatafileNamespace, "QDLDatafileSchema.xml"},
                                   std::pair{kTypeInfoNamespace, "QDLDeviceTypeInfoSchema.xml"}}) {
        const std::string error =
            m_dataFileSchemas->add(ns, joined(m_objTools->GUIxmlSchemaPath, file));
        if (!error.empty()) {
            m_platform.debugOutput.write("IDtmActiveXControl_Init - " + error);
        }
    }
    m_parameterDocument.reset();
    m_values.ForgetLiveGroups();
    m_xmlDataFile.reset();
    std::optional<xml::Document> copy = ValidatedCopy(m_parameterNode, *m_dataFileSchemas);
    if (!copy) {
        // The start-up goes on with an empty parameter document.
        int result = 0;
        if (m_pDialogs) {
            m_pDialogs->ShowMessage(0, 1, 4, "IDtmActiveXControl_Init",
                                    "Can't load parameter xml document!", m_buttonPressed, result);
        }
        return;
    }
    m_xmlDataFile.emplace(std::move(*copy));
    m_parameterDocument.emplace(m_parameterNode, *m_xmlDataFile);
}

void RavikKT500::ReadPublishedInfo() {
    xml::Node published;
    if (m_xmlDataFile) {
        const xml::XPath query(*m_xmlDataFile, xml::Namespaces::fromSelection(SelectionNamespaces));
        published = query.selectSingle("//typeInfo:device/typeInfo:publishedInfo");
    }
    m_objTools->DeviceTypeId = published.attribute("deviceTypeId");
    m_objTools->DeviceName = published.attribute("name");
    form::ToolbarModel& toolbar = m_form->control("smuiDTM", 1).toolbar();
    toolbar.setText("revision", published.attribute("version"));
    toolbar.setText("deviceType", m_objTools->DeviceName);
}

void RavikKT500::FillLanguageList() {
    form::Control& languages = m_form->control("comSelectLanguage");
    languages.clear();
    if (m_pLanguage) {
        std::vector<std::int32_t> ids;
        m_pLanguage->GetLanguageIds(ids);
        const std::int32_t current = std::atoi(m_objTools->Language.c_str());
        int selected = -1;
        for (const std::int32_t id : ids) {
            std::string name;
            m_pLanguage->GetLanguageName(id, name);
            languages.addItem(name);
            languages.setItemData(languages.newIndex(), id);
            if (id == current) {
                selected = languages.newIndex();
            }
        }
        if (languages.listCount() > 0) {
            languages.setListIndex(selected >= 0 ? selected : 0);
        }
    }
    m_form->control("cmdTranslate").setEnabled(false);
}

void RavikKT500::LoadGuiInitDocument() {
    // Validated on parse against the GUIInit schema beside the others. A
    // GUIInit document that does not load leaves the tree empty; no message
    // box, its reason goes to the debug output.
    xml::SchemaCollection schemas;
    const std::string schemaError =
        schemas.add("", joined(m_objTools->GUIxmlSchemaPath, "KT500GUIInitSchema.xsd"));
    if (!schemaError.empty()) {
        m_platform.debugOutput.write("IDtmActiveXControl_Init - " + schemaError);
    }
    xml::LoadResult loaded =
        xml::Document::load(joined(m_objTools->GUIxmlPath, m_objTools->DeviceParameterXml()),
                            {.schemas = schemaError.empty() ? &schemas : nullptr});
    if (!loaded.ok()) {
        m_platform.debugOutput.write("IDtmActiveXControl_Init - " +
                                     m_objTools->DeviceParameterXml() + ": " + loaded.message());
    }
    m_objTools->setRavikDTMParameters(
        loaded.ok() ? std::make_unique<xml::Document>(std::move(*loaded.document)) : nullptr);
}

void RavikKT500::CreateDeviceClass() {
    m_objDeviceClass = devices::CreateDeviceClass(m_objTools->DeviceType);
    m_objDeviceClass->setObjUserControl(this);
}

bool RavikKT500::IDtmActiveXControl_PrepareToRelease() {
    if (m_released) {
        return true;
    }
    Guard("IDtmActiveXControl_PrepareToRelease", [this] {
        std::int16_t connectionId = 0;
        if (m_objTools) {
            connectionId = m_objTools->ConnectionID;
        }
        m_graphs.RemoveDeviceCharts();
        m_form->control("tmrIconBlink").setEnabled(false);

        m_parameterDocument.reset();
        m_values.ForgetLiveGroups();
        m_xmlDataFile.reset();
        m_dataFileSchemas.reset();
        m_parameterNode = xml::Node();
        m_communicationSchemas.reset();
        m_pAddressing.reset();
        m_pDialogs.reset();
        m_pUnits.reset();
        m_pLanguage.reset();
        m_objTools.reset();
        m_objDeviceClass.reset();

        if (m_pControl) {
            bool closed = false;
            // Whatever the BL answers, the control lets go of it.
            const std::shared_ptr<services::IDtmControl> control = std::move(m_pControl);
            control->CloseConnection(connectionId, closed);
            if (!closed) {
                m_platform.debugOutput.write("Can't close the connection!");
            }
        }
    });
    m_pControl.reset();
    m_released = true;
    return true;
}

}  // namespace kt500::host
