// FlowModification: the flow modification page of the HART and PROFIBUS
// positioners. The user states the installed curve (step 1) and the desired
// curve (step 2) and sees the signal modification curve that turns one into
// the other (step 3); apply puts it into the page's values and the
// confirmation list, from where the send writes it to the device. A *.chr
// file read as a signal modification curve jumps straight to step 3.
//
// The curves live in m_arrFlowCurves (owned by the control): the drawing of
// a subset takes the point boxes into the table and onto the chart, and
// writing a subset puts the table into the point boxes.
#pragma once

#include "devices/IUserControl.h"
#include "flow/CurveTable.h"
#include "flow/FlowPage.h"
#include "form/EventHandlers.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kt500::flow {

// FlowModificationStep.
enum class FlowStep : std::int16_t { Idle = 0, Installed = 1, Desired = 2, Result = 3 };

class FlowModification {
public:
    FlowModification(devices::IUserControl& control, CurveTable& arrFlowCurves,
                     std::string& strPresetCurveValues)
        : m_control(control), m_arrFlowCurves(arrFlowCurves),
          m_strPresetCurveValues(strPresetCurveValues) {}

    void addHandlers(form::EventHandlers& handlers);
    // Start-up: the curve list of the family, the chart check box and the
    // page's reload wait in the shared holder until they are moved onto the
    // family's flow modification page. A family without the page keeps them
    // hidden there.
    void PlaceFlowControls();

    // --- The curve members of the page ---
    // Writes rows 0 to 20 of a curve into the point boxes (the family's rows).
    void SetFlowModificationTable(const CurveRowList& arrCurve);
    // A subset of m_arrFlowCurves into the point boxes.
    void SetFlowModificationTable(int intSubset);
    // Empties the point boxes.
    void ClearFlowModificationTable();
    // True when every point but the last holds text and each rises above
    // the one before.
    bool ValidateCurve();

    // The point boxes onto the chart's subset and into m_arrFlowCurves.
    bool UpdateFlowModificationGraph(int intSubset);
    void UpdateFlowModification() { UpdateFlowModificationGraph(0); }

    // Reads a *.chr file as the signal modification curve and shows step 3.
    // A file that cannot be opened or read throws with "fileOpenFailed" and
    // the reason; the page and the curves are then as they were.
    void LoadCurveFile(const std::string& strPath);
    // Writes the signal modification curve (subset 0) as a *.chr file.
    void SaveCurveFile(const std::string& strPath);

    // --- Events ---
    void cmdFlowModification_Click(int Index);
    void comFlowModification_Click();
    void txtFlowModification_Change(form::Control& text);
    void txtFlowModification_LostFocus(form::Control& text);
    void chkFlowModification_Click();

private:
    enum class Action { None, Start, ToDesired, ToResult, BackToDesired, BackToInstalled, End };
    // The step machine of back and next: the step and the element decide.
    [[nodiscard]] static Action ActionOf(FlowStep step, int Index);
    void Run(Action action);

    void Start();
    void ToDesired();
    void ToResult();
    void BackToDesired();
    void BackToInstalled();
    // Cancel: the curve from before the procedure, every command idle.
    void Cancel();
    void Apply();
    // The first check of every command: the point boxes hold numbers from 0 to 100.
    bool InputIsValid();
    // The prompt, the curve list and the commands of step 3, shared by next
    // from step 2 and by a curve file's load.
    void ShowResultControls();
    void SetIdleControls();
    // Draws every subset from the point boxes, and the subset of the step.
    void DrawAllSubsets();
    void DrawStepSubset();

    // The flow page of the device's family, made again only when the
    // family's prefix, points or curve list differ from the last one asked
    // for: a point's change asks for it once per point box.
    [[nodiscard]] const FlowPage& Page();
    [[nodiscard]] FlowStep Step();
    void SetStep(FlowStep step);
    void ShowPrompt(const std::string& strKey);
    void SetCommand(int Index, bool blEnabled);
    // Enables a control of the form when it is there.
    void Enable(const std::string& strName, int Index, bool blEnabled);
    void EnablePoints(bool blEnabled);
    // The curve list shows an entry by its text ("" empties it); the
    // program's choice does not run the list's own click.
    void ShowCurve(const std::string& strName);
    void EnableCurveList(bool blEnabled);
    [[nodiscard]] std::string CurveListText();
    [[nodiscard]] std::string PointText(int intPoint);
    [[nodiscard]] bool IsObserver();

    devices::IUserControl& m_control;
    CurveTable& m_arrFlowCurves;
    std::string& m_strPresetCurveValues;
    bool m_blShowingCurve = false;
    std::optional<FlowPage> m_page;
    std::string m_pagePrefix;
};

}  // namespace kt500::flow
