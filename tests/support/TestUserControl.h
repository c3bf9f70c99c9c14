// A user control for the tests of one subsystem: the real form, session
// state, parameter document, device class and subsystem objects, connected
// to the built-in BL for a device key, but with no start-up sequence of its
// own. A test sets up exactly the state it needs and calls the member under
// test; the members of the other subsystems are the real ones.
#pragma once

#include "calibration/DeviceActionLock.h"
#include "data/ChangeTracking.h"
#include "data/ConfirmationRows.h"
#include "data/ParameterDocument.h"
#include "data/ParameterValues.h"
#include "data/ReplyRouting.h"
#include "data/Requests.h"
#include "data/Uploads.h"
#include "datasets/Confirmation.h"
#include "datasets/Undo.h"
#include "devices/DeviceClass.h"
#include "devices/IUserControl.h"
#include "devices/StatusTree.h"
#include "devices/Units.h"
#include "monitoring/EventLog.h"
#include "monitoring/Trends.h"
#include "presentation/NavigationTree.h"
#include "presentation/Toolbar.h"
#include "services/IQDLGuiEvent.h"
#include "simulator/BuiltInBL.h"
#include "simulator/HeadlessDialogs.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kt500::testing {

// The session of a device key, online or offline, for a role.
[[nodiscard]] inline simulator::SessionOptions SessionOf(
    const std::string& strDeviceKey, bool blOnline = true,
    const std::string& strRole = "maintenance") {
    simulator::SessionOptions options;
    options.deviceKey = strDeviceKey;
    options.online = blOnline;
    options.role = strRole;
    return options;
}

class TestUserControl final : public devices::IUserControl, public services::IQDLGuiEvent {
public:
    // Opens a connection to a built-in BL with these options; the session
    // state takes the device key, role, mode and language from them. The
    // replies the BL sends are kept in replies(), not routed.
    explicit TestUserControl(simulator::SessionOptions options = {});
    ~TestUserControl() override;

