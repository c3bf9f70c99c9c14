// The unit tables of the built-in unit service, read from share/units/units.xml:
// quantities with their units (factor and offset to the quantity's base
// unit), the parameters that carry a unit with the units each may take, and
// the unit systems ("SI", "US") that give every such parameter its unit.
// The format is told in docs/units.md.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::simulator {

// A units file that does not load: the message names the file and, where
// the fault lies on one line, the line ("units.xml:12: ...").
class UnitTablesError : public std::runtime_error {
public:
    UnitTablesError(const std::string& strSource, long line, const std::string& strReason);
    [[nodiscard]] long line() const noexcept { return m_line; }

private:
    long m_line;
};

struct UnitDefinition {
    std::string name;
    double factor = 1.0;  // base = value * factor + offset
    double offset = 0.0;
};

struct Quantity {
    std::string name;
    std::string base;
    std::vector<UnitDefinition> units;

    [[nodiscard]] const UnitDefinition* find(std::string_view strUnit) const;
};

struct UnitParameter {
    std::string name;
    std::string quantity;
    std::vector<std::string> units;  // the units it may take, in list order
};

struct UnitSystem {
    std::string name;
    // One unit per parameter, in the order of the parameters.
    std::vector<std::pair<std::string, std::string>> parameterUnits;

    [[nodiscard]] const std::string* unitOf(std::string_view strParameter) const;
};

class UnitTables {
public:
    // Reads a units file; throws UnitTablesError when it cannot be read, is
    // not a units document, or is inconsistent: a unit or name given twice,
    // a unit or quantity a parameter or system does not know, a factor that
    // is not a positive finite number, a system that leaves a parameter out.
    static UnitTables load(const std::filesystem::path& file);
    static UnitTables parse(std::string_view bytes, const std::string& strSource);

    [[nodiscard]] const std::vector<Quantity>& quantities() const noexcept { return m_quantities; }
    [[nodiscard]] const std::vector<UnitParameter>& parameters() const noexcept {
        return m_parameters;
    }
    [[nodiscard]] const std::vector<UnitSystem>& systems() const noexcept { return m_systems; }

    [[nodiscard]] const Quantity* quantity(std::string_view strName) const;
    [[nodiscard]] const UnitParameter* parameter(std::string_view strName) const;
    [[nodiscard]] const UnitSystem* system(std::string_view strName) const;

    // value converted between two units of one quantity; nullopt when no
    // quantity holds both. Equal names convert to the value itself.
    [[nodiscard]] std::optional<double> convert(double value, std::string_view strFrom,
                                                std::string_view strTo) const;

private:
    std::vector<Quantity> m_quantities;
    std::vector<UnitParameter> m_parameters;
    std::vector<UnitSystem> m_systems;
};

}  // namespace kt500::simulator
