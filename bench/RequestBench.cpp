// Building the requests of the largest writable KT520_7 group: a write with
// every parameter changed on the page, and a read of the same group. The
// requests go to a recording connection, so the BL's own work is not timed.
#include "data/ParameterDocument.h"
#include "devices/DeviceClass.h"
#include "support/RecordingServices.h"
#include "support/TestUserControl.h"
#include "xml/XPath.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using kt500::testing::TestUserControl;

struct Fixture {
    Fixture() {
        uc.controlDouble = recorder;
        const kt500::xml::XPath query(*uc.xmlDataFile(),
                                      kt500::xml::Namespaces::fromSelection(
                                          kt500::data::ParameterDocument::SelectionNamespaces));
        // The group with the most writable parameters.
        for (const auto& candidate : query.select("data:requestGroups/data:requestGroup")) {
            std::vector<std::string> writable;
            for (const auto& included : candidate.childElements("includedParam")) {
                const std::string name = included.attribute("name");
                if (uc.ParameterNodeByName(name).attribute("access") == "readWrite") {
                    writable.push_back(name);
                }
            }
            if (writable.size() > names.size()) {
                group = candidate.attribute("name");
                names = std::move(writable);
            }
        }
        uc.tools().CurrentFrame = uc.deviceClass().DevicePrefix() + group;
        uc.tools().ReadGroup = true;  // the progress bar's range stays as it is
        int frame = -1;
        const auto& pages = uc.form().array(uc.deviceClass().FrameArrayName());
        for (const int index : pages.indices()) {
            if (pages[index].tag() == uc.tools().CurrentFrame) {
                frame = index;
            }
        }
        auto& rows = uc.form().control("lsvConfirmation").listView();
        for (std::size_t i = 0; i < names.size(); ++i) {
            uc.addField(kt500::form::ControlKind::TextBox, "txtBenchField", static_cast<int>(i),
                        uc.deviceClass().FrameArrayName(), frame, names[i])
                .setText(std::to_string(i) + ",5");
            const int row = rows.add(names[i]);
            rows.setSubItem(row, 3, names[i]);
            rows.setSubItem(row, 4, uc.tools().CurrentFrame);
            rows.setChecked(row, true);
        }
    }

    std::shared_ptr<kt500::testing::CallLog> log = std::make_shared<kt500::testing::CallLog>();
    std::shared_ptr<kt500::testing::RecordingControl> recorder =
        std::make_shared<kt500::testing::RecordingControl>(log);
    TestUserControl uc;
    std::string group;
    std::vector<std::string> names;
};

// The whole group marked changed, built and handed to a recording BL.
void BM_WholeGroup(benchmark::State& state, const char* access) {
    Fixture f;
    for (auto _ : state) {
        f.uc.requests.SendRequest(f.group, access);
        f.log->clear();
    }
    state.counters["items"] = static_cast<double>(f.names.size());
}
BENCHMARK_CAPTURE(BM_WholeGroup, write, "write");
BENCHMARK_CAPTURE(BM_WholeGroup, read, "read");

}  // namespace
