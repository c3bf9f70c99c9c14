// TestActions: what the action framework asks of the performance tests when
// the device answers a test's request: start the test on the ready event,
// end it when the device was not ready, and read the results of a test that
// completed well. The tests subsystem implements it; until it is connected
// these fail by name.
#pragma once

namespace kt500::calibration {

class TestActions {
public:
    virtual ~TestActions() = default;
    virtual void StartTestAction() = 0;
    virtual void TestNotReady() = 0;
    // The test ended well: its recorded values are read.
    virtual void TestCompleted() = 0;
};

}  // namespace kt500::calibration
