#include "simulator/DeviceState.h"

#include "xml/XPath.h"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <system_error>

namespace kt500::simulator {

namespace {

xml::Namespaces DataSetNamespaces() {
    return xml::Namespaces::fromSelection(
        "xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'");
}

// A locale-free decimal number, "." as the decimal sign; nothing for any
// other text (blanks, a trailing sign, an empty text).
std::optional<double> ParseNumber(const std::string& text) {
    double number = 0.0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

int RequestCountOf(const std::string& text) {
    const std::optional<double> count = ParseNumber(text);
    return count && *count >= 0 && *count < 1000 ? static_cast<int>(*count) : 1;
}

// Quotes cannot appear in the names the document's schema allows, but a
// name from a request is checked before it goes into an expression.
bool SafeName(const std::string& name) {
    return !name.empty() && name.find_first_of("'\"") == std::string::npos;
}

}  // namespace

DeviceState::DeviceState(xml::Document& dataSet) : m_dataSet(dataSet) {
    const xml::XPath query(m_dataSet, DataSetNamespaces());
    m_protocol =
        query.selectSingle("//typeInfo:device/typeInfo:publishedInfo").attribute("protocol");
    for (const xml::Node& node :
         query.select("data:persistentData/data:parameters/data:parameter")) {
        ParameterInfo info{node.attribute("name"),   node.attribute("access"),
                           node.attribute("type"),   node.attribute("unit"),
                           node.attribute("minVal"), node.attribute("maxVal")};
        m_values[info.name] = node.attribute("value");
        m_parameters.emplace(info.name, std::move(info));
    }
    for (const xml::Node& node : query.select("data:requestGroups/data:requestGroup")) {
        GroupInfo group{node.attribute("name"), RequestCountOf(node.attribute("requestCount")), {}};
        for (const xml::Node& included : node.childElements("includedParam")) {
            group.parameters.push_back(included.attribute("name"));
        }
        m_groups.emplace(group.name, std::move(group));
    }
    for (const xml::Node& status : query.select("data:deviceStatus/data:statusGroup/data:status")) {
        m_statusTree.push_back({status.parent().attribute("name"), status.attribute("name"),
                                status.attribute("class"), "0"});
        m_statusValues[status.attribute("name")] = "0";
    }
}

const ParameterInfo* DeviceState::parameter(const std::string& name) const {
    const auto found = m_parameters.find(name);
    return found == m_parameters.end() ? nullptr : &found->second;
}

const GroupInfo* DeviceState::group(const std::string& name) const {
    const auto found = m_groups.find(name);
    return found == m_groups.end() ? nullptr : &found->second;
}

std::optional<std::string> DeviceState::value(const std::string& name) const {
    const auto found = m_values.find(name);
    if (found == m_values.end()) {
        return std::nullopt;
    }
    if (m_live) {
        if (std::optional<std::string> live = m_live(name)) {
            return live;
        }
    }
    return found->second;
}

void DeviceState::setValue(const std::string& name, const std::string& value) {
    const auto found = m_values.find(name);
    if (found == m_values.end()) {
        throw std::invalid_argument("the simulated device has no parameter '" + name + "'");
    }
    found->second = value;
}

MessageItem DeviceState::item(const std::string& name) const {
    const ParameterInfo* info = parameter(name);
    if (info == nullptr) {
        return {name, "noUnit", "", ""};
    }
    return {name, info->unit.empty() ? "noUnit" : info->unit, info->type, *value(name)};
}

std::string DeviceState::checkWrite(const ParameterInfo& parameter, const std::string& value) {
    if (parameter.access == "read") {
        return "invalidValue";
    }
    if (parameter.type == "stringVal") {
        const std::optional<double> longest = ParseNumber(parameter.maxVal);
        return longest && static_cast<double>(value.size()) > *longest ? "invalidValue" : "";
    }
    const std::optional<double> number = ParseNumber(value);
    if (!number || (parameter.type == "integerVal" && std::trunc(*number) != *number)) {
        return "invalidValue";
    }
    const std::optional<double> low = ParseNumber(parameter.minVal);
    const std::optional<double> high = ParseNumber(parameter.maxVal);
    if ((low && *number < *low) || (high && *number > *high)) {
        return "outOfRange";
    }
    return "";
}

std::vector<StatusEntry> DeviceState::statuses() const {
    std::vector<StatusEntry> entries = m_statusTree;
    for (StatusEntry& entry : entries) {
        entry.value = statusValue(entry.name);
    }
    return entries;
}

std::string DeviceState::statusValue(const std::string& name) const {
    const auto found = m_statusValues.find(name);
    return found == m_statusValues.end() ? "0" : found->second;
}

bool DeviceState::setStatus(const std::string& name, const std::string& value) {
    std::string& stored = m_statusValues[name];
    const bool changed = stored != value;
    stored = value;
    return changed;
}

xml::Node DeviceState::dataSetNode(const std::string& name) const {
    if (!SafeName(name)) {
        return {};
    }
    const xml::XPath query(m_dataSet, DataSetNamespaces());
    return query.selectSingle("data:persistentData/data:parameters/data:parameter[@name = '" +
                              name + "']");
}

bool DeviceState::storeInDataSet(const std::string& name, const std::string& value,
                                 const std::string& synchronised) {
    xml::Node node = dataSetNode(name);
    if (!node) {
        return false;
    }
    node.setAttribute("value", value);
    node.setAttribute("synchronised", synchronised);
    return true;
}

std::string DeviceState::dataSetAttribute(const std::string& name,
                                          const std::string& attribute) const {
    return dataSetNode(name).attribute(attribute);
}

}  // namespace kt500::simulator
