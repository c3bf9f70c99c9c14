// Data files from bytes: every input is either accepted as a dtm whose
// responses and items the device knows, with value elements of their
// parameters' kinds, or refused with one of the known reasons.
#include "datasets/DataFileRead.h"

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

namespace {

using namespace kt500::datasets;

const DataFileShape& Shape() {
    static const DataFileShape shape = [] {
        DataFileShape s;
        s.deviceType = "KT520";
        s.revision = "7";
        s.groups["operationUnit"] = {{"hartTag", "stringVal"}, {"deviceDay", "integerVal"}};
        s.groups["valveRelatedConfigurations"] = {{"splitRangeLow", "floatVal"},
                                                  {"valveStyle", "integerVal"}};
        return s;
    }();
    return shape;
}

const kt500::xml::SchemaCollection& Schemas() {
    static const kt500::xml::SchemaCollection schemas = [] {
        kt500::xml::SchemaCollection s;
        const std::string error =
            s.add("x-schema:QDLCommunicationSchema.xml",
                  std::string(KT500_DEFAULT_SHARE_DIR) + "/schemas/QDLCommunicationSchema.xml");
        if (!error.empty()) {
            std::abort();
        }
        return s;
    }();
    return schemas;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::set<std::string> reasons = {
        "dataFileEmpty",        "dataFileTooLarge",    "dataFileNotUtf8",
        "dataFileDoctype",      "dataFileNotWellFormed", "dataFileNoDtm",
        "errDeviceMismatch",    "dataFileInvalid",     "dataFileUnknownGroup",
        "dataFileUnknownItem",  "dataFileWrongType",   "dataFileBadNumber",
    };
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const kt500::xml::SchemaCollection* const choices[] = {&Schemas(), nullptr};
    for (const kt500::xml::SchemaCollection* schemas : choices) {
        const DataFileRead read = ReadDataFile(bytes, Shape(), schemas);
        if (!read.ok()) {
            if (reasons.count(read.reasonKey) == 0) {
                std::abort();
            }
            continue;
        }
        const kt500::xml::Node root = read.document->root();
        if (root.name() != "dtm" || root.attribute("deviceType") != "KT520" ||
            root.attribute("revision") != "7") {
            std::abort();
        }
        for (const kt500::xml::Node& response : root.childElements()) {
            const auto group = Shape().groups.find(response.attribute("name"));
            if (group == Shape().groups.end()) {
                std::abort();
            }
            for (const kt500::xml::Node& item : response.childElements()) {
                const auto parameter = group->second.find(item.attribute("name"));
                if (parameter == group->second.end()) {
                    std::abort();
                }
                const kt500::xml::Node value = item.firstChildElement();
                if (value && (value.name() != parameter->second ||
                              !ReadsAsNumber(value.text(), parameter->second))) {
                    std::abort();
                }
            }
        }
    }
    return 0;
}
