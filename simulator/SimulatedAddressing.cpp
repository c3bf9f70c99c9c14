#include "simulator/SimulatedAddressing.h"

#include "simulator/SimulatedControl.h"

#include <charconv>
#include <string>

namespace kt500::simulator {

namespace {

constexpr const char* kShortAddress = "pollingAddress";
constexpr std::uint8_t kHighestShortAddress = 63;
constexpr std::uint8_t kHighestStationAddress = 125;

}  // namespace

SimulatedAddressing::SimulatedAddressing(SimulatedControl& control) : m_control(control) {}

bool SimulatedAddressing::profibus() const {
    return m_control.model().deviceType == "KT540";
}

void SimulatedAddressing::GetHartAddress(std::uint8_t& bytFirst, std::uint8_t& bytSecond,
                                         std::uint8_t& bytThird, std::uint8_t& bytAddress,
                                         bool& blSuccess) {
    bytFirst = bytSecond = bytThird = bytAddress = 0;
    blSuccess = false;
    if (profibus() || !m_control.connected()) {
        return;
    }
    const std::optional<std::string> value = m_control.deviceValue(kShortAddress);
    unsigned address = 0;
    if (!value ||
        std::from_chars(value->data(), value->data() + value->size(), address).ec != std::errc() ||
        address > kHighestShortAddress) {
        return;
    }
    bytAddress = static_cast<std::uint8_t>(address);
    blSuccess = true;
}

void SimulatedAddressing::SetHartAddress(std::uint8_t bytFirst, std::uint8_t bytSecond,
                                         std::uint8_t bytThird, std::uint8_t bytAddress,
                                         std::uint8_t bytFifth, std::uint8_t bytSixth,
                                         bool& blSuccess) {
    // The group is 0, 0, 0, address, 0, 0; anything else is not a short address.
    blSuccess = !profibus() && m_control.connected() && bytFirst == 0 && bytSecond == 0 &&
                bytThird == 0 && bytFifth == 0 && bytSixth == 0 &&
                bytAddress <= kHighestShortAddress;
    if (blSuccess) {
        m_control.setDeviceValue(kShortAddress, std::to_string(bytAddress));
    }
}

void SimulatedAddressing::GetPAAddress(std::int32_t& lngAddress, std::int32_t& lngSecond,
                                       bool& blSuccess) {
    blSuccess = profibus();
    lngAddress = blSuccess ? m_paAddress : 0;
    lngSecond = 0;
}

void SimulatedAddressing::SetPAAddress(std::uint8_t bytAddress, std::int32_t /*lngReserved*/,
                                       bool& blSuccess) {
    blSuccess = profibus() && bytAddress <= kHighestStationAddress;
    if (blSuccess) {
        m_paAddress = bytAddress;
    }
}

}  // namespace kt500::simulator
