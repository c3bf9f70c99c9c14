// The built-in unit service (m_pUnits): conversions by the unit tables of
// share/units/units.xml, and the unit each parameter shows, set all at once
// by a unit system or one parameter at a time. A session starts in "SI".
#pragma once

#include "services/IDtmUnits.h"
#include "simulator/UnitTables.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::simulator {

class SimulatedUnits final : public services::IDtmUnits {
public:
    static constexpr const char* StartSystem = "SI";
    // The unit of a value that has none; it converts to and from any unit
    // as the value itself.
    static constexpr std::string_view NoUnit = "noUnit";

    // Starts in the system "SI", or in the first system the tables give.
    explicit SimulatedUnits(UnitTables tables);
    // Reads folder/units.xml; throws UnitTablesError when it does not load.
    static SimulatedUnits fromFolder(const std::filesystem::path& folder);

    // Fails for units that no one quantity holds; equal names and "noUnit"
    // on either side always succeed with the value itself.
    void ConvertValue(float sngValue, const std::string& strFromUnit, const std::string& strToUnit,
                      float& sngConverted, bool& blSuccess) override;
    // A parameter's units, or all units of a quantity given by its name.
    void GetUnitsOfParameter(const std::string& strParameter, std::vector<std::string>& arrUnits,
                             bool& blSuccess) override;
    void GetUnitOfParameter(const std::string& strParameter, std::string& strUnit,
                            bool& blSuccess) override;
    // Fails for a unit the parameter may not take; the unit stays as it was.
    void SetUnitOfParameter(const std::string& strParameter, const std::string& strUnit,
                            bool& blSuccess) override;
    void SetUnitSystem(const std::string& strSystem, bool& blSuccess) override;
    void GetUnitParameters(std::vector<std::string>& arrParameters, bool& blSuccess) override;

    [[nodiscard]] const UnitTables& tables() const noexcept { return m_tables; }

private:
    void applySystem(const UnitSystem& system);

    UnitTables m_tables;
    std::map<std::string, std::string, std::less<>> m_units;  // parameter -> current unit
};

}  // namespace kt500::simulator
