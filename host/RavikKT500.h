// RavikKT500: the user control that the frame creates, initialises with its
// service object and releases. It owns the session state (m_objTools), the
// form, the parameter document and the references to the closed services,
// and it is the event sink of the BL. It stays thin: each subsystem's
// behaviour lives in a class of its own, which the control owns and forwards to.
#pragma once

#include "calibration/Calibrations.h"
#include "data/ChangeTracking.h"
#include "data/ConfirmationRows.h"
#include "data/FamilyPageEvents.h"
#include "data/PageHandlers.h"
#include "data/ParameterDocument.h"
#include "data/ParameterValues.h"
#include "data/ReplyRouting.h"
#include "data/Requests.h"
#include "data/Uploads.h"
#include "datasets/ComparePage.h"
#include "datasets/Confirmation.h"
#include "datasets/DataFiles.h"
#include "datasets/SafeSave.h"
#include "datasets/Undo.h"
#include "devices/DeviceClass.h"
#include "devices/IUserControl.h"
#include "devices/StatusTree.h"
#include "devices/Units.h"
#include "flow/CurveTable.h"
#include "flow/FlowModification.h"
#include "form/EventHandlers.h"
#include "form/Form.h"
#include "session/DebugTrace.h"
#include "session/ISettingsStore.h"
#include "host/SessionData.h"
#include "session/clsTools.h"
#include "session/modRegistry.h"
#include "monitoring/EventLog.h"
#include "monitoring/Monitoring.h"
#include "performance/Tests.h"
#include "monitoring/Trends.h"
#include "presentation/Captions.h"
#include "presentation/FileDialog.h"
#include "presentation/Graphs.h"
#include "presentation/NavigationTree.h"
#include "presentation/Toolbar.h"
#include "services/IDtmLanguage.h"
#include "services/IDtmServiceProvider.h"
#include "services/IQDLGuiEvent.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"
#include "xml/XPath.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kt500::host {

// What the control needs of the platform: the settings store, the system
// debug output and the folders the settings default to.
struct ControlPlatform {
    session::ISettingsStore& settings;
    session::IDebugOutput& debugOutput;
    session::PathDefaults defaults;
    // The current date and time of the monitoring chart and log; the
    // system clock when empty.
    std::function<QDateTime()> clock = {};
};

class RavikKT500 final : public services::IQDLGuiEvent, public devices::IUserControl {
public:
    // The control's fixed extents in the host's layout units.
    static constexpr int kWidth = form::Form::kUserControlWidth;
    static constexpr int kHeight = form::Form::kUserControlHeight;
    static constexpr int kHourglass = 11;
    static constexpr const char* SelectionNamespaces =
        "xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'";

    // Construction: UserControl_Initialize runs here. No BL is needed.
    RavikKT500(std::unique_ptr<form::Form> form, ControlPlatform platform);
    ~RavikKT500() override;
    RavikKT500(const RavikKT500&) = delete;
    RavikKT500& operator=(const RavikKT500&) = delete;

    // --- The frame's door ---
    bool IDtmActiveXControl_Init(const std::string& connectionParameter,
                                 const std::string& secondText,
                                 services::IDtmServiceProvider& serviceObject);
    bool IDtmActiveXControl_PrepareToRelease();

    // --- Shared helpers of the logic ---
    // The text of a key in the session's language; "" for an empty key.
    std::string Translate(const std::string& strKey) override;
    // The one message box of the logic; always a message with OK (0, 1, 4).
    void ShowMsg(const std::string& strHeader, const std::string& strMsg) override {
        ShowMsg(strHeader, strMsg, 0, 0, 0);
    }
    void ShowMsg(const std::string& strHeader, const std::string& strMsg, int dlgType,
                 int buttonType, int Button);
    // Forces the extents back to the fixed size, writing only what differs.
    void UserControl_Resize();

