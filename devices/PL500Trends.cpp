// clsPL500's trends and event log: the running time axis of its three
// trends, drawn only once row 0 is whole again (the charts refill it with
// -1.0 after each drawing), and its two sets of reset boxes.
#include "devices/clsPL500.h"

namespace kt500::devices {

void clsPL500::FormatLoadFactorXValues(TrendCurve& arrCurve) {
    if (holdsEmptySlot(arrCurve)) {
        return;
    }
    runningTimeAxis(arrCurve, "LoadFactorTime");
    roundTimeRow(arrCurve);
    userControl().UpdateLoadFactorGraph(arrCurve);
}

void clsPL500::FormatBreakawayPressureXValues(TrendCurve& arrCurve) {
    if (holdsEmptySlot(arrCurve)) {
        return;
    }
    runningTimeAxis(arrCurve, "BreakawayPressureTime");
    roundTimeRow(arrCurve);
    userControl().UpdateBreakawayPressureGraph(arrCurve);
}

void clsPL500::FormatLeakageSignalXValues(TrendCurve& arrCurve) {
    if (holdsEmptySlot(arrCurve)) {
        return;
    }
    runningTimeAxis(arrCurve, "LeakageSignalTime");
    roundTimeRow(arrCurve);
    userControl().UpdateLeakageSignalGraph(arrCurve);
}

void clsPL500::AddEventLogFromDataFile(xml::Node xmlNode, bool blInit) {
    eventLogItem(xmlNode, blInit, false);
}

void clsPL500::ClearResetDiagnostics() {
    clearResetBoxes("chkPLParams", StatisticsResetBoxes.first, StatisticsResetBoxes.last);
    for (int index = AlarmResetBoxes.first; index <= AlarmResetBoxes.last; ++index) {
        if (IsAlarmResetBox(index)) {
            clearResetBoxes("chkPLParams", index, index);
        }
    }
}

}  // namespace kt500::devices
