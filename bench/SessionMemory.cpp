// The resident memory of a session, measured in a process of its own so
// that nothing else the process did counts. scripts/bench runs it.
//
//   SessionMemory headless KEY        after start-up and "Upload all"
//   SessionMemory window KEY          the same in the main window (offscreen)
//   SessionMemory replies KEY COUNT   headless, uploads and monitoring mixed
//                                     until COUNT replies: the memory after
//                                     the first thousand and at the end
//
// Prints one line of JSON: the mode, the key, the resident KiB and, for
// replies, the replies counted and the growth since the first thousand.
#include "app/ControlSession.h"
#include "app/ScriptRunner.h"
#include "app/window/DesktopSession.h"
#include "app/window/MainWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using namespace kt500;

long ResidentKiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return -1;
}

void Run(app::ScriptRunner& runner, const std::string& lines) {
    std::ostringstream err;
    if (runner.run(lines, err) != app::ScriptRunner::kPassed) {
        throw std::runtime_error("script failed: " + err.str());
    }
}

int Headless(const std::string& key) {
    std::ostringstream out;
    app::ScriptRunner runner(KT500_SHARE_DIR, out);
    Run(runner, "start " + key + "\nsettle\ntoolbar uploadAll\nsettle\n"
                "expect toolbar.stop.Enabled = False\n");
    std::cout << R"({"mode": "headless", "key": ")" << key << R"(", "rss_kib": )" << ResidentKiB()
              << "}\n";
    return 0;
}

void LetQtDraw() {
    QElapsedTimer batch;
    batch.start();
    while (batch.elapsed() < 300) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

int Window(const std::string& key) {
    QTemporaryDir installation;
    window::MainWindow window(KT500_SHARE_DIR, installation.path(),
                              installation.filePath(QStringLiteral("window.conf")));
    simulator::SessionOptions options;
    options.deviceKey = key;
    window.startSession(options);
    window.show();
    window::DesktopSession& desktop = *window.session();
    desktop.setRealTime(false);
    desktop.settle();
    LetQtDraw();
    form::Form& form = desktop.session().control().form();
    desktop.gate().run([&form] { form.raiseToolbarClick(form.control("smuiDTM", 1), "uploadAll"); });
    desktop.settle();
    LetQtDraw();
    if (form.control("smuiDTM", 1).toolbar().find("stop")->enabled) {
        std::cerr << "SessionMemory: the upload did not end\n";
        return 1;
    }
    std::cout << R"({"mode": "window", "key": ")" << key << R"(", "rss_kib": )" << ResidentKiB()
              << "}\n";
    return 0;
}

// Cycles of "Upload all" and a minute of monitoring, until count replies.
int Replies(const std::string& key, long count) {
    std::ostringstream out;
    app::ScriptRunner runner(KT500_SHARE_DIR, out);
    Run(runner, "start " + key + "\nsettle\n");
    long replies = 0;
    runner.session().recorder().watchReplies(
        [&replies](const std::string&, std::chrono::nanoseconds) { ++replies; });
    long afterThousand = -1;
    long cycles = 0;
    const std::string monitoring = key.rfind("KT540", 0) == 0   ? "cmdPAMonitoring[0]"
                                   : key.rfind("PL500", 0) == 0 ? "cmdPLMonitoring[0]"
                                                                : "cmdHAMonitoring[0]";
    while (replies < count) {
        Run(runner, "toolbar uploadAll\nsettle\nnode monitoringVariables\nclick " + monitoring +
                        "\nwait 60000\nclick " + monitoring + "\nsettle\n");
        ++cycles;
        if (afterThousand < 0 && replies >= 1000) {
            afterThousand = ResidentKiB();
        }
        out.str({});
    }
    Run(runner, "expect toolbar.stop.Enabled = False\n");
    const long end = ResidentKiB();
    std::cout << R"({"mode": "replies", "key": ")" << key << R"(", "replies": )" << replies
              << R"(, "cycles": )" << cycles << R"(, "rss_kib_after_1000": )" << afterThousand
              << R"(, "rss_kib": )" << end << R"(, "growth_kib": )" << end - afterThousand << "}\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (argc < 3 || (mode != "headless" && mode != "window" && mode != "replies") ||
        (mode == "replies" && argc < 4)) {
        std::cerr << "usage: SessionMemory headless|window KEY | replies KEY COUNT\n";
        return 2;
    }
    try {
        if (mode == "window") {
            QApplication application(argc, argv);
            return Window(argv[2]);
        }
        QCoreApplication application(argc, argv);
        return mode == "headless" ? Headless(argv[2]) : Replies(argv[2], std::stol(argv[3]));
    } catch (const std::exception& error) {
        std::cerr << "SessionMemory: " << error.what() << '\n';
        return 1;
    }
}
