#include "SimulatedSession.h"

#include <gtest/gtest.h>

namespace kt500::simulator {
namespace {

using testing::SimulatedSession;

TEST(SimulatedAddressingTest, HartShortAddressIsTheDevicesPollingAddress) {
    for (const char* key : {"KT520_7", "PL500_1"}) {
        SimulatedSession session(key);
        services::IDtmAddressing& addressing = *session.bl().addressing();
        std::uint8_t a = 9, b = 9, c = 9, address = 9;
        bool success = false;
        addressing.GetHartAddress(a, b, c, address, success);
        EXPECT_TRUE(success) << key;
        EXPECT_EQ(address, 0);
        EXPECT_EQ(a + b + c, 0);

        addressing.SetHartAddress(0, 0, 0, 15, 0, 0, success);
        EXPECT_TRUE(success);
        EXPECT_EQ(session.control().deviceValue("pollingAddress"), "15");
        addressing.GetHartAddress(a, b, c, address, success);
        EXPECT_EQ(address, 15);

        addressing.SetHartAddress(0, 0, 0, 64, 0, 0, success);  // beyond the short addresses
        EXPECT_FALSE(success);
        addressing.SetHartAddress(1, 0, 0, 3, 0, 0, success);  // not a short address group
        EXPECT_FALSE(success);
        EXPECT_EQ(session.control().deviceValue("pollingAddress"), "15");

        std::int32_t station = 0, second = 0;
        addressing.GetPAAddress(station, second, success);
        EXPECT_FALSE(success);  // a HART device has no station address
    }
}

TEST(SimulatedAddressingTest, NoAddressWithoutAConnection) {
    SessionOptions options;
    BuiltInBL bl(options, KT500_SHARE_DIR);
    std::uint8_t a = 0, b = 0, c = 0, address = 0;
    bool success = true;
    bl.addressing()->GetHartAddress(a, b, c, address, success);
    EXPECT_FALSE(success);
    bl.addressing()->SetHartAddress(0, 0, 0, 5, 0, 0, success);
    EXPECT_FALSE(success);
}

TEST(SimulatedAddressingTest, ProfibusStationAddress) {
    SimulatedSession session("KT540_1.0");
    services::IDtmAddressing& addressing = *session.bl().addressing();
    std::int32_t station = 0, second = 5;
    bool success = false;
    addressing.GetPAAddress(station, second, success);
    EXPECT_TRUE(success);
    EXPECT_EQ(station, SimulatedAddressing::kDeliveredPAAddress);
    EXPECT_EQ(second, 0);
    addressing.SetPAAddress(12, 0, success);
    EXPECT_TRUE(success);
    addressing.GetPAAddress(station, second, success);
    EXPECT_EQ(station, 12);
    addressing.SetPAAddress(126, 0, success);  // the delivered address is not one to give
    EXPECT_FALSE(success);
    std::uint8_t a = 0, b = 0, c = 0, address = 0;
    addressing.GetHartAddress(a, b, c, address, success);
    EXPECT_FALSE(success);
}

}  // namespace
}  // namespace kt500::simulator
