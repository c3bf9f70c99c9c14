// m_pUnits: the unit service of the BL. Each operation reports success.
#pragma once

#include <string>
#include <vector>

namespace kt500::services {

class IDtmUnits {
public:
    virtual ~IDtmUnits() = default;

    virtual void ConvertValue(float sngValue, const std::string& strFromUnit,
                              const std::string& strToUnit, float& sngConverted,
                              bool& blSuccess) = 0;
    // The units a parameter (or a quantity) may take.
    virtual void GetUnitsOfParameter(const std::string& strParameter,
                                     std::vector<std::string>& arrUnits, bool& blSuccess) = 0;
    // The unit a parameter has in the current unit system.
    virtual void GetUnitOfParameter(const std::string& strParameter, std::string& strUnit,
                                    bool& blSuccess) = 0;
    virtual void SetUnitOfParameter(const std::string& strParameter, const std::string& strUnit,
                                    bool& blSuccess) = 0;
    // "SI" or "US".
    virtual void SetUnitSystem(const std::string& strSystem, bool& blSuccess) = 0;
    // The parameters that carry a unit, in the service's order.
    virtual void GetUnitParameters(std::vector<std::string>& arrParameters, bool& blSuccess) = 0;
};

}  // namespace kt500::services
