#include "performance/TestSettings.h"

#include "devices/Encodings.h"

#include <array>
#include <cmath>

namespace kt500::performance {

namespace {

using form::EventKind;

constexpr std::uint32_t kRed = 255;
constexpr std::uint32_t kBlack = 0;

// The defaults of each list entry: test time, start set point, set point change.
struct Defaults {
    const TestSettingsPage* page;
    int listIndex;
    std::array<const char*, 3> values;
};
constexpr std::array<Defaults, 5> kDefaults = {{
    {&KT540TestPage, 0, {"", "", ""}},
    {&KT540TestPage, 1, {"10", "45", "10"}},
    {&KT540TestPage, 2, {"50", "50", "10"}},
    {&KT520TestPage, 0, {"10", "45", "10"}},
    {&KT520TestPage, 1, {"50", "50", "10"}},
}};

// The accepted range of a field: whole numbers (rounded to 16 bits) or floats.
struct Range {
    bool integer;
    double min;
    double max;
    const char* message;
};
constexpr std::array<Range, 3> kHysteresis = {{
    {true, 50, 2000, "Min = 50, Max = 2000"},
    {true, 0, 90, "Min = 0, Max = 90"},
    {true, 10, 100, "Min = 10, Max = 100"},
}};
constexpr std::array<Range, 2> kStep = {{
    {true, 2, 500, "Min = 2, Max = 500"},
    {false, 0, 100, "Min = 0, Max = 100"},
}};
constexpr Range kStepChange{false, 0.1, 100, "Min = 0.1, Max = 100"};
constexpr Range kStepChangeEitherWay{false, 0.1, 100, "Min = +/-0.1, Max = 100"};

const TestSettingsPage& PageOf(int intListElement) {
    return intListElement == 0 ? KT540TestPage : KT520TestPage;
}

// The value of a field's text in a range's terms; nothing for no number.
std::optional<double> ValueOf(const std::string& strText, bool blInteger) {
    const std::string text = devices::fDecimalSep(strText, ".");
    const double number = devices::Str2Dbl(text);
    if (number == devices::NoValue) {
        return std::nullopt;
    }
    if (!blInteger) {
        return number;
    }
    try {
        return static_cast<double>(devices::ToInt16(text));
    } catch (const std::exception&) {
        return std::nullopt;  // past a 16-bit whole number: out of range
    }
}

}  // namespace

void TestSettings::addHandlers(form::EventHandlers& handlers) {
    const form::Form& form = m_control.form();
    if (form.findArray("comTestType") != nullptr) {
        handlers.add("comTestType", EventKind::Click,
                     [this](form::FormEvent& event) { comTestType_Click(event.control->index()); });
    }
    for (const TestSettingsPage* page : {&KT540TestPage, &KT520TestPage}) {
        if (form.findArray(page->fields) == nullptr) {
            continue;
        }
        handlers.add(page->fields, EventKind::LostFocus, [this, page](form::FormEvent& event) {
            TestSettings_LostFocus(*page, event.control->index());
        });
        handlers.add(page->fields, EventKind::Change,
                     [](form::FormEvent& event) { event.control->setForeColor(kBlack); });
    }
}

void TestSettings::comTestType_Click(int Index) {
    form::Form& form = m_control.form();
    for (const TestSettingsPage* page : {&KT540TestPage, &KT520TestPage}) {
        for (int element = 0; element < 3; ++element) {
            if (form::Control* field = form.find(page->fields, element)) {
                field->setForeColor(kBlack);
            }
        }
    }
    const form::Control* list = form.find("comTestType", Index);
    if (list == nullptr) {
        return;
    }
    const TestSettingsPage& page = PageOf(Index);
    for (const Defaults& defaults : kDefaults) {
        if (defaults.page != &page || defaults.listIndex != list->listIndex()) {
            continue;
        }
        for (int element = 0; element < 3; ++element) {
            if (form::Control* field = form.find(page.fields, element)) {
                field->setText(defaults.values[static_cast<std::size_t>(element)]);
                field->setForeColor(kBlack);
            }
        }
    }
}

void TestSettings::Say(const std::string& strText) {
    m_control.ShowMsg(m_control.Translate("invalidValue"), strText);
}

void TestSettings::Colour(const TestSettingsPage& page, int intElement, bool blGood) {
    if (form::Control* field = m_control.form().find(page.fields, intElement)) {
        field->setForeColor(blGood ? kBlack : kRed);
    }
}

TestSettings::Check TestSettings::CheckField(const TestSettingsPage& page, bool blHysteresis,
                                             int intElement, bool blSay) {
    const form::Control* field = m_control.form().find(page.fields, intElement);
    if (field == nullptr) {
        return Check::Skipped;
    }
    Range range = blHysteresis ? kHysteresis[static_cast<std::size_t>(intElement)]
                  : intElement < 2 ? kStep[static_cast<std::size_t>(intElement)]
                  : page.negativeStep ? kStepChangeEitherWay
                                      : kStepChange;
    std::optional<double> value = ValueOf(field->text(), range.integer);
    if (value && !blHysteresis && intElement == 2 && page.negativeStep) {
        value = std::fabs(*value);
    }
    const bool good = value && *value >= range.min && *value <= range.max;
    Colour(page, intElement, good);
    if (!good && blSay) {
        Say(range.message);
    }
    return good ? Check::Good : Check::Bad;
}

void TestSettings::TestSettings_LostFocus(const TestSettingsPage& page, int Index) {
    form::Form& form = m_control.form();
    form::Control* left = form.find(page.fields, Index);
    const form::Control* list = form.find("comTestType", page.listElement);
    if (left == nullptr) {
        return;
    }
    if (!devices::IsNum(devices::fDecimalSep(left->text()))) {
        m_control.ShowMsg(m_control.Translate("invalidValue"),
                          m_control.Translate("valueIsNotANumber"));
        left->setForeColor(kRed);
        return;
    }
    if (list == nullptr) {
        return;
    }
    const int entry = list->listIndex();
    const bool hysteresis = entry == page.hysteresisIndex;
    if (!hysteresis && entry != page.stepIndex) {
        return;
    }
    Check checks[3];
    for (int element = 0; element < 3; ++element) {
        checks[element] = CheckField(page, hysteresis, element, element == Index);
    }
    // The sum of start and change, once both are filled and not red.
    if (checks[1] != Check::Good || checks[2] != Check::Good) {
        return;
    }
    const float sum = static_cast<float>(devices::Str2Dbl(
                          devices::fDecimalSep(form.control(page.fields, 1).text(), "."))) +
                      static_cast<float>(devices::Str2Dbl(
                          devices::fDecimalSep(form.control(page.fields, 2).text(), ".")));
    const float least = hysteresis ? 0.0F : 0.1F;
    if (sum >= least && sum <= 100.0F) {
        return;
    }
    Colour(page, 1, false);
    Colour(page, 2, false);
    if (Index == 1 || Index == 2) {
        const std::string terms = m_control.Translate("startSetpoint") + " + " +
                                  m_control.Translate("setpointChange") + " <= 100";
        // The hysteresis box names 10 as the least sum while the check takes
        // 0; with a change of at least 10 the two agree.
        Say(hysteresis ? "10 <= " + terms
                       : m_control.Translate("outOfRange") + ". 0.1 <= " + terms);
    }
}

}  // namespace kt500::performance
