// kt500-soak: a long session of one device in virtual time, as a control
// lives through a shift in a plant.
//
//   kt500-soak --device KT520_7 --minutes N [--seed S] [--slack-kb K]
//              [--avoid CHAIN_OR_PAGE,...] [--trace]
//
// Each virtual minute: the monitoring page follows the device at 10 Hz for
// 50 s, then an upload chain of the toolbar runs; every tenth minute a value
// is changed and sent; at random a BL fault or refusal comes with a chain or
// the send, and the language or the unit system changes. Every step is
// lines of the automation language run through the script runner, and
// after each the invariants of the random sessions (SessionInvariants) hold:
// only the boxes the step called for, an idle toolbar after settle, the
// device and the data set holding exactly what was confirmed. Monitoring
// must run while started and stop when stopped, and every monitoring reply
// of the BL must become one point of the page's chart. The heap must stay flat:
// after the first tenth of the run (at least one minute) no reading may lie
// more than --slack-kb (default 2048) above the reading taken then.
// --avoid leaves upload chains (toolbar keys) and pages (tree keys) out;
// --trace prints every step's lines as it runs.
//
// Prints one line per tenth of the run and a summary; exit status 0 when all
// held, 1 with the seed, the minute and the lines of that minute when not, 2
// for bad arguments. scripts/soak runs 24 hours of virtual time per family.
#include "app/ScriptRunner.h"
#include "presentation/Graphs.h"
#include "random/RandomSession.h"
#include "random/SessionInvariants.h"

#include <malloc.h>

#include <algorithm>
#include <optional>
#include <set>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KT500_SOAK_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define KT500_SOAK_ASAN 1
#endif
#ifdef KT500_SOAK_ASAN
// The sanitizer runtime's count of the bytes the program holds.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

using kt500::random::Options;
using kt500::random::RandomActions;
using kt500::random::Step;

struct Soak {
    Options options;
    int minutes = 10;
    long slackKb = 2048;
    bool trace = false;
};

// Bytes the program holds on its heap now (not what the allocator keeps
// cached or, under AddressSanitizer, in quarantine). Without the sanitizer
// the large blocks the allocator maps on their own count too: a buffer that
// grows past the mapping threshold leaves the arenas' count. The chunks in
// glibc's per-thread cache count as held: scripts/soak turns that cache off.
std::size_t HeapBytes() {
#ifdef KT500_SOAK_ASAN
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

// The monitoring chart's point counter after `replies` points from `point`:
// a chart full at kMonitoringPointLimit starts again before the next point.
int ChartPointAfter(int point, long long replies) {
    const long long limit = kt500::presentation::kMonitoringPointLimit;
    const long long reached = point + replies;
    return static_cast<int>(reached <= limit ? reached : (reached - limit - 1) % limit + 1);
}

Soak Arguments(int argc, char** argv) {
    Soak soak;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&]() -> std::string {
            if (i + 1 >= argc) {
                throw std::invalid_argument(word + " needs a value");
            }
            return argv[++i];
        };
        if (word == "--device") {
            soak.options.deviceKey = value();
        } else if (word == "--minutes") {
            soak.minutes = std::stoi(value());
        } else if (word == "--seed") {
            soak.options.seed = std::stoull(value());
        } else if (word == "--slack-kb") {
            soak.slackKb = std::stol(value());
        } else if (word == "--trace") {
            soak.trace = true;
        } else if (word == "--avoid") {
            std::stringstream words(value());
            for (std::string one; std::getline(words, one, ',');) {
                soak.options.avoid.insert(one);
            }
        } else {
            throw std::invalid_argument("unknown argument " + word);
        }
    }
    if (soak.minutes < 1) {
        throw std::invalid_argument("--minutes must be at least 1");
    }
    return soak;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return text;
}

class SoakRun {
public:
    explicit SoakRun(const Soak& soak)
        : m_soak(soak),
          m_runner(KT500_SHARE_DIR, m_printed),
          m_invariants(m_runner.session()),
          m_random(soak.options.seed) {}

