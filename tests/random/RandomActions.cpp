#include "random/RandomSession.h"

#include "app/ScriptTargets.h"
#include "data/PageFields.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "performance/TestSettings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kt500::random {

namespace {

// Quotes a word of a script line.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted + '"';
}

std::string Reference(const form::Control& control) {
    return control.index() < 0 ? control.name()
                               : control.name() + "[" + std::to_string(control.index()) + "]";
}

std::string Fixed(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", std::max(decimals, 0), value);
    return text;
}

// Reads a limit; nothing when blank or not a number.
std::optional<double> Limit(const std::string& text) {
    if (text.find_first_not_of(' ') == std::string::npos) {
        return std::nullopt;
    }
    const double value = devices::Str2Dbl(text);
    if (value == devices::NoValue) {
        return std::nullopt;
    }
    return value;
}

// The test settings page of a settings field ("txtHATestSettings[2]"), or
// nothing for any other field.
const performance::TestSettingsPage* TestPageOf(const std::string& reference) {
    for (const performance::TestSettingsPage* page :
         {&performance::KT540TestPage, &performance::KT520TestPage}) {
        if (reference.starts_with(std::string(page->fields) + "[")) {
            return page;
        }
    }
    return nullptr;
}

std::string ListReference(const performance::TestSettingsPage& page) {
    return "comTestType[" + std::to_string(page.listElement) + "]";
}

}  // namespace

const std::vector<std::string>& ActionKinds() {
    static const std::vector<std::string> kinds = {
        "node",   "type",   "invalid", "focus",    "select", "row",   "send",  "cancel",
        "undo",   "undoAll", "reload", "upload",   "stop",   "language", "units", "fail",
        "refuse", "addAll",
    };
    return kinds;
}

RandomActions::RandomActions(app::ControlSession& session, const Options& options)
    : m_session(session), m_options(options), m_random(options.seed) {
    for (const std::string& kind : ActionKinds()) {
        if (options.actions.empty() || options.actions.contains(kind)) {
            m_kinds.push_back(kind);
        }
    }
    // The edits come more often than anything else, as with a user.
    for (const char* frequent : {"type", "type", "invalid", "focus", "select", "node", "row"}) {
        if (std::find(m_kinds.begin(), m_kinds.end(), frequent) != m_kinds.end()) {
            m_kinds.emplace_back(frequent);
        }
    }
    const xml::Document* guiInit = m_session.control().tools().RavikDTMParameters();
    for (const xml::Node& uploads : guiInit->root().childElements("uploadGroups")) {
        for (const xml::Node& upload : uploads.childElements("uploadGroup")) {
            if (!options.avoid.contains(upload.attribute("name"))) {
                m_uploadGroups.push_back(upload.attribute("name"));
            }
        }
    }
}

int RandomActions::below(int count) {
    return static_cast<int>(std::uniform_int_distribution<int>(0, count - 1)(m_random));
}

std::string RandomActions::pick(const std::vector<std::string>& choices) {
    return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
}

// The pages of the tree whose page holds a value field.
std::vector<std::string> RandomActions::pages() const {
    host::RavikKT500& control = m_session.control();
    devices::DeviceClass& device = control.deviceClass();
    std::vector<std::string> keys;
    for (const form::TreeNode& node : control.form().control("treeNavigation").tree().nodes()) {
        const form::Control* page = data::FindPage(control.form(), device.FrameArrayName(),
                                                   device.DevicePrefix() + node.key);
        if (page != nullptr && !data::SnapshotFields(control.form(), *page).empty() &&
            !m_options.avoid.contains(node.key)) {
            keys.push_back(node.key);
        }
    }
    return keys;
}

// The enabled value fields of the page shown whose parameter the user may
// write.
std::vector<RandomActions::Field> RandomActions::pageFields() const {
    host::RavikKT500& control = m_session.control();
    devices::DeviceClass& device = control.deviceClass();
    std::vector<Field> fields;
    const form::Control* page = data::FindPage(control.form(), device.FrameArrayName(),
                                               control.tools().CurrentFrame);
    if (page == nullptr) {
        return fields;
    }
    for (form::Control* field : data::SnapshotFields(control.form(), *page)) {
        if (field->tag().empty() || !field->enabled() || !field->visible()) {
            continue;
        }
        const xml::Node parameter = control.ParameterNodeByName(field->tag());
        if (!parameter || parameter.attribute("access") != "readWrite") {
            continue;
        }
        fields.push_back({Reference(*field), field->tag(),
                          field->kind() == form::ControlKind::ComboBox});
    }
    return fields;
}

