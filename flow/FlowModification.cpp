#include "flow/FlowModification.h"

#include "data/PageHandlers.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "flow/CurveArithmetic.h"
#include "flow/CurveFile.h"
#include "flow/PresetCurves.h"
#include "presentation/ConfirmationPage.h"
#include "presentation/FileDialog.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kt500::flow {

namespace {

using form::EventKind;

// The button text colour of the window system (system colour 18).
constexpr std::uint32_t kButtonText = devices::ColorRestored;
constexpr int kSendOnPage = 11;
constexpr int kReloadOnPage = 23;

bool Blank(const std::string& strText) {
    return strText.find_first_not_of(' ') == std::string::npos;
}

}  // namespace

// --- The step machine -------------------------------------------------------

FlowModification::Action FlowModification::ActionOf(FlowStep step, int Index) {
    static constexpr std::array<std::pair<std::pair<FlowStep, int>, Action>, 5> kTable{{
        {{FlowStep::Installed, kNext}, Action::ToDesired},
        {{FlowStep::Desired, kNext}, Action::ToResult},
        {{FlowStep::Result, kBack}, Action::BackToDesired},
        {{FlowStep::Desired, kBack}, Action::BackToInstalled},
        {{FlowStep::Installed, kBack}, Action::End},
    }};
    for (const auto& [when, action] : kTable) {
        if (when.first == step && when.second == Index) {
            return action;
        }
    }
    return Action::None;
}

void FlowModification::cmdFlowModification_Click(int Index) {
    if (!InputIsValid()) {
        return;
    }
    switch (Index) {
        case kStart:
            Start();
            return;
        case kLoad:
            presentation::ShowFileDialog(m_control, "openFile", presentation::OpenFileType::Curve,
                                         "*.chr");
            return;
        case kNext:
            if (!ValidateCurve()) {
                m_control.ShowMsg(m_control.Translate("flowModification"),
                                  m_control.Translate("curveNotRising"));
                return;
            }
            Run(ActionOf(Step(), Index));
            return;
        case kBack:
            Run(ActionOf(Step(), Index));
            return;
        case kCancel:
            Cancel();
            return;
        case kApply:
            Apply();
            return;
        default:
            return;
    }
}

void FlowModification::Run(Action action) {
    switch (action) {
        case Action::Start:
            Start();
            break;
        case Action::ToDesired:
            ToDesired();
            break;
        case Action::ToResult:
            ToResult();
            break;
        case Action::BackToDesired:
            BackToDesired();
            break;
        case Action::BackToInstalled:
            BackToInstalled();
            break;
        case Action::End:
            Cancel();
            Enable("cmdReload", kReloadOnPage, true);
            break;
        case Action::None:
            break;
    }
}

// --- The actions --------------------------------------------------------------

void FlowModification::Start() {
    session::clsTools& tools = m_control.tools();
    if (!tools.value_saved) {
        m_control.SaveOldValues();
        tools.value_saved = true;
    }
    // The walk rewrites every point box: its result is pending until Apply
    // puts the points in the confirmation list.
    tools.ConfirmFlag = false;
    tools.DesiredFlowCurve.clear();
    tools.InstalledFlowCurve.clear();
    // The list shows no curve while the empty table is drawn, so that the
    // curve names stay empty until the user's choice.
    ShowCurve("");
    ClearFlowModificationTable();
    DrawAllSubsets();
    EnablePoints(true);
    ShowCurve("Linear");
    tools.SelectedCurve = "Linear";
    SetFlowModificationTable(*PresetCurve("Linear"));
    UpdateFlowModificationGraph(kInstalledSubset);
    ShowPrompt("setInstalledFlowCharacteristics");
    SetCommand(kBack, true);
    SetCommand(kNext, true);
    EnableCurveList(true);
    Enable("cmdSend", kSendOnPage, false);
    Enable("cmdReload", kReloadOnPage, false);
    SetCommand(kStart, false);
    SetCommand(kLoad, false);
    SetStep(FlowStep::Installed);
}