    // "" when every minute held; else what broke and the lines of its minute.
    std::string run() {
        Step start;
        start.action = "start";
        start.lines = {"start " + m_soak.options.deviceKey, "settle"};
        start.settles = true;
        if (std::string broken = play(start); !broken.empty()) {
            return broken;
        }
        app().bl().simulatedControl().setTiming(tenHertz());
        const std::string prefix = app().control().deviceClass().DevicePrefix();
        m_monitoring = "cmd" + prefix + "Monitoring[0]";
        m_uploads.emplace(app(), only({"upload"}, 1));
        m_pages.emplace(app(), only({"node"}, 2));
        // A page may hold fields that take neither a typed nor a selected
        // value: the edit then moves to another page and tries again.
        m_edits.emplace(app(), only({"type", "select", "node"}, 3));
        m_sends.emplace(app(), only({"send"}, 4));
        m_faults.emplace(app(), only({"fail", "refuse"}, 5));
        m_changes.emplace(app(), only({"language", "units"}, 6));

        const int warmUp = std::max(1, m_soak.minutes / 10);
        const int report = std::max(1, m_soak.minutes / 10);
        for (m_minute = 1; m_minute <= m_soak.minutes; ++m_minute) {
            m_lines.clear();
            if (std::string broken = minute(); !broken.empty()) {
                return broken;
            }
            const std::size_t heap = HeapBytes();
            if (m_minute == warmUp) {
                m_baseline = heap;
            } else if (m_minute > warmUp) {
                m_highest = std::max(m_highest, heap);
                if (heap > m_baseline + static_cast<std::size_t>(m_soak.slackKb) * 1024U) {
                    return failure({"the heap holds " + std::to_string(heap) + " bytes, " +
                                    std::to_string(heap - m_baseline) + " more than after minute " +
                                    std::to_string(warmUp)});
                }
            }
            if (m_minute % report == 0) {
                std::cout << "minute " << m_minute << ": heap " << heap / 1024 << " KiB, "
                          << m_monitoringCycles << " monitoring cycles, " << m_steps << " steps"
                          << std::endl;
            }
        }
        std::cout << m_soak.options.deviceKey << ": " << m_soak.minutes
                  << " virtual minutes clean (seed " << m_soak.options.seed
                  << "), heap after minute " << warmUp << " " << m_baseline / 1024
                  << " KiB, highest after " << std::max(m_highest, m_baseline) / 1024 << " KiB\n";
        return {};
    }

private:
    static kt500::simulator::DeviceTiming tenHertz() { return {.monitoringPeriod = 100}; }

    kt500::app::ControlSession& app() { return m_runner.session(); }

    Options only(std::set<std::string> kinds, std::uint64_t stream) const {
        Options options = m_soak.options;
        options.actions = std::move(kinds);
        options.seed = m_soak.options.seed * 1000U + stream;
        return options;
    }

    bool chance(int oneIn) { return std::uniform_int_distribution<int>(1, oneIn)(m_random) == 1; }

    std::string minute() {
        if (std::string broken = monitor(); !broken.empty()) {
            return broken;
        }
        // Each step is drawn from what the session shows after the one before.
        std::vector<RandomActions*> kinds;
        kinds.push_back(chance(5) ? &*m_faults : &*m_uploads);  // a fault with its chain or send
        if (m_minute % 10 == 0) {
            kinds.push_back(&*m_pages);
        }
        if (chance(10)) {
            kinds.push_back(&*m_changes);
        }
        for (RandomActions* actions : kinds) {
            if (std::string broken = play(actions->next()); !broken.empty()) {
                return broken;
            }
            if (actions == &*m_pages) {
                if (std::string broken = edit(); !broken.empty()) {
                    return broken;
                }
            }
        }
        return {};
    }

    // A value typed or selected, then the send.
    std::string edit() {
        constexpr int kTries = 20;
        for (int i = 0; i < kTries; ++i) {
            const Step step = m_edits->next();
            if (std::string broken = play(step); !broken.empty()) {
                return broken;
            }
            if (step.action != "node") {
                return play(m_sends->next());
            }
        }
        return failure({"no page of " + std::to_string(kTries) + " took an edit"});
    }

