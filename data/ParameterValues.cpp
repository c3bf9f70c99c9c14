#include "data/ParameterValues.h"

#include "data/DeviceScale.h"
#include "data/PageFields.h"
#include "data/ParameterDocument.h"
#include "data/ProgramWrite.h"
#include "data/Uploads.h"
#include "devices/TestIntervals.h"
#include "data/ValueText.h"
#include "devices/DeviceClass.h"
#include "devices/DeviceDateFields.h"
#include "devices/Encodings.h"
#include "xml/XPath.h"

#include <QDate>
#include <QLocale>
#include <QString>
#include <QTime>

#include <array>
#include <optional>
#include <stdexcept>
#include <vector>

namespace kt500::data {

namespace {

using form::ControlKind;

const xml::Namespaces& Prefixes() {
    static const xml::Namespaces prefixes =
        xml::Namespaces::fromSelection(ParameterDocument::SelectionNamespaces);
    return prefixes;
}

std::string trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

// The groups whose values are histories or the event log: they fill their
// own lists, not page fields.
bool IsHistoryGroup(std::string_view strGroup) {
    static constexpr std::array<std::string_view, 7> groups{"breakawayPressureTrend",
                                                            "leakageSignalTrend",
                                                            "loadFactorTrend",
                                                            "travelDeviation",
                                                            "loadFactor",
                                                            "travelVsTime",
                                                            "eventLog"};
    for (const std::string_view group : groups) {
        if (group == strGroup) {
            return true;
        }
    }
    return false;
}

// The PL500 values that carry a number and a unit in one text and are shown
// in several fields.
// Where the two-part values of the test schedule go: an interval to a
// count field, a unit selector and a switch; a time to three labels.
struct TwoPartFields {
    std::string_view name;
    bool interval;
    int first;   // txtPLParams count, or the lblPLParams days label
    int second;  // comPLParams unit selector, or the hours label
    int third;   // comPLParams switch, or the minutes label
};

constexpr TwoPartFields kTwoPartValues[] = {
    {"valveTestInterval", true, 19, 14, 13},
    {"valveTestNextTestTime", false, 27, 28, 29},
    {"pneumaticsTestInterval", true, 23, 11, 12},
    {"pneumaticsTestNextTestTime", false, 30, 31, 32},
};

const TwoPartFields* TwoPartValue(std::string_view strName) {
    for (const TwoPartFields& fields : kTwoPartValues) {
        if (fields.name == strName) {
            return &fields;
        }
    }
    return nullptr;
}

// Puts the parts on the fields that are on the form; a selector whose entry
// changes runs its change handler.
void PutTwoPartValue(form::Form& form, const TwoPartFields& fields, const std::string& strValue) {
    const auto setCaption = [&](int index, const std::string& text) {
        if (form::Control* label = form.find("lblPLParams", index)) {
            label->setCaption(text);
        }
    };
    const auto select = [&](int index, int entry) {
        if (form::Control* selector = form.find("comPLParams", index)) {
            selector->setListIndex(entry);
            form.raiseChange(*selector);
        }
    };
    if (!fields.interval) {
        const devices::TimeParts parts = devices::SplitTestTime(strValue);
        setCaption(fields.first, parts.days);
        setCaption(fields.second, parts.hours);
        setCaption(fields.third, parts.minutes);
        return;
    }
    const devices::IntervalParts parts = devices::SplitTestInterval(strValue);
    if (form::Control* count = form.find("txtPLParams", fields.first)) {
        count->setText(parts.count);
    }
    select(fields.second, parts.unitIndex);
    select(fields.third, parts.switchIndex);
}

// Where the class keeps the device date; KT540 devices have none.
form::Control* FindElement(const form::Form& form, devices::PageElement element) {
    return form.find(element.array, element.index);
}

// A list of numbers 1..intCount whose item data is the zero-based index.
void FillNumberList(form::Control& list, int intCount) {
    list.clear();
    for (int number = 1; number <= intCount; ++number) {
        list.addItem(std::to_string(number));
        list.setItemData(list.newIndex(), number - 1);
    }
}

std::uint32_t ColourOf(std::int16_t intValueSynchronised) {
    return intValueSynchronised == 1 ? devices::ColorSynchronised : devices::ColorChanged;
}

QDate ParseStampDate(const QString& text) {
    QDate date = QDate::fromString(text, Qt::ISODate);
    if (!date.isValid()) {
        date = QLocale().toDate(text, QLocale::ShortFormat);
    }
    if (!date.isValid()) {
        date = QDate::fromString(text, QStringLiteral("d.M.yyyy"));
    }
    return date;
}

// The locale's long time without a time zone: the stamp holds none.
QString LongTimeText(const QTime& time) {
    QString format = QLocale().timeFormat(QLocale::LongFormat);
    format.remove(QLatin1Char('t'));
    return QLocale().toString(time, format.trimmed());
}

}  // namespace

std::string ParameterValues::FetchValueByTag(const std::string& strTagName, bool blCaption) {
    // The manufacturer is always the data set's: a page may show another text.
    if (strTagName != "manufacturer") {
        const std::string frameArray = m_control.deviceClass().FrameArrayName();
        for (const form::Control* control : m_control.form().tagged(strTagName)) {
            if (HoldsValue(*control) && LiesOn(*control, frameArray)) {
                return FieldValue(*control, blCaption);
            }
        }
    }
    const xml::Node parameter = m_control.ParameterNodeByName(strTagName);
    if (!parameter) {
        return {};
    }
    std::string value = parameter.attribute("value");
    if (value.empty() && parameter.attribute("type") != "stringVal") {
        return "0";
    }
    return value;
}

void ParameterValues::FillMappedParams() {
    const xml::Document* dataFile = m_control.xmlDataFile();
    if (dataFile == nullptr) {
        return;
    }
    const std::string frameArray = m_control.deviceClass().FrameArrayName();
    form::Form& form = m_control.form();
    // The program writes the lists: their handlers must not take the
    // choice made again for the user's.
    const ProgramWrite write(m_control.tools());
    const xml::XPath query(*dataFile, Prefixes());
    for (const xml::Node& mapped : query.select("data:mappedParams/data:mappedParam")) {
        const std::string name = mapped.attribute("name");
        for (form::Control* control : form.controls()) {
            if (control->kind() != ControlKind::ComboBox || control->tag() != name ||
                !(LiesOn(*control, frameArray) || LiesOn(*control, "fraCommon"))) {
                continue;
            }
            const int chosen = control->listIndex();
            const std::optional<std::int32_t> choice =
                chosen >= 0 ? std::optional(control->itemData(chosen)) : std::nullopt;
            control->clear();
            for (const xml::Node& mapping : query.select("data:mapping", mapped)) {
                control->addItem(m_control.Translate(mapping.attribute("name")));
                control->setItemData(control->newIndex(),
                                     devices::ToInt32(mapping.attribute("value")));
            }
            for (int entry = 0; choice && entry < control->listCount(); ++entry) {
                if (control->itemData(entry) == *choice) {
                    control->setListIndex(entry);
                    break;
                }
            }
        }
    }
}

std::string ParameterValues::MappedName(const std::string& strName, const std::string& strValue) {
    const xml::Document* dataFile = m_control.xmlDataFile();
    if (dataFile == nullptr) {
        return {};
    }
    const xml::XPath query(*dataFile, Prefixes());
    for (const xml::Node& mapped : query.select("data:mappedParams/data:mappedParam")) {
        if (mapped.attribute("name") != strName) {
            continue;
        }
        for (const xml::Node& mapping : query.select("data:mapping", mapped)) {
            if (mapping.attribute("value") == strValue) {
                return mapping.attribute("name");
            }
        }
    }
    return {};
}

void ParameterValues::FillDateFields() {
    const devices::DateFields* fields = m_control.deviceClass().deviceDateFields();
    if (fields == nullptr) {
        return;
    }
    if (form::Control* day = FindElement(m_control.form(), fields->day)) {
        FillNumberList(*day, 31);
    }
    if (form::Control* month = FindElement(m_control.form(), fields->month)) {
        FillNumberList(*month, 12);
    }
}

void ParameterValues::ApplyHistoryValue(const std::string& strGroup, xml::Node parameter) {
    if (strGroup == "breakawayPressureTrend") {
        m_control.AddBreakawayPressureValuePair(parameter, true);
    } else if (strGroup == "leakageSignalTrend") {
        m_control.AddLeakageSignalValuePair(parameter, true);
    } else if (strGroup == "loadFactorTrend" || strGroup == "loadFactor") {
        m_control.AddLoadFactorValuePair(parameter, true);
    } else if (strGroup == "travelDeviation") {
        m_control.AddTravelDeviationValuePair(parameter, true);
    } else if (strGroup == "travelVsTime") {
        m_control.AddTravelVsTimeValuePair(parameter, true);
    } else if (strGroup == "eventLog") {
        m_control.deviceClass().AddEventLogFromDataFile(parameter, true);
    }
}

void ParameterValues::LoadPagesFromDocument() {
    const xml::Document* guiInit = m_control.tools().RavikDTMParameters();
    const xml::Document* dataFile = m_control.xmlDataFile();
    if (guiInit == nullptr || dataFile == nullptr) {
        return;
    }
    // The GUIInit queries start at the document: its element is "dtm".
    const char* nodeQuery = m_control.tools().OnlineConf
                                ? "/dtm/treeView/branch/node[@offline = '1' or @offline = '3']"
                                : "/dtm/treeView/branch/node[@offline = '1']";
    const xml::XPath guiQuery(*guiInit, xml::Namespaces{});

    for (const xml::Node& node : guiQuery.select(nodeQuery)) {
        const std::string page = node.attribute("name");
        const xml::Node group = m_control.RequestGroupByName(page);
        if (!group) {
            continue;
        }
        std::string state = "read";
        bool allValuesEmpty = true;
        // The group's children in the validated data file: no query needed.
        const std::vector<xml::Node> includedParams = group.childElements("includedParam");
        for (const xml::Node& included : includedParams) {
            const std::string name = included.attribute("name");
            const xml::Node parameter = m_control.ParameterNodeByName(name);
            if (!parameter) {
                continue;
            }
            const std::string value = parameter.attribute("value");
            const std::string type = parameter.attribute("type");
            const std::int16_t synchronised = devices::ToInt16(parameter.attribute("synchronised"));
            if (!value.empty()) {
                allValuesEmpty = false;
            }
            // The histories and the event log fill their own lists.
            if (IsHistoryGroup(page)) {
                if (!value.empty() || type == "stringVal") {
                    ApplyHistoryValue(page, parameter);
                }
            } else if (!value.empty() || type == "stringVal") {
                m_control.SetItemValueToGUI({}, name, value, parameter.attribute("unit"),
                                            synchronised);
            }
            // A changed value marks a read page; an error stays.
            if (synchronised == 0 && state == "read") {
                state = "changed";
            } else if (synchronised == 2) {
                state = "error";
            }
        }
        UpdateGroupTimeStamp(page);
        // The flow curves and their chart follow the points just shown.
        if (page == "flowModification") {
            m_control.UpdateFlowModificationGraph(0);
        }
        if (allValuesEmpty && state == "changed") {
            state = "notRead";
        }
        // A page with nothing to read (a reset, a calibration, the results of
        // a test not run) gets no "read" tick from the data set: only a
        // change or an error on it shows.
        const bool nothingToRead =
            includedParams.empty() ||
            NothingToUploadOn(m_control.deviceClass().DevicePrefix() + page);
        if (nothingToRead && state == "read") {
            continue;
        }
        m_control.ChangeTreeIcon(page, state);
    }
}

void ParameterValues::SetItemValueToGUI(xml::Node nodeObj, const std::string& strOfflineName,
                                        const std::string& strOfflineValue,
                                        const std::string& strOfflineUnit,
                                        std::int16_t intValueSynchronised) {
    const bool fromReply = trimmed(strOfflineName).empty();
    std::string name = strOfflineName;
    std::string value = strOfflineValue;
    std::string unit = strOfflineUnit;
    if (fromReply) {
        name = nodeObj.attribute("name");
        unit = nodeObj.attribute("unit");
        value = nodeObj.firstChildElement().text();
        intValueSynchronised = 1;
    }
    if (const TwoPartFields* twoPart = TwoPartValue(name)) {
        PutTwoPartValue(m_control.form(), *twoPart, value);
    }
    if (name.empty()) {
        return;
    }
    const xml::Node parameter = m_control.ParameterNodeByName(name);
    if (!parameter) {
        return;
    }

    devices::DeviceClass& deviceClass = m_control.deviceClass();
    session::clsTools& tools = m_control.tools();
    if (fromReply && !tools.ImportFromFile) {
        m_held.hold(name, value, unit);
    }
    std::string type = parameter.attribute("type");
    int decimals = 0;
    const std::string decimalsText = parameter.attribute("decimals");
    if (name != "valveTestVal00" && !decimalsText.empty()) {
        decimals = devices::ToInt16(decimalsText);
    }
    // The decimals are the device's: a value the page shows in another
    // scale (seconds of milliseconds), from the device, the data set or a
    // data file, keeps the digits the device holds.
    decimals = PageDecimals(DeviceScale(deviceClass, name), decimals);
    if (!tools.ImportFromFile) {
        std::string formatted = deviceClass.FormatValues(name, value, "read");
        if (!formatted.empty()) {
            value = std::move(formatted);
        }
    } else if (devices::IsSerialNumber(name) && type == "integerVal" &&
               !trimmed(value).empty()) {
        // A data file holds the serial number packed, as the device does.
        value = devices::DecodeSerNro(devices::ToInt32(value));
    }
    // A value that comes in another unit than the page shows is converted
    // whole and then rounded once: rounded first to the page's decimals in
    // the device's unit, 102.4 psi held as 7.0602317 bar would come back as
    // 7.1 bar, shown as 103.0 psi.
    const std::string pageUnit =
        unit.empty() || unit == "noUnit" ? unit : m_control.FetchUnitName(name);
    bool converted = false;
    if (type == "floatVal" && pageUnit != unit && devices::IsNum(value)) {
        const std::string inPageUnit = m_control.ConvertUnit(value, unit, pageUnit);
        if (!inPageUnit.empty()) {
            value = inPageUnit;
            converted = true;
        }
    }
    if (type == "floatVal") {
        if (trimmed(value).empty()) {
            type = "stringVal";
            value.clear();
        } else {
            value =
                RoundedText(devices::fDecimalSep(value), decimals, devices::MachineDecimalSymbol());
        }
    }
    if (name == "deviceType" || name == "manufacturer") {
        value = m_control.Translate(value);
        if (value.starts_with("Err")) {
            value = "Unknown";
        }
    }

    // The device date arrives as one text, from a reply as from the data set,
    // and goes to its day, month and year fields; the year box never takes it
    // whole.
    if (name == "deviceDate") {
        showDeviceDate(value, intValueSynchronised);
        return;
    }
    putOnPage(name, type, value, !fromReply, intValueSynchronised);

    if (!converted && !unit.empty() && unit != "noUnit" && unit != pageUnit) {
        m_control.ChangeParameterUnit(name, unit, 0, pageUnit);
    }
    // Unless monitoring runs, a reply refreshes the toolbar's second band
    // here; the toolbar's bands come with the toolbar commands.
}

void ParameterValues::putOnPage(const std::string& strName, const std::string& strType,
                                const std::string& strValue, bool blOffline,
                                std::int16_t intValueSynchronised) {
    devices::DeviceClass& deviceClass = m_control.deviceClass();
    form::Form& form = m_control.form();
    const std::string frameArray = deviceClass.FrameArrayName();
    for (form::Control* control : form.tagged(strName)) {
        if (!HoldsValue(*control)) {
            continue;
        }
        form::Control* page = PageOf(*control, frameArray);
        const bool onMonitoring =
            control->kind() == ControlKind::Label && LiesOn(*control, "fraMonitoring");
        if (page == nullptr && !onMonitoring) {
            continue;
        }
        const auto markChanged = [&] {
            if (blOffline) {
                control->setForeColor(ColourOf(intValueSynchronised));
                SetChangedMark(form, deviceClass.ImagePrefix(), strName, *page,
                               intValueSynchronised != 1);
            }
        };
        switch (control->kind()) {
            case ControlKind::TextBox:
                control->setText(strType == "floatVal" ? ShortestText(strValue) : strValue);
                markChanged();
                break;
            case ControlKind::CheckBox:
                if (!deviceClass.MonitoringVariable(strName)) {
                    control->setValue(devices::ToInt16(strValue));
                }
                break;
            case ControlKind::Label:
                control->setCaption(strName == "valveTestVal00" ? valveTestPressure(strValue)
                                                                : strValue);
                break;
            case ControlKind::ComboBox: {
                const double number = devices::Str2Dbl(strValue);
                for (int entry = 0; entry < control->listCount(); ++entry) {
                    if (control->itemData(entry) == number) {
                        control->setListIndex(entry);
                        break;
                    }
                }
                if (strName == "targetMode") {
                    m_control.tools().LastTargetMode =
                        static_cast<std::int16_t>(control->listIndex());
                }
                markChanged();
                break;
            }
            default:
                break;
        }
        return;
    }
}

std::string ParameterValues::valveTestPressure(const std::string& strValue) {
    // Held in "bar"; shown in the unit of its title label.
    const form::Control* title = m_control.form().find("lblPLParamTitle", 109);
    if (title == nullptr) {
        return strValue;
    }
    return m_control.ConvertUnit(strValue, "bar", title->caption());
}

void ParameterValues::showDeviceDate(const std::string& strValue,
                                     std::int16_t intValueSynchronised) {
    if (strValue.empty()) {
        return;
    }
    const std::vector<std::string> parts = devices::SplitDeviceDate(strValue);
    // A text that is not day "." month "." year in numbers leaves the fields
    // as they are: the rest of the reply still reaches its page.
    if (parts.size() < 3 || !devices::IsNum(parts[0]) || !devices::IsNum(parts[1]) ||
        !devices::IsNum(parts[2])) {
        return;
    }
    const std::int16_t day = devices::ToInt16(parts[0]);
    const std::int16_t month = devices::ToInt16(parts[1]);
    const std::int16_t year = devices::ToInt16(parts[2]);

    devices::DeviceClass& deviceClass = m_control.deviceClass();
    form::Form& form = m_control.form();
    // The class puts the date into its fields as far as the page holds them.
    deviceClass.SetDeviceDate(day, month, year);
    const std::string frameArray = deviceClass.FrameArrayName();
    for (form::Control* control : form.controls()) {
        const std::string& tag = control->tag();
        if ((tag == "deviceDate" || tag == "deviceDay" || tag == "deviceMonth") &&
            control->has(form::PropertyId::ForeColor) && LiesOn(*control, frameArray)) {
            control->setForeColor(ColourOf(intValueSynchronised));
        }
    }
}

void ParameterValues::UpdateGroupTimeStamp(const std::string& strGroup) {
    const xml::Node live = m_control.parameterNode();
    if (!live) {
        return;
    }
    const xml::Node group = liveRequestGroup(live, strGroup);
    const std::optional<std::string> stamp =
        group ? group.findAttribute("lastUpdate") : std::nullopt;
    const std::string text = stamp ? trimmed(*stamp) : std::string();
    if (text.empty()) {
        return;
    }
    // The label of the group with the lowest index.
    const std::string tag = m_control.deviceClass().DevicePrefix() + strGroup;
    form::Control* first = nullptr;
    for (form::Control* label : m_control.form().tagged(tag)) {
        if (label->name() == "lblTimeStamp" && (first == nullptr || label->index() < first->index())) {
            first = label;
        }
    }
    if (first != nullptr) {
        first->setCaption(stampCaption(text));
    }
}

const std::string& ParameterValues::stampCaption(const std::string& strStamp) {
    // The groups of one upload mostly close within the same second: the
    // caption of the last stamp is kept, for the locale it was written in.
    const QLocale locale;
    if (m_stamp.text == strStamp && m_stamp.locale == locale) {
        return m_stamp.caption;
    }
    const auto blank = strStamp.find(' ');
    const QString datePart = QString::fromStdString(strStamp.substr(0, blank));
    const QDate date = ParseStampDate(datePart);
    if (!date.isValid()) {
        throw std::invalid_argument("Type mismatch: '" + strStamp + "' is no date");
    }
    QString caption = locale.toString(date, QLocale::ShortFormat);
    if (blank != std::string::npos) {
        const QString timePart = QString::fromStdString(trimmed(strStamp.substr(blank + 1)));
        QTime time = QTime::fromString(timePart, Qt::ISODate);
        if (!time.isValid()) {
            throw std::invalid_argument("Type mismatch: '" + strStamp + "' is no time");
        }
        caption += QLatin1Char(' ') + LongTimeText(time);
    }
    m_stamp.text = strStamp;
    m_stamp.locale = locale;
    m_stamp.caption = caption.toStdString();
    return m_stamp.caption;
}

void ParameterValues::ForgetLiveGroups() {
    m_liveGroupsOf = nullptr;
    m_liveGroups.clear();
}

xml::Node ParameterValues::liveRequestGroup(const xml::Node& live, const std::string& strGroup) {
    if (m_liveGroupsOf != live.raw()) {
        ForgetLiveGroups();
        // The live node is the element "dtm" of the BL's document: the query
        // starts at that document.
        for (const xml::Node& group : xml::XPath(live, Prefixes())
                                          .select("/data:dtm/data:requestGroups/data:requestGroup")) {
            m_liveGroups.emplace(group.attribute("name"), group);
        }
        m_liveGroupsOf = live.raw();
    }
    const auto found = m_liveGroups.find(strGroup);
    return found == m_liveGroups.end() ? xml::Node() : found->second;
}

}  // namespace kt500::data
