// Shared helpers of the form tests: the loader on the shipped schema, and
// recorders of events and property changes.
#pragma once

#include "form/Form.h"
#include "form/FormLoader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace kt500::form::test {

inline std::filesystem::path shareDir() {
    return KT500_SHARE_DIR;
}
inline std::filesystem::path dataDir() {
    return std::filesystem::path(KT500_TEST_DATA_DIR) / "form";
}
inline std::filesystem::path schemaFile() {
    return shareDir() / "schemas" / std::string(FormLoader::kSchemaFileName);
}

inline ToolbarItem toolbarItem(std::string key, int band = 0) {
    ToolbarItem item;
    item.key = std::move(key);
    item.band = band;
    return item;
}

// The call throws an Error whose message holds every one of words.
template <typename Error, typename Call>
void expectThrowNaming(std::initializer_list<std::string_view> words, Call&& call) {
    try {
        call();
        ADD_FAILURE() << "did not throw; expected " << *words.begin();
    } catch (const Error& e) {
        for (std::string_view word : words) {
            EXPECT_NE(std::string_view(e.what()).find(word), std::string_view::npos) << e.what();
        }
    }
}
// Every event as "Click txtX(2)", "NodeClick treeNavigation key", ...
struct EventLog {
    std::vector<std::string> lines;
    void attach(Form& form) {
        form.setEventSink([this](FormEvent& e) {
            std::string line = std::string(eventName(e.kind)) + " " + e.control->displayName();
            if (!e.key.empty()) {
                line += " " + e.key;
            }
            if (e.item >= 0) {
                line += " " + std::to_string(e.item);
            }
            lines.push_back(line);
        });
    }
};

// Every property change as "txtX(2).Text", "tree.Nodes[key]".
struct ChangeLog {
    std::vector<std::string> lines;
    void attach(Form& form) {
        form.addObserver([this](const PropertyChange& c) {
            std::string line =
                c.control.displayName() + "." + std::string(propertyName(c.property));
            if (!c.key.empty()) {
                line += "[" + std::string(c.key) + "]";
            } else if (c.item >= 0) {
                line += "[" + std::to_string(c.item) + "]";
            }
            lines.push_back(line);
        });
    }
};

}  // namespace kt500::form::test
