#include "app/window/Screenshots.h"

#include "app/window/DesktopSession.h"

#include <QCoreApplication>
#include <QPixmap>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace kt500::window {

namespace {

// Lets the BL answer, then lets Qt lay out and paint what changed.
void Settle(DesktopSession& desktop) {
    desktop.settle();
    QCoreApplication::processEvents();
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
    desktop.gate().run([&form] { form.raiseToolbarClick(form.control("smuiDTM", 1), "settings"); });
    Settle(desktop);
    take("settings");
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
