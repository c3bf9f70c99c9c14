// Setup shared by the device tests: page fields, parsed documents, the
// device's GUIInit document and a locale put back at the end of a test.
#pragma once

#include "support/TestUserControl.h"

#include <QLocale>

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

// Sets the default locale for the life of the guard.
struct LocaleGuard {
    explicit LocaleGuard(QLocale::Language language) { QLocale::setDefault(QLocale(language)); }
    ~LocaleGuard() { QLocale::setDefault(saved); }
    QLocale saved;
};

}  // namespace kt500::devices::test
