// clsKT520's trends and event log: the running time axis of its two trends
// over time, the load factor worked over by the supply pressure for
// actuators that need it, travel versus time in percent, and the reset
// boxes of its diagnostics pages.
#include "devices/Encodings.h"
#include "devices/clsKT520.h"

#include <cstdio>
#include <cstdlib>

namespace kt500::devices {

namespace {

float roundedOneDecimal(float sngValue) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", static_cast<double>(sngValue));
    return std::strtof(text, nullptr);
}

}  // namespace

void clsKT520::FormatLoadFactorXValues(TrendCurve& arrCurve) {
    IUserControl& control = userControl();
    runningTimeAxis(arrCurve, "LoadFactorTime");
    const double revision = Str2Dbl(control.tools().DeviceRevision);
    if (revision < 2) {
        return;
    }
    TrendCurve local;
    for (int i = 0; i < TrendCurve::kTimeInUse; ++i) {
        local.at(0, i) = arrCurve.at(0, i);
    }
    const std::string actuatorType = control.FetchValueByTag("actuatorType", false);
    if (actuatorType == "1") {
        // A single-acting actuator's load factor is the device's own from
        // revision 4 on.
        if (revision < 4) {
            return;
        }
    } else if (actuatorType == "2") {
        const std::string supplyPressure = control.FetchValueByTag("supplyPressure", false);
        if (supplyPressure.empty()) {
            return;
        }
        const std::string pointForm = fDecimalSep(supplyPressure, ".");
        if (static_cast<float>(Str2Dbl(pointForm)) == 0.0F) {
            return;
        }
        const std::string unit = control.FetchUnitName("supplyPressure");
        for (int i = 0; i < TrendCurve::kTimeInUse; ++i) {
            const std::string converted =
                control.ConvertUnit(pointForm, unit, ConvertUnitForDevice(unit));
            const auto pressure = static_cast<float>(Str2Dbl(fDecimalSep(converted, ".")));
            local.at(0, i) = arrCurve.at(0, i) / pressure * 100.0F;
        }
    } else {
        return;
    }
    for (int i = 0; i < TrendCurve::kTimeInUse; ++i) {
        local.at(1, i) = roundedOneDecimal(arrCurve.at(1, i));
    }
    control.UpdateLoadFactorGraph(local);
}

void clsKT520::FormatDeviationXValues(TrendCurve& arrCurve) {
    runningTimeAxis(arrCurve, "TravelDeviationTime");
    roundTimeRow(arrCurve);
    userControl().UpdateDeviationGraph(arrCurve);
}

void clsKT520::FormatTravelVsTimeXValues(TrendCurve& arrCurve) {
    float scratch[TrendCurve::kTravelEntries];
    float total = 0.0F;
    for (int i = 0; i < TrendCurve::kTravelEntries; ++i) {
        scratch[i] = arrCurve.at(1, i);
        total += scratch[i];
    }
    setTravelVsTimeTime(fDecimalSep(SingleText(total)));
    for (int i = 0; i < TrendCurve::kTravelEntries; ++i) {
        arrCurve.at(1, i) =
            scratch[i] != 0.0F ? roundedOneDecimal(scratch[i] / total * 100.0F) : 0.0F;
    }
    userControl().UpdateTravelVsTimeGraph(arrCurve);
}

void clsKT520::AddEventLogFromDataFile(xml::Node xmlNode, bool blInit) {
    eventLogItem(xmlNode, blInit, false);
}

void clsKT520::ClearResetDiagnostics() {
    clearResetBoxes("chkResetDiagnostics", 0, 9);
}

}  // namespace kt500::devices
