#include "simulator/UnitTables.h"

#include "xml/Document.h"
#include "xml/FileText.h"

#include <libxml/tree.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>

namespace kt500::simulator {

namespace {

constexpr std::string_view kUnitsNamespace = "x-schema:KT500UnitsSchema.xml";

long lineOf(const xml::Node& node) {
    return node ? xmlGetLineNo(node.raw()) : 0;
}

// The first "line N" of a parser's message, 0 when it names none.
long lineInMessage(const std::string& message) {
    const auto at = message.find("line ");
    long line = 0;
    if (at != std::string::npos) {
        const char* begin = message.data() + at + 5;
        std::from_chars(begin, message.data() + message.size(), line);
    }
    return line;
}

[[noreturn]] void fail(const std::string& strSource, const xml::Node& node,
                       const std::string& strReason) {
    throw UnitTablesError(strSource, lineOf(node), strReason);
}

// A required attribute that is neither missing nor empty.
std::string required(const std::string& strSource, const xml::Node& node, std::string_view name) {
    std::string value = node.attribute(name);
    if (value.empty()) {
        fail(strSource, node,
             "<" + node.name() + "> needs a non-empty attribute '" + std::string(name) + "'");
    }
    return value;
}

double number(const std::string& strSource, const xml::Node& node, std::string_view name) {
    const std::string text = required(strSource, node, name);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
        fail(strSource, node,
             std::string(name) + " '" + text + "' is not a number with '.' as decimal sign");
    }
    return value;
}

std::vector<std::string> words(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        result.push_back(word);
    }
    return result;
}

template <typename T>
const T* byName(const std::vector<T>& items, std::string_view strName) {
    const auto it = std::find_if(items.begin(), items.end(),
                                 [&](const T& item) { return item.name == strName; });
    return it == items.end() ? nullptr : &*it;
}

Quantity readQuantity(const std::string& strSource, const xml::Node& node,
                      std::set<std::string>& allUnits) {
    Quantity quantity;
    quantity.name = required(strSource, node, "name");
    quantity.base = required(strSource, node, "base");
    for (const xml::Node& child : node.childElements()) {
        if (child.name() != "unit") {
            fail(strSource, child, "<" + child.name() + "> has no place in a <quantity>");
        }
        UnitDefinition unit;
        unit.name = required(strSource, child, "name");
        unit.factor = number(strSource, child, "factor");
        unit.offset = child.hasAttribute("offset") ? number(strSource, child, "offset") : 0.0;
        if (!(unit.factor > 0.0)) {
            fail(strSource, child, "the factor of the unit '" + unit.name + "' is not positive");
        }
        if (!allUnits.insert(unit.name).second) {
            fail(strSource, child, "the unit '" + unit.name + "' is given twice");
        }
        quantity.units.push_back(std::move(unit));
    }
    const UnitDefinition* base = quantity.find(quantity.base);
    if (base == nullptr) {
        fail(strSource, node,
             "the base unit '" + quantity.base + "' is not a unit of '" + quantity.name + "'");
    }
    if (base->factor != 1.0 || base->offset != 0.0) {
        fail(strSource, node, "the base unit '" + quantity.base + "' needs factor 1 and offset 0");
    }
    return quantity;
}

UnitParameter readParameter(const std::string& strSource, const xml::Node& node,
                            const std::vector<Quantity>& quantities) {
    UnitParameter parameter;
    parameter.name = required(strSource, node, "name");
    parameter.quantity = required(strSource, node, "quantity");
    const Quantity* quantity = byName(quantities, parameter.quantity);
    if (quantity == nullptr) {
        fail(strSource, node,
             "the parameter '" + parameter.name + "' names the unknown quantity '" +
                 parameter.quantity + "'");
    }
    parameter.units = words(required(strSource, node, "units"));
    if (parameter.units.empty()) {
        fail(strSource, node, "the parameter '" + parameter.name + "' names no unit");
    }
    std::set<std::string> seen;
    for (const std::string& unit : parameter.units) {
        if (quantity->find(unit) == nullptr) {
            fail(strSource, node,
                 "the unit '" + unit + "' of the parameter '" + parameter.name +
                     "' is not a unit of '" + quantity->name + "'");
        }
        if (!seen.insert(unit).second) {
            fail(strSource, node,
                 "the unit '" + unit + "' is given twice for the parameter '" + parameter.name +
                     "'");
        }
    }
    if (!node.childElements().empty()) {
        fail(strSource, node.firstChildElement(), "a <parameter> holds no elements");
    }
    return parameter;
}