void FlowModification::ToDesired() {
    session::clsTools& tools = m_control.tools();
    ShowPrompt("setDesiredFlowCharacteristics");
    if (!tools.DesiredFlowCurve.empty()) {
        ShowCurve(tools.DesiredFlowCurve);
        SetFlowModificationTable(kDesiredSubset);
    } else {
        tools.DesiredFlowCurve = "Linear";
        tools.SelectedCurve = "Linear";
        ShowCurve("Linear");
        SetFlowModificationTable(*PresetCurve("Linear"));
    }
    UpdateFlowModificationGraph(kDesiredSubset);
    SetStep(FlowStep::Desired);
}

void FlowModification::ToResult() {
    SetStep(FlowStep::Result);
    const ModifiedCurve curve = CalculateModifiedCurve(m_arrFlowCurves, Page().pointCount);
    m_strPresetCurveValues = curve.text;
    SetFlowModificationTable(curve.rows);
    UpdateFlowModificationGraph(kSignalModificationSubset);
    SetCommand(kNext, false);
    ShowResultControls();
}

void FlowModification::ShowResultControls() {
    ShowPrompt("newSignalModificationCurve");
    ShowCurve("Custom");
    SetCommand(kApply, !IsObserver());
    SetCommand(kCancel, true);
}

void FlowModification::BackToDesired() {
    SetFlowModificationTable(kDesiredSubset);
    ShowCurve(m_control.tools().DesiredFlowCurve);
    SetStep(FlowStep::Desired);
    SetCommand(kNext, true);
    SetCommand(kCancel, false);
    SetCommand(kApply, false);
    ShowPrompt("setDesiredFlowCharacteristics");
}

void FlowModification::BackToInstalled() {
    SetFlowModificationTable(kInstalledSubset);
    ShowCurve(m_control.tools().InstalledFlowCurve);
    SetStep(FlowStep::Installed);
    ShowPrompt("setInstalledFlowCharacteristics");
}

void FlowModification::Cancel() {
    ClearFlowModificationTable();
    SetFlowModificationTable(kSignalModificationSubset);
    UpdateFlowModificationGraph(kSignalModificationSubset);
    SetIdleControls();
    SetStep(FlowStep::Idle);
}

void FlowModification::SetIdleControls() {
    EnablePoints(false);
    ShowCurve("");
    EnableCurveList(false);
    SetCommand(kBack, false);
    SetCommand(kNext, false);
    SetCommand(kStart, true);
    SetCommand(kLoad, true);
    SetCommand(kCancel, false);
    SetCommand(kApply, false);
}

void FlowModification::Apply() {
    if (!ValidateCurve()) {
        m_control.ShowMsg("FlowModification", m_control.Translate("curveNotRising"));
        return;
    }
    session::clsTools& tools = m_control.tools();
    const FlowPage& page = Page();
    form::Form& form = m_control.form();
    const bool blConfirmedBefore = tools.ConfirmFlag;
    // A point differs from the identity when its text is not the point's
    // index times the page's spacing (10 % or 5 % of the input).
    const int spacing = 100 / (page.pointCount - 1);
    bool blLinear = true;
    for (int point = 0; point < page.pointCount; ++point) {
        form::Control& box = form.control(page.points, point);
        if (!blConfirmedBefore) {
            const std::string strOld = m_control.GetOldValue(box.tag(), tools.CurrentFrame);
            m_control.AddConfirmationRow(box.tag(), tools.CurrentFrame, "", strOld, box.text());
        }
        if (box.text() != std::to_string(point * spacing)) {
            blLinear = false;
        }
    }
    tools.ConfirmFlag = true;
    if (form::Control* characterization = form.find(page.points, kCharacterizationElement)) {
        characterization->setText(blLinear ? "0" : "1");
    }
    devices::DeviceClass& device = m_control.deviceClass();
    if (page.classKeepsProgress) {
        device.setFlowModCurveLinear(blLinear);
    }
    SetStep(FlowStep::Idle);
    ClearFlowModificationTable();
    DrawAllSubsets();
    for (int row = 0; row < kUsedRows; ++row) {
        m_arrFlowCurves.at(row, kSignalModificationSubset) = m_arrFlowCurves.at(row, kWorkingSubset);
    }
    SetFlowModificationTable(kSignalModificationSubset);
    UpdateFlowModificationGraph(kSignalModificationSubset);
    SetIdleControls();
    if (blConfirmedBefore) {
        // The user lands on the send confirmation, as with the toolbar's send.
        presentation::ShowConfirmationPage(m_control);
    }
}