    // 50 s of monitoring on its page; it runs while started, ends when stopped.
    std::string monitor() {
        Step started;
        started.action = "monitor";
        started.lines = {"node monitoringVariables", "click " + m_monitoring};
        if (std::string broken = play(started); !broken.empty()) {
            return broken;
        }
        if (!app().bl().simulatedControl().monitoring() ||
            !app().control().tools().MonitoringFlag) {
            return failure({"monitoring did not start"});
        }
        const long long repliesBefore = app().bl().simulatedControl().monitoringReplies();
        const int pointBefore = app().control().monitoring().pointCounter();
        Step followed;
        followed.action = "monitor";
        followed.lines = {"wait 50000"};
        if (std::string broken = play(followed); !broken.empty()) {
            return broken;
        }
        // 50 s at 10 Hz: 500 replies, each one point of the chart.
        const long long replies = app().bl().simulatedControl().monitoringReplies() - repliesBefore;
        const int point = app().control().monitoring().pointCounter();
        if (replies != 50000 / tenHertz().monitoringPeriod) {
            return failure({"the BL sent " + std::to_string(replies) +
                            " monitoring replies in 50 s, not 500"});
        }
        if (point != ChartPointAfter(pointBefore, replies)) {
            return failure({"the chart stands at point " + std::to_string(point) + " after " +
                            std::to_string(replies) + " monitoring replies from point " +
                            std::to_string(pointBefore) + ", not at " +
                            std::to_string(ChartPointAfter(pointBefore, replies))});
        }
        m_monitoringCycles += replies;
        Step stopped;
        stopped.action = "monitor";
        stopped.lines = {"click " + m_monitoring, "settle"};
        stopped.settles = true;
        if (std::string broken = play(stopped); !broken.empty()) {
            return broken;
        }
        if (app().bl().simulatedControl().monitoring() || app().control().tools().MonitoringFlag) {
            return failure({"monitoring did not stop"});
        }
        return {};
    }

    std::string play(const Step& step) {
        if (m_runner.session().started()) {
            m_invariants.before();
        }
        m_lines.insert(m_lines.end(), step.lines.begin(), step.lines.end());
        if (m_soak.trace) {
            std::cerr << Joined(step.lines) << std::flush;
        }
        ++m_steps;
        std::vector<std::string> broken;
        std::ostringstream errors;
        try {
            if (m_runner.run(Joined(step.lines), errors) == kt500::app::ScriptRunner::kCannotRun) {
                broken.push_back("the script cannot run: " + errors.str());
            } else {
                broken = m_invariants.after(step);
            }
        } catch (const std::exception& failed) {
            broken.push_back(std::string("the step threw: ") + failed.what());
        }
        // A day of steps keeps nothing of the ones before.
        m_printed.str("");
        if (m_runner.session().started()) {
            m_runner.session().dialogs().forgetBoxes();
        }
        return broken.empty() ? std::string() : failure(broken, step.action);
    }

    std::string failure(const std::vector<std::string>& broken, const std::string& action = "") {
        std::string report = "# " + m_soak.options.deviceKey + ", seed " +
                             std::to_string(m_soak.options.seed) + ", minute " +
                             std::to_string(m_minute) +
                             (action.empty() ? std::string() : " (" + action + ")") + ":\n";
        for (const std::string& line : broken) {
            report += "#   " + line + '\n';
        }
        return report + "# the lines of that minute:\n" + Joined(m_lines);
    }

    Soak m_soak;
    std::ostringstream m_printed;
    kt500::app::ScriptRunner m_runner;
    kt500::random::SessionInvariants m_invariants;
    std::mt19937_64 m_random;
    std::optional<RandomActions> m_uploads, m_pages, m_edits, m_sends, m_faults, m_changes;
    std::string m_monitoring;
    std::vector<std::string> m_lines;
    int m_minute = 0;
    long long m_steps = 0;
    long long m_monitoringCycles = 0;
    std::size_t m_baseline = 0;
    std::size_t m_highest = 0;
};

}  // namespace

int main(int argc, char** argv) {
    Soak soak;
    try {
        soak = Arguments(argc, argv);
    } catch (const std::exception& bad) {
        std::cerr << "kt500-soak: " << bad.what() << '\n';
        return 2;
    }
    SoakRun run(soak);
    const std::string broken = run.run();
    if (!broken.empty()) {
        std::cout << broken;
        return 1;
    }
    return 0;
}
