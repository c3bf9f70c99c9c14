// m_pAddressing: the bus addresses of the device (HART short address,
// PROFIBUS PA station address).
#pragma once

#include <cstdint>

namespace kt500::services {

class IDtmAddressing {
public:
    virtual ~IDtmAddressing() = default;

    // The short address group: four values, the address being the last one in use.
    virtual void GetHartAddress(std::uint8_t& bytFirst, std::uint8_t& bytSecond,
                                std::uint8_t& bytThird, std::uint8_t& bytAddress,
                                bool& blSuccess) = 0;
    // Called with 0, 0, 0, the new address, 0, 0.
    virtual void SetHartAddress(std::uint8_t bytFirst, std::uint8_t bytSecond,
                                std::uint8_t bytThird, std::uint8_t bytAddress,
                                std::uint8_t bytFifth, std::uint8_t bytSixth, bool& blSuccess) = 0;
    virtual void GetPAAddress(std::int32_t& lngAddress, std::int32_t& lngSecond,
                              bool& blSuccess) = 0;
    virtual void SetPAAddress(std::uint8_t bytAddress, std::int32_t lngReserved,
                              bool& blSuccess) = 0;
};

}  // namespace kt500::services
