#include "monitoring/Trends.h"

#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace kt500::monitoring {

namespace {

constexpr int kLastSample = 19;
constexpr int kLastTravelSample = 9;

// The library's redraw after new data: PEnarg1 and PEnarg2 0, PEactions 2
// (reinitialise) and 3 (reset image).
constexpr std::string_view kActionOptions[] = {"PEnarg1", "PEnarg2"};

float roundedOneDecimal(float sngValue) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", static_cast<double>(sngValue));
    return std::strtof(text, nullptr);
}

// A 32-bit sample as the chart keeps it: the shortest decimal of the float,
// so that 58.2 stays 58.2 and not its nearest double.
double chartValue(float sngValue) {
    return std::strtod(devices::SingleText(sngValue).c_str(), nullptr);
}

std::string labelOf(float sngValue) {
    return devices::fDecimalSep(devices::SingleText(sngValue));
}

// Runs one Add* member; its failure is shown under its own name.
template <typename Body>
void asMember(devices::IUserControl& control, const char* strMember, Body body) {
    try {
        body();
    } catch (const std::exception& failure) {
        control.ShowMsg(strMember, failure.what());
    }
}

}  // namespace

Trends::Trends(devices::IUserControl& control) : m_control(control) {}

void Trends::addHandlers(form::EventHandlers& handlers) {
    handlers.add("cmdHALoadFactorUpdate", form::EventKind::Click,
                 [this](form::FormEvent&) { cmdHALoadFactorUpdate_Click(); });
}

float Trends::sampleValue(xml::Node nodeObj, bool blInitialize) {
    const std::string text =
        blInitialize ? nodeObj.attribute("value") : nodeObj.firstChildElement().text();
    const std::string pointForm = devices::fDecimalSep(text, ".");
    const double value = devices::Str2Dbl(pointForm);
    if (!devices::IsNum(pointForm) || pointForm.empty() || value == devices::NoValue) {
        throw std::invalid_argument("Type mismatch: '" + text + "' of " +
                                    nodeObj.attribute("name") + " is not a number");
    }
    return static_cast<float>(value);
}

void Trends::showItem(xml::Node nodeObj, bool blInitialize) {
    if (blInitialize) {
        m_control.SetItemValueToGUI({}, nodeObj.attribute("name"), nodeObj.attribute("value"),
                                    nodeObj.attribute("unit"),
                                    devices::ToInt16(nodeObj.attribute("synchronised")));
    } else {
        m_control.SetItemValueToGUI(nodeObj, "", "", "", 0);
    }
}

int Trends::indexOf(const std::string& strName) {
    if (strName.size() < 2) {
        throw std::invalid_argument("Type mismatch: '" + strName + "' has no index");
    }
    return devices::ToInt16(strName.substr(strName.size() - 2));
}

template <typename Format>
void Trends::storeSample(devices::TrendCurve& arrCurve, int intRow, int intIndex, float sngValue,
                         bool& blFlag, Format format) {
    arrCurve.at(intRow, intIndex) = sngValue;
    if (intIndex != kLastSample) {
        return;
    }
    // Values and time steps come as two runs in either order: the first
    // finished run sets the flag, the second draws.
    if (!blFlag) {
        blFlag = true;
        return;
    }
    format();
}

void Trends::AddLoadFactorValuePair(xml::Node nodeObj, bool blInitialize) {
    asMember(m_control, "AddLoadFactorValuePair", [&] {
        session::clsTools& tools = m_control.tools();
        const std::string name = nodeObj.attribute("name");
        if (name == "operationTime" || name == "supplyPressure") {
            showItem(nodeObj, blInitialize);
            return;
        }
        if (name == "loadFactorPLAlarmLimitHigh") {
            tools.LoadFactorPLAlarmLimitHigh = sampleValue(nodeObj, blInitialize);
            return;
        }
        if (name == "loadFactorPLAlarmLimitLow") {
            tools.LoadFactorPLAlarmLimitLow = sampleValue(nodeObj, blInitialize);
            return;
        }
        const int row = name.substr(0, 13) == "loadFactorVal" ? 0 : 1;
        storeSample(arrLoadFactor, row, indexOf(name), sampleValue(nodeObj, blInitialize),
                    tools.LoadFactorFlag,
                    [&] { m_control.deviceClass().FormatLoadFactorXValues(arrLoadFactor); });
    });
}

