// clsKT540's trends and event log: the device delivers its running time
// row itself, so the arrays go to their charts as they stand; the event
// log has a count column beside the time.
#include "devices/Encodings.h"
#include "devices/clsKT540.h"

#include <cmath>
#include <cstdio>

namespace kt500::devices {

namespace {

// Row 1, entry 0 with one decimal and no sign: the age of the oldest point.
std::string spanText(const TrendCurve& arrCurve) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", static_cast<double>(arrCurve.at(1, 0)));
    std::string span = text;
    if (!span.empty() && span.front() == '-') {
        span.erase(0, 1);
    }
    return fDecimalSep(span);
}

}  // namespace

void clsKT540::FormatLoadFactorXValues(TrendCurve& arrCurve) {
    userControl().UpdateLoadFactorGraph(arrCurve);
    setLoadFactorTime(spanText(arrCurve));
}

void clsKT540::FormatDeviationXValues(TrendCurve& arrCurve) {
    userControl().UpdateDeviationGraph(arrCurve);
    setTravelDeviationTime(spanText(arrCurve));
}

void clsKT540::FormatTravelVsTimeXValues(TrendCurve& arrCurve) {
    userControl().UpdateTravelVsTimeGraph(arrCurve);
}

void clsKT540::AddEventLogFromDataFile(xml::Node xmlNode, bool blInit) {
    eventLogItem(xmlNode, blInit, true);
}

void clsKT540::ClearResetDiagnostics() {
    clearResetBoxes("chkPAResetDiagnostics", 0, 5);
}

}  // namespace kt500::devices