bool FlowModification::InputIsValid() {
    const FlowPage& page = Page();
    const auto refuse = [this] {
        m_control.ShowMsg(m_control.Translate("valueCheck"), m_control.Translate("invalidValue"));
        return false;
    };
    for (int point = 0; point < page.pointCount; ++point) {
        const std::string text = PointText(point);
        if (Blank(text)) {
            continue;
        }
        if (!devices::IsNum(text)) {
            return refuse();
        }
        if ((point == 0 && PointValue(text) < 0.0F) ||
            (point == page.pointCount - 1 && PointValue(text) > 100.0F)) {
            return refuse();
        }
    }
    return true;
}

// --- The curve members --------------------------------------------------------

void FlowModification::SetFlowModificationTable(const CurveRowList& arrCurve) {
    session::clsTools& tools = m_control.tools();
    const FlowPage& page = Page();
    form::Form& form = m_control.form();
    tools.UpdateCurveFlag = true;
    for (int point = 0; point < page.pointCount; ++point) {
        if (form::Control* box = form.find(page.points, point)) {
            const float value = arrCurve[static_cast<std::size_t>(RowOfPoint(page.pointCount, point))];
            box->setText(devices::fDecimalSep(devices::SingleText(value)));
            box->setForeColor(kButtonText);
        }
    }
    tools.value_saved = false;
    tools.UpdateCurveFlag = false;
}

void FlowModification::SetFlowModificationTable(int intSubset) {
    SetFlowModificationTable(m_arrFlowCurves.column(intSubset));
}

void FlowModification::ClearFlowModificationTable() {
    // Emptying the table is a write of the program: the list keeps its curve.
    session::clsTools& tools = m_control.tools();
    tools.UpdateCurveFlag = true;
    try {
        m_control.deviceClass().ClearFlowModificationTable();
    } catch (...) {
        tools.UpdateCurveFlag = false;
        throw;
    }
    tools.UpdateCurveFlag = false;
}

bool FlowModification::ValidateCurve() {
    const FlowPage& page = Page();
    std::vector<std::string> texts;
    for (int point = 0; point < page.pointCount; ++point) {
        texts.push_back(PointText(point));
    }
    return CurveRises(texts);
}

bool FlowModification::UpdateFlowModificationGraph(int intSubset) {
    session::clsTools& tools = m_control.tools();
    const FlowPage& page = Page();
    form::Form& form = m_control.form();
    form::Control* chartControl = form.find(kFlowChart);
    form::ChartModel* chart = chartControl == nullptr ? nullptr : &chartControl->chart();
    if (chart != nullptr && (chart->subsets() < 3 || chart->points() != page.pointCount)) {
        // The chart's own set-up gives it three subsets over the page's points.
        chart->setSubsets(std::max(chart->subsets(), 3));
        chart->setPoints(page.pointCount);
    }
    const int points = chart != nullptr ? chart->points() : page.pointCount;
    // The box goes to the working copy while the result is on the page, so
    // that the curve from before the procedure stays in subset 0.
    const int tableSubset = (tools.FlowModificationStep >= 3 && intSubset == 0) ? kWorkingSubset
                                                                                 : intSubset;
    for (int point = 0; point < points && point < page.pointCount; ++point) {
        const std::string text = PointText(point);
        if (Blank(text)) {
            if (chart != nullptr) {
                chart->setY(intSubset, point, 0.0);
            }
            continue;
        }
        const float value = PointValue(text);
        if (chart != nullptr) {
            // A zero point is drawn just above the axis, so that it stays visible.
            chart->setY(intSubset, point, value == 0.0F ? 0.1F : value);
        }
        const int row = RowOfPoint(page.pointCount, point);
        m_arrFlowCurves.at(row, tableSubset) = value;
        if (page.pointCount == 11) {
            m_arrFlowCurves.at(row + 1, tableSubset) = 0.0F;
        }
    }
    if (chart != nullptr) {
        chart->setOption("PEnarg1", 0);
        chart->setOption("PEnarg2", 0);
        chart->setOption("PEactions", 2);
        chart->setOption("PEactions", 3);
    }
    if (intSubset == kDesiredSubset) {
        tools.DesiredFlowCurve = CurveListText();
    } else if (intSubset == kInstalledSubset) {
        tools.InstalledFlowCurve = CurveListText();
    }
    return true;
}

