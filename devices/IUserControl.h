// IUserControl: the user control as the device classes and the subsystems
// see it (objUserControl). Pages are reached through the form model, the
// session through m_objTools, and everything else through the control's own
// members by name. The control implements this; a member whose subsystem is
// not part of the product yet throws MemberMissing when called, so that the
// caller's handler fails clearly.
#pragma once

#include "devices/TestCurve.h"
#include "devices/TrendCurve.h"
#include "form/Form.h"
#include "session/clsTools.h"
#include "services/IDtmControl.h"
#include "services/IDtmDialogs.h"
#include "services/IDtmUnits.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <string>
#include <string_view>
#include <vector>

namespace kt500::devices {

class DeviceClass;

// Picture colours of a value (BGR, as the pages keep them).
inline constexpr std::uint32_t ColorSynchronised = 0x000000;
inline constexpr std::uint32_t ColorChanged = 0xff0000;
inline constexpr std::uint32_t ColorRefused = 0x0000ff;
inline constexpr std::uint32_t ColorRestored = 0x80000012;

class IUserControl {
public:
    virtual ~IUserControl() = default;

    // --- What the control owns ---
    [[nodiscard]] virtual form::Form& form() = 0;
    // m_objTools; a failure when the session state is released.
    [[nodiscard]] virtual session::clsTools& tools() = 0;
    // m_objDeviceClass; a failure before the device model is known.
    [[nodiscard]] virtual DeviceClass& deviceClass() = 0;
    // The closed services; each a failure when it is not connected.
    [[nodiscard]] virtual services::IDtmControl& control() = 0;
    [[nodiscard]] virtual services::IDtmDialogs& dialogs() = 0;
    [[nodiscard]] virtual services::IDtmUnits& units() = 0;
    // The communication schema cache (may be empty when the file was missing).
    [[nodiscard]] virtual const xml::SchemaCollection* communicationSchemas() = 0;
    // xmlDataFile, the copy with the two namespaces; nothing before Init or
    // when it did not load.
    [[nodiscard]] virtual const xml::Document* xmlDataFile() = 0;
    // The parameter node as the BL gave it, whose attributes hold the values.
    [[nodiscard]] virtual xml::Node parameterNode() = 0;
    // The button of the last message box (6 Yes, 7 No).
    [[nodiscard]] virtual int& buttonPressed() = 0;

    // --- Shared helpers ---
    virtual std::string Translate(const std::string& strKey) = 0;
    virtual void ShowMsg(const std::string& strHeader, const std::string& strMsg) = 0;

    // --- The parameter document ---
    [[nodiscard]] virtual xml::Node ParameterNodeByName(std::string_view strName) = 0;
    // The request group of that name in xmlDataFile, or nothing.
    [[nodiscard]] virtual xml::Node RequestGroupByName(std::string_view strName) = 0;
    virtual std::string FetchValueByTag(const std::string& strTagName, bool blCaption) = 0;
    virtual std::string FetchUnitName(const std::string& strParameter) = 0;
    // Whether the confirmation list holds a row of that parameter: a value
    // the user changed and has not sent yet.
    [[nodiscard]] virtual bool HasConfirmationRow(std::string_view strParameter) = 0;

    // --- Values, units and requests ---
    virtual void SetItemValueToGUI(xml::Node nodeObj, const std::string& strOfflineName,
                                   const std::string& strOfflineValue,
                                   const std::string& strOfflineUnit,
                                   std::int16_t intValueSynchronised) = 0;
    virtual std::string ConvertUnit(const std::string& strValue, const std::string& strFromUnit,
                                    const std::string& strToUnit) = 0;
    virtual void ChangeParameterUnit(const std::string& strParameter, const std::string& strOldUnit,
                                     int intFrame, const std::string& strNewUnit) = 0;
    virtual void SendRequest(const std::string& str_frame, const std::string& str_accessType) = 0;
    virtual void EnableDeviceActions(bool blEnabled) = 0;
    virtual void EnableTesting(bool blValue) = 0;
    // Shows the progress of a group's read with its caption key.
    virtual void SetProgressBar(const std::string& strRequestGroup,
                                const std::string& strCaption) = 0;
    // Reads the pages of an upload group ("uploadAll", "uploadIdentification"...).
    virtual void RunUploadGroup(const std::string& strGroup) = 0;
    // The click of cmdReload element 0: re-reads the current page.
    virtual void cmdReload() = 0;

    // --- Replies ---
    // Closes a request group after its final reply.
    virtual void SetReadVariables(const std::string& strRequestName, bool IsFinal,
                                  const std::string& strAccessType, bool blError) = 0;
    // Advances the progress bar for one reply (or one written item).
    virtual void IncreaseProgress() = 0;
    // The group's time stamp on its page, from the live parameter node.
    virtual void UpdateGroupTimeStamp(const std::string& strGroup) = 0;
    // The alert limits of the trend charts, after the alert settings were read.
    virtual void UpdateLimits() = 0;
    // The reply of a written calibration step.
    virtual void CalibrationValueSet(bool blOk) = 0;

    // --- Device status tree ---
    virtual void BuildStatusTree() = 0;
    virtual void UpdateStatusTree(const std::vector<xml::Node>& xmlStatusList,
                                  xml::Node xmlItem) = 0;
    virtual void UpdateStatusParentNodes() = 0;
    virtual void UpdateHeaderStatus() = 0;
    virtual void UnKnownStatus() = 0;