double PageScale(host::RavikKT500& control, const std::string& tag) {
    const std::string one = control.deviceClass().FormatValues(tag, "1", "write");
    if (one.empty() || !devices::IsNum(one)) {
        return 1.0;
    }
    const double scale = devices::Str2Dbl(devices::fDecimalSep(one, "."));
    return scale > 0.0 ? scale : 1.0;
}

// The limits of a parameter in the unit the page shows it in.
std::pair<std::optional<double>, std::optional<double>> RandomActions::limits(
    const std::string& tag) const {
    host::RavikKT500& control = m_session.control();
    const xml::Node parameter = control.ParameterNodeByName(tag);
    auto low = Limit(parameter.attribute("minVal"));
    auto high = Limit(parameter.attribute("maxVal"));
    const std::string unit = parameter.attribute("unit");
    const std::string shown = control.FetchUnitName(tag);
    if (parameter.attribute("type") != "stringVal" && unit != "noUnit" && unit != "%" &&
        !shown.empty() && shown != unit) {
        services::IDtmUnits& units = *m_session.bl().units();
        for (std::optional<double>* limit : {&low, &high}) {
            float converted = 0;
            bool ok = false;
            if (*limit) {
                units.ConvertValue(static_cast<float>(**limit), unit, shown, converted, ok);
                if (ok) {
                    *limit = converted;
                }
            }
        }
    }
    const double scale = PageScale(control, tag);
    if (parameter.attribute("type") != "stringVal" && !devices::IsSerialNumber(tag) &&
        scale != 1.0) {
        for (std::optional<double>* limit : {&low, &high}) {
            if (*limit) {
                **limit /= scale;
            }
        }
    }
    return {low, high};
}

std::string RandomActions::validValue(const std::string& tag) {
    const xml::Node parameter = m_session.control().ParameterNodeByName(tag);
    const auto [lowLimit, highLimit] = limits(tag);
    if (tag == "deviceDate") {
        return std::to_string(1990 + below(70));  // the year box of the date
    }
    if (parameter.attribute("type") == "stringVal") {
        const int length = 1 + below(static_cast<int>(std::min(highLimit.value_or(12.0), 12.0)));
        std::string text = "R";
        while (static_cast<int>(text.size()) < length) {
            text += static_cast<char>('0' + below(10));
        }
        return text.substr(0, static_cast<std::size_t>(length));
    }
    if (devices::IsSerialNumber(tag)) {
        // A page shows and takes a serial number only as "yyyy-ww-nnnn".
        const double low = lowLimit.value_or(0.0);
        const double high = highLimit.value_or(low + 100000.0);
        const auto packed = static_cast<std::int32_t>(
            low + (high - low) * std::uniform_real_distribution<double>(0.1, 0.9)(m_random));
        return devices::DecodeSerNro(packed);
    }
    const std::string decimalsText = parameter.attribute("decimals");
    const int decimals = decimalsText.empty() ? 0 : std::stoi(decimalsText);
    const double low = lowLimit.value_or(0.0);
    const double high = highLimit.value_or(low + 100.0);
    // Well inside the limits, so that the rounding of the page's limits
    // does not matter.
    const double margin = (high - low) * 0.1 + std::pow(10.0, -decimals);
    const double inner = std::max(high - low - 2 * margin, 0.0);
    const double value = low + margin + inner * std::uniform_real_distribution<double>(0, 1)(m_random);
    const double rounded = std::round(value * std::pow(10.0, decimals)) / std::pow(10.0, decimals);
    return Fixed(std::clamp(rounded, std::min(low, high), std::max(low, high)), decimals);
}

