// Tests: the performance tests as the control owns them: the settings
// fields, the run of a test under the action framework, and the recorded
// curves with the step test's key figures.
#pragma once

#include "calibration/AutoActionEvents.h"
#include "devices/IUserControl.h"
#include "form/EventHandlers.h"
#include "performance/TestResults.h"
#include "performance/TestRun.h"
#include "performance/TestSettings.h"

namespace kt500::performance {

class Tests {
public:
    // Joins the framework's events: the ready and complete events of a
    // test come here.
    Tests(devices::IUserControl& control, calibration::AutoActionEvents& events);

    void addHandlers(form::EventHandlers& handlers);
    // Once the family is known: its start button goes onto its test
    // settings page (the KT520's element 1, the KT540's element 0).
    void PlaceTestCommands();

    [[nodiscard]] TestSettings& settings() noexcept { return m_settings; }
    [[nodiscard]] TestRun& run() noexcept { return m_run; }
    [[nodiscard]] TestResults& results() noexcept { return m_results; }

private:
    devices::IUserControl& m_control;
    TestSettings m_settings;
    TestRun m_run;
    TestResults m_results;
};

}  // namespace kt500::performance
