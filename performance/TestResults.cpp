#include "performance/TestResults.h"

#include "calibration/ActionProgress.h"
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"
#include "performance/StepKeyFigures.h"

#include <array>
#include <stdexcept>
#include <string_view>

namespace kt500::performance {

namespace {

// The scalar items of the two safety valve controller's test groups; every
// other item of the group is a sample of its curve.
constexpr std::array<std::string_view, 10> kScalars = {
    "valveTestStrokeSize",   "valveTestInterval",        "valveTestPressureStep",
    "valveTestTimer",        "pressureSetpointLowLimit", "valveTestNextTestTime",
    "valveTestLoadFactorKeyFigure", "pneumaticsTestTimer", "pneumaticsTestInterval",
    "pneumaticsTestNextTestTime"};

bool IsScalar(std::string_view strName) {
    if (strName == "valveTestVal00") {
        return false;
    }
    for (const std::string_view scalar : kScalars) {
        if (scalar == strName) {
            return true;
        }
    }
    // Any other value of the group without a sample number (the breakaway
    // pressure, the interval in days) is shown on its page as well.
    return !devices::IsCurveItem(strName);
}

// A value of 0 would leave the logarithmic or scaled axes: it is drawn just above.
float Drawable(float& sngValue) {
    if (sngValue == 0.0F) {
        sngValue = 0.1F;
    }
    return sngValue;
}

// A page without a unit label for the value reads "noUnit": nothing to convert.
bool HasUnit(const std::string& strUnit) {
    return !strUnit.empty() && strUnit != "noUnit";
}

void Redraw(form::ChartModel& chart) {
    chart.setOption("PEnarg1", 0);
    chart.setOption("PEnarg2", 0);
    chart.setOption("PEactions", 2);
    chart.setOption("PEactions", 3);
}

// Draws the curve's samples (x, y) as subset 0 of the named chart, over as
// many points as both hold; the chart, or nullptr when the form has none.
form::ChartModel* DrawCurve(form::Form& form, std::string_view strChart,
                            devices::TestCurve& arrCurve) {
    form::Control* control = form.find(strChart);
    if (control == nullptr) {
        return nullptr;
    }
    form::ChartModel& chart = control->chart();
    for (int point = 0; point < chart.points() && point < devices::TestSamples; ++point) {
        auto& sample = arrCurve[static_cast<std::size_t>(point)];
        chart.setX(0, point, Drawable(sample[0]));
        chart.setY(0, point, Drawable(sample[1]));
    }
    return &chart;
}

}  // namespace

float TestResults::ItemValue(const std::string& strText) {
    const double value = devices::Str2Dbl(devices::fDecimalSep(strText));
    if (value == devices::NoValue) {
        throw std::invalid_argument("Type mismatch: '" + strText + "' is no number");
    }
    return static_cast<float>(value);
}

bool TestResults::StoreSample(devices::TestCurve& arrCurve, const std::string& strName,
                              bool blFirstColumn, float sngValue, bool& blFlag) {
    const devices::CurveItemName item = devices::SplitCurveItem(strName);
    devices::CurveSample(arrCurve, item.sample)[blFirstColumn ? 0 : 1] = sngValue;
    if (item.sample != devices::TestSamples - 1) {
        return false;
    }
    if (blFlag) {
        return true;
    }
    blFlag = true;
    return false;
}

void TestResults::AddStepTestValuePair(xml::Node nodeObj) {
    const std::string name = nodeObj.attribute("name");
    const devices::CurveItemName item = devices::SplitCurveItem(name);
    const float value = ItemValue(nodeObj.firstChildElement().text());
    const bool time = item.series == m_control.deviceClass().StepTestTime();
    if (StoreSample(arrStepTest, name, time, value, m_control.tools().StepTestFlag)) {
        UpdateStepTestGraph(arrStepTest);
    }
}

void TestResults::AddHysteresisTestValuePair(xml::Node nodeObj) {
    const std::string name = nodeObj.attribute("name");
    const devices::CurveItemName item = devices::SplitCurveItem(name);
    const float value = ItemValue(nodeObj.firstChildElement().text());
    const bool setpoint = item.series == m_control.deviceClass().HysteresisTestSetpoint();
    if (StoreSample(arrHysteresisTest, name, setpoint, value,
                    m_control.tools().HysteresisTestFlag)) {
        UpdateHysteresisTestGraph(arrHysteresisTest);
    }
}

void TestResults::ResultsRead(const std::string& strTreeNode) {
    session::clsTools& tools = m_control.tools();
    tools.CurrentAutoAction = 0;
    if (tools.OnlineConf) {
        calibration::UnlockUploadAndSend(m_control);
    }
    m_control.ChangeTreeIcon(strTreeNode, "read");
}

void TestResults::UpdateStepTestGraph(devices::TestCurve& arrCurve) {
    try {
        session::clsTools& tools = m_control.tools();
        const float endPoint = tools.StepEndPoint;
        const std::optional<StepKeyFigures> figures = ComputeStepKeyFigures(
            arrCurve, arrCurve[0][1], endPoint, arrCurve[devices::TestSamples - 1][1],
            static_cast<float>(devices::TestSamples));
        if (figures) {
            m_control.deviceClass().SetStepTestPerformanceValues(
                figures->deadTime, figures->settling63, figures->settling98);
        }
        if (form::ChartModel* chart = DrawCurve(m_control.form(), "pesgoStepTest", arrCurve)) {
            Redraw(*chart);
        }
        ResultsRead("stepTestValues");
    } catch (const std::exception& failure) {
        m_control.ShowMsg("UpdateStepTestGraph", failure.what());
    }
}

void TestResults::UpdateHysteresisTestGraph(devices::TestCurve& arrCurve) {
    try {
        if (form::ChartModel* chart =
                DrawCurve(m_control.form(), "pesgoHysteresisTest", arrCurve)) {
            Redraw(*chart);
        }
        ResultsRead("hysteresisTestValues");
    } catch (const std::exception& failure) {
        m_control.ShowMsg("UpdateHysteresisTestGraph", failure.what());
    }
}

void TestResults::AddValveTestValuePair(xml::Node nodeObj, bool blInitialize) {
    try {
        AddPressureTestValuePair(nodeObj, blInitialize, true);
    } catch (const std::exception& failure) {
        m_control.ShowMsg("AddValveTestValuePair", failure.what());
    }
}

void TestResults::AddPneumaticsTestValuePair(xml::Node nodeObj, bool blInitialize) {
    try {
        AddPressureTestValuePair(nodeObj, blInitialize, false);
    } catch (const std::exception& failure) {
        m_control.ShowMsg("AddPneumaticsTestValuePair", failure.what());
    }
}

void TestResults::AddPressureTestValuePair(xml::Node nodeObj, bool blInitialize, bool blValve) {
    const std::string name = nodeObj.attribute("name");
    if (IsScalar(name)) {
        if (blInitialize) {
            const std::string synchronised = nodeObj.attribute("synchronised");
            m_control.SetItemValueToGUI(nodeObj, name, nodeObj.attribute("value"),
                                        nodeObj.attribute("unit"),
                                        static_cast<std::int16_t>(synchronised == "1" ? 1 : 0));
        } else {
            m_control.SetItemValueToGUI(nodeObj, "", "", "", 0);
        }
        return;
    }
    float value = ItemValue(blInitialize ? nodeObj.attribute("value")
                                         : nodeObj.firstChildElement().text());
    const devices::CurveItemName item = devices::SplitCurveItem(name);
    const bool position = item.series == (blValve ? "valveTestPos" : "pneumaticsTestPos");
    if (!position) {
        // The device reports the curve's pressure in its own unit; the page
        // shows the unit the user chose for the actuator pressure.
        const std::string pageUnit = m_control.FetchUnitName("actuatorPressure");
        const std::string deviceUnit =
            blValve ? m_control.deviceClass().ConvertUnitForDevice(pageUnit) : std::string("bar");
        if (HasUnit(pageUnit) && pageUnit != deviceUnit) {
            value = ItemValue(m_control.ConvertUnit(devices::SingleText(value), deviceUnit,
                                                    pageUnit));
        }
    }
    session::clsTools& tools = m_control.tools();
    devices::TestCurve& curve = blValve ? arrValveTest : arrPneumaticsTest;
    bool& flag = blValve ? tools.ValveTestFlag : tools.PneumaticsTestFlag;
    if (StoreSample(curve, name, position, value, flag)) {
        if (blValve) {
            m_control.deviceClass().FormatValveTestValues(curve);
        } else {
            m_control.deviceClass().FormatPneumaticsTestValues(curve);
        }
    }
}

void TestResults::UpdateValveTestGraph(devices::TestCurve& arrCurve) {
    try {
        devices::DeviceClass& device = m_control.deviceClass();
        const std::string pressureUnit = m_control.FetchUnitName("actuatorPressure");
        // The limits are drawn in the unit of the curve.
        const auto limit = [&](float sngLimit, const char* strParameter) {
            const std::string unit = m_control.FetchUnitName(strParameter);
            if (!HasUnit(unit) || !HasUnit(pressureUnit) || unit == pressureUnit) {
                return sngLimit;
            }
            return ItemValue(m_control.ConvertUnit(devices::SingleText(sngLimit), unit,
                                                   pressureUnit));
        };
        const float high = limit(device.BreakawayPressureLimit1(), "breakawayPressureLimitHigh");
        const float low = limit(device.BreakawayPressureLimit2(), "breakawayPressureLimitLow");
        if (form::ChartModel* chart = DrawCurve(m_control.form(), "pesgoValveTest", arrCurve)) {
            // The two limits as level lines over the curve's positions.
            for (int point = 0; point < chart->points() && chart->subsets() > 2 &&
                                point < devices::TestSamples;
                 ++point) {
                const double position = chart->x(0, point);
                chart->setY(1, point, high);
                chart->setX(1, point, position);
                chart->setY(2, point, low);
                chart->setX(2, point, position);
            }
            chart->setOption("VertLineAnnotation", chart->option("ManualMaxX", 100.0));
            Redraw(*chart);
        }
        ResultsRead("valveTest");
    } catch (const std::exception& failure) {
        m_control.ShowMsg("UpdateValveTestGraph", failure.what());
    }
}

void TestResults::UpdatePneumaticsTestGraph(devices::TestCurve& arrCurve) {
    try {
        if (form::ChartModel* chart =
                DrawCurve(m_control.form(), "pesgoPneumaticsTest", arrCurve)) {
            Redraw(*chart);
        }
        ResultsRead("pneumaticsTest");
    } catch (const std::exception& failure) {
        m_control.ShowMsg("UpdatePneumaticsTestGraph", failure.what());
    }
}

}  // namespace kt500::performance