    // --- IUserControl ---
    form::Form& form() override { return *m_form; }
    session::clsTools& tools() override { return m_tools; }
    devices::DeviceClass& deviceClass() override { return *m_deviceClass; }
    services::IDtmControl& control() override {
        return controlDouble ? *controlDouble : *m_bl->control();
    }
    services::IDtmDialogs& dialogs() override { return *m_bl->dialogs(); }
    services::IDtmUnits& units() override { return unitsDouble ? *unitsDouble : *m_bl->units(); }
    const xml::SchemaCollection* communicationSchemas() override { return m_schemas.get(); }
    const xml::Document* xmlDataFile() override { return &*m_xmlDataFile; }
    xml::Node parameterNode() override { return m_parameterNode; }
    int& buttonPressed() override { return m_buttonPressed; }
    std::string Translate(const std::string& strKey) override;
    void ShowMsg(const std::string& strHeader, const std::string& strMsg) override;
    xml::Node ParameterNodeByName(std::string_view strName) override {
        return m_document->ParameterNodeByName(strName);
    }
    xml::Node RequestGroupByName(std::string_view strName) override {
        return m_document->RequestGroupByName(strName);
    }
    std::string FetchValueByTag(const std::string& strTagName, bool blCaption) override {
        return values.FetchValueByTag(strTagName, blCaption);
    }
    std::string FetchUnitName(const std::string& strParameter) override {
        return unitPages.FetchUnitName(strParameter);
    }
    bool HasConfirmationRow(std::string_view strParameter) override {
        return data::HasRow(form(), strParameter);
    }
    void SetItemValueToGUI(xml::Node nodeObj, const std::string& strOfflineName,
                           const std::string& strOfflineValue, const std::string& strOfflineUnit,
                           std::int16_t intValueSynchronised) override {
        values.SetItemValueToGUI(nodeObj, strOfflineName, strOfflineValue, strOfflineUnit,
                                 intValueSynchronised);
    }
    std::string ConvertUnit(const std::string& strValue, const std::string& strFromUnit,
                            const std::string& strToUnit) override {
        return unitPages.ConvertUnit(strValue, strFromUnit, strToUnit);
    }
    void ChangeParameterUnit(const std::string& strParameter, const std::string& strOldUnit,
                             int intFrame, const std::string& strNewUnit) override {
        unitPages.ChangeParameterUnit(strParameter, strOldUnit, intFrame, strNewUnit);
    }
    void SendRequest(const std::string& str_frame, const std::string& str_accessType) override {
        if (sendRequestHook) {
            sendRequestHook(str_frame, str_accessType);
            return;
        }
        requests.SendRequest(str_frame, str_accessType);
    }
    void EnableDeviceActions(bool blEnabled) override { actionLock.EnableDeviceActions(blEnabled); }
    void SetProgressBar(const std::string& strRequestGroup, const std::string& strCaption) override {
        uploads.SetProgressBar(strRequestGroup, strCaption);
    }
    void EnableTesting(bool blValue) override {
        calls.push_back("EnableTesting " + std::to_string(blValue));
    }
    void ApplyRole(const std::string& strRole) override { toolbarCommands.ApplyRole(strRole); }
    void EnableUploadTools() override { uploads.EnableUploadTools(); }
    void BuildNavigationTree() override { calls.push_back("BuildNavigationTree"); }
    void SelectNode(int intIndex) override {
        calls.push_back("SelectNode " + std::to_string(intIndex));
    }
    void TranslateForm() override { calls.push_back("TranslateForm"); }
    void RunUploadGroup(const std::string& strGroup) override {
        calls.push_back("RunUploadGroup " + strGroup);
    }
    void cmdReload() override { calls.push_back("cmdReload"); }
    bool privateDialogEnabled() const override { return privateDialog; }
    bool CheckIfValueChanged(const std::string& strName, bool blChecked) override {
        if (confirmationRows) {
            return confirmationRows->count({strName, blChecked}) > 0;
        }
        return changes.CheckIfValueChanged(strName, blChecked);
    }
    void RestoreOldValues(const std::string& strFrame, const std::string& strTag) override {
        if (confirmationRows) {
            calls.push_back("RestoreOldValues " + strFrame + " " + strTag);
            return;
        }
        changes.RestoreOldValues(strFrame, strTag);
    }
    void RemoveSpecialCaseItem(const std::string& strItem) override {
        if (confirmationRows) {
            calls.push_back("RemoveSpecialCaseItem " + strItem);
            return;
        }
        changes.RemoveSpecialCaseItem(strItem);
    }
    void ChangeTreeIcon(const std::string& str_name, const std::string& str_access) override {
        changes.ChangeTreeIcon(str_name, str_access);
    }
    bool CheckValue(form::Control& control) override { return changes.CheckValue(control); }
    std::string GetOldValue(const std::string& strTag, const std::string& strFrame) override {
        return changes.GetOldValue(strTag, strFrame);
    }
    void SaveOldValues() override { changes.SaveOldValues(); }
    void AddConfirmationRow(const std::string& strName, const std::string& strFrame,
                            const std::string& strId, const std::string& strOldValue,
                            const std::string& strNewValue) override {
        record("AddConfirmationRow " + strName + " " + strFrame + " " + strId + " " + strOldValue +
               " " + strNewValue);
        confirmation.AddConfirmationRow(strName, strFrame, strId, strOldValue, strNewValue);
    }
    void ClearPageChanges(const std::string& strFrame) override {
        record("ClearPageChanges " + strFrame);
        undo.ClearPageChanges(strFrame);
    }
    void UndoAllPages() override {
        record("UndoAllPages");
        undo.UndoAllPages();
    }

