// The change road as the user walks it: a value typed into a field of the
// KT520_7 to its row on the confirmation list, and the confirmed list of
// every value of the data set to the write requests handed to the BL. Each
// reports the processor time of the timed steps alone; the set-up between
// them is not timed.
#include "BenchSupport.h"

namespace {

using namespace kt500;
using bench::Seconds;

constexpr const char* kDevice = "KT520_7";
constexpr const char* kLargest = "KTQ500_PT_7";

// Typing alternates between two values that differ from the device's.
std::string TypedValue(int i) {
    return i % 2 == 0 ? "7" : "8";
}

void BM_TypedValueToConfirmationRow(benchmark::State& state) {
    bench::Driver driver;
    driver.run(std::string("start ") + kDevice + "\nnode alertSettings\nsettle\n");
    const form::ListViewModel& rows =
        driver.session().control().form().control("lsvConfirmation").listView();
    int i = 0;
    for (auto _ : state) {
        const auto before = app::ThreadCpuTime();
        driver.run("type txtHAAlertLimit[0] \"" + TypedValue(i++) + "\"\ntoolbar send\n");
        const auto spent = app::ThreadCpuTime() - before;
        if (rows.count() != 1) {
            state.SkipWithError("the confirmation list does not hold the one row");
            break;
        }
        state.SetIterationTime(Seconds(spent));
        driver.run("node alertSettings\n");
    }
}
BENCHMARK(BM_TypedValueToConfirmationRow)->UseManualTime()->Unit(benchmark::kMicrosecond);

// Every row "Add all values" gives the largest device (about 40: no real
// data set holds 100 sendable values), confirmed and sent.
void BM_ConfirmedRowsToRequests(benchmark::State& state) {
    bench::Driver driver;
    driver.run(std::string("start ") + kLargest + "\nsettle\n");
    form::Control& list = driver.session().control().form().control("lsvConfirmation");
    int i = 0;
    std::size_t requests = 0;
    int rows = 0;
    for (auto _ : state) {
        driver.run("node alertSettings\ntype txtHAAlertLimit[0] \"" + TypedValue(i++) +
                   "\"\ntoolbar send\nclick cmdAddAllValues\n");
        rows = list.listView().checkedCount();
        if (rows < 2) {
            state.SkipWithError("the confirmation list holds no rows to send");
            break;
        }
        (void)driver.session().recorder().takeRequests();
        const auto before = app::ThreadCpuTime();
        driver.run("click cmdSend[8]\n");
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
        requests = driver.session().recorder().takeRequests().size();
        driver.run("settle\nexpect toolbar.stop.Enabled = False\n");
    }
    state.counters["rows"] = rows;
    state.counters["requests"] = static_cast<double>(requests);
    state.SetLabel(kLargest);
}
BENCHMARK(BM_ConfirmedRowsToRequests)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);

}  // namespace