std::string RandomActions::invalidValue(const std::string& tag) {
    const xml::Node parameter = m_session.control().ParameterNodeByName(tag);
    const auto [low, high] = limits(tag);
    std::vector<std::string> choices;
    if (tag == "deviceDate") {
        choices = {"20x4", "year"};
    } else if (parameter.attribute("type") == "stringVal") {
        if (high) {
            choices.push_back(std::string(static_cast<std::size_t>(*high) + 3, 'X'));
        }
    } else {
        choices = {"abc", "1x"};
        if (high) {
            choices.push_back(Fixed(*high + 10.0 * (std::abs(*high) + 1.0), 0));
        }
        if (low) {
            choices.push_back(Fixed(*low - 10.0 * (std::abs(*low) + 1.0), 0));
        }
        const std::string decimals = parameter.attribute("decimals");
        if ((decimals.empty() || decimals == "0") && low && high && *high - *low >= 2 &&
            PageScale(m_session.control(), tag) == 1.0) {
            choices.push_back(Fixed(std::floor(*low) + 1.0, 0) + ".5");
        }
    }
    return choices.empty() ? std::string() : pick(choices);
}

std::string RandomActions::testSettingValue(const std::string& reference, bool refused) {
    const performance::TestSettingsPage& page = *TestPageOf(reference);
    const app::ScriptTargets targets(m_session);
    const int element = targets.control(reference).index();
    const int entry = targets.control(ListReference(page)).listIndex();
    const bool hysteresis = entry == page.hysteresisIndex;
    if (!hysteresis && entry != page.stepIndex) {
        // With no test chosen a field is only checked for being a number.
        if (refused) {
            return pick({"abc", "1x", "12."});
        }
        return Fixed(std::uniform_real_distribution<double>(-2000, 2000)(m_random), below(2));
    }
    struct Range {
        bool integer;
        double low;
        double high;
    };
    static constexpr Range kHysteresis[3] = {{true, 50, 2000}, {true, 0, 90}, {true, 10, 100}};
    static constexpr Range kStep[3] = {{true, 2, 500}, {false, 0, 100}, {false, 0.1, 100}};
    const Range range = (hysteresis ? kHysteresis : kStep)[element];
    if (refused) {
        std::vector<std::string> choices = {"abc", "", Fixed(range.high + 10, 0)};
        if (!(element == 2 && !hysteresis && page.negativeStep)) {
            choices.push_back(Fixed(range.low - 10, 0));
        }
        if (element == 2 && !hysteresis) {
            choices.emplace_back("0.05");  // a step smaller than the least
        }
        return pick(choices);
    }
    double low = range.low;
    double high = range.high;
    // Start and change together stay within their sum's limits once the
    // other of the two is filled and not red.
    if (element == 1 || element == 2) {
        const form::Control& other =
            targets.control(std::string(page.fields) + "[" + std::to_string(3 - element) + "]");
        const std::string text = devices::fDecimalSep(other.text(), ".");
        const Range otherRange = (hysteresis ? kHysteresis : kStep)[3 - element];
        const double value = devices::Str2Dbl(text);
        // The other field is judged as the check judges it, whatever its colour.
        double judged = otherRange.integer ? std::round(value) : value;
        if (element == 1 && !hysteresis && page.negativeStep) {
            judged = std::abs(value);
        }
        const bool otherGood = value != devices::NoValue && devices::IsNum(text) &&
                               judged >= otherRange.low && judged <= otherRange.high;
        if (otherGood) {
            const double least = hysteresis ? 0.0 : 0.1;
            low = std::max(low, least - value + 0.1);
            high = std::min(high, 100.0 - value - 0.1);
        }
    }
    if (range.integer) {
        low = std::ceil(low);
        high = std::floor(high);
    }
    if (low > high) {
        return {};
    }
    const double value = low + (high - low) * std::uniform_real_distribution<double>(0, 1)(m_random);
    return range.integer ? Fixed(std::round(value), 0) : Fixed(std::floor(value * 10) / 10, 1);
}

Step RandomActions::next() {
    for (;;) {
        Step step;
        step.action = pick(m_kinds);
        if (build(step.action, step)) {
            return step;
        }
    }
}

void RandomActions::addRequest(Step& step) {
    if (m_uploadGroups.empty()) {
        step.lines.emplace_back("toolbar uploadCurrent");
    } else {
        step.lines.push_back("toolbar " + pick(m_uploadGroups));
    }
    step.lines.emplace_back("settle");
    step.settles = true;
}

