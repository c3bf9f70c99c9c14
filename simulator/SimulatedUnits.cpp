#include "simulator/SimulatedUnits.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kt500::simulator {

SimulatedUnits::SimulatedUnits(UnitTables tables) : m_tables(std::move(tables)) {
    const UnitSystem* start = m_tables.system(StartSystem);
    if (start == nullptr && !m_tables.systems().empty()) {
        start = &m_tables.systems().front();
    }
    if (start != nullptr) {
        applySystem(*start);
    }
}

SimulatedUnits SimulatedUnits::fromFolder(const std::filesystem::path& folder) {
    return SimulatedUnits(UnitTables::load(folder / "units.xml"));
}

void SimulatedUnits::applySystem(const UnitSystem& system) {
    for (const auto& [parameter, unit] : system.parameterUnits) {
        m_units[parameter] = unit;
    }
}

void SimulatedUnits::ConvertValue(float sngValue, const std::string& strFromUnit,
                                  const std::string& strToUnit, float& sngConverted,
                                  bool& blSuccess) {
    blSuccess = false;
    // A value without a unit, or a unit into itself, is the value itself:
    // the monitored "%" items go to the pages' "noUnit" this way.
    if (strFromUnit == strToUnit || strFromUnit == NoUnit || strToUnit == NoUnit) {
        sngConverted = sngValue;
        blSuccess = true;
        return;
    }
    const std::optional<double> converted = m_tables.convert(sngValue, strFromUnit, strToUnit);
    // A result beyond the range of a 32-bit float is no conversion.
    if (!converted || !std::isfinite(*converted) ||
        std::fabs(*converted) > std::numeric_limits<float>::max()) {
        return;
    }
    sngConverted = static_cast<float>(*converted);
    blSuccess = true;
}

void SimulatedUnits::GetUnitsOfParameter(const std::string& strParameter,
                                         std::vector<std::string>& arrUnits, bool& blSuccess) {
    arrUnits.clear();
    if (const UnitParameter* parameter = m_tables.parameter(strParameter)) {
        arrUnits = parameter->units;
    } else if (const Quantity* quantity = m_tables.quantity(strParameter)) {
        for (const UnitDefinition& unit : quantity->units) {
            arrUnits.push_back(unit.name);
        }
    }
    blSuccess = !arrUnits.empty();
}

void SimulatedUnits::GetUnitOfParameter(const std::string& strParameter, std::string& strUnit,
                                        bool& blSuccess) {
    const auto it = m_units.find(strParameter);
    blSuccess = it != m_units.end();
    strUnit = blSuccess ? it->second : std::string();
}

void SimulatedUnits::SetUnitOfParameter(const std::string& strParameter, const std::string& strUnit,
                                        bool& blSuccess) {
    const UnitParameter* parameter = m_tables.parameter(strParameter);
    blSuccess = parameter != nullptr && std::find(parameter->units.begin(), parameter->units.end(),
                                                  strUnit) != parameter->units.end();
    if (blSuccess) {
        m_units[strParameter] = strUnit;
    }
}

void SimulatedUnits::SetUnitSystem(const std::string& strSystem, bool& blSuccess) {
    const UnitSystem* system = m_tables.system(strSystem);
    blSuccess = system != nullptr;
    if (blSuccess) {
        applySystem(*system);
    }
}

void SimulatedUnits::GetUnitParameters(std::vector<std::string>& arrParameters, bool& blSuccess) {
    arrParameters.clear();
    for (const UnitParameter& parameter : m_tables.parameters()) {
        arrParameters.push_back(parameter.name);
    }
    blSuccess = true;
}

}  // namespace kt500::simulator