    // --- Members of other parts: recorded in calls ---
    void SetReadVariables(const std::string& strRequestName, bool IsFinal,
                          const std::string& strAccessType, bool blError) override {
        record("SetReadVariables " + strRequestName + " " + std::to_string(IsFinal) + " " +
               strAccessType + " " + std::to_string(blError));
        replyRouting.SetReadVariables(strRequestName, IsFinal, strAccessType, blError);
    }
    void IncreaseProgress() override {
        record("IncreaseProgress");
        replyRouting.IncreaseProgress();
    }
    void UpdateGroupTimeStamp(const std::string& strGroup) override {
        record("UpdateGroupTimeStamp " + strGroup);
        values.UpdateGroupTimeStamp(strGroup);
    }
    void UpdateLimits() override { record("UpdateLimits"); }
    void CalibrationValueSet(bool blOk) override {
        record("CalibrationValueSet " + std::to_string(blOk));
    }
    void BuildStatusTree() override {
        record("BuildStatusTree");
        statusTree.BuildStatusTree();
    }
    void UpdateStatusTree(const std::vector<xml::Node>& xmlStatusList, xml::Node xmlItem) override {
        record("UpdateStatusTree " + xmlItem.attribute("name"));
        statusTree.UpdateStatusTree(xmlStatusList, xmlItem);
    }
    void UpdateStatusParentNodes() override {
        record("UpdateStatusParentNodes");
        statusTree.UpdateStatusParentNodes();
    }
    void UpdateHeaderStatus() override {
        record("UpdateHeaderStatus");
        statusTree.UpdateHeaderStatus();
    }
    void UnKnownStatus() override {
        record("UnKnownStatus");
        statusTree.UnKnownStatus();
    }
    void AddTravelDeviationValuePair(xml::Node item, bool) override {
        record("AddTravelDeviationValuePair " + item.attribute("name"));
    }
    void AddLoadFactorValuePair(xml::Node item, bool) override {
        record("AddLoadFactorValuePair " + item.attribute("name"));
    }
    void AddTravelVsTimeValuePair(xml::Node item, bool) override {
        record("AddTravelVsTimeValuePair " + item.attribute("name"));
    }
    void AddStepTestValuePair(xml::Node item) override {
        record("AddStepTestValuePair " + item.attribute("name"));
    }
    void AddHysteresisTestValuePair(xml::Node item) override {
        record("AddHysteresisTestValuePair " + item.attribute("name"));
    }
    void FillEventLog(const std::vector<xml::Node>& items) override {
        record("FillEventLog " + std::to_string(items.size()));
    }
    void AddBreakawayPressureValuePair(xml::Node item, bool) override {
        record("AddBreakawayPressureValuePair " + item.attribute("name"));
    }
    void AddLeakageSignalValuePair(xml::Node item, bool) override {
        record("AddLeakageSignalValuePair " + item.attribute("name"));
    }
    void AddValveTestValuePair(xml::Node item, bool = false) override {
        record("AddValveTestValuePair " + item.attribute("name"));
    }
    void AddPneumaticsTestValuePair(xml::Node item, bool = false) override {
        record("AddPneumaticsTestValuePair " + item.attribute("name"));
    }
    void UpdateStepTestGraph(devices::TestCurve&) override { record("UpdateStepTestGraph"); }
    void UpdateHysteresisTestGraph(devices::TestCurve&) override {
        record("UpdateHysteresisTestGraph");
    }
    void UpdateValveTestGraph(devices::TestCurve&) override { record("UpdateValveTestGraph"); }
    void UpdatePneumaticsTestGraph(devices::TestCurve&) override {
        record("UpdatePneumaticsTestGraph");
    }
    void EnableTestKeyFigures(bool blValue) override {
        record("EnableTestKeyFigures " + std::to_string(blValue));
    }
    void ResetTargetMode() override { record("ResetTargetMode"); }
    void UpdateLoadFactorGraph(devices::TrendCurve& arrCurve) override {
        record("UpdateLoadFactorGraph");
        trends.UpdateLoadFactorGraph(arrCurve);
    }
    void UpdateDeviationGraph(devices::TrendCurve& arrCurve) override {
        record("UpdateDeviationGraph");
        trends.UpdateDeviationGraph(arrCurve);
    }
    void UpdateTravelVsTimeGraph(devices::TrendCurve& arrCurve) override {
        record("UpdateTravelVsTimeGraph");
        trends.UpdateTravelVsTimeGraph(arrCurve);
    }
    void UpdateBreakawayPressureGraph(devices::TrendCurve& arrCurve) override {
        record("UpdateBreakawayPressureGraph");
        trends.UpdateBreakawayPressureGraph(arrCurve);
    }
    void UpdateLeakageSignalGraph(devices::TrendCurve& arrCurve) override {
        record("UpdateLeakageSignalGraph");
        trends.UpdateLeakageSignalGraph(arrCurve);
    }
    void AddEventLogEvent(const std::string& strEvent, const std::string& strCount,
                          const std::string& strTime, std::int16_t intIndex,
                          std::int16_t intSubItem) override {
        eventLog.AddEventLogEvent(strEvent, strCount, strTime, intIndex, intSubItem);
    }
    void ClearEventLog(std::int16_t intIndex) override { eventLog.ClearEventLog(intIndex); }
    void UpdateFlowModificationGraph(int intSubset) override {
        record("UpdateFlowModificationGraph " + std::to_string(intSubset));
    }
    void LoadCurveFile(const std::string& strPath) override { record("LoadCurveFile " + strPath); }
    void UpdateMonitoringGraph(const std::string& strValues,
                               const std::string& strGraphValues) override {
        record("UpdateMonitoringGraph " + strValues + " | " + strGraphValues);
    }
    void ChangeImage(const std::string& strTag, const std::string& strContainer,
                     const std::string& strImage) override {
        record("ChangeImage " + strTag + " " + strContainer + " " + strImage);
        replyRouting.ChangeImage(strTag, strContainer, strImage);
    }
    void ClearChangedSigns(const std::string& strRequestGroup) override {
        record("ClearChangedSigns " + strRequestGroup);
        replyRouting.ClearChangedSigns(strRequestGroup);
    }