bool RandomActions::build(const std::string& kind, Step& step) {
    host::RavikKT500& control = m_session.control();
    const form::Control& rows = control.form().control("lsvConfirmation");
    const bool online = control.tools().OnlineConf;
    const std::vector<Field> fields = pageFields();
    std::vector<Field> textFields;
    std::vector<Field> listFields;
    for (const Field& field : fields) {
        (field.list ? listFields : textFields).push_back(field);
        // The test settings page's list of tests, which has no parameter.
        if (const performance::TestSettingsPage* page = TestPageOf(field.reference);
            page != nullptr && field.reference.ends_with("[0]")) {
            listFields.push_back({ListReference(*page), "", true});
        }
    }
    const auto fieldOf = [&](const std::vector<Field>& from) -> const Field& {
        return from[static_cast<std::size_t>(below(static_cast<int>(from.size())))];
    };
    const auto backToPage = [&] {
        const std::vector<std::string> keys = pages();
        step.lines.push_back("node " + pick(keys));
    };

    if (kind == "node") {
        step.lines.push_back("node " + pick(pages()));
    } else if (kind == "type" || kind == "invalid") {
        if (textFields.empty()) {
            return false;
        }
        const Field& field = fieldOf(textFields);
        const bool refused = kind == "invalid";
        // The test settings have limits and messages of their own.
        const bool testSetting = TestPageOf(field.reference) != nullptr;
        const std::string header = control.Translate(testSetting ? "invalidValue" : "valueCheck");
        std::string value;
        if (testSetting) {
            value = testSettingValue(field.reference, refused);
            if (!refused && value.empty()) {
                return false;
            }
            // Leaving one field checks its neighbours; only the field left
            // is told, and the list's test decides whether it is.
            step.allowedHeaders.insert(header);
        } else {
            value = refused ? invalidValue(field.tag) : validValue(field.tag);
            if (refused && value.empty()) {
                return false;
            }
        }
        step.lines.push_back("type " + field.reference + " " + Quoted(value));
        step.field = field.reference;
        step.value = value;
        step.refused = refused;
        if (refused) {
            step.allowedHeaders.insert(header);
            step.requiredHeaders.insert(header);
        }
    } else if (kind == "focus") {
        if (fields.empty()) {
            return false;
        }
        const Field& field = fieldOf(fields);
        step.lines.push_back("focus " + field.reference);
        // Leaving a field checks it again: a refused text is told again; a
        // test setting is checked with its neighbours, an empty one too.
        if (TestPageOf(field.reference) != nullptr) {
            step.allowedHeaders.insert(control.Translate("invalidValue"));
        } else if (app::ScriptTargets(m_session).control(field.reference).foreColor() == 255) {
            step.allowedHeaders.insert(control.Translate("valueCheck"));
        }
    } else if (kind == "select") {
        if (listFields.empty()) {
            return false;
        }
        const Field& field = fieldOf(listFields);
        const int count = app::ScriptTargets(m_session).control(field.reference).listCount();
        if (count == 0) {
            return false;
        }
        step.lines.push_back("select " + field.reference + " #" + std::to_string(below(count)));
        // A new target mode of the PROFIBUS positioner asks before it goes out.
        step.allowedHeaders.insert(control.Translate("targetMode"));
    } else if (kind == "row") {
        const int count = rows.listView().count();
        if (count == 0) {
            return false;
        }
        step.lines.push_back("row " + std::to_string(1 + below(count)) +
                             (below(2) == 0 ? " on" : " off"));
    } else if (kind == "send") {
        step.lines.emplace_back("toolbar send");
        // A page of a ticked row that still holds a refused (red) value
        // stops the send with the value check naming that field.
        step.allowedHeaders.insert(control.Translate("valueCheck"));
        // With no ticked row the send button takes no click and asks nothing.
        if (!online && rows.listView().checkedCount() > 0) {
            step.lines.emplace_back(below(4) == 0 ? "answer no" : "answer yes");
            step.allowedHeaders.insert(control.Translate("offlineConfiguratoin"));
        }
        step.lines.emplace_back("click cmdSend[8]");
        step.lines.emplace_back("settle");
        step.settles = true;
    } else if (kind == "cancel") {
        step.lines = {"toolbar send", "click cmdCancel"};
    } else if (kind == "undo") {
        step.lines = {"toolbar undoCurrentPage"};
    } else if (kind == "undoAll") {
        step.lines = {"toolbar undoAll"};
    } else if (kind == "reload") {
        // The reload asks only while the page has unsaved edits.
        if (control.tools().value_saved && below(3) == 0) {
            step.lines.emplace_back("answer no");
        }
        step.lines.emplace_back("toolbar uploadCurrent");
        step.lines.emplace_back("settle");
        step.settles = true;
        step.readsPage = step.lines.size() == 2;
        step.allowedHeaders.insert("Data changed");
        step.allowedHeaders.insert(control.Translate("nothingToUpload"));
    } else if (kind == "upload") {
        addRequest(step);
    } else if (kind == "stop") {
        if (m_uploadGroups.empty()) {
            return false;
        }
        step.lines.push_back("toolbar " + pick(m_uploadGroups));
        step.lines.push_back("wait " + std::to_string(below(3000)));
        step.lines.emplace_back("toolbar stop");
        step.lines.emplace_back("settle");
        step.settles = true;
    } else if (kind == "language") {
        const int count = control.form().control("comSelectLanguage").listCount();
        if (count == 0) {
            return false;
        }
        step.lines = {"toolbar settings", "select comSelectLanguage #" + std::to_string(below(count)),
                      "click cmdTranslate"};
        backToPage();
    } else if (kind == "units") {
        step.lines = {"toolbar settings", below(2) == 0 ? "click optUSUnits" : "click optSIUnits",
                      "click cmdResetUnits"};
        backToPage();
    } else if (kind == "fail") {
        if (!online) {
            return false;  // offline nothing reaches the device
        }
        static const std::vector<std::string> codes = {"communicationFailed", "deviceBusy",
                                                       "missingItems"};
        // The group of a ticked row and a send, or a group of an upload chain.
        std::vector<std::string> ticked;
        for (const form::ListRow& row : rows.listView().rows()) {
            if (row.checked && row.subItems.size() >= 4 && row.subItems[3].size() > 2) {
                ticked.push_back(row.subItems[3].substr(2));
            }
        }
        const std::string code = pick(codes);
        step.fault = true;
        step.allowedHeaders.insert(control.Translate("error"));
        if (!ticked.empty() && below(2) == 0) {
            step.lines.push_back("bl fail " + pick(ticked) + " " + code);
            step.lines.insert(step.lines.end(), {"toolbar send", "click cmdSend[8]", "settle"});
            // As any send: a refused value still on a page of a ticked row
            // stops it with the value check.
            step.allowedHeaders.insert(control.Translate("valueCheck"));
            step.settles = true;
        } else {
            if (m_uploadGroups.empty()) {
                return false;
            }
            const std::string chain = pick(m_uploadGroups);
            std::vector<std::string> groups;
            const xml::Document* guiInit = control.tools().RavikDTMParameters();
            for (const xml::Node& uploads : guiInit->root().childElements("uploadGroups")) {
                for (const xml::Node& upload : uploads.childElements("uploadGroup")) {
                    if (upload.attribute("name") == chain) {
                        for (const xml::Node& group : upload.childElements()) {
                            groups.push_back(group.attribute("name"));
                        }
                    }
                }
            }
            if (groups.empty()) {
                return false;
            }
            step.lines.push_back("bl fail " + pick(groups) + " " + code);
            step.lines.push_back("toolbar " + chain);
            step.lines.emplace_back("settle");
            step.settles = true;
        }
    } else if (kind == "refuse") {
        if (!online) {
            return false;
        }
        step.fault = true;
        step.allowedHeaders.insert("RequestTemplate");
        step.allowedHeaders.insert(control.Translate("error"));
        step.lines.emplace_back("bl refuse");
        addRequest(step);
    } else if (kind == "addAll") {
        step.lines = {"toolbar send", "answer yes", "click cmdAddAllValues"};
        step.allowedHeaders.insert(control.Translate("confirmation"));
    } else {
        return false;
    }
    return true;
}

}  // namespace kt500::random