    // --- Events of the BL ---
    bool IQDLGuiEvent_UpdateSessionData(const std::string& strSessionData) override;
    bool IQDLGuiEvent_CommunicationEvent(const std::string& strReply) override;
    void IQDLGuiEvent_ReadyForAutoAction(bool blReady) override;
    void IQDLGuiEvent_AutoActionComplete(bool blSuccess) override;
    void IQDLGuiEvent_AutoActionStopped(bool blStopped) override;
    void IQDLGuiEvent_OnLockDataSet(const std::string& strFirst,
                                    const std::string& strSecond) override;
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string& strFirst,
                                      const std::string& strSecond) override;
    void IQDLGuiEvent_OnParameterChanged(const std::string& strFirst,
                                         const std::string& strSecond) override;

    // --- The control as the device class and the subsystems see it ---
    [[nodiscard]] form::Form& form() noexcept override { return *m_form; }
    [[nodiscard]] session::clsTools& tools() override;
    [[nodiscard]] devices::DeviceClass& deviceClass() override;
    [[nodiscard]] services::IDtmControl& control() override;
    [[nodiscard]] services::IDtmDialogs& dialogs() override;
    [[nodiscard]] services::IDtmUnits& units() override;
    [[nodiscard]] const xml::SchemaCollection* communicationSchemas() override {
        return m_communicationSchemas.get();
    }
    [[nodiscard]] const xml::Document* xmlDataFile() override {
        return m_xmlDataFile ? &*m_xmlDataFile : nullptr;
    }
    // The parameter node as the BL gave it (nothing before Init, after release).
    [[nodiscard]] xml::Node parameterNode() noexcept override { return m_parameterNode; }
    [[nodiscard]] int& buttonPressed() noexcept override { return m_buttonPressed; }
    [[nodiscard]] bool released() const noexcept { return m_released; }
    [[nodiscard]] bool privateDialogEnabled() const noexcept override {
        return m_session.privateDialogEnabled();
    }

    // --- Session data ---
    void LoadSessionData(const std::string& strSessionData, bool blInit) {
        m_session.LoadSessionData(strSessionData, blInit);
    }

    // --- The parameter document ---
    [[nodiscard]] xml::Node ParameterNodeByName(std::string_view strName) override;
    [[nodiscard]] xml::Node RequestGroupByName(std::string_view strName) override {
        return m_parameterDocument ? m_parameterDocument->RequestGroupByName(strName) : xml::Node();
    }
    std::string FetchValueByTag(const std::string& strTagName, bool blCaption) override {
        return m_values.FetchValueByTag(strTagName, blCaption);
    }
    std::string FetchUnitName(const std::string& strParameter) override {
        return m_units.FetchUnitName(strParameter);
    }
    [[nodiscard]] bool HasConfirmationRow(std::string_view strParameter) override {
        return data::HasRow(form(), strParameter);
    }
    void LoadPagesFromDocument() { m_values.LoadPagesFromDocument(); }

    // --- Values, units and requests ---
    void SetItemValueToGUI(xml::Node nodeObj, const std::string& strOfflineName,
                           const std::string& strOfflineValue, const std::string& strOfflineUnit,
                           std::int16_t intValueSynchronised) override {
        m_values.SetItemValueToGUI(nodeObj, strOfflineName, strOfflineValue, strOfflineUnit,
                                   intValueSynchronised);
    }
    std::string ConvertUnit(const std::string& strValue, const std::string& strFromUnit,
                            const std::string& strToUnit) override {
        return m_units.ConvertUnit(strValue, strFromUnit, strToUnit);
    }
    void ChangeParameterUnit(const std::string& strParameter, const std::string& strOldUnit,
                             int intFrame, const std::string& strNewUnit) override {
        m_units.ChangeParameterUnit(strParameter, strOldUnit, intFrame, strNewUnit);
    }
    void RefreshAllUnits(bool blKeepSystem) { m_units.RefreshAllUnits(blKeepSystem); }
    void SendRequest(const std::string& str_frame, const std::string& str_accessType) override {
        m_requests.SendRequest(str_frame, str_accessType);
    }
    void EnableDeviceActions(bool blEnabled) override {
        m_calibrations.EnableDeviceActions(blEnabled);
    }
    void EnableTesting(bool blValue) override { m_calibrations.EnableTesting(blValue); }
    void SetProgressBar(const std::string& strRequestGroup, const std::string& strCaption) override {
        m_uploads.SetProgressBar(strRequestGroup, strCaption);
    }
    // A device action asks for the device: "" when the BL will answer with
    // the ready event, else the translated refusal.
    std::string PrepareAutoAction() { return m_calibrations.PrepareAutoAction(); }
    // The toolbar's upload groups and the Reload of the page shown.
    void RunUploadGroup(const std::string& strGroup) override {
        m_uploads.RunUploadGroup(strGroup);
    }
    void cmdReload() override { m_uploads.cmdReload(); }
    void EnableUploadTools() override { m_uploads.EnableUploadTools(); }

    // --- Replies, status tree, trends and charts ---
    void SetReadVariables(const std::string& strRequestName, bool IsFinal,
                          const std::string& strAccessType, bool blError) override {
        m_replies.SetReadVariables(strRequestName, IsFinal, strAccessType, blError);
    }
    void IncreaseProgress() override { m_replies.IncreaseProgress(); }
    // The responses of a data file, each through the device class's Reply.
    void ReplayDataFile(const xml::Document& xmlDocument) { m_replies.ReplayDataFile(xmlDocument); }
    void UpdateGroupTimeStamp(const std::string& strGroup) override {
        m_values.UpdateGroupTimeStamp(strGroup);
    }
    void UpdateLimits() override { m_trends.UpdateLimits(); }
    void CalibrationValueSet(bool blOk) override { m_calibrations.CalibrationValueSet(blOk); }
    void BuildStatusTree() override { m_statusTree.BuildStatusTree(); }
    void UpdateStatusTree(const std::vector<xml::Node>& xmlStatusList, xml::Node xmlItem) override {
        m_statusTree.UpdateStatusTree(xmlStatusList, xmlItem);
    }
    void UpdateStatusParentNodes() override { m_statusTree.UpdateStatusParentNodes(); }
    void UpdateHeaderStatus() override { m_statusTree.UpdateHeaderStatus(); }
    void UnKnownStatus() override { m_statusTree.UnKnownStatus(); }
    void AddTravelDeviationValuePair(xml::Node item, bool blInit) override {
        m_trends.AddTravelDeviationValuePair(item, blInit);
    }
    void AddLoadFactorValuePair(xml::Node item, bool blInit) override {
        m_trends.AddLoadFactorValuePair(item, blInit);
    }
    void AddTravelVsTimeValuePair(xml::Node item, bool blInit) override {
        m_trends.AddTravelVsTimeValuePair(item, blInit);
    }
    void AddStepTestValuePair(xml::Node item) override {
        m_tests.results().AddStepTestValuePair(item);
    }
    void AddHysteresisTestValuePair(xml::Node item) override {
        m_tests.results().AddHysteresisTestValuePair(item);
    }
    void UpdateStepTestGraph(devices::TestCurve& arrCurve) override {
        m_tests.results().UpdateStepTestGraph(arrCurve);
    }
    void UpdateHysteresisTestGraph(devices::TestCurve& arrCurve) override {
        m_tests.results().UpdateHysteresisTestGraph(arrCurve);
    }
    void UpdateValveTestGraph(devices::TestCurve& arrCurve) override {
        m_tests.results().UpdateValveTestGraph(arrCurve);
    }
    void UpdatePneumaticsTestGraph(devices::TestCurve& arrCurve) override {
        m_tests.results().UpdatePneumaticsTestGraph(arrCurve);
    }
    void FillEventLog(const std::vector<xml::Node>& items) override {
        m_eventLog.FillEventLog(items);
    }
    void AddBreakawayPressureValuePair(xml::Node item, bool blInit) override {
        m_trends.AddBreakawayPressureValuePair(item, blInit);
    }
    void AddLeakageSignalValuePair(xml::Node item, bool blInit) override {
        m_trends.AddLeakageSignalValuePair(item, blInit);
    }
    void AddValveTestValuePair(xml::Node item, bool blInitialize = false) override {
        m_tests.results().AddValveTestValuePair(item, blInitialize);
    }
    void AddPneumaticsTestValuePair(xml::Node item, bool blInitialize = false) override {
        m_tests.results().AddPneumaticsTestValuePair(item, blInitialize);
    }
    void EnableTestKeyFigures(bool blValue) override;
    void UpdateLoadFactorGraph(devices::TrendCurve& arrCurve) override {
        m_trends.UpdateLoadFactorGraph(arrCurve);
    }
    void UpdateDeviationGraph(devices::TrendCurve& arrCurve) override {
        m_trends.UpdateDeviationGraph(arrCurve);
    }
    void UpdateTravelVsTimeGraph(devices::TrendCurve& arrCurve) override {
        m_trends.UpdateTravelVsTimeGraph(arrCurve);
    }
    void UpdateBreakawayPressureGraph(devices::TrendCurve& arrCurve) override {
        m_trends.UpdateBreakawayPressureGraph(arrCurve);
    }
    void UpdateLeakageSignalGraph(devices::TrendCurve& arrCurve) override {
        m_trends.UpdateLeakageSignalGraph(arrCurve);
    }
    void AddEventLogEvent(const std::string& strEvent, const std::string& strCount,
                          const std::string& strTime, std::int16_t intIndex,
                          std::int16_t intSubItem) override {
        m_eventLog.AddEventLogEvent(strEvent, strCount, strTime, intIndex, intSubItem);
    }
    void ClearEventLog(std::int16_t intIndex) override { m_eventLog.ClearEventLog(intIndex); }
    // The trends and the event log.
    [[nodiscard]] monitoring::Trends& trends() noexcept { return m_trends; }
    void ResetTargetMode() override;
    void UpdateFlowModificationGraph(int intSubset) override {
        m_flow.UpdateFlowModificationGraph(intSubset);
    }
    void UpdateFlowModification() { m_flow.UpdateFlowModification(); }
    void UpdateMonitoringGraph(const std::string& strValues,
                               const std::string& strGraphValues) override {
        m_monitoring.UpdateMonitoringGraph(strValues, strGraphValues);
    }
    // The chart layer and the monitoring loop.
    [[nodiscard]] presentation::Graphs& graphs() noexcept { return m_graphs; }
    [[nodiscard]] monitoring::Monitoring& monitoring() noexcept { return m_monitoring; }
    // The performance tests: settings, runs and recorded curves.
    [[nodiscard]] performance::Tests& tests() noexcept { return m_tests; }
    void ChangeImage(const std::string& strTag, const std::string& strContainer,
                     const std::string& strImage) override {
        m_replies.ChangeImage(strTag, strContainer, strImage);
    }
    void ClearChangedSigns(const std::string& strRequestGroup) override {
        m_replies.ClearChangedSigns(strRequestGroup);
    }

    // --- Presentation ---
    void ApplyRole(const std::string& strRole) override { m_toolbar.ApplyRole(strRole); }
    void BuildNavigationTree() override { m_navigation.BuildNavigationTree(); }
    void SelectNode(int intIndex) override { m_navigation.SelectNode(intIndex); }
    void TranslateForm() override { m_captions.TranslateForm(); }

    // --- Change tracking ---
    bool CheckIfValueChanged(const std::string& strName, bool blChecked) override {
        return m_changes.CheckIfValueChanged(strName, blChecked);
    }
    void RestoreOldValues(const std::string& strFrame, const std::string& strTag) override {
        m_changes.RestoreOldValues(strFrame, strTag);
    }
    void RemoveSpecialCaseItem(const std::string& strItem) override {
        m_changes.RemoveSpecialCaseItem(strItem);
    }
    void ChangeTreeIcon(const std::string& str_name, const std::string& str_access) override {
        m_changes.ChangeTreeIcon(str_name, str_access);
    }
    bool CheckValue(form::Control& control) override { return m_changes.CheckValue(control); }
    std::string GetOldValue(const std::string& strTag, const std::string& strFrame) override {
        return m_changes.GetOldValue(strTag, strFrame);
    }
    void SaveOldValues() override { m_changes.SaveOldValues(); }

    // --- Confirmation list and undo ---
    void AddConfirmationRow(const std::string& strName, const std::string& strFrame,
                            const std::string& strId, const std::string& strOldValue,
                            const std::string& strNewValue) override {
        m_confirmation.AddConfirmationRow(strName, strFrame, strId, strOldValue, strNewValue);
    }
    void ClearPageChanges(const std::string& strFrame) override {
        m_undo.ClearPageChanges(strFrame);
    }
    void UndoAllPages() override { m_undo.UndoAllPages(); }

    // --- Data files ---
    bool LoadValuesFromFile() { return m_dataFiles.LoadValuesFromFile(); }
    bool CreateSaveXml() { return m_dataFiles.CreateSaveXml(); }
    // The compare page and its marks on the pages.
    void ResetCompareInfo() { m_compare.ResetCompareInfo(); }
    void ShowPageImages(bool bVisible) { m_compare.ShowPageImages(bVisible); }

    // --- Flow characteristic ---
    void LoadCurveFile(const std::string& strPath) override { m_flow.LoadCurveFile(strPath); }
    void SaveCurveFile(const std::string& strPath) { m_flow.SaveCurveFile(strPath); }

    // --- Members of the control ---
    std::unique_ptr<session::clsTools> m_objTools;
    std::shared_ptr<services::IDtmControl> m_pControl;
    std::shared_ptr<services::IDtmDialogs> m_pDialogs;
    std::shared_ptr<services::IDtmLanguage> m_pLanguage;
    std::shared_ptr<services::IDtmUnits> m_pUnits;
    std::unique_ptr<devices::DeviceClass> m_objDeviceClass;
    int m_buttonPressed = 0;
    std::string strPresetCurveValues;
    // The flow curves: 22 rows by the four subsets of their roles.
    flow::CurveTable m_arrFlowCurves;

