// Parsing a parameter document of the size a device family brings (about
// 2000 parameters) and looking parameters up by name the way the logic does.
#include "xml/Document.h"
#include "xml/XPath.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using namespace kt500::xml;

constexpr int kParameters = 2000;
constexpr const char* kSelection =
    "xmlns:data='x-schema:QDLDatafileSchema.xml' "
    "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'";

std::string parameterName(int i) {
    return "parameter" + std::to_string(i);
}

std::string parameterDocument() {
    std::string text =
        "<?xml version='1.0'?><data:dtm xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'><typeInfo:device>"
        "<typeInfo:publishedInfo deviceTypeId='KT520' name='KT 520' version='7'/>"
        "</typeInfo:device><data:persistentData><data:parameters>";
    for (int i = 0; i < kParameters; ++i) {
        text += "<data:parameter name='" + parameterName(i) +
                "' access='readWrite' type='floatVal' unit='noUnit' value='" + std::to_string(i) +
                ".5' synchronised='1' minVal='0' maxVal='100' decimals='2'/>";
    }
    text += "</data:parameters></data:persistentData><data:requestGroups>";
    for (int g = 0; g < kParameters / 20; ++g) {
        text += "<data:requestGroup name='group" + std::to_string(g) +
                "' requestCount='1' save='1' lastUpdate='2024-01-01 00:00:00'>";
        for (int i = g * 20; i < (g + 1) * 20; ++i) {
            text += "<data:includedParam name='" + parameterName(i) + "'/>";
        }
        text += "</data:requestGroup>";
    }
    return text + "</data:requestGroups></data:dtm>";
}

void BM_ParseParameterDocument(benchmark::State& state) {
    const std::string text = parameterDocument();
    for (auto _ : state) {
        LoadResult result = Document::parse(text);
        benchmark::DoNotOptimize(result.document);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_ParseParameterDocument);

// The lookup ParameterNodeByName makes: an absolute selection by name.
void BM_ParameterByName(benchmark::State& state) {
    LoadResult result = Document::parse(parameterDocument());
    const XPath xpath(*result.document, Namespaces::fromSelection(kSelection));
    int i = 0;
    for (auto _ : state) {
        const Node node =
            xpath.selectSingle("//data:persistentData/data:parameters/data:parameter[@name = '" +
                               parameterName(i) + "']");
        benchmark::DoNotOptimize(node.raw());
        i = (i + 997) % kParameters;
    }
}
BENCHMARK(BM_ParameterByName);

// The relative form used for a group's included parameters.
void BM_GroupParameters(benchmark::State& state) {
    LoadResult result = Document::parse(parameterDocument());
    const XPath xpath(*result.document, Namespaces::fromSelection(kSelection));
    int g = 0;
    for (auto _ : state) {
        const Node group = xpath.selectSingle(
            "data:requestGroups/data:requestGroup[@name = 'group" + std::to_string(g) + "']");
        benchmark::DoNotOptimize(xpath.select("data:includedParam", group).size());
        g = (g + 7) % (kParameters / 20);
    }
}
BENCHMARK(BM_GroupParameters);

}  // namespace
