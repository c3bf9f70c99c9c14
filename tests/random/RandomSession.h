// The randomized session test: random user actions and BL faults on one
// session of a device, each step written as lines of the automation
// language and run through the script runner, so that the lines printed for
// a failing seed replay exactly what the test did. After every step the
// invariants of SessionInvariants hold or the run stops.
#pragma once

#include "app/ControlSession.h"

#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace kt500::random {

// One step: the lines the runner executes and what the step may show.
struct Step {
    std::string action;              // the kind, as --actions names it
    std::vector<std::string> lines;  // script lines
    // Headers of message boxes the step may show; required: headers of which
    // at least one box must show.
    std::set<std::string> allowedHeaders;
    std::set<std::string> requiredHeaders;
    bool settles = false;   // ends with settle: the toolbar must be idle after
    bool fault = false;     // a BL fault was injected: its error may show
    bool readsPage = false; // a clean read of the page shown: it shows the device's values
    std::string field;      // a typed field (NAME[INDEX]); empty: none
    std::string value;      // the text typed into it
    bool refused = false;   // the value typed must be refused
};

struct Options {
    std::string deviceKey = "KT520_7";
    bool online = true;
    std::string role = "maintenance";
    std::uint64_t seed = 1;
    int steps = 200;
    std::set<std::string> actions;  // empty: all
    // Upload chains (toolbar keys) and pages (tree keys) the steps leave alone.
    std::set<std::string> avoid;
};

// Every action kind the generator knows.
[[nodiscard]] const std::vector<std::string>& ActionKinds();

// Picks the next step from what the session shows now.
class RandomActions {
public:
    RandomActions(app::ControlSession& session, const Options& options);
    [[nodiscard]] Step next();

private:
    struct Field {
        std::string reference;  // NAME[INDEX]
        std::string tag;
        bool list = false;
    };
    [[nodiscard]] std::vector<Field> pageFields() const;
    [[nodiscard]] std::vector<std::string> pages() const;
    [[nodiscard]] std::pair<std::optional<double>, std::optional<double>> limits(
        const std::string& tag) const;
    [[nodiscard]] std::string validValue(const std::string& tag);
    [[nodiscard]] std::string invalidValue(const std::string& tag);
    // A value for a field of the test settings, by the rules of the test
    // chosen in the page's list (any number with none chosen); empty when
    // the other fields leave no valid value.
    [[nodiscard]] std::string testSettingValue(const std::string& reference, bool refused);
    [[nodiscard]] std::string pick(const std::vector<std::string>& choices);
    [[nodiscard]] int below(int count);
    [[nodiscard]] bool build(const std::string& kind, Step& step);
    void addRequest(Step& step);  // a request of one of three kinds, for a fault step

    app::ControlSession& m_session;
    Options m_options;
    std::mt19937_64 m_random;
    std::vector<std::string> m_kinds;
    std::vector<std::string> m_uploadGroups;  // toolbar keys of the upload chains
};

// How many of the device's units one unit of the page is worth (1000 for a
// time shown in s and held in ms): the class's write form of "1".
double PageScale(host::RavikKT500& control, const std::string& tag);

}  // namespace kt500::random
