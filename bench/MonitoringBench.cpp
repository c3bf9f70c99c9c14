// One monitoring reply on its whole way: from IQDLGuiEvent_CommunicationEvent
// through the parse and schema validation, Reply, ArrangeValues and
// UpdateMonitoringGraph to the chart point and the log line; beside it, in
// the same run, the bare parse and validation of the same reply text. And
// the resident memory of a long run at 100 Hz: ten minutes of virtual time
// (60,000 replies) with the chart and the log on, against the memory after
// the first thousand points.
#include "app/ControlSession.h"
#include "app/ReplyTap.h"
#include "BenchSupport.h"
#include "MonitoringReply.h"
#include "monitoring/AppendToFile.h"
#include "xml/Document.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QTemporaryDir>

#include <fstream>
#include <string>
#include <unistd.h>

namespace {

using kt500::app::ControlSession;

const char* const kReply = kt500::bench::kMonitoringReply;

// A KT520 session on its monitoring page, monitoring with the log on.
struct Session {
    Session() : session(KT500_SHARE_DIR) {
        kt500::simulator::SessionOptions options;
        options.deviceKey = "KT520_7";
        session.start(options);
        kt500::form::Form& form = session.control().form();
        form.raiseNodeClick(form.control("treeNavigation"), "monitoringVariables");
        form.raiseClick(form.control("cmdHAMonitoring", 1));
        form.control("txtFileName").setText(QDir(folder.path()).filePath("Monitoring.log").toStdString());
        form.raiseClick(form.control("cmdOpenFile", 0));
        form.raiseClick(form.control("cmdHAMonitoring", 0));
    }
    QTemporaryDir folder;
    ControlSession session;
};

// The processor time of the thread, as every figure of the whole control.
void BM_MonitoringReplyToChartAndLog(benchmark::State& state) {
    Session fixture;
    auto& control = fixture.session.control();
    for (auto _ : state) {
        const auto before = kt500::app::ThreadCpuTime();
        benchmark::DoNotOptimize(control.IQDLGuiEvent_CommunicationEvent(kReply));
        state.SetIterationTime(kt500::bench::Seconds(kt500::app::ThreadCpuTime() - before));
    }
}
BENCHMARK(BM_MonitoringReplyToChartAndLog)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_BareParseAndValidation(benchmark::State& state) {
    Session fixture;
    kt500::xml::ParseOptions options;
    options.schemas = fixture.session.control().communicationSchemas();
    for (auto _ : state) {
        const auto before = kt500::app::ThreadCpuTime();
        kt500::xml::LoadResult parsed = kt500::xml::Document::parse(kReply, options);
        state.SetIterationTime(kt500::bench::Seconds(kt500::app::ThreadCpuTime() - before));
        if (!parsed.ok()) {
            state.SkipWithError("the reply does not validate");
        }
        benchmark::DoNotOptimize(parsed.document);
    }
}
BENCHMARK(BM_BareParseAndValidation)->UseManualTime()->Unit(benchmark::kMicrosecond);

// What the log line's own file work costs: opening the file to append, one
// line of the same length in one write, closing it, by the bare system calls. The control opens and
// closes the log for each line (so that it can be read while it grows and
// a crash loses one line at most): this is part of the reply's floor.
void BM_LogLineOpenAppendClose(benchmark::State& state) {
    QTemporaryDir folder;
    const std::string path = QDir(folder.path()).filePath("Monitoring.log").toStdString();
    const std::string line = "08:00:00;45.00;44.80;11.20;2.35;34.50;\n";
    for (auto _ : state) {
        const auto before = kt500::app::ThreadCpuTime();
        const auto appended = kt500::monitoring::AppendToFile(path, line);
        state.SetIterationTime(kt500::bench::Seconds(kt500::app::ThreadCpuTime() - before));
        if (appended != kt500::monitoring::Appended::Done) {
            state.SkipWithError("the log file cannot be written");
            break;
        }
    }
}
BENCHMARK(BM_LogLineOpenAppendClose)->UseManualTime()->Unit(benchmark::kMicrosecond);

long ResidentKiB() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// 100 Hz for ten minutes of virtual time: a reply every 10 ms (besides the
// BL's own cycle).
void BM_TenMinutesAt100Hz(benchmark::State& state) {
    for (auto _ : state) {
        Session fixture;
        auto& control = fixture.session.control();
        const auto run = [&](int replies) {
            for (int i = 0; i < replies; ++i) {
                fixture.session.wait(10);
                control.IQDLGuiEvent_CommunicationEvent(kReply);
            }
        };
        run(1000);
        const long afterThousand = ResidentKiB();
        run(59'000);
        state.counters["rss_growth_KiB"] = static_cast<double>(ResidentKiB() - afterThousand);
        state.counters["points"] = control.form().control("pegoKT520").chart().points();
    }
}
BENCHMARK(BM_TenMinutesAt100Hz)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
