#include "datasets/ComparePage.h"

#include "data/PageFields.h"
#include "data/ParameterDocument.h"
#include "datasets/CompareValues.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "xml/XPath.h"

#include <vector>

namespace kt500::datasets {

namespace {

constexpr std::string_view kGroupKey = "group:";

// The saved groups of the data set in its order, with their parameter names.
std::vector<std::pair<std::string, std::vector<std::string>>> SavedGroups(
    devices::IUserControl& control) {
    std::vector<std::pair<std::string, std::vector<std::string>>> groups;
    const xml::Document* dataFile = control.xmlDataFile();
    if (dataFile == nullptr) {
        return groups;
    }
    const xml::XPath query(
        *dataFile, xml::Namespaces::fromSelection(data::ParameterDocument::SelectionNamespaces));
    for (const xml::Node& group : query.select("data:requestGroups/data:requestGroup")) {
        if (group.attribute("save") != "1") {
            continue;
        }
        auto& [name, parameters] = groups.emplace_back(group.attribute("name"),
                                                       std::vector<std::string>());
        for (const xml::Node& included : group.childElements("includedParam")) {
            parameters.push_back(included.attribute("name"));
        }
    }
    return groups;
}

bool IsNumber(const std::string& strType) {
    return strType == "floatVal" || strType == "integerVal";
}

// The mark images of a parameter on a page of the family.
std::vector<form::Control*> Marks(devices::IUserControl& control, const std::string& strName) {
    std::vector<form::Control*> marks;
    devices::DeviceClass& device = control.deviceClass();
    const std::string prefix = device.ImagePrefix();
    const std::string frameArray = device.FrameArrayName();
    for (form::Control* image : control.form().controls()) {
        if (image->kind() == form::ControlKind::Image && image->name().starts_with(prefix) &&
            image->tag() == strName && data::LiesOn(*image, frameArray)) {
            marks.push_back(image);
        }
    }
    return marks;
}

}  // namespace

void ComparePage::RecordDeviceReply(const xml::Document& xmlReply) {
    session::clsTools& tools = m_control.tools();
    if (!tools.OnlineConf || tools.ImportFromFile) {
        return;
    }
    for (const xml::Node& response : xmlReply.root().childElements("communicationResponse")) {
        if (response.attribute("access") != "read" || response.attribute("responseStatus") != "ok") {
            continue;
        }
        for (const xml::Node& item : response.childElements("item")) {
            m_device[item.attribute("name")] = {item.firstChildElement().text(),
                                                item.attribute("unit")};
        }
    }
}

std::string ComparePage::inDataSetUnit(const std::string& strName, const Reading& reading) {
    const xml::Node parameter = m_control.ParameterNodeByName(strName);
    const std::string unit = parameter ? parameter.attribute("unit") : std::string();
    if (reading.value.empty() || reading.unit.empty() || reading.unit == "noUnit" ||
        unit.empty() || unit == "noUnit" || unit == reading.unit) {
        return reading.value;
    }
    const std::string converted = m_control.ConvertUnit(reading.value, reading.unit, unit);
    return converted.empty() ? reading.value : devices::fDecimalSep(converted, ".");
}

void ComparePage::FillComparePage() {
    form::Form& form = m_control.form();
    form::Control* list = form.find("lsvCompare");
    if (list == nullptr) {
        return;
    }
    const form::Control* toleranceField = form.find("txtCompareTolerance");
    const std::optional<double> tolerance =
        ReadTolerance(toleranceField != nullptr ? toleranceField->text() : std::string());
    if (!tolerance) {
        m_control.ShowMsg(m_control.Translate("compareConfigurations"),
                          m_control.Translate("compareBadTolerance"));
        return;
    }
    const form::Control* onlyField = form.find("chkCompareDifferences");
    const bool differencesOnly = onlyField != nullptr && onlyField->value() == 1.0;
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string prefix = device.DevicePrefix();

    ResetCompareInfo();
    form::ListViewModel& rows = list->listView();
    rows.clear();
    for (const auto& [group, parameters] : SavedGroups(m_control)) {
        int header = 0;
        for (const std::string& name : parameters) {
            const xml::Node parameter = m_control.ParameterNodeByName(name);
            if (!parameter) {
                continue;
            }
            const std::string type = parameter.attribute("type");
            std::optional<std::string> deviceValue;
            std::optional<std::string> fileValue;
            if (const auto found = m_device.find(name); found != m_device.end()) {
                deviceValue = inDataSetUnit(name, found->second);
            }
            if (const auto found = m_file.find(name); found != m_file.end()) {
                fileValue = inDataSetUnit(name, found->second);
            }
            const std::string dataSetValue = parameter.attribute("value");
            const bool differs =
                ValuesDiffer({deviceValue, dataSetValue, fileValue}, IsNumber(type), *tolerance);
            if (differencesOnly && !differs) {
                continue;
            }
            if (header == 0) {
                header = rows.add(m_control.Translate(group), std::string(kGroupKey) + group);
            }
            const int row = rows.add(m_control.Translate(name), prefix + group + ":" + name);
            const std::string unit = parameter.attribute("unit");
            rows.setSubItem(row, kCompareDevice, deviceValue.value_or(""));
            rows.setSubItem(row, kCompareDataSet, dataSetValue);
            rows.setSubItem(row, kCompareFile, fileValue.value_or(""));
            rows.setSubItem(row, kCompareUnit, unit == "noUnit" ? std::string() : unit);
            rows.setSubItem(row, kCompareDiffers, differs ? "*" : "");
            rows.setSubItem(row, kCompareName, name);
            rows.setSubItem(row, kComparePage, prefix + group);
            if (differs) {
                for (form::Control* mark : Marks(m_control, name)) {
                    if (!mark->visible()) {
                        mark->setPicture(kComparePicture);
                        mark->setVisible(true);
                    }
                }
            }
        }
    }
}

void ComparePage::ResetCompareInfo() {
    for (const auto& [group, parameters] : SavedGroups(m_control)) {
        for (const std::string& name : parameters) {
            for (form::Control* mark : Marks(m_control, name)) {
                if (mark->picture() == kComparePicture) {
                    // The mark goes back to the changed sign it stands for otherwise.
                    mark->setVisible(false);
                    mark->setPicture("changed");
                }
            }
        }
    }
}

void ComparePage::ShowPageImages(bool bVisible) {
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string prefix = device.ImagePrefix();
    const std::string frameArray = device.FrameArrayName();
    for (form::Control* image : m_control.form().controls()) {
        if (image->kind() == form::ControlKind::Image && image->name().starts_with(prefix) &&
            data::LiesOn(*image, frameArray)) {
            image->setVisible(bVisible);
        }
    }
}

void ComparePage::loadFile() {
    const std::string path = m_control.form().control("txtCompareFile").text();
    if (path.empty()) {
        return;
    }
    const std::optional<xml::Document> document = m_files.ReadChecked(path, "cmdCompare");
    if (!document) {
        return;  // the reason is shown; the page keeps the file it had
    }
    std::map<std::string, Reading, std::less<>> values;
    devices::DeviceClass& device = m_control.deviceClass();
    for (const xml::Node& response : document->root().childElements("communicationResponse")) {
        for (const xml::Node& item : response.childElements("item")) {
            const std::string name = item.attribute("name");
            const xml::Node valueNode = item.firstChildElement();
            std::string value = valueNode ? valueNode.text() : std::string();
            // The file holds the pages' form; the data set the device's.
            if (!value.empty() && !(devices::IsSerialNumber(name) && valueNode.name() == "integerVal")) {
                std::string formatted = device.FormatValues(name, value, "write");
                if (!formatted.empty()) {
                    value = std::move(formatted);
                }
            }
            values[name] = {value, item.attribute("unit")};
        }
    }
    m_file = std::move(values);
    FillComparePage();
}

bool ComparePage::putOnPage(const std::string& strName, const std::string& strValue) {
    form::Form& form = m_control.form();
    const std::string frameArray = m_control.deviceClass().FrameArrayName();
    for (form::Control* field : form.controls()) {
        if (field->tag() != strName || !data::HoldsValue(*field) ||
            !data::LiesOn(*field, frameArray)) {
            continue;
        }
        switch (field->kind()) {
            case form::ControlKind::TextBox: {
                constexpr int kBackspace = 8;
                form.raiseGotFocus(*field);
                (void)form.raiseKeyPress(*field, strValue.empty()
                                                     ? kBackspace
                                                     : static_cast<unsigned char>(strValue.front()));
                field->setText(strValue);
                form.raiseLostFocus(*field);
                return true;
            }
            case form::ControlKind::ComboBox: {
                const double wanted = devices::Str2Dbl(strValue);
                for (int entry = 0; entry < field->listCount(); ++entry) {
                    if (field->itemData(entry) == wanted) {
                        form.raiseGotFocus(*field);
                        field->setListIndex(entry);
                        form.raiseClick(*field);
                        form.raiseLostFocus(*field);
                        return true;
                    }
                }
                return false;
            }
            case form::ControlKind::CheckBox:
                field->setValue(devices::Str2Dbl(strValue));
                form.raiseClick(*field);
                return true;
            default:
                break;
        }
    }
    return false;
}

void ComparePage::takeValues(int intSource) {
    form::ListViewModel& rows = m_control.form().control("lsvCompare").listView();
    const int column = intSource == kCompareTakeFile ? kCompareFile : kCompareDevice;
    const auto& source = intSource == kCompareTakeFile ? m_file : m_device;
    // The ticked rows by page, in the list's order.
    std::vector<std::pair<std::string, std::vector<std::pair<std::string, std::string>>>> pages;
    bool ticked = false;
    for (int row = 1; row <= rows.count(); ++row) {
        const std::string name = rows.subItem(row, kCompareName);
        if (!rows.row(row).checked || name.empty()) {
            continue;
        }
        ticked = true;
        if (!source.contains(name) || rows.subItem(row, column).empty()) {
            m_control.ShowMsg(rows.row(row).text, m_control.Translate("compareNoValue"));
            continue;
        }
        const std::string page = rows.subItem(row, kComparePage);
        if (pages.empty() || pages.back().first != page) {
            pages.emplace_back(page, std::vector<std::pair<std::string, std::string>>());
        }
        pages.back().second.emplace_back(name, rows.subItem(row, column));
    }
    if (!ticked) {
        m_control.ShowMsg(m_control.Translate("compareConfigurations"),
                          m_control.Translate("compareNoRow"));
        return;
    }
    devices::DeviceClass& device = m_control.deviceClass();
    const std::size_t prefixLength = device.DevicePrefix().size();
    for (const auto& [page, values] : pages) {
        m_showPage(page.substr(prefixLength));
        for (const auto& [name, wireValue] : values) {
            // From the data set's form back to what the page shows.
            const xml::Node parameter = m_control.ParameterNodeByName(name);
            const std::string type = parameter.attribute("type");
            std::string value = wireValue;
            if (devices::IsSerialNumber(name) && type == "integerVal") {
                value = devices::DecodeSerNro(devices::ToInt32(value));
            } else if (std::string formatted = device.FormatValues(name, value, "read");
                       !formatted.empty()) {
                value = std::move(formatted);
            }
            const std::string unit = parameter.attribute("unit");
            const std::string pageUnit = m_control.FetchUnitName(name);
            if (pageUnit != "noUnit" && !unit.empty() && unit != "noUnit" && unit != pageUnit) {
                value = m_control.ConvertUnit(value, unit, pageUnit);
            }
            if (type == "floatVal") {
                value = devices::fDecimalSep(value);
            }
            if (!putOnPage(name, value)) {
                m_control.ShowMsg(m_control.Translate(name), m_control.Translate("compareNotOnPage"));
            }
        }
    }
    m_showPage(device.ComparePageNode());
}

void ComparePage::cmdCompare_Click(int intIndex) {
    if (intIndex == kCompareLoadFile) {
        loadFile();
    } else if (intIndex == kCompareTakeFile || intIndex == kCompareTakeDevice) {
        takeValues(intIndex);
    }
}

void ComparePage::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("cmdCompare", EventKind::Click,
                 [this](form::FormEvent& event) { cmdCompare_Click(event.control->index()); });
    handlers.add("chkCompareDifferences", EventKind::Click,
                 [this](form::FormEvent&) { FillComparePage(); });
    handlers.add("txtCompareTolerance", EventKind::LostFocus,
                 [this](form::FormEvent&) { FillComparePage(); });
}

}  // namespace kt500::datasets