void FlowModification::DrawAllSubsets() {
    for (const int subset : {kSignalModificationSubset, kDesiredSubset, kInstalledSubset}) {
        UpdateFlowModificationGraph(subset);
    }
}

void FlowModification::DrawStepSubset() {
    switch (Step()) {
        case FlowStep::Installed:
            UpdateFlowModificationGraph(kInstalledSubset);
            break;
        case FlowStep::Desired:
            UpdateFlowModificationGraph(kDesiredSubset);
            break;
        case FlowStep::Result:
            UpdateFlowModificationGraph(kSignalModificationSubset);
            break;
        case FlowStep::Idle:
            break;
    }
}

// --- Curve files --------------------------------------------------------------

void FlowModification::LoadCurveFile(const std::string& strPath) {
    const auto refuse = [this, &strPath](const std::string& strKey, int intLine) {
        std::string text = m_control.Translate("fileOpenFailed") + " " + strPath;
        if (!strKey.empty()) {
            text += ": " + m_control.Translate(strKey);
        }
        if (intLine > 0) {
            text += " (" + std::to_string(intLine) + ")";
        }
        throw std::runtime_error(text);
    };
    std::error_code folder;
    std::ifstream file(strPath, std::ios::binary);
    if (!file || std::filesystem::is_directory(strPath, folder)) {
        refuse("", 0);
    }
    std::string bytes(kCurveFileMaxBytes + 1, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (file.bad()) {
        refuse("", 0);
    }
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    const CurveFileRead read = ReadCurveFile(bytes);
    if (!read.ok) {
        refuse(read.error.key, read.error.line);
    }

    // Everything is computed before the page changes: a curve that cannot
    // be inverted leaves the page and the table as they were.
    const FlowPage& page = Page();
    CurveTable curves = m_arrFlowCurves;
    FillFromCurveFile(curves, read.chr);
    ModifiedCurve inverse;
    try {
        inverse = CalculateModifiedCurve(curves, page.pointCount);
    } catch (const std::domain_error&) {
        refuse("curveNotRising", 0);
    }
    std::istringstream words(inverse.text);
    const CurveRowList& linear = *PresetCurve("Linear");
    for (int row = 0; row < kUsedRows; ++row) {
        std::string word;
        words >> word;
        curves.at(row, kInstalledSubset) = word.empty() ? 0.0F : PointValue(word);
        curves.at(row, kDesiredSubset) = linear[static_cast<std::size_t>(row)];
    }

    session::clsTools& tools = m_control.tools();
    if (!tools.value_saved) {
        m_control.SaveOldValues();
        tools.value_saved = true;
    }
    // As after a walk of the steps, the file's curve rewrites every point
    // box: its result is pending until Apply lists the points.
    tools.ConfirmFlag = false;
    m_arrFlowCurves = curves;
    m_strPresetCurveValues = inverse.text;
    SetStep(FlowStep::Result);
    for (const int subset : {kInstalledSubset, kDesiredSubset, kSignalModificationSubset}) {
        SetFlowModificationTable(subset);
        UpdateFlowModificationGraph(subset);
    }
    tools.DesiredFlowCurve = "Linear";
    tools.InstalledFlowCurve = "Kurvant";
    // The controls of step 3, reached without the steps before it.
    SetCommand(kBack, true);
    SetCommand(kStart, false);
    EnablePoints(true);
    EnableCurveList(true);
    ShowResultControls();
}

void FlowModification::SaveCurveFile(const std::string& strPath) {
    const std::string text = CurveFileText(m_arrFlowCurves.column(kSignalModificationSubset));
    const std::filesystem::path target(strPath);
    std::filesystem::path temporary = target;
    temporary += ".part";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file << text;
        file.flush();
        if (!file) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            throw std::runtime_error(m_control.Translate("fileOpenFailed") + " " + strPath);
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, target, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        throw std::runtime_error(m_control.Translate("fileOpenFailed") + " " + strPath);
    }
}

