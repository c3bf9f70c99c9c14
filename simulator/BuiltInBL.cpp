#include "simulator/BuiltInBL.h"

namespace kt500::simulator {

BuiltInBL::BuiltInBL(SessionOptions options, const std::filesystem::path& shareDir,
                     std::shared_ptr<services::IDtmDialogs> dialogs)
    : m_clock(std::make_shared<VirtualClock>()),
      m_language(
          std::make_shared<SimulatedLanguage>(SimulatedLanguage::fromFolder(shareDir / "texts"))),
      m_units(std::make_shared<SimulatedUnits>(SimulatedUnits::fromFolder(shareDir / "units"))),
      m_control(std::make_shared<SimulatedControl>(std::move(options), shareDir, m_language,
                                                   m_clock, m_units)),
      m_addressing(std::make_shared<SimulatedAddressing>(*m_control)) {
    if (dialogs) {
        m_dialogs = std::move(dialogs);
    } else {
        m_headless = std::make_shared<HeadlessDialogs>();
        m_dialogs = m_headless;
    }
}

}  // namespace kt500::simulator
