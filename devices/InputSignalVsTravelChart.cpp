#include "devices/InputSignalVsTravelChart.h"

#include "form/Form.h"

namespace kt500::devices {

bool DrawInputSignalVsTravel(IUserControl& control, std::span<const float> arrCurves,
                             const std::string& strDirection, const PositionControl& fields) {
    ValveDirection direction{};
    if (strDirection == control.Translate("risingToOpen")) {
        direction = ValveDirection::RisingToOpen;
    } else if (strDirection == control.Translate("risingToClose")) {
        direction = ValveDirection::RisingToClose;
    } else {
        return false;
    }
    const std::array<CurvePoint, 15> points = InputSignalVsTravelPoints(arrCurves, fields, direction);
    form::ChartModel& chart = control.form().control(InputSignalVsTravelChart).chart();
    if (chart.subsets() < 1) {
        chart.setSubsets(1);
    }
    chart.setPoints(static_cast<int>(points.size()));
    for (std::size_t i = 0; i < points.size(); ++i) {
        chart.setY(0, static_cast<int>(i), points[i].y);
        chart.setX(0, static_cast<int>(i), points[i].x);
    }
    chart.setOption("PEactions", 0);
    return true;
}

}  // namespace kt500::devices
