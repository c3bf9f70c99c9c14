// TestResults: the recorded curves of the four tests as they are read back
// from the device or a data set. Each curve is filled item by item; the
// second of its two series to reach sample 49 draws it, in whichever order
// they arrive. Drawing a curve ends the reading of the results: the
// toolbar's upload and send come back and the page's node reads "read".
#pragma once

#include "devices/IUserControl.h"
#include "devices/TestCurve.h"
#include "xml/Document.h"

#include <string>

namespace kt500::performance {

class TestResults {
public:
    explicit TestResults(devices::IUserControl& control) : m_control(control) {}

    // One item of the step or hysteresis test group: the device class's
    // StepTestTime (or HysteresisTestSetpoint) series goes to column 0,
    // any other to column 1. A name without a sample number or a sample
    // past 49 fails.
    void AddStepTestValuePair(xml::Node nodeObj);
    void AddHysteresisTestValuePair(xml::Node nodeObj);
    // The step response with its key figures.
    void UpdateStepTestGraph(devices::TestCurve& arrCurve);
    void UpdateHysteresisTestGraph(devices::TestCurve& arrCurve);

    // One item of the safety valve controller's valve or pneumatics test:
    // a scalar goes to its page, a curve item to the curve (the pressure
    // in the page's unit). blInitialize: a data set's parameter.
    void AddValveTestValuePair(xml::Node nodeObj, bool blInitialize);
    void AddPneumaticsTestValuePair(xml::Node nodeObj, bool blInitialize);
    // The valve test with the breakaway pressure limits and the line at
    // the end of the travel axis; the pneumatics test alone.
    void UpdateValveTestGraph(devices::TestCurve& arrCurve);
    void UpdatePneumaticsTestGraph(devices::TestCurve& arrCurve);

    devices::TestCurve arrStepTest{};
    devices::TestCurve arrHysteresisTest{};
    devices::TestCurve arrValveTest{};
    devices::TestCurve arrPneumaticsTest{};

private:
    // The item's value: its first child's text (or its "value" attribute)
    // as a 32-bit float.
    [[nodiscard]] static float ItemValue(const std::string& strText);
    // Stores one sample value; at sample 49 the first series sets the flag
    // and the second returns True (draw now).
    static bool StoreSample(devices::TestCurve& arrCurve, const std::string& strName,
                            bool blFirstColumn, float sngValue, bool& blFlag);
    void AddPressureTestValuePair(xml::Node nodeObj, bool blInitialize, bool blValve);
    // The end of reading a test's results.
    void ResultsRead(const std::string& strTreeNode);

    devices::IUserControl& m_control;
};

}  // namespace kt500::performance