// --- Events -------------------------------------------------------------------

void FlowModification::comFlowModification_Click() {
    if (m_blShowingCurve) {
        return;
    }
    session::clsTools& tools = m_control.tools();
    tools.SelectedCurve = CurveListText();
    if (const CurveRowList* preset = PresetCurve(tools.SelectedCurve)) {
        SetFlowModificationTable(*preset);
    } else if (tools.SelectedCurve == "Custom") {
        ClearFlowModificationTable();
    }
    DrawStepSubset();
}

void FlowModification::txtFlowModification_Change(form::Control& text) {
    const FlowPage& page = Page();
    if (text.index() >= page.pointCount) {
        return;
    }
    if (!m_control.tools().UpdateCurveFlag) {
        ShowCurve("Custom");
    }
    const std::array<std::string_view, 1> marks{page.mark};
    data::PageHandlers(m_control).TextBox_Change(text, marks);
}

void FlowModification::txtFlowModification_LostFocus(form::Control& text) {
    const FlowPage& page = Page();
    if (text.index() >= page.pointCount) {
        return;
    }
    text.setText(devices::fDecimalSep(text.text()));
    if (!m_control.CheckValue(text)) {
        return;
    }
    for (int point = 0; point < page.pointCount; ++point) {
        if (!devices::IsNum(PointText(point))) {
            return;
        }
    }
    DrawStepSubset();
    if (Step() == FlowStep::Result) {
        // Editing the result recalculates the desired curve behind it.
        SetFlowModificationTable(CalculateDesiredCurve(m_arrFlowCurves, page.pointCount));
        UpdateFlowModificationGraph(kDesiredSubset);
        SetFlowModificationTable(kWorkingSubset);
    }
}

void FlowModification::chkFlowModification_Click() {
    form::Form& form = m_control.form();
    form::Control* check = form.find("chkFlowModification");
    form::Control* flowChart = form.find(kFlowChart);
    form::Control* inputChart = form.find("pesgoInputSignalVsTravel");
    if (check == nullptr) {
        return;
    }
    const bool blFlowCurves = check->value() == 1;
    if (!blFlowCurves) {
        m_control.deviceClass().UpdateInputSignalVsTravelGraph(
            m_arrFlowCurves.column(kSignalModificationSubset));
    }
    if (flowChart != nullptr) {
        flowChart->setVisible(blFlowCurves);
    }
    if (inputChart != nullptr) {
        inputChart->setVisible(!blFlowCurves);
    }
}

void FlowModification::addHandlers(form::EventHandlers& handlers) {
    const form::Form& form = m_control.form();
    for (const std::string prefix : {"HA", "PA"}) {
        const std::string commands = "cmd" + prefix + "FlowModification";
        const std::string points = "txt" + prefix + "FlowModification";
        if (form.findArray(commands) != nullptr) {
            handlers.add(commands, EventKind::Click, [this](form::FormEvent& event) {
                cmdFlowModification_Click(event.control->index());
            });
        }
        if (form.findArray(points) != nullptr) {
            handlers.add(points, EventKind::KeyPress, [this](form::FormEvent& event) {
                data::PageHandlers(m_control).TextBox_KeyPress(*event.control);
            });
            handlers.add(points, EventKind::Change,
                         [this](form::FormEvent& event) { txtFlowModification_Change(*event.control); });
            handlers.add(points, EventKind::LostFocus, [this](form::FormEvent& event) {
                txtFlowModification_LostFocus(*event.control);
            });
        }
    }
    if (form.findArray("comFlowModification") != nullptr) {
        handlers.add("comFlowModification", EventKind::Click,
                     [this](form::FormEvent&) { comFlowModification_Click(); });
    }
    if (form.find("chkFlowModification") != nullptr) {
        handlers.add("chkFlowModification", EventKind::Click,
                     [this](form::FormEvent&) { chkFlowModification_Click(); });
    }
}

