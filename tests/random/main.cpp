// kt500-random: random sessions against the built-in BL.
//
//   kt500-random --device KT520_7 [--offline] [--role ROLE] [--seed N]
//                [--seeds N] [--steps N] [--actions KIND,KIND,...]
//                [--avoid CHAIN_OR_PAGE,...] [--replay-to FILE]
//
// Runs --seeds sessions from --seed on, each of --steps random steps
// (KT500_RANDOM_STEPS and KT500_RANDOM_SEEDS, when set, take the place of
// the arguments, for long runs by hand). A broken invariant stops the run
// and prints the script of every line run so far, which replays the session
// with kt500-dtm --script; exit status 1. All clean: 0.
#include "app/ScriptRunner.h"
#include "random/RandomSession.h"
#include "random/SessionInvariants.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using kt500::random::Options;
using kt500::random::Step;

struct Run {
    Options options;
    int seeds = 1;
    std::string replayFile;
};

Run Arguments(int argc, char** argv) {
    Run run;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&]() -> std::string {
            if (i + 1 >= argc) {
                throw std::invalid_argument(word + " needs a value");
            }
            return argv[++i];
        };
        if (word == "--device") {
            run.options.deviceKey = value();
        } else if (word == "--offline") {
            run.options.online = false;
        } else if (word == "--role") {
            run.options.role = value();
        } else if (word == "--seed") {
            run.options.seed = std::stoull(value());
        } else if (word == "--seeds") {
            run.seeds = std::stoi(value());
        } else if (word == "--steps") {
            run.options.steps = std::stoi(value());
        } else if (word == "--replay-to") {
            run.replayFile = value();
        } else if (word == "--actions" || word == "--avoid") {
            std::stringstream words(value());
            for (std::string one; std::getline(words, one, ',');) {
                (word == "--actions" ? run.options.actions : run.options.avoid).insert(one);
            }
        } else {
            throw std::invalid_argument("unknown argument " + word);
        }
    }
    if (const char* steps = std::getenv("KT500_RANDOM_STEPS")) {
        run.options.steps = std::stoi(steps);
    }
    if (const char* seeds = std::getenv("KT500_RANDOM_SEEDS")) {
        run.seeds = std::stoi(seeds);
    }
    return run;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return text;
}

// One session; the replay script of a broken invariant, or "".
std::string RunSession(const Options& options) {
    std::ostringstream printed;
    std::ostringstream errors;
    kt500::app::ScriptRunner runner(KT500_SHARE_DIR, printed);
    kt500::random::SessionInvariants invariants(runner.session());
    std::vector<std::string> played;

    Step step;
    step.action = "start";
    step.lines = {"start " + options.deviceKey + (options.online ? " online" : " offline") +
                      " role=" + options.role,
                  "settle"};
    step.settles = true;
    std::optional<kt500::random::RandomActions> actions;
    for (int number = 0; number <= options.steps; ++number) {
        if (number > 0) {
            if (!actions) {
                actions.emplace(runner.session(), options);
            }
            step = actions->next();
            invariants.before();
        }
        played.insert(played.end(), step.lines.begin(), step.lines.end());
        std::vector<std::string> broken;
        try {
            if (runner.run(Joined(step.lines), errors) == kt500::app::ScriptRunner::kCannotRun) {
                broken.push_back("the script cannot run: " + errors.str());
            } else {
                broken = invariants.after(step);
            }
        } catch (const std::exception& failure) {
            broken.push_back(std::string("the step threw: ") + failure.what());
        }
        if (!broken.empty()) {
            std::string report = "# seed " + std::to_string(options.seed) + ", step " +
                                 std::to_string(number) + " (" + step.action + "):\n";
            for (const std::string& line : broken) {
                report += "#   " + line + '\n';
            }
            return report + Joined(played);
        }
    }
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    Run run;
    try {
        run = Arguments(argc, argv);
    } catch (const std::exception& bad) {
        std::cerr << "kt500-random: " << bad.what() << '\n';
        return 2;
    }
    for (int i = 0; i < run.seeds; ++i) {
        Options options = run.options;
        options.seed = run.options.seed + static_cast<std::uint64_t>(i);
        const std::string replay = RunSession(options);
        if (!replay.empty()) {
            std::cout << replay;
            if (!run.replayFile.empty()) {
                std::ofstream(run.replayFile) << replay;
            }
            return 1;
        }
    }
    std::cout << run.options.deviceKey << (run.options.online ? " online" : " offline") << ": "
              << run.seeds << " seeds of " << run.options.steps << " steps clean\n";
    return 0;
}
