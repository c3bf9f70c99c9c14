// Lookups of parameters by name on the largest parameter document of the
// family: the indexed lookup against the XPath query it stands for.
#include "data/ParameterDocument.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

using kt500::data::ParameterDocument;

struct Fixture {
    Fixture()
        : live(Largest()),
          copy(live.clone()),
          document(live.root(), copy),
          prefixes(kt500::xml::Namespaces::fromSelection(ParameterDocument::SelectionNamespaces)) {
        for (const auto& parameter :
             kt500::xml::XPath(copy, prefixes)
                 .select("data:persistentData/data:parameters/data:parameter")) {
            names.push_back(parameter.attribute("name"));
        }
    }

    static kt500::xml::Document Largest() {
        const kt500::simulator::ParameterDocumentBuilder builder(
            std::filesystem::path(KT500_SHARE_DIR) / "devices");
        std::optional<kt500::xml::Document> largest;
        std::size_t largestSize = 0;
        for (const auto& model : kt500::simulator::DeviceCatalogue::models()) {
            kt500::xml::Document built = builder.build(model);
            const std::size_t size = built.toXml().size();
            if (size > largestSize) {
                largestSize = size;
                largest.emplace(std::move(built));
            }
        }
        return std::move(*largest);
    }

    kt500::xml::Document live;
    kt500::xml::Document copy;
    ParameterDocument document;
    kt500::xml::Namespaces prefixes;
    std::vector<std::string> names;
};

Fixture& Shared() {
    static Fixture fixture;
    return fixture;
}

void BM_ParameterNodeByName(benchmark::State& state) {
    Fixture& f = Shared();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f.document.ParameterNodeByName(f.names[i++ % f.names.size()]));
    }
    state.counters["parameters"] = static_cast<double>(f.names.size());
}
BENCHMARK(BM_ParameterNodeByName);

void BM_ParameterQueryByXPath(benchmark::State& state) {
    Fixture& f = Shared();
    const kt500::xml::XPath copyQuery(f.copy, f.prefixes);
    const kt500::xml::XPath liveQuery(f.live, f.prefixes);
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string query = ParameterDocument::ParameterQuery(f.names[i++ % f.names.size()]);
        if (copyQuery.selectSingle(query)) {
            benchmark::DoNotOptimize(liveQuery.selectSingle(query));
        }
    }
}
BENCHMARK(BM_ParameterQueryByXPath);

void BM_IndexDocument(benchmark::State& state) {
    Fixture& f = Shared();
    for (auto _ : state) {
        const ParameterDocument document(f.live.root(), f.copy);
        benchmark::DoNotOptimize(&document);
    }
}
BENCHMARK(BM_IndexDocument);

}  // namespace
