// m_pAddressing of the built-in BL: the bus address of the simulated device.
// A HART device (KT520, PL500) keeps its short address in the parameter
// "pollingAddress" (0 to 63); a PROFIBUS PA device (KT540) has a station
// address (0 to 125, 126 as delivered). Asking a device for the address of
// the other bus fails.
#pragma once

#include "services/IDtmAddressing.h"

#include <cstdint>

namespace kt500::simulator {

class SimulatedControl;

class SimulatedAddressing final : public services::IDtmAddressing {
public:
    static constexpr std::int32_t kDeliveredPAAddress = 126;

    explicit SimulatedAddressing(SimulatedControl& control);

    void GetHartAddress(std::uint8_t& bytFirst, std::uint8_t& bytSecond, std::uint8_t& bytThird,
                        std::uint8_t& bytAddress, bool& blSuccess) override;
    void SetHartAddress(std::uint8_t bytFirst, std::uint8_t bytSecond, std::uint8_t bytThird,
                        std::uint8_t bytAddress, std::uint8_t bytFifth, std::uint8_t bytSixth,
                        bool& blSuccess) override;
    void GetPAAddress(std::int32_t& lngAddress, std::int32_t& lngSecond, bool& blSuccess) override;
    void SetPAAddress(std::uint8_t bytAddress, std::int32_t lngReserved, bool& blSuccess) override;

private:
    [[nodiscard]] bool profibus() const;

    SimulatedControl& m_control;
    std::int32_t m_paAddress = kDeliveredPAAddress;
};

}  // namespace kt500::simulator
