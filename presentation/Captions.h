// Captions: the texts of the form in the session's language, and the
// language choice of the settings page.
//
// Every control keeps its translation key apart from the text it shows:
// captionKey and toolTipKey, and for a label, command button, check box or
// option button without a key its Tag. TranslateForm rewrites every text
// from its key, so the form can go from one language to any other and back.
// A label tagged "...Unit" shows a unit and keeps its caption ("operationUnit"
// is a page name and is translated), as does lblTimeStamp; a label with a
// border shows a value.
#pragma once

#include "data/ParameterValues.h"
#include "devices/IUserControl.h"
#include "devices/Units.h"
#include "form/EventHandlers.h"

#include <cstdint>
#include <optional>

namespace kt500::presentation {

class Captions {
public:
    Captions(devices::IUserControl& control, data::ParameterValues& values, devices::Units& units)
        : m_control(control), m_values(values), m_units(units) {}

    // Rewrites the whole form in the session's language: the two trees
    // (which shows the default page again; the status tree keeps its
    // states), the list headers, the toolbar and its status texts,
    // every captioned control, the chart menu, the confirmation rows, the
    // mapped lists and the mapped texts of the page shown, the unit
    // parameter list and the chart axes.
    void TranslateForm();
    // Refills the mapped list boxes of the family's pages and the common
    // pages in the session's language, each keeping its choice.
    void FillMappedCombos() { m_values.FillMappedParams(); }

    // cmdTranslate: the language chosen in comSelectLanguage goes into force.
    void cmdTranslate_Click();
    // A choice in comSelectLanguage: cmdTranslate is offered when the choice
    // is not the language in force.
    void comSelectLanguage_Click();
    // cmdSettingsOK: back from the settings page to the page shown before.
    void cmdSettingsOK_Click();

    void addHandlers(form::EventHandlers& handlers);

private:
    void TranslateColumns(const char* strListView);
    // The event log rows of every family in the language, from their tags.
    void TranslateEventLogRows();
    void TranslateToolbar();
    // The session's status texts of the toolbar, which have no key of their
    // own: the connection and the header status.
    void TranslateStatusItems();
    void TranslateControls();
    void TranslatePopupItems();
    // The entries of the test type lists, named by their item data.
    void TranslateTestTypes();
    void TranslateConfirmationRows();
    void TranslateMappedTexts();
    void TranslateCharts();
    // The language id chosen in comSelectLanguage; none without a choice.
    std::optional<std::int32_t> ChosenLanguage() const;

    devices::IUserControl& m_control;
    data::ParameterValues& m_values;
    devices::Units& m_units;
};

}  // namespace kt500::presentation
