#include "random/SessionInvariants.h"

#include "app/ScriptTargets.h"
#include "data/PageFields.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <cmath>
#include <functional>
#include <tuple>
#include <sstream>

namespace kt500::random {

namespace {

// Every parameter element below node, in document order.
void EachParameter(const xml::Node& node, const std::function<void(const xml::Node&)>& visit) {
    for (const xml::Node& child : node.childElements()) {
        if (child.name() == "parameter") {
            visit(child);
        } else {
            EachParameter(child, visit);
        }
    }
}

bool IsNumber(const std::string& text) {
    return !text.empty() && devices::Str2Dbl(text) != devices::NoValue;
}

// Two values of one parameter as the wire or the device holds them.
bool SameWireValue(const std::string& a, const std::string& b) {
    if (IsNumber(a) && IsNumber(b)) {
        const double x = devices::Str2Dbl(a);
        const double y = devices::Str2Dbl(b);
        return std::abs(x - y) <= 1e-6 * std::max(1.0, std::abs(y));
    }
    return a == b;
}

int Decimals(const xml::Node& parameter) {
    const std::string decimals = parameter.attribute("decimals");
    return decimals.empty() ? 0 : std::stoi(decimals);
}

}  // namespace

std::map<std::string, std::string> SessionInvariants::deviceValues() const {
    std::map<std::string, std::string> values;
    simulator::SimulatedControl& device = m_session.bl().simulatedControl();
    EachParameter(m_session.control().parameterNode(), [&](const xml::Node& parameter) {
        const std::string access = parameter.attribute("access");
        if (access != "readWrite" && access != "write") {
            return;  // measured and derived values move by themselves
        }
        const std::string name = parameter.attribute("name");
        if (const auto value = device.deviceValue(name)) {
            values[name] = *value;
        }
    });
    return values;
}

std::map<std::string, std::string> SessionInvariants::dataSetValues() const {
    std::map<std::string, std::string> values;
    EachParameter(m_session.control().parameterNode(), [&](const xml::Node& parameter) {
        values[parameter.attribute("name")] = parameter.attribute("value");
    });
    return values;
}

void SessionInvariants::before() {
    host::RavikKT500& control = m_session.control();
    m_rows.clear();
    // A row gone is forgotten: a new row of the same text is judged anew.
    std::erase_if(m_rowContext, [&](const auto& entry) {
        for (const form::ListRow& row :
             control.form().control("lsvConfirmation").listView().rows()) {
            if (row.subItems.size() > 2 && row.subItems[2] == entry.first.first &&
                row.subItems[1] == entry.first.second) {
                return false;
            }
        }
        return true;
    });
    for (const form::ListRow& row : control.form().control("lsvConfirmation").listView().rows()) {
        Row copy;
        copy.checked = row.checked;
        copy.newValue = row.subItems.size() > 1 ? row.subItems[1] : "";
        copy.name = row.subItems.size() > 2 ? row.subItems[2] : "";
        copy.page = row.subItems.size() > 3 ? row.subItems[3] : "";
        const auto key = std::make_pair(copy.name, copy.newValue);
        if (!m_rowContext.contains(key)) {
            std::optional<int> itemData;
            for (const form::Control* list : control.form().tagged(copy.name)) {
                for (int i = 0; list->kind() == form::ControlKind::ComboBox &&
                                i < list->listCount() && !itemData;
                     ++i) {
                    if (list->list(i) == copy.newValue) {
                        itemData = list->itemData(i);
                    }
                }
            }
            m_rowContext[key] = {control.FetchUnitName(copy.name), itemData};
        }
        std::tie(copy.unit, copy.itemData) = m_rowContext[key];
        m_rows.push_back(copy);
    }
    m_device = deviceValues();
    m_dataSet = dataSetValues();
    m_readSeen = false;
    m_requested.clear();
    (void)m_session.recorder().takeRequests();
    (void)m_session.dialogs().takeBoxes();
}

double SessionInvariants::toUnit(double value, const std::string& from,
                                 const std::string& to) const {
    if (from == to || from.empty() || to.empty() || from == "noUnit" || to == "noUnit") {
        return value;
    }
    float converted = 0;
    bool ok = false;
    m_session.bl().units()->ConvertValue(static_cast<float>(value), from, to, converted, ok);
    return ok ? converted : value;
}

// Whether a write item carries what the row shows: a list entry by its
// item data, a number in the device's unit, a text as it stands.
bool SessionInvariants::sameAsRow(const Row& row, const std::string& wire,
                                  const std::string& wireUnit) const {
    host::RavikKT500& control = m_session.control();
    devices::DeviceClass& device = control.deviceClass();
    const xml::Node parameter = control.ParameterNodeByName(row.name);
    if (row.itemData) {
        return SameWireValue(std::to_string(*row.itemData), wire);
    }
    if (const form::Control* page =
            data::FindPage(control.form(), device.FrameArrayName(), row.page)) {
        for (const form::Control* field : data::SnapshotFields(control.form(), *page)) {
            if (field->tag() == row.name && field->kind() == form::ControlKind::ComboBox) {
                for (int i = 0; i < field->listCount(); ++i) {
                    if (field->list(i) == row.newValue) {
                        return SameWireValue(std::to_string(field->itemData(i)), wire);
                    }
                }
                // A row made before a change of language keeps the entry's
                // former text; the field still shows the choice.
                return field->listIndex() >= 0 &&
                       SameWireValue(std::to_string(field->itemData(field->listIndex())), wire);
            }
        }
    }
    if (!parameter || parameter.attribute("type") == "stringVal" || !IsNumber(wire)) {
        return row.newValue == wire;
    }
    if (devices::IsSerialNumber(row.name)) {
        // The row shows "yyyy-ww-nnnn"; the device takes it packed.
        return std::to_string(devices::EnCodeSerNro(row.newValue)) == wire;
    }
    const std::string shown = devices::fDecimalSep(row.newValue, ".");
    if (!IsNumber(shown)) {
        return false;
    }
    const double expected =
        toUnit(devices::Str2Dbl(shown), row.unit.empty() ? control.FetchUnitName(row.name) : row.unit,
               wireUnit) *
        PageScale(control, row.name);
    const double actual = devices::Str2Dbl(wire);
    return std::abs(expected - actual) <=
           std::pow(10.0, -Decimals(parameter)) + 1e-4 * std::abs(actual);
}

void SessionInvariants::checkBoxes(const Step& step, std::vector<std::string>& broken) const {
    std::set<std::string> seen;
    for (const simulator::RecordedBox& box : m_session.dialogs().takeBoxes()) {
        // A change of units reports, and keeps, a field that holds a refused
        // text instead of a number: "TEXT  Invalid value" under the field's name.
        const std::string refusedEnding =
            "  " + m_session.control().Translate("invalidValue");
        const bool keptRefused = step.action == "units" && box.text.size() > refusedEnding.size() &&
                                 box.text.ends_with(refusedEnding);
        // The error of a fault injected in an earlier step that only now met
        // its request.
        const bool lateFault =
            !m_pendingFaults.empty() && box.header == m_session.control().Translate("error");
        const bool allowed = lateFault || step.allowedHeaders.contains(box.header) ||
                             step.allowedHeaders.contains(box.text) || keptRefused;
        if (!allowed) {
            broken.push_back("message box the step did not call for: " + box.header + " | " +
                             box.text);
        }
        seen.insert(box.header);
    }
    for (const std::string& header : step.requiredHeaders) {
        if (!seen.contains(header)) {
            broken.push_back("no message box " + header);
        }
    }
}

// The device date "d.m.yyyy" with the ticked rows of its day, month and
// year (the year box carries the parameter deviceDate) in place. A row of
// "Add all values" carries the whole date under deviceDate; the user's own
// day and month rows go over it.
std::string SessionInvariants::confirmedDate(const std::string& held) const {
    const auto split = [](const std::string& date) {
        std::vector<std::string> parts;
        std::stringstream stream(date);
        for (std::string part; std::getline(stream, part, '.');) {
            parts.push_back(part);
        }
        return parts;
    };
    std::vector<std::string> parts = split(held);
    for (const Row& row : m_rows) {
        if (row.checked && row.name == "deviceDate" && split(row.newValue).size() == 3) {
            parts = split(row.newValue);
        }
    }
    if (parts.size() != 3) {
        return {};
    }
    const std::pair<const char*, std::size_t> fields[] = {
        {"deviceDay", 0}, {"deviceMonth", 1}, {"deviceDate", 2}};
    for (const Row& row : m_rows) {
        for (const auto& [name, position] : fields) {
            if (!row.checked || row.name != name || split(row.newValue).size() == 3) {
                continue;
            }
            // Day and month are list entries: a row keeps the entry's text
            // of the language it was made in; its item data is the choice
            // (0-based) whatever the language.
            parts[position] = row.itemData ? std::to_string(*row.itemData + 1) : row.newValue;
        }
    }
    return parts[0] + "." + parts[1] + "." + parts[2];
}

void SessionInvariants::checkWrites(std::vector<std::string>& broken,
                                    std::map<std::string, std::string>& written) {
    for (const app::RecordedRequest& recorded : m_session.recorder().takeRequests()) {
        xml::LoadResult parsed = xml::Document::parse(recorded.request);
        if (!parsed.ok()) {
            broken.push_back("a request that does not parse: " + recorded.request);
            continue;
        }
        const xml::Node request = parsed.document->root().firstChildElement("communicationRequest");
        const std::string access = request.attribute("access");
        m_requested.insert(request.attribute("name"));
        if (access == "read") {
            m_readSeen = true;
        }
        if (access != "write" && access != "writeOffline") {
            continue;
        }
        const bool offline = access == "writeOffline";
        for (const xml::Node& item : request.childElements("item")) {
            const std::string name = item.attribute("name");
            const xml::Node valueNode = item.firstChildElement();
            const std::string value = valueNode ? valueNode.text() : "";
            if (name == request.attribute("name")) {
                continue;  // a write with nothing in it names its own group
            }
            written[name] = value;
            bool confirmed = false;
            for (const Row& row : m_rows) {
                if (row.checked && row.name == name && sameAsRow(row, value, item.attribute("unit"))) {
                    confirmed = true;
                }
            }
            // A part the class computes from another value (the PL500's
            // schedule days) goes with its ticked source; the source's own
            // value is checked as any other.
            const std::string_view source = m_session.control().deviceClass().DerivedFrom(name);
            for (const Row& row : m_rows) {
                if (!source.empty() && row.checked && row.name == source) {
                    confirmed = true;
                }
            }
            const auto& target = offline ? m_dataSet : m_device;
            const auto held = target.find(name);
            if (name == "deviceDate" && held != target.end() &&
                value == confirmedDate(held->second)) {
                confirmed = true;
            }
            const bool unchanged = held != target.end() && SameWireValue(held->second, value);
            if (!confirmed && !unchanged) {
                broken.push_back(access + " of " + request.attribute("name") + " carries " + name +
                                 "=\"" + value + "\", which no ticked row holds (" +
                                 (offline ? "data set" : "device") + " had \"" +
                                 (held == target.end() ? "" : held->second) + "\")");
            }
        }
    }
}

void SessionInvariants::checkChanges(const std::map<std::string, std::string>& written,
                                     std::vector<std::string>& broken) const {
    for (const auto& [name, value] : deviceValues()) {
        const auto old = m_device.find(name);
        if (old != m_device.end() && old->second != value && !written.contains(name)) {
            broken.push_back("the device's " + name + " changed from \"" + old->second +
                             "\" to \"" + value + "\" without a write");
        }
    }
    for (const auto& [name, value] : dataSetValues()) {
        const auto old = m_dataSet.find(name);
        if (old != m_dataSet.end() && old->second != value && !written.contains(name)) {
            broken.push_back("the data set's " + name + " changed from \"" + old->second +
                             "\" to \"" + value + "\" without a write");
        }
    }
}

void SessionInvariants::checkIdle(std::vector<std::string>& broken) const {
    host::RavikKT500& control = m_session.control();
    const session::clsTools& tools = control.tools();
    const form::ToolbarModel& toolbar = app::ScriptTargets(m_session).toolbar().toolbar();
    const auto expectItem = [&](const std::string& key, bool enabled) {
        if (toolbar.item(key).enabled != enabled) {
            broken.push_back("after settle the toolbar's " + key + " is " +
                             (enabled ? "disabled" : "enabled"));
        }
    };
    expectItem("stop", false);
    expectItem("uploadCurrent", tools.OnlineConf);
    expectItem("send", tools.ActorRole != "observer");
    expectItem("settings", true);
    if (control.form().control("fraProgress").visible()) {
        broken.emplace_back("after settle the progress frame is visible");
    }
    constexpr int kHourglass = 11;
    if (control.form().userControl().mousePointer() == kHourglass) {
        broken.emplace_back("after settle the mouse pointer is busy");
    }
}

void SessionInvariants::checkTypedField(const Step& step, std::vector<std::string>& broken) const {
    if (step.field.empty()) {
        return;
    }
    const form::Control& field = app::ScriptTargets(m_session).control(step.field);
    constexpr std::uint32_t kRed = 255;
    if (step.refused != (field.foreColor() == kRed)) {
        broken.push_back(step.field + " \"" + step.value + "\" is " +
                         (step.refused ? "not shown refused" : "shown refused"));
    }
    if (!step.refused) {
        return;
    }
    for (const form::ListRow& row :
         m_session.control().form().control("lsvConfirmation").listView().rows()) {
        if (row.subItems.size() > 2 && row.subItems[2] == field.tag() &&
            row.subItems[1] == step.value) {
            broken.push_back("the refused " + field.tag() + " \"" + step.value +
                             "\" stands in the confirmation list");
        }
    }
}

// After a clean read the page shows the device's values, in the page's
// unit and decimals.
void SessionInvariants::checkPage(std::vector<std::string>& broken) const {
    host::RavikKT500& control = m_session.control();
    devices::DeviceClass& device = control.deviceClass();
    const form::Control* page =
        data::FindPage(control.form(), device.FrameArrayName(), control.tools().CurrentFrame);
    if (page == nullptr) {
        return;
    }
    simulator::SimulatedControl& bl = m_session.bl().simulatedControl();
    for (const form::Control* field : data::SnapshotFields(control.form(), *page)) {
        const xml::Node parameter = control.ParameterNodeByName(field->tag());
        const auto held = bl.deviceValue(field->tag());
        if (!parameter || !held || parameter.attribute("access") != "readWrite" ||
            !field->visible()) {
            continue;
        }
        const std::string shown = data::FieldValue(*field, false);
        bool same = false;
        if (field->tag() == "deviceDate") {
            // The year box shows the year of the date "d.m.yyyy".
            same = shown == held->substr(held->rfind('.') + 1);
        } else if (devices::IsSerialNumber(field->tag()) && IsNumber(*held)) {
            // The device holds the serial number packed; the page shows it
            // as "yyyy-ww-nnnn".
            same = shown == devices::DecodeSerNro(devices::ToInt32(*held));
        } else if (parameter.attribute("type") == "stringVal" || !IsNumber(*held)) {
            same = shown == *held;
        } else {
            const std::string number = devices::fDecimalSep(shown, ".");
            const double expected = toUnit(devices::Str2Dbl(*held), parameter.attribute("unit"),
                                           control.FetchUnitName(field->tag())) /
                                    PageScale(control, field->tag());
            same = IsNumber(number) && std::abs(devices::Str2Dbl(number) - expected) <=
                                           0.5 * std::pow(10.0, -Decimals(parameter)) + 1e-6;
        }
        if (!same) {
            broken.push_back("after the read " + field->displayName() + " shows \"" + shown +
                             "\" while the device holds \"" + *held + "\"");
        }
    }
}

std::vector<std::string> SessionInvariants::after(const Step& step) {
    std::vector<std::string> broken;
    std::map<std::string, std::string> written;
    checkWrites(broken, written);
    for (const std::string& line : step.lines) {
        if (line.starts_with("bl fail ")) {
            const std::string rest = line.substr(8);
            m_pendingFaults.insert(rest.substr(0, rest.find(' ')));
        }
    }
    checkBoxes(step, broken);
    // A read that met an injected fault is no clean read.
    bool faultMet = step.fault;
    for (const std::string& group : m_requested) {
        faultMet = m_pendingFaults.erase(group) > 0 || faultMet;
    }
    checkTypedField(step, broken);
    checkChanges(written, broken);
    if (step.settles) {
        checkIdle(broken);
    }
    if (step.readsPage && m_readSeen && !faultMet && broken.empty()) {
        checkPage(broken);
    }
    return broken;
}

}  // namespace kt500::random
