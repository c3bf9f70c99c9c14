#include "devices/Units.h"

#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace kt500::devices {

namespace {

// Where a parameter's unit and value stand on the pages: the unit and value
// properties of the device class. "supplyPressure" has two places.
struct UnitPlace {
    std::string_view unitProperty;
    std::string_view valueProperty;
};

struct UnitParameter {
    std::string_view name;
    std::array<UnitPlace, 2> places;
    int count;
};

constexpr UnitParameter kUnitParameters[] = {
    {"supplyPressure",
     {{{"SupplyPressureUnit", "SupplyPressureValue"},
       {"SupplyPressureTrimUnit", "SupplyPressureTrimValue"}}},
     2},
    {"actuatorPressure", {{{"ActuatorPressureUnit", "ActuatorPressureValue"}}}, 1},
    {"pcbTemperature", {{{"PcbTemperatureUnit", "PcbTemperatureValue"}}}, 1},
    {"measuredTemperature", {{{"MeasuredTemperatureUnit", "MeasuredTemperatureValue"}}}, 1},
    {"pressureSpan", {{{"PressureSpanUnit", "PressureSpanValue"}}}, 1},
    {"breakawayPressureLimitHigh",
     {{{"BreakawayPressureLimitHighUnit", "BreakawayPressureLimitHighValue"}}},
     1},
    {"breakawayPressureLimitLow",
     {{{"BreakawayPressureLimitLowUnit", "BreakawayPressureLimitLowValue"}}},
     1},
    {"limitSupplyPressureAlarmHigh",
     {{{"SupplyPressureLimitHighUnit", "SupplyPressureLimitHighValue"}}},
     1},
    {"limitSupplyPressureAlarmLow",
     {{{"SupplyPressureLimitLowUnit", "SupplyPressureLimitLowValue"}}},
     1},
    {"valveTestPressureStep", {{{"ValveTestPressureStepUnit", "ValveTestPressureStepValue"}}}, 1},
    {"valveTestBreakawayPressure",
     {{{"ValveTestBreakawayPressureUnit", "ValveTestBreakawayPressureValue"}}},
     1},
    {"pressureSetpointLowLimit",
     {{{"PressureSetpointLowLimitUnit", "PressureSetpointLowLimitValue"}}},
     1},
    {"pressurePeak", {{{"PressurePeakUnit", "PressurePeakValue"}}}, 1},
};

const UnitParameter* unitParameter(std::string_view strParameter) {
    for (const UnitParameter& parameter : kUnitParameters) {
        if (parameter.name == strParameter) {
            return &parameter;
        }
    }
    return nullptr;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

// A text as the 32-bit float the unit service takes: through the machine's
// decimal sign, then the locale-free parse.
float asSingle(const std::string& strValue) {
    return static_cast<float>(Str2Dbl(fDecimalSep(strValue)));
}

// The monitoring page of the family: fraKT520, fraKT540 or fraPL500.
int monitoringFrameOf(const DeviceClass& device) {
    const std::string prefix = device.DevicePrefix();
    return prefix == "PA" ? 1 : prefix == "PL" ? 2 : 0;
}

void setEnabled(IUserControl& control, std::string_view strName, bool blEnabled) {
    if (form::Control* found = control.form().find(strName)) {
        found->setEnabled(blEnabled);
    }
}

// Empties a unit selector. A list box holds no free text, so the prompt,
// the translation of its tag, shows as its tip.
void resetSelector(IUserControl& control, std::string_view strName) {
    if (form::Control* list = control.form().find(strName)) {
        list->clear();
        list->setToolTipText(control.Translate(list->tag()));
    }
}

// One place of a parameter takes a new unit: the unit label shows it, and a
// value in the field is converted from the old unit. A field that holds no
// number is reported and kept.
void changeOnePlace(IUserControl& control, std::string_view strParameter, const UnitPlace& where,
                    const std::string& strOldUnit, const std::string& strNewUnit) {
    DeviceClass& device = control.deviceClass();
    device.setPageProperty(where.unitProperty, strNewUnit);

    const std::string value = device.pageProperty(where.valueProperty);
    if (isBlank(value)) {
        return;
    }
    if (!IsNum(value)) {
        control.ShowMsg(control.Translate(std::string(strParameter)),
                        value + "  " + control.Translate("invalidValue"));
        return;
    }
    float converted = 0.0F;
    bool success = false;
    control.units().ConvertValue(asSingle(value), strOldUnit, strNewUnit, converted, success);
    if (success) {
        // Shown with the parameter's decimals, as a read shows it; a value
        // the user changed and has not sent yet keeps the whole conversion,
        // so that the send carries what the user confirmed (31.6 psi goes out
        // as 2.17870 bar, not as 2.2 bar, which is 31.9 psi).
        const std::string decimals =
            control.ParameterNodeByName(strParameter).attribute("decimals");
        std::string text = SingleText(converted);
        if (!decimals.empty() && IsNum(decimals) &&
            !control.HasConfirmationRow(strParameter)) {
            const int places = std::clamp<int>(ToInt16(decimals), 0, 15);
            std::array<char, 64> rounded{};
            std::snprintf(rounded.data(), rounded.size(), "%.*f", places,
                          static_cast<double>(converted));
            text = rounded.data();
        }
        device.setPageProperty(where.valueProperty, fDecimalSep(text));
    }
    // Not here yet: the rescale of the monitoring chart's pressure axis, and
    // for "actuatorPressure" (not on "PL500_1") the new axis title and scale
    // of the test pressure curves. Both come with their charts.
}

constexpr const char* kSetUnitFailed = "Unable to set the new unit!";
constexpr const char* kGetParametersFailed = "Unable to get the unit parameters!";

}  // namespace

std::string Units::ConvertUnit(const std::string& strValue, const std::string& strFromUnit,
                               const std::string& strToUnit) {
    if (strFromUnit == strToUnit) {
        return strValue;
    }
    const float value = asSingle(strValue);
    float converted = 0.0F;
    bool success = false;
    m_control.units().ConvertValue(value, strFromUnit, strToUnit, converted, success);
    // The text goes on with "."; a caller that shows it on a page passes it
    // through fDecimalSep itself.
    return success ? SingleText(converted) : std::string();
}

std::string Units::FetchUnitName(const std::string& strParam) {
    const std::string tag = m_control.deviceClass().DevicePrefix() + strParam + "Unit";
    // The last label of "supplyPressure" wins: it has two places on the pages.
    const bool lastWins = strParam == "supplyPressure";
    std::string unit = "noUnit";
    for (const form::Control* control : m_control.form().tagged(tag)) {
        if (control->kind() != form::ControlKind::Label) {
            continue;
        }
        unit = control->caption().empty() ? "noUnit" : control->caption();
        if (!lastWins) {
            break;
        }
    }
    return unit;
}

bool Units::ListUnitParameters(std::vector<std::string>& parameters) {
    bool success = false;
    m_control.units().GetUnitParameters(parameters, success);
    if (!success) {
        m_control.ShowMsg("Error", kGetParametersFailed);
        return false;
    }
    form::Control* parameterList = m_control.form().find("comSelectParameter");
    for (const std::string& parameter : parameters) {
        if (parameterList != nullptr) {
            parameterList->addItem(m_control.Translate(parameter));
        }
        m_parameterNames.push_back(parameter);
    }
    return true;
}

void Units::ClearSelectors() {
    resetSelector(m_control, "comSelectParameter");
    resetSelector(m_control, "comSelectUnit");
    m_parameterNames.clear();
}

void Units::TranslateParameterList() {
    ClearSelectors();
    std::vector<std::string> parameters;
    (void)ListUnitParameters(parameters);
}

void Units::RefreshAllUnits(bool blKeepSystem) {
    services::IDtmUnits& service = m_control.units();
    form::Form& form = m_control.form();

    ClearSelectors();

    bool success = false;
    if (!blKeepSystem) {
        const form::Control* si = form.find("optSIUnits");
        service.SetUnitSystem(si != nullptr && si->value() != 0 ? "SI" : "US", success);
        if (!success) {
            return;
        }
    }
    std::vector<std::string> parameters;
    if (!ListUnitParameters(parameters)) {
        return;
    }

    DeviceClass& device = m_control.deviceClass();
    for (const std::string& parameter : parameters) {
        std::string newUnit;
        service.GetUnitOfParameter(parameter, newUnit, success);
        const UnitParameter* places = unitParameter(parameter);
        if (!success || places == nullptr) {
            continue;
        }
        for (int place = 0; place < places->count; ++place) {
            const UnitPlace& where = places->places[static_cast<std::size_t>(place)];
            changeOnePlace(m_control, parameter, where, device.pageProperty(where.unitProperty),
                           newUnit);
        }
    }
    setEnabled(m_control, "cmdResetUnits", false);
}

void Units::ChangeParameterUnit(const std::string& strParameter, const std::string& strOldUnit,
                                int /*intFrame*/, const std::string& strNewUnit) {
    // intFrame names the page of the monitoring chart whose pressure axis
    // follows the unit; the chart comes with the monitoring pages.
    const UnitParameter* places = unitParameter(strParameter);
    if (places == nullptr) {
        return;
    }
    for (int place = 0; place < places->count; ++place) {
        changeOnePlace(m_control, strParameter, places->places[static_cast<std::size_t>(place)],
                       strOldUnit, strNewUnit);
    }
}

void Units::comSelectParameter_Click() {
    form::Form& form = m_control.form();
    resetSelector(m_control, "comSelectUnit");
    const form::Control* parameterList = form.find("comSelectParameter");
    form::Control* unitList = form.find("comSelectUnit");
    const int selected = parameterList != nullptr ? parameterList->listIndex() : -1;
    if (unitList != nullptr && selected >= 0 &&
        selected < static_cast<int>(m_parameterNames.size())) {
        const std::string& parameter = m_parameterNames[static_cast<std::size_t>(selected)];
        std::vector<std::string> units;
        std::string current;
        bool listed = false;
        bool known = false;
        m_control.units().GetUnitsOfParameter(parameter, units, listed);
        m_control.units().GetUnitOfParameter(parameter, current, known);
        if (!listed) {
            units.clear();
        }
        for (const std::string& unit : units) {
            unitList->addItem(unit);
        }
        const auto found = std::find(units.begin(), units.end(), current);
        if (known && found != units.end()) {
            unitList->setListIndex(static_cast<int>(found - units.begin()));
        }
    }
    // Last, so that the selection of the current unit leaves it disabled.
    setEnabled(m_control, "cmdApplyUnitChange", false);
}

void Units::comSelectUnit_Click() {
    setEnabled(m_control, "cmdApplyUnitChange", true);
}

void Units::optUnitSystem_Click() {
    setEnabled(m_control, "cmdResetUnits", true);
}

void Units::cmdApplyUnitChange_Click() {
    form::Form& form = m_control.form();
    const form::Control* parameterList = form.find("comSelectParameter");
    const form::Control* unitList = form.find("comSelectUnit");
    const int parameterIndex = parameterList != nullptr ? parameterList->listIndex() : -1;
    const int unitIndex = unitList != nullptr ? unitList->listIndex() : -1;
    if (unitIndex >= 0 && parameterIndex >= 0 &&
        parameterIndex < static_cast<int>(m_parameterNames.size())) {
        const std::string& parameter = m_parameterNames[static_cast<std::size_t>(parameterIndex)];
        const std::string newUnit = unitList->list(unitIndex);
        services::IDtmUnits& service = m_control.units();
        // The page values stand in the unit the service gives the parameter now.
        std::string oldUnit;
        bool success = false;
        service.GetUnitOfParameter(parameter, oldUnit, success);
        ChangeParameterUnit(parameter, oldUnit, monitoringFrameOf(m_control.deviceClass()),
                            newUnit);
        service.SetUnitOfParameter(parameter, newUnit, success);
        if (!success) {
            m_control.ShowMsg(m_control.Translate("error"), kSetUnitFailed);
        }
    }
    setEnabled(m_control, "cmdApplyUnitChange", false);
}

void Units::addHandlers(form::EventHandlers& handlers) {
    using form::EventKind;
    handlers.add("comSelectParameter", EventKind::Click,
                 [this](form::FormEvent&) { comSelectParameter_Click(); });
    handlers.add("comSelectUnit", EventKind::Click,
                 [this](form::FormEvent&) { comSelectUnit_Click(); });
    for (const char* option : {"optSIUnits", "optUSUnits"}) {
        handlers.add(option, EventKind::Click, [this](form::FormEvent&) { optUnitSystem_Click(); });
    }
    handlers.add("cmdApplyUnitChange", EventKind::Click,
                 [this](form::FormEvent&) { cmdApplyUnitChange_Click(); });
    handlers.add("cmdResetUnits", EventKind::Click,
                 [this](form::FormEvent&) { RefreshAllUnits(false); });
}

}  // namespace kt500::devices
