// How long the window fails to answer while it follows a device at 100 Hz
// in real time. scripts/bench runs it.
//
//   EventLoopStall SECONDS
//
// The main window (offscreen) runs a KT520_7 session in real time on its
// monitoring page with monitoring and the log on; besides the BL's own
// cycle, a monitoring reply reaches the control every 10 ms through the
// window's gate, as the pump delivers the BL's events. A probe timer of
// 1 ms notes the time between two of its runs: the longest such gap is the
// longest the event loop did not turn (the probe's own millisecond
// included). Prints one line of JSON: the replies delivered, the chart's
// points, the longest gap and the 99th percentile of the gaps, in real time
// and in the processor time the window's thread spent in them.
#include "app/ControlSession.h"
#include "app/ReplyTap.h"
#include "app/window/DesktopSession.h"
#include "app/window/MainWindow.h"

#include "MonitoringReply.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace kt500;

const char* const kReply = kt500::bench::kMonitoringReply;

void RunFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

int Measure(int seconds) {
    QTemporaryDir installation;
    QTemporaryDir logFolder;
    window::MainWindow window(KT500_SHARE_DIR, installation.path(),
                              installation.filePath(QStringLiteral("window.conf")));
    simulator::SessionOptions options;
    options.deviceKey = "KT520_7";
    window.startSession(options);
    window.show();
    window::DesktopSession& desktop = *window.session();
    desktop.setRealTime(true);
    RunFor(1000);

    host::RavikKT500& control = desktop.session().control();
    form::Form& form = control.form();
    const std::string logFile =
        QDir(logFolder.path()).filePath(QStringLiteral("Monitoring.log")).toStdString();
    desktop.gate().run([&] {
        form.raiseNodeClick(form.control("treeNavigation"), "monitoringVariables");
        form.raiseClick(form.control("cmdHAMonitoring", 1));
        form.control("txtFileName").setText(logFile);
        form.raiseClick(form.control("cmdOpenFile", 0));
        form.raiseClick(form.control("cmdHAMonitoring", 0));
    });
    if (!control.tools().MonitoringFlag || !control.tools().MonitorLog) {
        std::cerr << "EventLoopStall: monitoring with the log did not start\n";
        return 1;
    }

    long replies = 0;
    QTimer feed;
    feed.setTimerType(Qt::PreciseTimer);
    QObject::connect(&feed, &QTimer::timeout, [&] {
        if (desktop.gate().tryRun([&] { control.IQDLGuiEvent_CommunicationEvent(kReply); })) {
            ++replies;
        }
    });

    // Each gap in real time and in the processor time of the thread: on a
    // shared machine a gap may be long because the process was not running,
    // the processor time is the work the window itself did in the gap.
    std::vector<double> gaps;
    std::vector<double> work;
    QElapsedTimer clock;
    qint64 last = 0;
    std::chrono::nanoseconds lastCpu{0};
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        const std::chrono::nanoseconds cpu = app::ThreadCpuTime();
        gaps.push_back(static_cast<double>(now - last) / 1e6);
        work.push_back(static_cast<double>((cpu - lastCpu).count()) / 1e6);
        last = now;
        lastCpu = cpu;
    });

    clock.start();
    lastCpu = app::ThreadCpuTime();
    feed.start(10);
    probe.start(1);
    RunFor(seconds * 1000);
    probe.stop();
    feed.stop();

    const int points = form.control("pegoKT520").chart().points();
    desktop.gate().run([&] { form.raiseClick(form.control("cmdHAMonitoring", 0)); });
    if (gaps.empty() || replies == 0 || points == 0) {
        std::cerr << "EventLoopStall: no reply reached the chart\n";
        return 1;
    }
    std::sort(gaps.begin(), gaps.end());
    std::sort(work.begin(), work.end());
    std::cout << R"({"mode": "stall", "key": "KT520_7", "seconds": )" << seconds
              << R"(, "replies": )" << replies << R"(, "points": )" << points
              << R"(, "longest_ms": )" << gaps.back() << R"(, "p99_ms": )"
              << gaps[gaps.size() * 99 / 100] << R"(, "longest_cpu_ms": )" << work.back()
              << R"(, "p99_cpu_ms": )" << work[work.size() * 99 / 100] << "}\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: EventLoopStall SECONDS\n";
        return 2;
    }
    QApplication application(argc, argv);
    try {
        return Measure(std::stoi(argv[1]));
    } catch (const std::exception& error) {
        std::cerr << "EventLoopStall: " << error.what() << '\n';
        return 1;
    }
}
