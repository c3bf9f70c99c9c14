// A language change and a unit system change on the largest form: the
// KT520_7 after start-up, whose family's pages hold the most controls.
// The language change is the user's (the next language chosen, "translate"
// clicked), which runs TranslateForm; the unit system change switches
// between SI and US and runs RefreshAllUnits. Both report processor time.
#include "BenchSupport.h"

namespace {

using namespace kt500;
using bench::Seconds;

void BM_LanguageChange(benchmark::State& state) {
    bench::Driver driver;
    driver.run("start KT520_7\nsettle\ntoolbar settings\n");
    const int languages = driver.session().control().form().control("comSelectLanguage").listCount();
    int next = 0;
    for (auto _ : state) {
        next = (next + 1) % languages;
        const auto before = app::ThreadCpuTime();
        driver.run("select comSelectLanguage #" + std::to_string(next) + "\nclick cmdTranslate\n");
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
    }
    state.counters["languages"] = languages;
    state.counters["controls"] = static_cast<double>(driver.session().control().form().controls().size());
}
BENCHMARK(BM_LanguageChange)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_UnitSystemChange(benchmark::State& state) {
    bench::Driver driver;
    driver.run("start KT520_7\nsettle\n");
    host::RavikKT500& control = driver.session().control();
    form::Control& si = control.form().control("optSIUnits");
    form::Control& us = control.form().control("optUSUnits");
    bool toSI = false;
    for (auto _ : state) {
        toSI = !toSI;
        si.setValue(toSI ? 1 : 0);
        us.setValue(toSI ? 0 : 1);
        const auto before = app::ThreadCpuTime();
        control.RefreshAllUnits(false);
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
    }
}
BENCHMARK(BM_UnitSystemChange)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
