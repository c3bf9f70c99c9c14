// Setup shared by the data tests: parsed documents, confirmation rows as an
// edit leaves them, and a GUIInit document of the test's own.
#pragma once

#include "support/TestUserControl.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kt500::data::test {

inline xml::Document Parsed(std::string_view text) {
    xml::LoadResult loaded = xml::Document::parse(text);
    if (!loaded.ok()) {
        throw std::runtime_error(loaded.message());
    }
    return std::move(*loaded.document);
}

// A row of the confirmation list as an edit makes it: its text, an old and
// a new value that differ (sub-items 1 and 2), the parameter (sub-item 3),
// the page (sub-item 4) and its tick.
inline void AddConfirmationRow(testing::TestUserControl& uc, const std::string& name,
                               const std::string& page, bool checked = true,
                               const std::string& text = "") {
    form::ListViewModel& rows = uc.form().control("lsvConfirmation").listView();
    const int row = rows.add(text.empty() ? name : text);
    rows.setSubItem(row, 1, "old");
    rows.setSubItem(row, 2, "new");
    rows.setSubItem(row, 3, name);
    rows.setSubItem(row, 4, page);
    rows.setChecked(row, checked);
}

// The texts of the confirmation list's rows, separated by spaces.
inline std::string ConfirmationTexts(testing::TestUserControl& uc) {
    std::string texts;
    for (const form::ListRow& row : uc.form().control("lsvConfirmation").listView().rows()) {
        texts += (texts.empty() ? "" : " ") + row.text;
    }
    return texts;
}

inline void SetGuiInit(testing::TestUserControl& uc, std::string_view text) {
    uc.tools().setRavikDTMParameters(std::make_unique<xml::Document>(Parsed(text)));
}

}  // namespace kt500::data::test
