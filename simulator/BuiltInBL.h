// The built-in BL: the service object that the frame hands to the control
// when no other BL is configured. It simulates one device of the family
// for one session, with the built-in language service and, unless the
// frame supplies its own, the headless message boxes.
#pragma once

#include "services/IDtmServiceProvider.h"
#include "simulator/HeadlessDialogs.h"
#include "simulator/SessionOptions.h"
#include "simulator/SimulatedAddressing.h"
#include "simulator/SimulatedControl.h"
#include "simulator/SimulatedLanguage.h"
#include "simulator/SimulatedUnits.h"
#include "simulator/VirtualClock.h"

#include <filesystem>
#include <memory>

namespace kt500::simulator {

class BuiltInBL final : public services::IDtmServiceProvider {
public:
    // Reads the language texts under shareDir/texts and the unit tables under
    // shareDir/units; throws for a device key the catalogue lacks, or texts or
    // unit tables that do not load.
    BuiltInBL(SessionOptions options, const std::filesystem::path& shareDir,
              std::shared_ptr<services::IDtmDialogs> dialogs = nullptr);

    std::shared_ptr<services::IDtmControl> control() override { return m_control; }
    std::shared_ptr<services::IDtmDialogs> dialogs() override { return m_dialogs; }
    std::shared_ptr<services::IDtmUnits> units() override { return m_units; }
    std::shared_ptr<services::IDtmAddressing> addressing() override { return m_addressing; }

    [[nodiscard]] SimulatedControl& simulatedControl() noexcept { return *m_control; }
    // The clock of every event the BL delivers; the host advances it.
    [[nodiscard]] VirtualClock& clock() noexcept { return *m_clock; }
    // The headless boxes, when the frame supplied none (else nullptr).
    [[nodiscard]] HeadlessDialogs* headlessDialogs() noexcept { return m_headless.get(); }

private:
    std::shared_ptr<VirtualClock> m_clock;
    std::shared_ptr<HeadlessDialogs> m_headless;
    std::shared_ptr<services::IDtmDialogs> m_dialogs;
    std::shared_ptr<SimulatedLanguage> m_language;
    std::shared_ptr<SimulatedUnits> m_units;
    std::shared_ptr<SimulatedControl> m_control;
    std::shared_ptr<SimulatedAddressing> m_addressing;
};

}  // namespace kt500::simulator
