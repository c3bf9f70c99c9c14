#include "datasets/DataFiles.h"

#include "data/ParameterDocument.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "xml/XPath.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace kt500::datasets {

namespace {

// The document a save starts from; its one response is the template that
// is cloned per group and removed before the file is written.
constexpr std::string_view kSaveTemplate =
    "<?xml version='1.0'?><dtm deviceType='' revision=''><communicationResponse "
    "name='templateGroup' access='read' responseStatus='ok' isFinal='1' "
    "errorCode=''></communicationResponse></dtm>";

xml::Namespaces DataPrefixes() {
    return xml::Namespaces::fromSelection(data::ParameterDocument::SelectionNamespaces);
}

bool IsValueKind(const std::string& strType) {
    return strType == "floatVal" || strType == "integerVal" || strType == "stringVal";
}

// The bytes of a file, or the reason it cannot be read ("" when read).
std::string ReadBytes(const std::string& strPath, std::string& bytes) {
    std::error_code error;
    const std::filesystem::path path(strPath);
    if (!std::filesystem::is_regular_file(path, error)) {
        return "dataFileMissing";
    }
    const auto size = std::filesystem::file_size(path, error);
    if (error) {
        return "fileOpenFailed";
    }
    if (size > kDataFileMaxBytes) {
        return "dataFileTooLarge";
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return "fileOpenFailed";
    }
    bytes.assign(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    if (file.bad() || static_cast<std::size_t>(file.gcount()) != size) {
        return "fileOpenFailed";
    }
    return {};
}

}  // namespace

DataFileShape DataFiles::Shape() {
    session::clsTools& tools = m_control.tools();
    DataFileShape shape;
    shape.deviceType = tools.DeviceName;
    shape.revision = tools.DeviceRevision;
    const xml::Document* dataFile = m_control.xmlDataFile();
    if (dataFile == nullptr) {
        return shape;
    }
    const xml::XPath query(*dataFile, DataPrefixes());
    for (const xml::Node& group : query.select("data:requestGroups/data:requestGroup")) {
        if (group.attribute("save") != "1") {
            continue;
        }
        auto& items = shape.groups[group.attribute("name")];
        for (const xml::Node& included : group.childElements("includedParam")) {
            const std::string name = included.attribute("name");
            const xml::Node parameter = m_control.ParameterNodeByName(name);
            items[name] = parameter ? parameter.attribute("type") : std::string();
        }
    }
    return shape;
}

std::optional<xml::Document> DataFiles::ReadChecked(const std::string& strPath,
                                                    const std::string& strSource) {
    std::string bytes;
    DataFileRead read;
    if (const std::string reason = ReadBytes(strPath, bytes); !reason.empty()) {
        read.reasonKey = reason;
    } else {
        read = ReadDataFile(bytes, Shape(), m_control.communicationSchemas());
    }
    if (read.ok()) {
        return std::move(read.document);
    }
    if (read.reasonKey == "errDeviceMismatch") {
        m_control.ShowMsg(m_control.Translate("error"),
                          m_control.Translate("errDeviceMismatch") +
                              " (Device type = " + read.fileDeviceType +
                              ", Revision = " + read.fileRevision + ")");
        return std::nullopt;
    }
    std::string text = m_control.Translate("parseFailed") + " " + strPath + ": " +
                       m_control.Translate(read.reasonKey);
    if (!read.detail.empty()) {
        text += " (" + read.detail + ")";
    }
    m_control.ShowMsg(strSource, text);
    return std::nullopt;
}

bool DataFiles::LoadValuesFromFile() {
    session::clsTools& tools = m_control.tools();
    const std::string path = m_control.form().control("txtFileName").text();
    std::optional<xml::Document> document = ReadChecked(path, "LoadValuesFromFile");
    if (!document) {
        return false;
    }
    m_replies.ReplayDataFile(*document);
    if (tools.CurrentFrame.size() > 2) {
        m_control.UpdateGroupTimeStamp(tools.CurrentFrame.substr(2));
    }
    return true;
}

std::string DataFiles::SaveValue(const std::string& strName, const std::string& strType) {
    if (strName == "deviceDate") {
        return m_control.deviceClass().DeviceDate();
    }
    if (strName == "deviceType") {
        return m_control.tools().DeviceTypeId;
    }
    std::string value = m_control.FetchValueByTag(strName, false);
    if (devices::IsSerialNumber(strName) && strType == "integerVal") {
        // The page shows "yyyy-ww-nnnn"; the file holds the packed number.
        const std::int32_t packed = devices::EnCodeSerNro(value);
        if (packed != -1) {
            return std::to_string(packed);
        }
    }
    if (strType == "floatVal") {
        value = devices::fDecimalSep(value, ".");
    }
    return value;
}

xml::Document DataFiles::SaveDocument() {
    session::clsTools& tools = m_control.tools();
    xml::LoadResult start = xml::Document::parse(kSaveTemplate);
    if (!start.ok()) {
        throw std::logic_error("CreateSaveXml: the save template does not parse");
    }
    xml::Document document = std::move(*start.document);
    xml::Node root = document.root();
    root.setAttribute("deviceType", tools.DeviceName);
    root.setAttribute("revision", tools.DeviceRevision);
    const xml::Node templateGroup = root.firstChildElement("communicationResponse");

    const xml::Document* dataFile = m_control.xmlDataFile();
    if (dataFile == nullptr) {
        throw std::runtime_error("CreateSaveXml: the parameter document is not loaded");
    }
    const xml::XPath query(*dataFile, DataPrefixes());
    for (const xml::Node& group : query.select("data:requestGroups/data:requestGroup")) {
        if (group.attribute("save") != "1") {
            continue;
        }
        xml::Node response = templateGroup.cloneInto(root);
        response.setAttribute("name", group.attribute("name"));
        for (const xml::Node& included : group.childElements("includedParam")) {
            const std::string name = included.attribute("name");
            const xml::Node parameter = m_control.ParameterNodeByName(name);
            if (!parameter) {
                continue;
            }
            xml::Node item = response.appendElement("item");
            item.setAttribute("name", name);
            item.setAttribute("unit", m_control.FetchUnitName(name));
            const std::string type = parameter.attribute("type");
            if (IsValueKind(type)) {
                item.appendElement(type).setText(SaveValue(name, type));
            }
        }
    }
    xml::Node first = root.firstChildElement("communicationResponse");
    first.remove();
    return document;
}

bool DataFiles::CreateSaveXml() {
    form::Control& field = m_control.form().control("txtFileName");
    std::string path = field.text();
    if (path.size() < 4 || path.substr(path.size() - 4) != ".xml") {
        path += ".xml";
    }
    const xml::Document document = SaveDocument();
    const SaveFailure failure = m_writer.save(path, document.toXml());
    if (!failure.ok()) {
        std::string text = m_control.Translate("saveFailed") + " " + path;
        if (failure.reasonKey != "saveFailed") {
            text += ": " + m_control.Translate(failure.reasonKey);
        }
        if (!failure.detail.empty()) {
            text += " (" + failure.detail + ")";
        }
        m_control.ShowMsg("CreateSaveXml", text);
        return false;
    }
    m_control.ShowMsg(m_control.Translate("export"), m_control.Translate("exportOk"));
    return true;
}

}  // namespace kt500::datasets
