// The fixture of tests of the whole window: the window of one simulated
// device session, shown and active, with the page controls' widgets at hand.
#pragma once

#include "app/window/DesktopSession.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <string_view>

namespace kt500::window {

class WindowTest : public ::testing::Test {
protected:
    // Starts the session and shows its window; the test fails when it cannot.
    void startWindow(const simulator::SessionOptions& options) {
        ASSERT_TRUE(desktop.start(options, nullptr, TwipScale()));
        view().show();
        QApplication::setActiveWindow(&view());
        settle();
    }
    void start(const std::string& device, bool online = true,
               const std::string& language = "1033") {
        simulator::SessionOptions options;
        options.deviceKey = device;
        options.online = online;
        options.language = language;
        options.frameLanguage = language;
        startWindow(options);
    }
    FormView& view() { return desktop.view(); }
    form::Form& form() { return view().form(); }
    // Lets the session and the window's events run until nothing is due.
    void settle() {
        desktop.settle();
        QCoreApplication::processEvents();
    }
    QWidget* widget(std::string_view name, int index = -1) {
        return view().widgetOf(form().control(name, index));
    }
    // Shows a page as a click on its tree node does.
    void node(const std::string& key) {
        view().gate().run([&] { form().raiseNodeClick(form().control("treeNavigation"), key); });
        settle();
    }
    // Presses a toolbar item as the user does; it must be offered.
    void toolbar(const char* key) {
        QAction* action = view().toolbarAction(key);
        ASSERT_TRUE(action != nullptr && action->isEnabled()) << key;
        action->trigger();
        settle();
    }

    DesktopSession desktop{KT500_SHARE_DIR, {}};
};

// The shown top-level page of a frame tag, or none.
inline const form::Control* ShownPage(const form::Form& form, const std::string& frame) {
    for (const form::Control* control : form.controls()) {
        if (control->kind() == form::ControlKind::Frame && control->container() == nullptr &&
            control->tag() == frame && control->visible()) {
            return control;
        }
    }
    return nullptr;
}

// A test name part from a device key ("KT540_1.0" -> "KT540_1_0").
inline std::string TestNameOf(std::string key) {
    for (char& c : key) {
        c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return key;
}

}  // namespace kt500::window
