#include "app/window/Screenshots.h"

#include "app/window/DesktopSession.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPixmap>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace kt500::window {

namespace {

// Lets Qt lay out and paint what changed, charts included: a chart redraws
// once its batch of changes is due.
void LetChartsRedraw() {
    QElapsedTimer batch;
    batch.start();
    while (batch.elapsed() < 150) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

// Lets the BL answer, then lets Qt show the result.
void Settle(DesktopSession& desktop) {
    desktop.settle();
    LetChartsRedraw();
}

}  // namespace

int WriteScreenshots(const std::filesystem::path& shareDir,
                     const simulator::SessionOptions& options, const std::filesystem::path& folder,
                     std::ostream& out) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        out << "kt500-dtm: cannot create " << folder.string() << ": " << error.message() << '\n';
        return 1;
    }
    DesktopSession desktop(shareDir, {});
    const bool started = desktop.start(options, nullptr, TwipScale());
    FormView& view = desktop.view();
    view.show();
    form::Form& form = view.form();
    host::RavikKT500& control = desktop.session().control();
    if (started && options.online) {
        desktop.gate().run(
            [&form] { form.raiseToolbarClick(form.control("smuiDTM", 1), "uploadAll"); });
    }
    Settle(desktop);

    std::set<std::string> shot;
    int failures = started ? 0 : 1;
    // The page shown is CurrentFrame, except the settings page, which
    // leaves CurrentFrame at the page it was opened from.
    const auto take = [&](std::string page) {
        if (page.empty()) {
            page = control.m_objTools->CurrentFrame;
        }
        if (page.empty() || !shot.insert(page).second) {
            return;
        }
        const std::filesystem::path file = folder / (page + ".png");
        if (view.grab().save(QString::fromStdString(file.string()), "PNG")) {
            out << file.string() << '\n';
        } else {
            out << "kt500-dtm: cannot write " << file.string() << '\n';
            failures = 1;
        }
    };
    form::Control& tree = form.control("treeNavigation");
    // Leaves first, so that a page is drawn with its own node selected; a
    // branch that is a page of its own ("status") follows.
    std::vector<std::string> keys;
    for (const bool branches : {false, true}) {
        for (const form::TreeNode& node : tree.tree().nodes()) {
            if (tree.tree().hasChildren(node.key) == branches) {
                keys.push_back(node.key);
            }
        }
    }
    for (const std::string& key : keys) {
        desktop.gate().run([&form, &tree, &key] { form.raiseNodeClick(tree, key); });
        Settle(desktop);
        take({});
    }
    // The flow modification procedure, one picture a step: an installed
    // "1/25" curve made linear.
    const std::string flowPage = control.m_objDeviceClass ? control.m_objDeviceClass->DevicePrefix() + "flowModification" : "";
    const std::string flowCommands = "cmd" + flowPage.substr(0, 2) + "FlowModification";
    if (!flowPage.empty() && form.find(flowCommands, 0) != nullptr &&
        std::find(keys.begin(), keys.end(), "flowModification") != keys.end()) {
        const auto press = [&](int element) {
            desktop.gate().run([&form, &flowCommands, element] {
                form.raiseClick(form.control(flowCommands, element));
            });
            Settle(desktop);
        };
        desktop.gate().run([&form, &tree] { form.raiseNodeClick(tree, "flowModification"); });
        press(0);
        desktop.gate().run([&form, &control] {
            form::Control& curves =
                form.control("comFlowModification", control.m_objDeviceClass->FlowModificationIndex());
            for (int item = 0; item < curves.listCount(); ++item) {
                if (curves.list(item) == "1/25") {
                    curves.setListIndex(item);
                }
            }
        });
        Settle(desktop);
        take(flowPage + "_step1");
        press(3);
        take(flowPage + "_step2");
        press(3);
        take(flowPage + "_step3");
        press(4);
    }
    // The monitoring page after a minute of monitoring, stopped again.
    const std::string monitoringCommand = "cmd" + control.deviceClass().DevicePrefix() + "Monitoring";
    form::Control* monitoringStart = form.find(monitoringCommand, 0);
    if (started && options.online && monitoringStart != nullptr &&
        std::find(keys.begin(), keys.end(), "monitoringVariables") != keys.end()) {
        desktop.gate().run([&form, &tree] { form.raiseNodeClick(tree, "monitoringVariables"); });
        desktop.gate().run([&form, monitoringStart] { form.raiseClick(*monitoringStart); });
        desktop.session().wait(60'000);
        desktop.gate().run([&form, monitoringStart] { form.raiseClick(*monitoringStart); });
        LetChartsRedraw();
        const std::filesystem::path file = folder / "monitoringVariables-after-a-minute.png";
        if (view.grab().save(QString::fromStdString(file.string()), "PNG")) {
            out << file.string() << '\n';
        } else {
            out << "kt500-dtm: cannot write " << file.string() << '\n';
            failures = 1;
        }
    }
    // The tests of the family, each drawn once it has ended and its values
    // were read back: the step response with its key figures, the
    // hysteresis loop, the safety valve controller's two curves.
    const std::string prefix = control.m_objDeviceClass ? control.m_objDeviceClass->DevicePrefix() : "";
    const auto runTest = [&](const std::string& settingsNode, int listElement, int entry,
                             const char* button, int element, const std::string& resultNode,
                             const std::string& picture) {
        form::Control* command = form.find(button, element);
        if (command == nullptr || tree.tree().find(resultNode) == nullptr) {
            return;
        }
        desktop.gate().run([&] {
            form.raiseNodeClick(tree, settingsNode);
            if (form::Control* list = form.find("comTestType", listElement)) {
                list->setListIndex(entry);
                form.raiseClick(*list);
            }
            form.raiseClick(*command);
        });
        Settle(desktop);
        desktop.gate().run([&form, &tree, &resultNode] { form.raiseNodeClick(tree, resultNode); });
        Settle(desktop);
        take(picture);
    };
    if (started && options.online && (prefix == "HA" || prefix == "PA")) {
        const int list = prefix == "HA" ? 1 : 0;
        const int first = prefix == "HA" ? 0 : 1;
        runTest("testSettings", list, first, "cmdStartTest", list, "stepTestValues",
                prefix + "stepTestValuesFinished");
        runTest("testSettings", list, first + 1, "cmdStartTest", list, "hysteresisTestValues",
                prefix + "hysteresisTestValuesFinished");
    }
    if (started && options.online && prefix == "PL") {
        runTest("valveTest", -2, 0, "cmdPLStartTest", 0, "valveTest", "PLvalveTestFinished");
        runTest("pneumaticsTest", -2, 0, "cmdPLStartTest", 1, "pneumaticsTest",
                "PLpneumaticsTestFinished");
    }
    // The file page of "open": the file chooser over the folder and file
    // lists, then cancelled.
    desktop.gate().run([&form] { form.raiseToolbarClick(form.control("smuiDTM", 1), "open"); });
    Settle(desktop);
    take("importFile");
    desktop.gate().run([&form] { form.raiseClick(form.control("cmdOpenFile", 1)); });
    Settle(desktop);
    // The compare page: the device changed after the family's example data
    // file was written, the rows that differ with the file as third column.
    // The file is a copy in the temporary folder, so that the picture shows
    // a path as a user's would be, not where the program was built.
    const std::string fileName = control.m_objTools->DeviceType + ".xml";
    const std::filesystem::path shipped = shareDir / "examples" / fileName;
    const std::filesystem::path example = std::filesystem::temp_directory_path() / fileName;
    std::error_code copyError;
    std::filesystem::copy_file(shipped, example,
                               std::filesystem::copy_options::overwrite_existing, copyError);
    if (started && options.online && form.find("lsvCompare") != nullptr && !copyError &&
        std::find(keys.begin(), keys.end(), control.deviceClass().ComparePageNode()) !=
            keys.end()) {
        desktop.session().bl().simulatedControl().inject({"set", "supplyPressure", "7.5"});
        desktop.gate().run(
            [&form] { form.raiseToolbarClick(form.control("smuiDTM", 1), "uploadAll"); });
        Settle(desktop);
        desktop.gate().run([&form, &example] {
            form.raiseToolbarClick(form.control("smuiDTM", 1), "compare");
            form.control("txtCompareFile").setText(example.string());
            form.raiseClick(form.control("cmdCompare", 0));
            form::Control& only = form.control("chkCompareDifferences");
            only.setValue(1);
            form.raiseClick(only);
        });
        Settle(desktop);
        take(control.deviceClass().ComparePageNode());
    }
    std::filesystem::remove(example, copyError);
    desktop.gate().run([&form] { form.raiseToolbarClick(form.control("smuiDTM", 1), "settings"); });
    Settle(desktop);
    take("settings");
    // A travel calibration while it runs and when it has ended, started as
    // the user starts it on the family's page: the HART positioner's start
    // and go-ahead buttons, the other families' one button.
    constexpr const char* travel = "automaticTravelCalibration";
    struct TravelButtons {
        const char* start;
        int startElement;
        const char* goAhead;
    };
    const TravelButtons buttons = prefix == "HA"   ? TravelButtons{"cmdHAAutoTravelCalibration", 0,
                                                                   "cmdHAAutoTravelCalibration"}
                                  : prefix == "PA" ? TravelButtons{"cmdPAAutoTravelCalStart", -1, nullptr}
                                                   : TravelButtons{"cmdPLAutocalibration", 0, nullptr};
    form::Control* start = form.find(buttons.start, buttons.startElement);
    if (started && options.online && start != nullptr && tree.tree().find(travel) != nullptr) {
        desktop.gate().run([&form, &tree, travel] { form.raiseNodeClick(tree, travel); });
        desktop.gate().run([&form, start, &buttons] {
            form.raiseClick(*start);
            if (buttons.goAhead != nullptr) {
                form.raiseClick(form.control(buttons.goAhead, 1));
            }
        });
        const std::string page = control.m_objTools->CurrentFrame;
        desktop.gate().run([&desktop] { desktop.session().wait(1000); });
        QCoreApplication::processEvents();
        take(page + "Running");
        Settle(desktop);
        take(page + "Finished");
        desktop.gate().run([&form, start] { form.raiseClick(*start); });
        Settle(desktop);
    }
    // The messages the boxes showed on the way, each once with its count.
    std::vector<std::pair<std::string, int>> messages;
    for (const auto& box : desktop.session().dialogs().takeBoxes()) {
        const std::string line = box.header + " | " + box.text;
        const auto same = std::find_if(messages.begin(), messages.end(),
                                       [&line](const auto& seen) { return seen.first == line; });
        if (same == messages.end()) {
            messages.emplace_back(line, 1);
        } else {
            ++same->second;
        }
    }
    for (const auto& [line, count] : messages) {
        out << "  message " << line << (count > 1 ? " (" + std::to_string(count) + " times)" : "")
            << '\n';
    }
    out << shot.size() << " pages of " << options.deviceKey << " in " << folder.string() << '\n';
    return failures;
}

}  // namespace kt500::window
