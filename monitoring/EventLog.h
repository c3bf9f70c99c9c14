// EventLog: the device's table of its last events on the page "eventLog"
// (lsvEventLog, one list view per family, 20 rows: the translated event
// with its key in the row's tag, the time and, on the PROFIBUS positioner,
// the count), and the reset of the diagnostics that the log and the trends
// are built on.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kt500::monitoring {

inline constexpr int kEventLogRows = 20;
// The column of the time and of the count in a row.
inline constexpr std::int16_t kEventTimeColumn = 1;
inline constexpr std::int16_t kEventCountColumn = 2;

class EventLog {
public:
    explicit EventLog(devices::IUserControl& control) : m_control(control) {}

    // cmdResetDiagnostics.
    void addHandlers(form::EventHandlers& handlers);

    // Fills one row (from 1) of the family's list; a list without rows gets
    // its 20 first. A row that does not exist fails.
    void AddEventLogEvent(const std::string& strEvent, const std::string& strCount,
                          const std::string& strTime, std::int16_t intIndex,
                          std::int16_t intSubItem);
    void ClearEventLog(std::int16_t intIndex);
    // The online fill of a good read of "eventLog": a new reading replaces
    // the old one; an item that fails is shown and the rest goes on.
    void FillEventLog(const std::vector<xml::Node>& items);

    // Asks, then writes the request of every checked reset box of the family.
    void cmdResetDiagnostics_Click();

private:
    [[nodiscard]] form::ListViewModel& list();
    void sendCheckedBoxes(const std::string& strArray, int intFirst, int intLast,
                          const std::string& strPage);

    devices::IUserControl& m_control;
};

}  // namespace kt500::monitoring