private:
    void UserControl_Initialize();
    void ReadRegistrySettings();
    void OpenConnectionStep();
    void LoadParameterDocument();
    void ReadPublishedInfo();
    void FillLanguageList();
    void LoadGuiInitDocument();
    void CreateDeviceClass();
    void ShowDataSetLock(bool blLocked);
    void OnFormEvent(form::FormEvent& event);
    void Trace(session::TraceKind kind, const std::string& strContent);

    // Runs a handler body; a failure is shown under the handler's name and
    // the run goes on. Returns False when the body failed.
    bool Guard(const char* strHandler, const std::function<void()>& body);
    void ShowFailure(const char* strHandler, const std::string& strReason);

    std::unique_ptr<form::Form> m_form;
    ControlPlatform m_platform;
    // The handlers of the pages' events, added by each subsystem.
    form::EventHandlers m_handlers;
    std::shared_ptr<services::IDtmAddressing> m_pAddressing;
    xml::Node m_parameterNode;
    std::unique_ptr<xml::SchemaCollection> m_communicationSchemas;
    std::unique_ptr<xml::SchemaCollection> m_dataFileSchemas;
    std::optional<xml::Document> m_xmlDataFile;
    // The index over the live node and xmlDataFile that answers lookups by name.
    std::optional<data::ParameterDocument> m_parameterDocument;
    SessionData m_session;
    data::ParameterValues m_values{*this};
    data::Requests m_requests{*this, m_values.held()};
    data::ReplyRouting m_replies{*this, m_values.held()};
    data::ChangeTracking m_changes{*this};
    data::Uploads m_uploads{*this};
    data::PageHandlers m_pageHandlers{*this};
    data::FamilyPageEvents m_familyPageEvents{*this};
    datasets::Confirmation m_confirmation{*this};
    datasets::Undo m_undo{*this};
    datasets::SafeSave m_safeSave;
    datasets::DataFiles m_dataFiles{*this, m_replies, m_safeSave};
    flow::FlowModification m_flow{*this, m_arrFlowCurves, strPresetCurveValues};
    devices::Units m_units{*this};
    devices::StatusTree m_statusTree{*this};
    presentation::NavigationTree m_navigation{*this};
    datasets::ComparePage m_compare{*this, m_dataFiles,
                                    [this](const std::string& strKey) { m_navigation.NodeClick(strKey); }};
    presentation::Toolbar m_toolbar{*this, m_navigation};
    presentation::Captions m_captions{*this, m_values, m_units};
    calibration::Calibrations m_calibrations{*this};
    performance::Tests m_tests{*this, m_calibrations.events()};
    presentation::FilePage m_filePage{*this};
    presentation::Graphs m_graphs{*this};
    monitoring::Monitoring m_monitoring{*this, m_graphs, m_platform.clock};
    monitoring::Trends m_trends{*this};
    monitoring::EventLog m_eventLog{*this};
    std::string m_connectionParameter;
    std::string m_secondText;
    std::string m_sessionData;  // as OpenConnection delivered it
    bool m_dataSetLocked = false;
    bool m_released = false;
};

}  // namespace kt500::host
