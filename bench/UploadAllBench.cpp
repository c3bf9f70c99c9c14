// "Upload all" on each family's largest device in virtual time, against the
// bare parse and validation of its replies, in the same run.
//
// BM_UploadAll reports as its time the processor time the control spent in
// IQDLGuiEvent_CommunicationEvent over the chain (the BL's time left out);
// the counters give the replies, the control's time per reply and the whole
// chain's processor time (the click, the BL and the control). BM_UploadAllFloor
// parses and validates the chain's reply texts against the communication
// schema.
#include "BenchSupport.h"

namespace {

using namespace kt500;
using bench::Seconds;

// The reply texts of one upload chain, by device key.
const std::vector<std::string>& ChainReplies(const std::string& key) {
    static std::map<std::string, std::vector<std::string>> replies;
    auto& texts = replies[key];
    if (texts.empty()) {
        bench::Driver driver;
        driver.run("start " + key + "\nsettle\n");
        bench::WatchedReplies watched;
        watched.watch(driver.session());
        driver.run("toolbar uploadAll\nsettle\nexpect toolbar.stop.Enabled = False\n");
        driver.session().recorder().watchReplies({});
        texts = watched.texts;
    }
    return texts;
}

void BM_UploadAll(benchmark::State& state, const std::string& key) {
    bench::Driver driver;
    driver.run("start " + key + "\nsettle\n");
    bench::WatchedReplies watched;
    std::chrono::nanoseconds whole{0};
    std::size_t replies = 0;
    for (auto _ : state) {
        watched.watch(driver.session());
        const auto before = app::ThreadCpuTime();
        driver.run("toolbar uploadAll\nsettle\n");
        whole += app::ThreadCpuTime() - before;
        replies += watched.texts.size();
        state.SetIterationTime(Seconds(watched.controlTime));
    }
    driver.run("expect toolbar.stop.Enabled = False\nexpect toolbar.uploadAll.Enabled = True\n");
    driver.session().recorder().watchReplies({});
    const auto iterations = static_cast<double>(std::max<benchmark::IterationCount>(state.iterations(), 1));
    state.counters["replies"] = static_cast<double>(replies) / iterations;
    state.counters["whole_ms"] = Seconds(whole) * 1000.0 / iterations;
    state.SetLabel(key);
}

void BM_UploadAllFloor(benchmark::State& state, const std::string& key) {
    const std::vector<std::string>& texts = ChainReplies(key);
    bench::Driver driver;
    driver.run("start " + key + "\n");
    const xml::SchemaCollection* schemas = driver.session().control().communicationSchemas();
    for (auto _ : state) {
        const auto before = app::ThreadCpuTime();
        bench::ParseAndValidate(texts, schemas);
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
    }
    state.counters["replies"] = static_cast<double>(texts.size());
    state.SetLabel(key);
}

const bool kRegistered = [] {
    for (const auto& [family, key] : bench::LargestDevices()) {
        benchmark::RegisterBenchmark(("BM_UploadAll/" + family).c_str(), BM_UploadAll, key)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BM_UploadAllFloor/" + family).c_str(), BM_UploadAllFloor, key)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
