// Setup shared by the device tests: page fields, parsed documents, the
// device's GUIInit document, replies to the device class and a locale put
// back at the end of a test.
#pragma once

#include "devices/DeviceClass.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <QLocale>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kt500::devices::test {

// A page field: the form's own when it has the element, else one added to
// the page given. Either way it carries the Tag given, if any.
inline form::Control& fieldOf(testing::TestUserControl& kt, form::ControlKind kind,
                              const std::string& name, int index,
                              const std::string& frameArray = "fraKT520", int frameIndex = 0,
                              const std::string& tag = "") {
    if (form::Control* field = kt.form().find(name, index)) {
        if (!tag.empty()) {
            field->setTag(tag);
        }
        return *field;
    }
    return kt.addField(kind, name, index, frameArray, frameIndex, tag);
}

inline xml::Document Loaded(xml::LoadResult result) {
    if (!result.ok()) {
        throw std::runtime_error(result.message());
    }
    return std::move(*result.document);
}

inline xml::Document Parsed(std::string_view text) {
    return Loaded(xml::Document::parse(text));
}

// The GUIInit document of the session's device, as the start-up loads it.
inline void LoadGuiInit(testing::TestUserControl& kt) {
    kt.tools().setRavikDTMParameters(std::make_unique<xml::Document>(
        Loaded(xml::Document::load(kt.tools().GUIxmlPath + kt.tools().DeviceParameterXml()))));
}

// A device class answering replies while results are read: the closing of
// a group leaves the toolbar alone, so that the reply's own work shows. The
// navigation tree holds the nodes given.
class ReplyTest : public ::testing::Test {
protected:
    struct Item {
        std::string name;
        std::string value;
        std::string unit = "noUnit";
    };
    ReplyTest(const std::string& key, std::initializer_list<const char*> nodes)
        : kt(testing::SessionOf(key)) {
        kt.tools().CurrentAutoAction = 4;
        for (const char* node : nodes) {
            kt.form().control("treeNavigation").tree().add("", node, node);
        }
    }
    void reply(const std::string& name, const std::string& access, const std::string& status,
               bool isFinal, const std::string& errorCode = "",
               const std::vector<Item>& items = {}) {
        std::string xml = "<dtm><communicationResponse name='" + name + "' access='" + access +
                          "' responseStatus='" + status + "' isFinal='" + (isFinal ? "1" : "0") +
                          "' errorCode='" + errorCode + "'>";
        for (const Item& item : items) {
            xml += "<item name='" + item.name + "' unit='" + item.unit + "'><floatVal>" +
                   item.value + "</floatVal></item>";
        }
        xml::Document document = Parsed(xml + "</communicationResponse></dtm>");
        kt.deviceClass().Reply(document);
    }
    // The calls other than progress and the closing of the group.
    std::vector<std::string> work() const {
        std::vector<std::string> seen;
        for (const std::string& call : kt.calls) {
            if (call != "IncreaseProgress" && !call.starts_with("SetReadVariables") &&
                !call.starts_with("ClearChangedSigns") && !call.starts_with("UpdateGroup")) {
                seen.push_back(call);
            }
        }
        return seen;
    }
    bool called(std::string_view prefix) const {
        return std::any_of(kt.calls.begin(), kt.calls.end(),
                           [&](const std::string& c) { return c.starts_with(prefix); });
    }
    std::string icon(const std::string& key) {
        return kt.form().control("treeNavigation").tree().node(key).image;
    }
    testing::TestUserControl kt;
};

// Sets the default locale for the life of the guard.
struct LocaleGuard {
    explicit LocaleGuard(QLocale::Language language) { QLocale::setDefault(QLocale(language)); }
    ~LocaleGuard() { QLocale::setDefault(saved); }
    QLocale saved;
};

}  // namespace kt500::devices::test