void Trends::AddTravelDeviationValuePair(xml::Node nodeObj, bool blInitialize) {
    asMember(m_control, "AddTravelDeviationValuePair", [&] {
        const std::string name = nodeObj.attribute("name");
        if (name == "operationTime") {
            showItem(nodeObj, blInitialize);
            return;
        }
        const int row = name.substr(0, 12) == "deviationVal" ? 0 : 1;
        storeSample(arrDeviation, row, indexOf(name), sampleValue(nodeObj, blInitialize),
                    m_control.tools().DeviationFlag,
                    [&] { m_control.deviceClass().FormatDeviationXValues(arrDeviation); });
    });
}

void Trends::AddTravelVsTimeValuePair(xml::Node nodeObj, bool blInitialize) {
    asMember(m_control, "AddTravelVsTimeValuePair", [&] {
        const std::string name = nodeObj.attribute("name");
        if (name == "operationTime" || name == "elapsedTrendTime") {
            showItem(nodeObj, blInitialize);
            return;
        }
        const int index = indexOf(name);
        const float value = sampleValue(nodeObj, blInitialize);
        arrTravelVsTime.at(0, index) = static_cast<float>((index + 1) * 10);
        arrTravelVsTime.at(1, index) = value;
        if (index == kLastTravelSample) {
            m_control.deviceClass().FormatTravelVsTimeXValues(arrTravelVsTime);
        }
    });
}

void Trends::AddBreakawayPressureValuePair(xml::Node nodeObj, bool blInitialize) {
    asMember(m_control, "AddBreakawayPressureValuePair", [&] {
        session::clsTools& tools = m_control.tools();
        const std::string name = nodeObj.attribute("name");
        if (name == "operationTime") {
            showItem(nodeObj, blInitialize);
            return;
        }
        if (name == "breakawayPressureLimitHigh") {
            tools.BreakawayPressureLimitHigh = sampleValue(nodeObj, blInitialize);
            return;
        }
        if (name == "breakawayPressureLimitLow") {
            tools.BreakawayPressureLimitLow = sampleValue(nodeObj, blInitialize);
            return;
        }
        const bool blValue = name.substr(0, 20) == "breakawayPressureVal";
        float value = sampleValue(nodeObj, blInitialize);
        if (blValue) {
            // The device keeps the pressure in bar; the page may show another unit.
            const std::string unit = m_control.FetchUnitName("actuatorPressure");
            if (unit != "bar") {
                const std::string converted =
                    m_control.ConvertUnit(devices::SingleText(value), "bar", unit);
                value = static_cast<float>(devices::Str2Dbl(devices::fDecimalSep(converted, ".")));
            }
        }
        storeSample(arrBreakawayPressure, blValue ? 0 : 1, indexOf(name), value,
                    tools.DeviationFlag, [&] {
                        m_control.deviceClass().FormatBreakawayPressureXValues(
                            arrBreakawayPressure);
                    });
    });
}

