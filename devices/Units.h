// Units: the units a page shows and the conversions around the unit
// service. The unit of a parameter lives on the page, in the caption of a
// label tagged with the family prefix, the name and "Unit".
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <string>
#include <vector>

namespace kt500::devices {

class Units {
public:
    explicit Units(IUserControl& control) : m_control(control) {}

    // One value converted by the unit service; "" when the service fails.
    std::string ConvertUnit(const std::string& strValue, const std::string& strFromUnit,
                            const std::string& strToUnit);
    // The unit shown on the page for a parameter, or "noUnit".
    std::string FetchUnitName(const std::string& strParam);
    // Takes over every unit from the service and converts the page values.
    void RefreshAllUnits(bool blKeepSystem);
    // The same for one parameter.
    void ChangeParameterUnit(const std::string& strParameter, const std::string& strOldUnit,
                             int intFrame, const std::string& strNewUnit);

    // Empties the unit selectors and lists the service's parameters with a
    // unit again, by their names in the session's language.
    void TranslateParameterList();

    // The handlers of the settings page's unit selectors.
    void addHandlers(form::EventHandlers& handlers);

    // The unit selectors of the settings page.
    void comSelectParameter_Click();
    void comSelectUnit_Click();
    void optUnitSystem_Click();
    void cmdApplyUnitChange_Click();

private:
    // Empties both unit selectors; each shows its prompt as its tip.
    void ClearSelectors();
    // Asks the service for the parameters with a unit and lists their
    // translated names in comSelectParameter, keeping the names behind them;
    // False, after the message, when the service gives no list.
    bool ListUnitParameters(std::vector<std::string>& parameters);

    IUserControl& m_control;
    // The parameter names behind the translated entries of comSelectParameter.
    std::vector<std::string> m_parameterNames;
};

}  // namespace kt500::devices
