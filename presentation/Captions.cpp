#include "presentation/Captions.h"

#include "data/PageFields.h"
#include "data/ProgramWrite.h"
#include "datasets/Confirmation.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "presentation/Graphs.h"

#include <string>
#include <string_view>

namespace kt500::presentation {

namespace {

using form::ControlKind;

constexpr int kToolbarElement = 1;

// A label tagged with a unit's place shows the unit itself; the page tag
// "operationUnit" merely ends in the same letters.
bool ShowsUnit(const std::string& strTag) {
    return strTag.ends_with("Unit") && strTag != "operationUnit";
}

// The key of a control without a caption key: its Tag, for the kinds whose
// tag names their caption; "" when the control keeps its caption.
std::string TagKey(const form::Control& control) {
    const std::string& tag = control.tag();
    if (tag.empty()) {
        return {};
    }
    switch (control.kind()) {
        case ControlKind::Label:
            // A bordered label shows a value, and the time stamp a time.
            if (control.borderStyle() != 0 || ShowsUnit(tag) || control.name() == "lblTimeStamp") {
                return {};
            }
            return tag;
        case ControlKind::CommandButton:
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
            return tag;
        default:
            return {};
    }
}

}  // namespace

void Captions::TranslateForm() {
    // The node texts are new, and the default page is shown again.
    m_control.BuildNavigationTree();
    m_control.BuildStatusTree();
    TranslateColumns("lsvEventLog");
    TranslateColumns("lsvConfirmation");
    TranslateColumns("lsvCompare");
    TranslateEventLogRows();
    TranslateToolbar();
    TranslateStatusItems();
    TranslateControls();
    TranslatePopupItems();
    TranslateTestTypes();
    TranslateConfirmationRows();
    FillMappedCombos();
    TranslateMappedTexts();
    m_units.TranslateParameterList();
    TranslateCharts();
}

void Captions::TranslateColumns(const char* strListView) {
    std::vector<form::Control*> lists = m_control.form().elements(strListView);
    if (lists.empty()) {
        if (form::Control* single = m_control.form().find(strListView)) {
            lists.push_back(single);
        }
    }
    for (form::Control* list : lists) {
        form::ListViewModel& rows = list->listView();
        const std::vector<form::ListColumn>& columns = rows.columns();
        for (std::size_t column = 0; column < columns.size(); ++column) {
            if (!columns[column].captionKey.empty()) {
                rows.setColumnText(static_cast<int>(column) + 1,
                                   m_control.Translate(columns[column].captionKey));
            }
        }
    }
}

void Captions::TranslateEventLogRows() {
    // A row keeps its untranslated event in the tag.
    for (form::Control* list : m_control.form().elements("lsvEventLog")) {
        form::ListViewModel& rows = list->listView();
        for (int row = 1; row <= rows.count(); ++row) {
            if (!rows.row(row).tag.empty()) {
                rows.setText(row, m_control.Translate(rows.row(row).tag));
            }
        }
    }
}

void Captions::TranslateToolbar() {
    form::ToolbarModel& toolbar = m_control.form().control("smuiDTM", kToolbarElement).toolbar();
    // The status items show texts of the session, and have no key.
    for (const form::ToolbarItem& item : toolbar.items()) {
        if (item.captionKey.empty()) {
            continue;
        }
        const std::string& tipKey = item.toolTipKey.empty() ? item.captionKey : item.toolTipKey;
        toolbar.setText(item.key, m_control.Translate(item.captionKey));
        toolbar.setToolTip(item.key, m_control.Translate(tipKey));
    }
}

void Captions::TranslateStatusItems() {
    form::ToolbarModel& toolbar = m_control.form().control("smuiDTM", kToolbarElement).toolbar();
    // An empty text has not been set yet (no session): it stays empty.
    if (!toolbar.item("strDtmStatus").text.empty()) {
        toolbar.setText("strDtmStatus", m_control.Translate(m_control.tools().OnlineConf
                                                                ? "dtmConnected"
                                                                : "dtmDisconnected"));
    }
    // The header status shows the picture's state by name.
    const std::string& state = toolbar.item("imgHeaderStatus").picture;
    if (!toolbar.item("strHeaderStatus").text.empty() && !state.empty()) {
        toolbar.setText("strHeaderStatus", m_control.Translate(state));
    }
}

void Captions::TranslateControls() {
    for (form::Control* control : m_control.form().controls()) {
        if (control->has(form::PropertyId::Caption)) {
            const std::string key =
                control->captionKey().empty() ? TagKey(*control) : control->captionKey();
            if (!key.empty()) {
                control->setCaption(m_control.Translate(key));
            }
        }
        if (!control->toolTipKey().empty() && control->has(form::PropertyId::ToolTipText)) {
            control->setToolTipText(m_control.Translate(control->toolTipKey()));
        }
    }
}

void Captions::TranslatePopupItems() {
    const form::Form& form = m_control.form();
    if (form::Control* maximize = form.find("mnuPopupItem", 0)) {
        maximize->setCaption(m_control.Translate("maximize"));
    }
    if (form::Control* undoZoom = form.find("mnuPopupItem", 1)) {
        undoZoom->setCaption(m_control.Translate("undoZoom"));
    }
}

void Captions::TranslateTestTypes() {
    // Item data 0 is the step test and 1 the hysteresis test on both
    // positioners' pages; the KT540's empty first entry stays empty.
    for (form::Control* list : m_control.form().elements("comTestType")) {
        for (int item = 0; item < list->listCount(); ++item) {
            const std::int32_t test = list->itemData(item);
            if (test == 0 || test == 1) {
                list->setList(item, m_control.Translate(test == 0 ? "stepTest" : "hysteresisTest"));
            }
        }
    }
}

void Captions::TranslateConfirmationRows() {
    form::Control* list = m_control.form().find("lsvConfirmation");
    if (list == nullptr) {
        return;
    }
    form::ListViewModel& rows = list->listView();
    for (int row = 1; row <= rows.count(); ++row) {
        const std::string name = rows.subItem(row, datasets::kNameColumn);
        if (!name.empty()) {
            rows.setText(row, m_control.Translate(name));
        }
    }
}

void Captions::TranslateMappedTexts() {
    const std::string& frame = m_control.tools().CurrentFrame;
    form::Form& form = m_control.form();
    const form::Control* page =
        data::FindPage(form, m_control.deviceClass().FrameArrayName(), frame);
    if (page == nullptr) {
        return;
    }
    const data::ProgramWrite write(m_control.tools());
    for (form::Control* field : data::SnapshotFields(form, *page)) {
        if (field->kind() != ControlKind::TextBox || field->tag().empty()) {
            continue;
        }
        const std::string value = m_control.GetOldValue(field->tag(), frame);
        if (devices::IsNum(value)) {
            continue;
        }
        const std::string mapping = m_values.MappedName(field->tag(), value);
        if (!mapping.empty()) {
            field->setText(m_control.Translate(mapping));
        }
    }
}

void Captions::TranslateCharts() {
    const auto translate = [this](const std::string& key) { return m_control.Translate(key); };
    for (form::Control* control : m_control.form().controls()) {
        if (control->kind() == ControlKind::Chart) {
            Graphs::TranslateChart(control->chart(), translate);
        }
    }
}

std::optional<std::int32_t> Captions::ChosenLanguage() const {
    const form::Control* list = m_control.form().find("comSelectLanguage");
    if (list == nullptr || list->listIndex() < 0) {
        return std::nullopt;
    }
    return list->itemData(list->listIndex());
}

void Captions::cmdTranslate_Click() {
    const std::optional<std::int32_t> chosen = ChosenLanguage();
    if (!chosen) {
        m_control.ShowMsg(m_control.Translate("language"), m_control.Translate("selectLanguage"));
        return;
    }
    session::clsTools& tools = m_control.tools();
    const std::string language = std::to_string(*chosen);
    if (language == tools.Language) {
        return;
    }
    tools.Language = language;
    tools.FrameLanguage = language;
    TranslateForm();
    if (form::Control* apply = m_control.form().find("cmdTranslate")) {
        apply->setEnabled(false);
    }
}

void Captions::comSelectLanguage_Click() {
    const std::optional<std::int32_t> chosen = ChosenLanguage();
    if (form::Control* apply = m_control.form().find("cmdTranslate")) {
        apply->setEnabled(chosen && std::to_string(*chosen) != m_control.tools().Language);
    }
}

void Captions::cmdSettingsOK_Click() {
    session::clsTools& tools = m_control.tools();
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string page = data::NodeOfFrame(tools.CurrentFrame, device.DevicePrefix());
    device.HideFrames();
    device.ShowFrame(page);
}

void Captions::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("cmdTranslate", EventKind::Click,
                 [this](form::FormEvent&) { cmdTranslate_Click(); });
    handlers.add("comSelectLanguage", EventKind::Click,
                 [this](form::FormEvent&) { comSelectLanguage_Click(); });
    handlers.add("cmdSettingsOK", EventKind::Click,
                 [this](form::FormEvent&) { cmdSettingsOK_Click(); });
}

}  // namespace kt500::presentation