void Trends::AddLeakageSignalValuePair(xml::Node nodeObj, bool blInitialize) {
    asMember(m_control, "AddLeakageSignalValuePair", [&] {
        session::clsTools& tools = m_control.tools();
        const std::string name = nodeObj.attribute("name");
        if (name == "operationTime") {
            showItem(nodeObj, blInitialize);
            return;
        }
        if (name == "leakageAlarmLimit") {
            tools.LeakageAlarmLimit = sampleValue(nodeObj, blInitialize);
            return;
        }
        const bool blValue = name.substr(0, 16) == "leakageSignalVal";
        float value = sampleValue(nodeObj, blInitialize);
        // The document keeps the raw signal on every revision; the device
        // sends it raw only on revision 1.
        if (blValue && (blInitialize || tools.DeviceRevision == "1")) {
            value *= kLeakageScale;
        }
        storeSample(arrLeakageSignal, blValue ? 0 : 1, indexOf(name), value, tools.DeviationFlag,
                    [&] { m_control.deviceClass().FormatLeakageSignalXValues(arrLeakageSignal); });
    });
}

form::ChartModel* Trends::chartOf(std::string_view strChart) {
    form::Control* chart = m_control.form().find(strChart);
    return chart == nullptr ? nullptr : &chart->chart();
}

void Trends::redraw(form::ChartModel& chart) {
    for (const std::string_view option : kActionOptions) {
        chart.setOption(option, 0);
    }
    chart.setOption("PEactions", 2);
    chart.setOption("PEactions", 3);
}

void Trends::drawTrend(std::string_view strChart, const devices::TrendCurve& arrCurve,
                       std::initializer_list<float> limits) {
    form::ChartModel* chart = chartOf(strChart);
    if (chart == nullptr) {
        return;
    }
    for (int point = 0; point < chart->points(); ++point) {
        chart->setY(0, point, chartValue(arrCurve.at(0, point)));
        chart->setPointLabel(point, labelOf(arrCurve.at(1, point)));
        int subset = 1;
        for (const float limit : limits) {
            if (subset < chart->subsets()) {
                chart->setY(subset, point, chartValue(limit));
            }
            ++subset;
        }
    }
    redraw(*chart);
}

void Trends::UpdateLoadFactorGraph(devices::TrendCurve& arrCurve) {
    session::clsTools& tools = m_control.tools();
    if (tools.DeviceType == "PL500_2") {
        drawTrend(kLoadFactorChart, arrCurve,
                  {tools.LoadFactorPLAlarmLimitHigh, tools.LoadFactorPLAlarmLimitLow, 0.0F});
    } else {
        devices::DeviceClass& device = m_control.deviceClass();
        drawTrend(kLoadFactorChart, arrCurve,
                  {device.LoadFactorLimit1(), device.LoadFactorLimit2(), device.LoadFactorLimit3()});
    }
    tools.LoadFactorFlag = false;
}

void Trends::UpdateDeviationGraph(devices::TrendCurve& arrCurve) {
    devices::DeviceClass& device = m_control.deviceClass();
    drawTrend(kDeviationChart, arrCurve,
              {device.DeviationLimit1(), device.DeviationLimit2(), device.DeviationLimit3()});
    m_control.tools().DeviationFlag = false;
}

void Trends::UpdateBreakawayPressureGraph(devices::TrendCurve& arrCurve) {
    session::clsTools& tools = m_control.tools();
    if (tools.DeviceType == "PL500_2") {
        drawTrend(kBreakawayPressureChart, arrCurve,
                  {tools.BreakawayPressureLimitHigh, tools.BreakawayPressureLimitLow});
    } else if (tools.DeviceType == "PL500_1") {
        devices::DeviceClass& device = m_control.deviceClass();
        drawTrend(kBreakawayPressureChart, arrCurve,
                  {device.BreakawayPressureLimit1(), device.BreakawayPressureLimit2()});
    } else {
        drawTrend(kBreakawayPressureChart, arrCurve, {});
    }
    for (int i = 0; i < arrCurve.entries(); ++i) {
        arrCurve.at(0, i) = -1.0F;
    }
    tools.DeviationFlag = false;
}

