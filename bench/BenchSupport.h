// What the benchmarks of the whole control share: the largest device of
// each family, a script driver over a control session, the bare libxml2
// floor of a set of documents, processor time and resident memory.
#pragma once

#include "app/ControlSession.h"
#include "app/ReplyTap.h"
#include "app/ScriptRunner.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace kt500::bench {

inline std::filesystem::path ShareDir() {
    return KT500_SHARE_DIR;
}

// The device key of each family whose parameter document is the largest,
// by family name ("KT520", "KT540", "PL500").
inline const std::map<std::string, std::string>& LargestDevices() {
    static const std::map<std::string, std::string> largest = [] {
        const simulator::ParameterDocumentBuilder builder(ShareDir() / "devices");
        std::map<std::string, std::pair<std::string, std::size_t>> best;
        for (const auto& model : simulator::DeviceCatalogue::models()) {
            const std::string family = builder.familyFor(model.deviceType).name();
            const std::size_t size = builder.build(model).toXml().size();
            if (size > best[family].second) {
                best[family] = {model.key, size};
            }
        }
        std::map<std::string, std::string> keys;
        for (const auto& [family, entry] : best) {
            keys[family] = entry.first;
        }
        return keys;
    }();
    return largest;
}

// A session driven by script lines, as a user drives it; a line that does
// not run stops the benchmark with its error.
class Driver {
public:
    explicit Driver(const std::filesystem::path& shareDir = ShareDir())
        : m_runner(shareDir, m_out) {}

    void run(std::string_view lines) {
        std::ostringstream err;
        if (m_runner.run(lines, err) != app::ScriptRunner::kPassed) {
            throw std::runtime_error("script failed: " + err.str() + m_out.str());
        }
        m_out.str({});
    }
    [[nodiscard]] app::ControlSession& session() noexcept { return m_runner.session(); }

private:
    std::ostringstream m_out;
    app::ScriptRunner m_runner;
};

// The replies of what runs until the watcher is dropped, with the control's
// processor time on each.
struct WatchedReplies {
    std::vector<std::string> texts;
    std::chrono::nanoseconds controlTime{0};

    void watch(app::ControlSession& session) {
        texts.clear();
        controlTime = std::chrono::nanoseconds{0};
        session.recorder().watchReplies([this](const std::string& reply, std::chrono::nanoseconds spent) {
            texts.push_back(reply);
            controlTime += spent;
        });
    }
};

// Parses and validates each text against the schemas; a text that does not
// validate is an error of the benchmark's set-up.
inline void ParseAndValidate(const std::vector<std::string>& texts,
                             const xml::SchemaCollection* schemas) {
    for (const std::string& text : texts) {
        xml::LoadResult parsed = xml::Document::parse(text, {.schemas = schemas});
        if (!parsed.ok()) {
            throw std::runtime_error("the floor's document does not validate: " + text.substr(0, 200));
        }
        benchmark::DoNotOptimize(parsed.document);
    }
}

inline double Seconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double>(time).count();
}

inline long ResidentKiB() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// The family part of a benchmark's name for a device key.
inline std::string FamilyOf(const std::string& key) {
    for (const auto& [family, largest] : LargestDevices()) {
        if (largest == key) {
            return family;
        }
    }
    return key;
}

}  // namespace kt500::bench