void FlowModification::PlaceFlowControls() {
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string prefix = device.DevicePrefix();
    if (prefix != "HA" && prefix != "PA") {
        return;
    }
    form::Form& form = m_control.form();
    const form::ControlArray* frames = form.findArray(device.FrameArrayName());
    if (frames == nullptr) {
        return;
    }
    form::Control* page = nullptr;
    for (const int index : frames->indices()) {
        form::Control* frame = frames->find(index);
        if (frame != nullptr && frame->tag() == prefix + "flowModification") {
            page = frame;
            break;
        }
    }
    if (page == nullptr) {
        return;
    }
    for (form::Control* shared : {form.find("comFlowModification", Page().curveList),
                                  form.find("chkFlowModification"),
                                  form.find("cmdReload", kReloadOnPage)}) {
        if (shared != nullptr) {
            form.setContainer(*shared, page);
        }
    }
}

// --- Page access --------------------------------------------------------------

const FlowPage& FlowModification::Page() {
    const devices::DeviceClass& device = m_control.deviceClass();
    std::string prefix = device.DevicePrefix();
    const int points = device.ModificationPoints();
    const int curveList = device.FlowModificationIndex();
    if (!m_page || prefix != m_pagePrefix || points != m_page->pointCount ||
        curveList != m_page->curveList) {
        m_page = FlowPageOf(prefix, points, curveList);
        m_pagePrefix = std::move(prefix);
    }
    return *m_page;
}

FlowStep FlowModification::Step() {
    const std::int16_t step = m_control.tools().FlowModificationStep;
    return step >= 0 && step <= 3 ? static_cast<FlowStep>(step) : FlowStep::Idle;
}

void FlowModification::SetStep(FlowStep step) {
    const auto value = static_cast<std::int16_t>(step);
    m_control.tools().FlowModificationStep = value;
    if (Page().classKeepsProgress) {
        m_control.deviceClass().setFlowModProgress(value);
    }
}

void FlowModification::ShowPrompt(const std::string& strKey) {
    const FlowPage& page = Page();
    if (form::Control* label = m_control.form().find(page.label, page.labelElement)) {
        label->setCaption(m_control.Translate(strKey));
        label->setTag(strKey);
    }
}

void FlowModification::Enable(const std::string& strName, int Index, bool blEnabled) {
    if (form::Control* control = m_control.form().find(strName, Index)) {
        control->setEnabled(blEnabled);
    }
}

void FlowModification::SetCommand(int Index, bool blEnabled) {
    Enable(Page().commands, Index, blEnabled);
}

void FlowModification::EnablePoints(bool blEnabled) {
    const FlowPage& page = Page();
    for (int point = 0; point < page.pointCount; ++point) {
        Enable(page.points, point, blEnabled);
    }
}

void FlowModification::ShowCurve(const std::string& strName) {
    form::Control* list = m_control.form().find("comFlowModification", Page().curveList);
    if (list == nullptr) {
        return;
    }
    int entry = -1;
    for (int item = 0; item < list->listCount(); ++item) {
        if (list->list(item) == strName) {
            entry = item;
            break;
        }
    }
    if (strName.empty()) {
        entry = -1;
    }
    m_blShowingCurve = true;
    try {
        list->setListIndex(entry);
    } catch (...) {
        m_blShowingCurve = false;
        throw;
    }
    m_blShowingCurve = false;
}

void FlowModification::EnableCurveList(bool blEnabled) {
    Enable("comFlowModification", Page().curveList, blEnabled);
}

std::string FlowModification::CurveListText() {
    const form::Control* list = m_control.form().find("comFlowModification", Page().curveList);
    if (list == nullptr || list->listIndex() < 0) {
        return {};
    }
    return list->list(list->listIndex());
}

std::string FlowModification::PointText(int intPoint) {
    const form::Control* box = m_control.form().find(Page().points, intPoint);
    return box == nullptr ? std::string() : box->text();
}

bool FlowModification::IsObserver() {
    return m_control.tools().ActorRole == "observer";
}

}  // namespace kt500::flow