UnitSystem readSystem(const std::string& strSource, const xml::Node& node,
                      const std::vector<UnitParameter>& parameters) {
    UnitSystem system;
    system.name = required(strSource, node, "name");
    for (const xml::Node& child : node.childElements()) {
        if (child.name() != "parameterUnit") {
            fail(strSource, child, "<" + child.name() + "> has no place in a <system>");
        }
        const std::string name = required(strSource, child, "parameter");
        const std::string unit = required(strSource, child, "unit");
        const UnitParameter* parameter = byName(parameters, name);
        if (parameter == nullptr) {
            fail(strSource, child,
                 "the system '" + system.name + "' names the unknown parameter '" + name + "'");
        }
        if (std::find(parameter->units.begin(), parameter->units.end(), unit) ==
            parameter->units.end()) {
            fail(strSource, child,
                 "the system '" + system.name + "' gives '" + name + "' the unit '" + unit +
                     "', which is not one of its units");
        }
        if (system.unitOf(name) != nullptr) {
            fail(strSource, child,
                 "the system '" + system.name + "' gives '" + name + "' a unit twice");
        }
        system.parameterUnits.emplace_back(name, unit);
    }
    // Every system covers every parameter, so that a change of system leaves
    // no parameter in a unit of the other one.
    for (const UnitParameter& parameter : parameters) {
        if (system.unitOf(parameter.name) == nullptr) {
            fail(strSource, node,
                 "the system '" + system.name + "' gives no unit for '" + parameter.name + "'");
        }
    }
    // In parameter order, whatever the file's order.
    std::stable_sort(system.parameterUnits.begin(), system.parameterUnits.end(),
                     [&](const auto& a, const auto& b) {
                         return byName(parameters, a.first) < byName(parameters, b.first);
                     });
    return system;
}

}  // namespace

UnitTablesError::UnitTablesError(const std::string& strSource, long line,
                                 const std::string& strReason)
    : std::runtime_error(xml::Located("units file " + strSource, line, strReason)), m_line(line) {}

const UnitDefinition* Quantity::find(std::string_view strUnit) const {
    return byName(units, strUnit);
}

const std::string* UnitSystem::unitOf(std::string_view strParameter) const {
    for (const auto& [parameter, unit] : parameterUnits) {
        if (parameter == strParameter) {
            return &unit;
        }
    }
    return nullptr;
}

UnitTables UnitTables::load(const std::filesystem::path& file) {
    std::string bytes;
    if (!xml::ReadFileBytes(file, bytes).empty()) {
        throw UnitTablesError(file.string(), 0, "cannot be read");
    }
    return parse(bytes, file.string());
}

UnitTables UnitTables::parse(std::string_view bytes, const std::string& strSource) {
    xml::LoadResult loaded = xml::Document::parse(bytes);
    if (!loaded.ok()) {
        const std::string message = loaded.message();
        throw UnitTablesError(strSource, lineInMessage(message), message);
    }
    const xml::Node root = loaded.document->root();
    if (root.name() != "unitTables" || root.namespaceUri() != kUnitsNamespace) {
        fail(strSource, root,
             "the document element is not <unitTables> of " + std::string(kUnitsNamespace));
    }
    UnitTables tables;
    std::set<std::string> allUnits;
    for (const xml::Node& node : root.childElements()) {
        const std::string kind = node.name();
        const std::string name = node.attribute("name");
        if (kind == "quantity") {
            if (tables.quantity(name) != nullptr) {
                fail(strSource, node, "the quantity '" + name + "' is given twice");
            }
            tables.m_quantities.push_back(readQuantity(strSource, node, allUnits));
        } else if (kind == "parameter") {
            if (tables.parameter(name) != nullptr) {
                fail(strSource, node, "the parameter '" + name + "' is given twice");
            }
            tables.m_parameters.push_back(readParameter(strSource, node, tables.m_quantities));
        } else if (kind == "system") {
            if (tables.system(name) != nullptr) {
                fail(strSource, node, "the system '" + name + "' is given twice");
            }
            tables.m_systems.push_back(readSystem(strSource, node, tables.m_parameters));
        } else {
            fail(strSource, node, "<" + kind + "> has no place in <unitTables>");
        }
    }
    if (tables.m_systems.empty()) {
        fail(strSource, root, "no unit system is given");
    }
    return tables;
}

const Quantity* UnitTables::quantity(std::string_view strName) const {
    return byName(m_quantities, strName);
}

const UnitParameter* UnitTables::parameter(std::string_view strName) const {
    return byName(m_parameters, strName);
}

const UnitSystem* UnitTables::system(std::string_view strName) const {
    return byName(m_systems, strName);
}

std::optional<double> UnitTables::convert(double value, std::string_view strFrom,
                                          std::string_view strTo) const {
    if (strFrom == strTo) {
        return value;
    }
    for (const Quantity& quantity : m_quantities) {
        const UnitDefinition* from = quantity.find(strFrom);
        const UnitDefinition* to = quantity.find(strTo);
        if (from != nullptr && to != nullptr) {
            const double base = value * from->factor + from->offset;
            return (base - to->offset) / to->factor;
        }
    }
    return std::nullopt;
}

}  // namespace kt500::simulator
