// Lookups of parameters by name on the largest parameter document of the
// family: the indexed lookup against the XPath query it stands for, and the
// value lookup of the pages (FetchValueByTag) that walks the form first.
#include "data/ParameterDocument.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"
#ifdef KT500_BENCH_TEST_CONTROL
#include "support/TestUserControl.h"
#endif

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
        return builder.build(*LargestModel());
    }

    // The model whose parameter document is the largest.
    static const kt500::simulator::DeviceModel* LargestModel() {
        const kt500::simulator::ParameterDocumentBuilder builder(
            std::filesystem::path(KT500_SHARE_DIR) / "devices");
        const kt500::simulator::DeviceModel* largest = nullptr;
        std::size_t largestSize = 0;
        for (const auto& model : kt500::simulator::DeviceCatalogue::models()) {
            const std::size_t size = builder.build(model).toXml().size();
            if (size > largestSize) {
                largestSize = size;
                largest = &model;
            }
        }
        return largest;
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

#ifdef KT500_BENCH_TEST_CONTROL
// A session of the largest model whose family pages hold a text box for
// every second parameter: half the lookups end in the form walk, half fall
// back to the document after walking the whole form.
struct PagesFixture {
    PagesFixture() : control(Options()) {
        const std::string frameArray = control.deviceClass().FrameArrayName();
        const int page = control.form().array(frameArray).indices().front();
        const auto& parameters = Shared().names;
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            names.push_back(parameters[i]);
            if (i % 2 == 0) {
                control
                    .addField(kt500::form::ControlKind::TextBox, "txtBench", static_cast<int>(i),
                              frameArray, page, parameters[i])
                    .setText("1.5");
            }
        }
    }

    static kt500::simulator::SessionOptions Options() {
        kt500::simulator::SessionOptions options;
        options.deviceKey = Fixture::LargestModel()->key;
        return options;
    }

    kt500::testing::TestUserControl control;
    std::vector<std::string> names;
};

void BM_FetchValueByTag(benchmark::State& state) {
    static PagesFixture f;
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            f.control.values.FetchValueByTag(f.names[i++ % f.names.size()], false));
    }
    state.counters["controls"] = static_cast<double>(f.control.form().controls().size());
}
BENCHMARK(BM_FetchValueByTag);
#endif

}  // namespace
