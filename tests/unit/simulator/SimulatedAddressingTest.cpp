#include "SimulatedSession.h"

#include <gtest/gtest.h>

#include <optional>

namespace kt500::simulator {
namespace {

// A HART device has a short polling address (0..63) and no station address,
// a PROFIBUS device only a station address; without a connection, neither.
TEST(SimulatedAddressingTest, EachDeviceHasOnlyTheAddressOfItsBus) {
    const struct {
        const char* key;
        bool hart, pa;
    } cases[] = {{"KT520_7", true, false},
                 {"PL500_1", true, false},
                 {"KT540_1.0", false, true},
                 {nullptr, false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key != nullptr ? c.key : "no connection");
        BuiltInBL unconnected(SessionOptions{}, KT500_SHARE_DIR);
        std::optional<testing::SimulatedSession> session;
        if (c.key != nullptr) {
            session.emplace(c.key);
        }
        services::IDtmAddressing& addressing =
            session ? *session->bl().addressing() : *unconnected.addressing();
        std::uint8_t g0 = 9, g1 = 9, g2 = 9, address = 9;
        std::int32_t station = 0, second = 5;
        bool success = false;
        addressing.GetHartAddress(g0, g1, g2, address, success);
        EXPECT_EQ(success, c.hart);
        addressing.GetPAAddress(station, second, success);
        EXPECT_EQ(success, c.pa);
        if (c.hart) {
            EXPECT_EQ(g0 + g1 + g2 + address, 0);
            addressing.SetHartAddress(0, 0, 0, 15, 0, 0, success);
            EXPECT_TRUE(success);
            addressing.GetHartAddress(g0, g1, g2, address, success);
            EXPECT_EQ(address, 15);
            addressing.SetHartAddress(0, 0, 0, 64, 0, 0, success);  // beyond the short addresses
            EXPECT_FALSE(success);
            addressing.SetHartAddress(1, 0, 0, 3, 0, 0, success);  // not a short address group
            EXPECT_FALSE(success);
            EXPECT_EQ(session->control().deviceValue("pollingAddress"), "15");
        } else {
            addressing.SetHartAddress(0, 0, 0, 5, 0, 0, success);
            EXPECT_FALSE(success);
        }
        if (c.pa) {
            EXPECT_EQ(station, SimulatedAddressing::kDeliveredPAAddress);
            EXPECT_EQ(second, 0);
            addressing.SetPAAddress(12, 0, success);
            addressing.GetPAAddress(station, second, success);
            EXPECT_EQ(station, 12);
            addressing.SetPAAddress(126, 0, success);  // the delivered address is not one to give
            EXPECT_FALSE(success);
        }
    }
}

}  // namespace
}  // namespace kt500::simulator
