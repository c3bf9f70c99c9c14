// Growth with the size of the device: the family of the largest real device
// as it is and grown ten times (bench/ScaledFamily.h), loaded through the
// same code. Start-up (IDtmActiveXControl_Init less the BL's composition),
// "Upload all" (the control's processor time in its replies) and a language
// change are timed at both sizes; the counters give the sizes (parameters,
// request groups, pages, tree nodes) so that the growth of each cost can be
// set against the growth of the device.
#include "BenchSupport.h"
#include "ScaledFamily.h"
#include "xml/XPath.h"

#include <memory>

namespace {

using namespace kt500;
using bench::Seconds;

constexpr int kTimes = 10;

// The largest real device and its family.
const std::pair<std::string, std::string>& LargestOfAll() {
    static const std::pair<std::string, std::string> largest = [] {
        const simulator::ParameterDocumentBuilder builder(bench::ShareDir() / "devices");
        std::pair<std::string, std::string> best;
        std::size_t bestSize = 0;
        for (const auto& [family, key] : bench::LargestDevices()) {
            const std::size_t size = builder.build(*simulator::DeviceCatalogue::find(key)).toXml().size();
            if (size > bestSize) {
                bestSize = size;
                best = {family, key};
            }
        }
        return best;
    }();
    return largest;
}

// The share folder of a scale: the real one at 1, a grown copy at kTimes.
std::filesystem::path ShareAt(int times) {
    static std::unique_ptr<bench::ScaledFamily> grown;
    if (times == 1) {
        return bench::ShareDir();
    }
    if (!grown) {
        grown = std::make_unique<bench::ScaledFamily>(bench::ShareDir(), LargestOfAll().first,
                                                      LargestOfAll().second, kTimes);
    }
    return grown->shareDir();
}

void CountSizes(benchmark::State& state, app::ControlSession& session) {
    host::RavikKT500& control = session.control();
    const xml::Document& document = *control.xmlDataFile();
    const xml::XPath query(document, xml::Namespaces::fromSelection(
                                         "xmlns:data='x-schema:QDLDatafileSchema.xml'"));
    state.counters["parameters"] = static_cast<double>(
        query.select("data:persistentData/data:parameters/data:parameter").size());
    state.counters["groups"] =
        static_cast<double>(query.select("data:requestGroups/data:requestGroup").size());
    state.counters["pages"] = static_cast<double>(
        control.form().findArray(control.deviceClass().FrameArrayName())->indices().size());
    state.counters["tree_nodes"] = control.form().control("treeNavigation").tree().count();
}

simulator::SessionOptions Options() {
    simulator::SessionOptions options;
    options.deviceKey = LargestOfAll().second;
    return options;
}

void BM_ScaleStartUp(benchmark::State& state) {
    const std::filesystem::path share = ShareAt(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        app::ControlSession session(share);
        session.prepare(Options());
        const auto before = app::ThreadCpuTime();
        if (!session.initialise()) {
            state.SkipWithError("the start-up failed");
            break;
        }
        const auto spent = app::ThreadCpuTime() - before;
        state.SetIterationTime(Seconds(spent - session.recorder().openConnectionTime()));
        CountSizes(state, session);
    }
    state.SetLabel(Options().deviceKey);
}
BENCHMARK(BM_ScaleStartUp)->Arg(1)->Arg(kTimes)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ScaleUploadAll(benchmark::State& state) {
    bench::Driver driver(ShareAt(static_cast<int>(state.range(0))));
    driver.run("start " + Options().deviceKey + "\nsettle\n");
    bench::WatchedReplies watched;
    std::size_t replies = 0;
    for (auto _ : state) {
        watched.watch(driver.session());
        driver.run("toolbar uploadAll\nsettle\n");
        replies += watched.texts.size();
        state.SetIterationTime(Seconds(watched.controlTime));
    }
    driver.run("expect toolbar.stop.Enabled = False\n");
    driver.session().recorder().watchReplies({});
    state.counters["replies"] = static_cast<double>(replies) /
                                static_cast<double>(std::max<benchmark::IterationCount>(state.iterations(), 1));
    state.counters["messages"] = static_cast<double>(driver.session().dialogs().boxes().size());
}
BENCHMARK(BM_ScaleUploadAll)->Arg(1)->Arg(kTimes)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ScaleLanguageChange(benchmark::State& state) {
    bench::Driver driver(ShareAt(static_cast<int>(state.range(0))));
    driver.run("start " + Options().deviceKey + "\nsettle\ntoolbar settings\n");
    const int languages = driver.session().control().form().control("comSelectLanguage").listCount();
    int next = 0;
    for (auto _ : state) {
        next = (next + 1) % languages;
        const auto before = app::ThreadCpuTime();
        driver.run("select comSelectLanguage #" + std::to_string(next) + "\nclick cmdTranslate\n");
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
    }
    state.counters["controls"] = static_cast<double>(driver.session().control().form().controls().size());
}
BENCHMARK(BM_ScaleLanguageChange)->Arg(1)->Arg(kTimes)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
