#include "app/window/IconStore.h"
#include "app/window/LogicGate.h"
#include "form/Form.h"
#include "form/FormLoader.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace kt500::window {
namespace {

// Every picture the product can show has its file: the pictures the form
// files name, and the states the logic gives tree nodes, the status and
// the toolbar.
TEST(IconStore, EveryPictureTheProductShowsIsDrawn) {
    const std::filesystem::path share = KT500_SHARE_DIR;
    form::Form form;
    form::FormLoader(share / "schemas" / std::string(form::FormLoader::kSchemaFileName))
        .load(form, form::FormLoader::standardFiles(share / "forms"));
    std::set<std::string> keys = {"read",    "changed",  "notRead", "error",        "ok",
                                  "warning", "alarm",    "unknown", "notMonitored", "online",
                                  "offline", "hideTree", "showTree"};
    for (const form::Control* control : form.controls()) {
        if (control->has(form::PropertyId::Picture) && !control->picture().empty()) {
            keys.insert(control->picture());
        }
        if (control->kind() == form::ControlKind::Toolbar) {
            for (const form::ToolbarItem& item : control->toolbar().items()) {
                if (!item.picture.empty()) {
                    keys.insert(item.picture);
                }
            }
        }
    }
    IconStore icons(share / "icons");
    for (const std::string& key : keys) {
        EXPECT_FALSE(icons.icon(key).isNull()) << key;
        EXPECT_FALSE(icons.pixmap(key, QSize(24, 24)).isNull()) << key;
    }
    EXPECT_TRUE(icons.icon("noSuchPicture").isNull());
    EXPECT_TRUE(icons.icon("../icons/read").isNull());
}

// A call that arrives while the logic runs waits for it; a failure of one
// call does not stop the next; the pump does not run inside a call.
TEST(LogicGate, CallsNeverNestAndRunInArrivalOrder) {
    LogicGate gate;
    std::vector<std::string> order;
    gate.run([&] {
        order.push_back("outer begins");
        gate.run([&] { order.push_back("second"); });
        gate.run([&] { throw std::runtime_error("fails"); });
        gate.run([&] { order.push_back("fourth"); });
        EXPECT_FALSE(gate.tryRun([&] { order.push_back("pump"); }));
        order.push_back("outer ends");
    });
    EXPECT_EQ(order, (std::vector<std::string>{"outer begins", "outer ends", "second", "fourth"}));
    EXPECT_FALSE(gate.busy());
    EXPECT_TRUE(gate.tryRun([&] { order.push_back("pump"); }));
    EXPECT_EQ(order.back(), "pump");

    // Closed with the control's release: nothing runs any more.
    gate.close();
    gate.run([&] { order.push_back("late focus change"); });
    EXPECT_FALSE(gate.tryRun([&] { order.push_back("late beat"); }));
    EXPECT_EQ(order.back(), "pump");
}

}  // namespace
}  // namespace kt500::window
