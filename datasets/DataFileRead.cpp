#include "datasets/DataFileRead.h"

#include "xml/InputEncoding.h"
#include "xml/NamespaceMove.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace kt500::datasets {

namespace {

constexpr std::string_view kCommunicationNamespace = "x-schema:QDLCommunicationSchema.xml";

DataFileRead refused(std::string strKey, std::string strDetail = {}) {
    DataFileRead read;
    read.reasonKey = std::move(strKey);
    read.detail = std::move(strDetail);
    return read;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

// The groups, items and value kinds against what the device knows.
DataFileRead checkContent(xml::Document document, const DataFileShape& shape) {
    static constexpr std::string_view kKinds[] = {"floatVal", "integerVal", "stringVal"};
    for (const xml::Node& response : document.root().childElements()) {
        const std::string group = response.attribute("name");
        const auto known = shape.groups.find(group);
        if (response.name() != "communicationResponse" || known == shape.groups.end()) {
            return refused("dataFileUnknownGroup", group.empty() ? response.name() : group);
        }
        for (const xml::Node& item : response.childElements()) {
            const std::string name = item.attribute("name");
            const auto parameter = known->second.find(name);
            if (item.name() != "item" || parameter == known->second.end()) {
                return refused("dataFileUnknownItem", group + "/" + name);
            }
            const xml::Node value = item.firstChildElement();
            if (!value) {
                continue;  // an empty item: the writer knew no kind for it
            }
            const std::string& kind = parameter->second;
            const bool knownKind = std::find(std::begin(kKinds), std::end(kKinds), kind) !=
                                   std::end(kKinds);
            if (!knownKind || value.name() != kind || value.nextSiblingElement()) {
                return refused("dataFileWrongType", name + " (" + value.name() + ")");
            }
            if (!ReadsAsNumber(value.text(), kind)) {
                return refused("dataFileBadNumber", name + " = " + value.text());
            }
        }
    }
    DataFileRead read;
    read.document.emplace(std::move(document));
    return read;
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
    return xml::FirstNonUtf8(bytes) == std::string_view::npos;
}

bool ReadsAsNumber(std::string_view text, std::string_view strType) {
    if (strType != "floatVal" && strType != "integerVal") {
        return true;
    }
    std::string_view number = trimmed(text);
    if (number.empty()) {
        return true;
    }
    if (number.front() == '+') {
        number.remove_prefix(1);
    }
    const char* end = number.data() + number.size();
    if (strType == "integerVal") {
        long long value = 0;
        const auto [stop, error] = std::from_chars(number.data(), end, value);
        return error == std::errc() && stop == end;
    }
    double value = 0.0;
    const auto [stop, error] =
        std::from_chars(number.data(), end, value, std::chars_format::general);
    return error == std::errc() && stop == end && std::isfinite(value);
}

DataFileRead ReadDataFile(std::string_view bytes, const DataFileShape& shape,
                          const xml::SchemaCollection* schemas) {
    if (trimmed(bytes).empty()) {
        return refused("dataFileEmpty");
    }
    if (bytes.size() > kDataFileMaxBytes) {
        return refused("dataFileTooLarge", std::to_string(bytes.size()) + " bytes");
    }
    if (!IsUtf8(bytes)) {
        return refused("dataFileNotUtf8", xml::ForeignEncoding(bytes));
    }
    xml::ParseOptions options;
    options.maxBytes = kDataFileMaxBytes;
    xml::LoadResult parsed = xml::Document::parse(bytes, options);
    if (!parsed.ok()) {
        const bool doctype = parsed.error.find("DOCTYPE") != std::string::npos;
        return refused(doctype ? "dataFileDoctype" : "dataFileNotWellFormed", parsed.error);
    }
    xml::Document& document = *parsed.document;
    if (const auto* encoding = reinterpret_cast<const char*>(document.raw()->encoding);
        !xml::ForeignDeclaredEncoding(encoding).empty()) {
        return refused("dataFileNotUtf8", encoding);
    }
    const xml::Node root = document.root();
    const std::string rootNamespace = root.namespaceUri();
    if (root.name() != "dtm" ||
        (!rootNamespace.empty() && rootNamespace != kCommunicationNamespace)) {
        return refused("dataFileNoDtm", root.name());
    }
    const std::string fileType = root.attribute("deviceType");
    const std::string fileRevision = root.attribute("revision");
    if (fileType != shape.deviceType || fileRevision != shape.revision) {
        DataFileRead read = refused("errDeviceMismatch");
        read.fileDeviceType = fileType;
        read.fileRevision = fileRevision;
        return read;
    }
    if (schemas != nullptr && !schemas->empty()) {
        // The file is written without a namespace; its elements are the
        // communication schema's.
        xml::Document inNamespace = document.clone();
        xml::MoveIntoNamespace(inNamespace, kCommunicationNamespace);
        const std::vector<std::string> errors = schemas->validate(inNamespace);
        if (!errors.empty()) {
            return refused("dataFileInvalid", errors.front());
        }
    }
    return checkContent(std::move(document), shape);
}

}  // namespace kt500::datasets