void Trends::UpdateLeakageSignalGraph(devices::TrendCurve& arrCurve) {
    session::clsTools& tools = m_control.tools();
    if (tools.DeviceType == "PL500_2") {
        drawTrend(kLeakageSignalChart, arrCurve, {tools.LeakageAlarmLimit});
    } else if (tools.DeviceType == "PL500_1") {
        drawTrend(kLeakageSignalChart, arrCurve,
                  {m_control.deviceClass().LeakageSignalLimit1()});
    } else {
        drawTrend(kLeakageSignalChart, arrCurve, {});
    }
    for (int i = 0; i < arrCurve.entries(); ++i) {
        arrCurve.at(0, i) = -1.0F;
    }
    tools.DeviationFlag = false;
}

void Trends::UpdateTravelVsTimeGraph(devices::TrendCurve& arrCurve) {
    form::ChartModel* chart = chartOf(kTravelVsTimeChart);
    if (chart == nullptr) {
        return;
    }
    long highest = 0;
    for (int point = 0; point < chart->points(); ++point) {
        highest = std::max(highest, std::lround(arrCurve.at(1, point)));
    }
    for (int point = 0; point < chart->points(); ++point) {
        chart->setY(0, point, chartValue(arrCurve.at(1, point)));
        chart->setPointLabel(point, labelOf(arrCurve.at(0, point)));
    }
    chart->setOption("ManualMaxY", std::nearbyint(static_cast<double>(highest) / 10.0) * 10.0);
    redraw(*chart);
}

void Trends::UpdateLimits() {
    devices::DeviceClass& device = m_control.deviceClass();
    const float deviation[] = {device.DeviationLimit1(), device.DeviationLimit2(),
                               device.DeviationLimit3()};
    const float loadFactor[] = {device.LoadFactorLimit1(), device.LoadFactorLimit2(),
                                device.LoadFactorLimit3()};
    const std::pair<std::string_view, const float*> charts[] = {
        {kDeviationChart, deviation}, {kLoadFactorChart, loadFactor}};
    for (const auto& [name, limits] : charts) {
        form::ChartModel* chart = chartOf(name);
        if (chart == nullptr) {
            continue;
        }
        for (int point = 0; point < chart->points(); ++point) {
            for (int subset = 1; subset <= 3 && subset < chart->subsets(); ++subset) {
                chart->setY(subset, point, chartValue(limits[subset - 1]));
            }
        }
        redraw(*chart);
    }
}

void Trends::cmdHALoadFactorUpdate_Click() {
    session::clsTools& tools = m_control.tools();
    if (devices::Str2Dbl(tools.DeviceRevision) <= 1 ||
        m_control.FetchValueByTag("actuatorType", false) != "2") {
        return;
    }
    const std::string supplyPressure = m_control.FetchValueByTag("supplyPressure", false);
    if (supplyPressure.empty() || !devices::IsNum(supplyPressure)) {
        return;
    }
    // The pressure as it stands on the page, with no unit conversion.
    const auto pressure =
        static_cast<float>(devices::Str2Dbl(devices::fDecimalSep(supplyPressure, ".")));
    if (pressure == 0.0F) {
        return;
    }
    devices::TrendCurve local;
    for (int i = 0; i < devices::TrendCurve::kTimeInUse; ++i) {
        local.at(0, i) = arrLoadFactor.at(0, i) / pressure * 100.0F;
        local.at(1, i) = roundedOneDecimal(arrLoadFactor.at(1, i));
    }
    UpdateLoadFactorGraph(local);
    form::Form& form = m_control.form();
    for (form::Control* mark : form.elements("imgHALoadfactor")) {
        if (mark->tag() == "supplyPressure") {
            mark->setVisible(false);
        }
    }
    for (const char* field : {"txtLoadFactor", "txtHAPrestageTrim"}) {
        const std::vector<form::Control*> elements = form.elements(field);
        if (!elements.empty()) {
            elements.front()->setForeColor(devices::ColorRefused);
        }
    }
}

}  // namespace kt500::monitoring