    // --- IQDLGuiEvent: replies are kept for the test ---
    bool IQDLGuiEvent_UpdateSessionData(const std::string&) override { return true; }
    bool IQDLGuiEvent_CommunicationEvent(const std::string& strReply) override {
        replies.push_back(strReply);
        return true;
    }
    void IQDLGuiEvent_ReadyForAutoAction(bool) override {}
    void IQDLGuiEvent_AutoActionComplete(bool) override {}
    void IQDLGuiEvent_AutoActionStopped(bool) override {}
    void IQDLGuiEvent_OnLockDataSet(const std::string&, const std::string&) override {}
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string&, const std::string&) override {
        return true;
    }
    void IQDLGuiEvent_OnParameterChanged(const std::string&, const std::string&) override {}

    // --- For the tests ---
    simulator::BuiltInBL& bl() { return *m_bl; }
    // Replaces the device class (a recording subclass, say) and connects it.
    void setDeviceClass(std::unique_ptr<devices::DeviceClass> deviceClass) {
        m_deviceClass = std::move(deviceClass);
        m_deviceClass->setObjUserControl(this);
    }
    // When set, SendRequest calls this instead of the request subsystem.
    std::function<void(const std::string& group, const std::string& access)> sendRequestHook;
    // When set, requests go to this double instead of the built-in BL.
    std::shared_ptr<services::IDtmControl> controlDouble;
    // When set, the unit service is this double instead of the built-in BL's.
    std::shared_ptr<services::IDtmUnits> unitsDouble;
    // The messages shown through ShowMsg, as "header: text".
    std::vector<std::string> messages;
    // Calls of the members that this double only records.
    std::vector<std::string> calls;
    void record(std::string call) { calls.push_back(std::move(call)); }
    std::vector<std::string> replies;
    // The session's privateDialogEnabled as this double answers it.
    bool privateDialog = false;
    // The session data message that the BL delivered at the connection.
    std::string sessionData;
    // Scripted change tracking, for tests of a device class's own rules:
    // when set, CheckIfValueChanged answers True for the (name, checked)
    // rows listed here, and RestoreOldValues and RemoveSpecialCaseItem are
    // only recorded in calls.
    std::optional<std::set<std::pair<std::string, bool>>> confirmationRows;
    // Adds a control to a page: kind, name, element, the page's frame
    // (by array and element) and Tag. A control of that name and element
    // that the form already holds is moved to the page and tagged instead.
    form::Control& addField(form::ControlKind kind, const std::string& name, int index,
                            const std::string& frameArray, int frameIndex, const std::string& tag);

    data::ParameterValues values{*this};
    data::Requests requests{*this, values.held()};
    calibration::DeviceActionLock actionLock{*this};
    // The upload chains; RunUploadGroup and cmdReload above only record.
    data::Uploads uploads{*this};
    presentation::NavigationTree navigation{*this};
    presentation::Toolbar toolbarCommands{*this, navigation};
    data::ReplyRouting replyRouting{*this, values.held()};
    data::ChangeTracking changes{*this};
    devices::Units unitPages{*this};
    devices::StatusTree statusTree{*this};
    datasets::Confirmation confirmation{*this};
    datasets::Undo undo{*this};
    // The trends and the event log; the Add* members above only record,
    // the charts and the list are the real ones.
    monitoring::Trends trends{*this};
    monitoring::EventLog eventLog{*this};

private:
    std::unique_ptr<form::Form> m_form;
    session::clsTools m_tools;
    std::unique_ptr<simulator::BuiltInBL> m_bl;
    std::shared_ptr<services::IDtmLanguage> m_language;
    std::unique_ptr<xml::SchemaCollection> m_schemas;
    xml::Node m_parameterNode;
    std::optional<xml::Document> m_xmlDataFile;
    std::optional<data::ParameterDocument> m_document;
    std::unique_ptr<devices::DeviceClass> m_deviceClass;
    int m_buttonPressed = 0;
};

}  // namespace kt500::testing
