// The fixture of tests of the whole window: the window of one simulated
// device session, shown and active, with the page controls' widgets at hand.
#pragma once

#include "app/window/DesktopSession.h"

#include <QApplication>
#include <QCoreApplication>

#include <gtest/gtest.h>

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

    DesktopSession desktop{KT500_SHARE_DIR, {}};
};

}  // namespace kt500::window
