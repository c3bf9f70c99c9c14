// AutomaticCalibrations: the actions the device carries out by itself, the
// automatic travel calibration and the automatic prestage trim, and their
// neighbour the manual prestage trim. The pages' buttons step through the
// tables in the source; the framework (AutoActionEvents) hands them the
// BL's ready, complete and stopped events.
//
// The travel calibration has a page on each family: with a confirmation
// stage and two buttons on the KT520, one button that starts at once on
// the KT540 and the PL500. Every page of a procedure that the form holds is
// written, whichever one the user is on.
#pragma once

#include "calibration/PageWriter.h"
#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::calibration {

class AutoActionEvents;

// One page of an automatic procedure on one family.
struct AutomaticPage {
    ControlRef label;
    ControlRef first;   // start, cancel, stop or ok
    ControlRef second;  // go on; name empty on the one-button pages
};

// An automatic procedure: its code, the prefix of its prompt keys
// (PREFIX1 idle .. PREFIX5 failed), its tree node, its request and pages.
struct AutomaticProcedure {
    std::int32_t code;
    std::string_view keyPrefix;
    std::string_view treeNode;
    std::string_view request;
    std::vector<AutomaticPage> pages;
};

[[nodiscard]] const AutomaticProcedure& TravelCalibration();
[[nodiscard]] const AutomaticProcedure& PrestageTrim();

class AutomaticCalibrations {
public:
    AutomaticCalibrations(devices::IUserControl& control, AutoActionEvents& events)
        : m_control(control), m_page(control), m_events(events) {}

    // The buttons of a two-button page (confirmation stage) and of a
    // one-button page, by the element pressed.
    void TwoButtonClick(const AutomaticProcedure& procedure, int element);
    void OneButtonClick(const AutomaticProcedure& procedure, std::size_t intPage);
    // cmdManualPrestageTrim.
    void ManualPrestageTrimClick(int element);

    // The ready event: the device action starts (by CurrentCalibration), or
    // the device refused it.
    void StartAutoCalibration();
    void AutoCalibrationNotReady();
    // The ends of a running automatic procedure (by CurrentCalibration).
    void Completed(bool blSuccess);
    void Stopped();
    void StopRefused();
    // The reply of the manual prestage trim's write.
    void ManualTrimWritten(bool blOk);

    void addHandlers(form::EventHandlers& handlers);

private:
    // The procedure whose pages the current code writes.
    [[nodiscard]] const AutomaticProcedure& running() const;
    [[nodiscard]] static std::string key(const AutomaticProcedure& procedure, char number);
    // Every page of the procedure: prompt, first button "ok", second hidden.
    void showResult(const AutomaticProcedure& procedure, std::string_view strKey);
    void stop(const AutomaticPage& page);
    void manualTrimFields(bool blVisible);

    devices::IUserControl& m_control;
    PageWriter m_page;
    AutoActionEvents& m_events;
};

}  // namespace kt500::calibration