    // --- Trends, tests, event log and charts (their parts come later) ---
    virtual void AddTravelDeviationValuePair(xml::Node item, bool blInit) = 0;
    virtual void AddLoadFactorValuePair(xml::Node item, bool blInit) = 0;
    virtual void AddTravelVsTimeValuePair(xml::Node item, bool blInit) = 0;
    virtual void AddStepTestValuePair(xml::Node item) = 0;
    virtual void AddHysteresisTestValuePair(xml::Node item) = 0;
    // Draws a test's curve (the step test with its key figures); a device
    // class or the data file loader may hand a stored curve.
    virtual void UpdateStepTestGraph(TestCurve& arrCurve) = 0;
    virtual void UpdateHysteresisTestGraph(TestCurve& arrCurve) = 0;
    virtual void UpdateValveTestGraph(TestCurve& arrCurve) = 0;
    virtual void UpdatePneumaticsTestGraph(TestCurve& arrCurve) = 0;
    // The online fill of the event log from the items of one reply.
    virtual void FillEventLog(const std::vector<xml::Node>& items) = 0;
    // The safety valve controller's trends and tests.
    virtual void AddBreakawayPressureValuePair(xml::Node item, bool blInit) = 0;
    virtual void AddLeakageSignalValuePair(xml::Node item, bool blInit) = 0;
    // blInitialize: the node is a data set's parameter (value and unit in
    // attributes), else an item of a reply.
    virtual void AddValveTestValuePair(xml::Node item, bool blInitialize = false) = 0;
    virtual void AddPneumaticsTestValuePair(xml::Node item, bool blInitialize = false) = 0;
    virtual void EnableTestKeyFigures(bool blValue) = 0;
    // The trend charts from a finished array (the end of Format*XValues);
    // the safety valve controller's two pressure and signal trends refill
    // row 0 of their array with -1.0 after drawing.
    virtual void UpdateLoadFactorGraph(devices::TrendCurve& arrCurve) = 0;
    virtual void UpdateDeviationGraph(devices::TrendCurve& arrCurve) = 0;
    virtual void UpdateTravelVsTimeGraph(devices::TrendCurve& arrCurve) = 0;
    virtual void UpdateBreakawayPressureGraph(devices::TrendCurve& arrCurve) = 0;
    virtual void UpdateLeakageSignalGraph(devices::TrendCurve& arrCurve) = 0;
    // One row of the family's event log list (rows from 1): the event's
    // translation with its key in the tag, the count, the time in sub-item
    // intSubItem; empty arguments leave the row's text as it is.
    virtual void AddEventLogEvent(const std::string& strEvent, const std::string& strCount,
                                  const std::string& strTime, std::int16_t intIndex,
                                  std::int16_t intSubItem) = 0;
    virtual void ClearEventLog(std::int16_t intIndex) = 0;
    // Empties the safety valve controller's target mode in the data set and
    // on its page, once the device has taken it.
    virtual void ResetTargetMode() = 0;
    virtual void UpdateFlowModificationGraph(int intSubset) = 0;
    // Reads a *.chr curve file onto the flow modification page (the file
    // page's confirmation of a curve file); a file it cannot read throws.
    virtual void LoadCurveFile(const std::string& strPath) = 0;
    virtual void UpdateMonitoringGraph(const std::string& strValues,
                                       const std::string& strGraphValues) = 0;

    // --- Presentation ---
    // The upload band for the mode: online "uploadCurrent" and every upload
    // group of the GUIInit document, offline none.
    virtual void EnableUploadTools() = 0;
    // The limits of a role on the toolbar and the page commands.
    virtual void ApplyRole(const std::string& strRole) = 0;
    // Rebuilds treeNavigation from the GUIInit document for the mode.
    virtual void BuildNavigationTree() = 0;
    // Selects the navigation node at a 1-based position and shows its page.
    virtual void SelectNode(int intIndex) = 0;
    // Writes the captions of the current language onto the whole form.
    virtual void TranslateForm() = 0;
    // The session's privateDialogEnabled: whether the control may open
    // windows of its own (the help viewer).
    [[nodiscard]] virtual bool privateDialogEnabled() const = 0;

    // --- Change tracking ---
    virtual bool CheckIfValueChanged(const std::string& strName, bool blChecked) = 0;
    virtual void RestoreOldValues(const std::string& strFrame, const std::string& strTag) = 0;
    virtual void RemoveSpecialCaseItem(const std::string& strItem) = 0;
    virtual void ChangeTreeIcon(const std::string& str_name, const std::string& str_access) = 0;
    // The mark of a field: strImage "error" or "changed".
    virtual void ChangeImage(const std::string& strTag, const std::string& strContainer,
                             const std::string& strImage) = 0;
    // Drops the changed signs of the fields a group has written.
    virtual void ClearChangedSigns(const std::string& strRequestGroup) = 0;
    // Validates an edited text field; True when its value is good.
    virtual bool CheckValue(form::Control& control) = 0;
    // The value of a field in the current page's snapshot.
    virtual std::string GetOldValue(const std::string& strTag, const std::string& strFrame) = 0;
    // Takes the snapshots of the pages the class saves.
    virtual void SaveOldValues() = 0;

    // --- Confirmation list and undo ---
    // A pending change of parameter strName (its internal name; the row
    // shows its translation) on the page strFrame. strId is the row's key
    // in lsvConfirmation (the name when empty): a second edit of the same
    // key updates that row.
    virtual void AddConfirmationRow(const std::string& strName, const std::string& strFrame,
                                    const std::string& strId, const std::string& strOldValue,
                                    const std::string& strNewValue) = 0;
    // Takes a page's rows out of lsvConfirmation, the values back to the document's.
    virtual void ClearPageChanges(const std::string& strFrame) = 0;
    // Takes back the edits of every page that counts for undo.
    virtual void UndoAllPages() = 0;
};

}  // namespace kt500::devices
