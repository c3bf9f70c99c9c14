// A read of one page on each family's largest device, from the BL's replies
// to the values on the page, against the bare parse and validation of the
// same reply texts, in the same run. Of the pages whose upload reads one
// request group with values, three a family: the one whose
// replies carry the fewest items (one, where a page reads a single value),
// the one nearest 20 items and the largest.
//
// BM_PageReplies reads the page with "Upload current page" and reports the
// processor time the control spent in IQDLGuiEvent_CommunicationEvent for
// its replies (the BL's time is left out); BM_PageRepliesFloor parses and
// validates the same texts against the communication schema.
#include "BenchSupport.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace {

using namespace kt500;
using bench::Seconds;

struct PageRead {
    std::string node;
    std::vector<std::string> replies;
    int items = 0;
};

int ItemsIn(const std::vector<std::string>& replies) {
    int items = 0;
    for (const std::string& reply : replies) {
        for (std::size_t at = reply.find("<item "); at != std::string::npos;
             at = reply.find("<item ", at + 1)) {
            ++items;
        }
    }
    return items;
}

// The request groups the replies answer.
std::set<std::string> GroupsOf(const std::vector<std::string>& replies) {
    std::set<std::string> groups;
    for (const std::string& reply : replies) {
        const auto at = reply.find("<communicationResponse name=");
        if (at != std::string::npos) {
            const std::size_t open = at + 28;
            groups.insert(reply.substr(open + 1, reply.find(reply[open], open + 1) - open - 1));
        }
    }
    return groups;
}

// Every page of the device whose upload reads one request group with
// values.
std::vector<PageRead> ReadEveryPage(const std::string& key) {
    bench::Driver driver;
    driver.run("start " + key + "\nsettle\n");
    std::vector<std::string> nodes;
    for (const auto& node : driver.session().control().form().control("treeNavigation").tree().nodes()) {
        nodes.push_back(node.key);
    }
    std::vector<PageRead> pages;
    bench::WatchedReplies watched;
    for (const std::string& node : nodes) {
        driver.run("node " + node + "\nsettle\n");
        watched.watch(driver.session());
        driver.run("toolbar uploadCurrent\nsettle\n");
        driver.session().recorder().watchReplies({});
        const int items = ItemsIn(watched.texts);
        if (items > 0 && GroupsOf(watched.texts).size() == 1) {
            pages.push_back({node, watched.texts, items});
        }
    }
    return pages;
}

// The pages of the three sizes, by the device key and the size's name.
const PageRead& Page(const std::string& key, const std::string& size) {
    static std::map<std::string, std::map<std::string, PageRead>> chosen;
    auto& sizes = chosen[key];
    if (sizes.empty()) {
        const std::vector<PageRead> pages = ReadEveryPage(key);
        if (pages.empty()) {
            throw std::runtime_error(key + ": no page reads anything");
        }
        const auto byItems = [](const PageRead& a, const PageRead& b) { return a.items < b.items; };
        sizes["smallest"] = *std::min_element(pages.begin(), pages.end(), byItems);
        sizes["largest"] = *std::max_element(pages.begin(), pages.end(), byItems);
        sizes["near20"] = *std::min_element(pages.begin(), pages.end(),
                                            [](const PageRead& a, const PageRead& b) {
                                                return std::abs(a.items - 20) < std::abs(b.items - 20);
                                            });
    }
    return sizes.at(size);
}

void BM_PageReplies(benchmark::State& state, const std::string& key, const std::string& size) {
    const PageRead& page = Page(key, size);
    bench::Driver driver;
    driver.run("start " + key + "\nsettle\nnode " + page.node + "\nsettle\n");
    bench::WatchedReplies watched;
    for (auto _ : state) {
        watched.watch(driver.session());
        driver.run("toolbar uploadCurrent\nsettle\n");
        state.SetIterationTime(Seconds(watched.controlTime));
    }
    driver.session().recorder().watchReplies({});
    state.counters["items"] = page.items;
    state.counters["replies"] = static_cast<double>(page.replies.size());
    state.SetLabel(key + " " + page.node);
}

void BM_PageRepliesFloor(benchmark::State& state, const std::string& key, const std::string& size) {
    const PageRead& page = Page(key, size);
    bench::Driver driver;
    driver.run("start " + key + "\n");
    const xml::SchemaCollection* schemas = driver.session().control().communicationSchemas();
    for (auto _ : state) {
        const auto before = app::ThreadCpuTime();
        bench::ParseAndValidate(page.replies, schemas);
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
    }
    state.counters["items"] = page.items;
    state.SetLabel(key + " " + page.node);
}

const bool kRegistered = [] {
    for (const auto& [family, key] : bench::LargestDevices()) {
        for (const char* size : {"smallest", "near20", "largest"}) {
            const std::string suffix = "/" + family + "/" + size;
            benchmark::RegisterBenchmark(("BM_PageReplies" + suffix).c_str(), BM_PageReplies, key,
                                         std::string(size))
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark(("BM_PageRepliesFloor" + suffix).c_str(),
                                         BM_PageRepliesFloor, key, std::string(size))
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
    }
    return true;
}();

}  // namespace
