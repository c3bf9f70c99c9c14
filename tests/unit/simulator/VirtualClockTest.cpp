#include "simulator/VirtualClock.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace kt500::simulator {
namespace {

TEST(VirtualClockTest, AdvanceDeliversDueEventsInTimeOrderAndFifoForEqualTimes) {
    VirtualClock clock;
    std::string order;
    clock.schedule(300, [&] { order += "c"; });
    clock.schedule(100, [&] { order += "a"; });
    clock.schedule(100, [&] { order += "b"; });
    clock.schedule(301, [&] { order += "d"; });
    EXPECT_EQ(clock.nextEventTime(), 100);
    EXPECT_EQ(clock.advance(99), 0U);
    EXPECT_EQ(clock.now(), 99);
    EXPECT_EQ(clock.advance(201), 3U);
    EXPECT_EQ(order, "abc");
    EXPECT_EQ(clock.now(), 300);
    EXPECT_EQ(clock.pending(), 1U);
    EXPECT_THROW(clock.advance(-1), std::invalid_argument);
}

TEST(VirtualClockTest, EventsScheduledDuringDeliveryAreDeliveredWhenDueOnTheWay) {
    VirtualClock clock;
    std::string order;
    std::int64_t seenAt = -1;
    clock.schedule(100, [&] {
        order += "a";
        seenAt = clock.now();
        clock.schedule(50, [&] { order += "b"; });   // due at 150: on the way
        clock.schedule(0, [&] { order += "n"; });    // due at once, after a
        clock.schedule(500, [&] { order += "x"; });  // beyond the target
    });
    clock.schedule(150, [&] { order += "c"; });  // scheduled earlier than b for 150
    clock.advance(200);
    EXPECT_EQ(order, "ancb");
    EXPECT_EQ(seenAt, 100);
    EXPECT_EQ(clock.nextEventTime(), 600);
}

TEST(VirtualClockTest, SettleStopsWhenNothingIsPendingOrAfterTenMinutes) {
    VirtualClock clock;
    int delivered = 0;
    clock.schedule(2000, [&] { ++delivered; });
    EXPECT_EQ(clock.settle(), 1U);
    EXPECT_EQ(clock.now(), 2000);
    EXPECT_FALSE(clock.nextEventTime());

    // A cycle that never ends: settle gives up after ten minutes.
    std::function<void()> cycle = [&] {
        ++delivered;
        clock.schedule(500, cycle);
    };
    clock.schedule(500, cycle);
    delivered = 0;
    clock.settle();
    EXPECT_EQ(delivered, VirtualClock::kSettleLimit / 500);
    EXPECT_LE(clock.now(), 2000 + VirtualClock::kSettleLimit);
    EXPECT_EQ(clock.pending(), 1U);
}

TEST(VirtualClockTest, CancelByTicketOwnerAndChannel) {
    VirtualClock clock;
    int a = 0;
    int b = 0;
    const int ownerA = 0;
    const int ownerB = 0;
    const auto add = [&](int& counter, const int* owner, int channel) {
        return clock.schedule(
            10, [&counter] { ++counter; }, owner, channel);
    };
    const VirtualClock::Ticket first = add(a, &ownerA, 1);
    add(a, &ownerA, 2);
    add(a, &ownerA, 2);
    add(b, &ownerB, 1);
    EXPECT_TRUE(clock.cancel(first));
    EXPECT_FALSE(clock.cancel(first));
    EXPECT_EQ(clock.pending(&ownerA, 2), 2U);
    EXPECT_EQ(clock.cancelChannel(&ownerA, 2), 2U);
    add(a, &ownerA, 3);
    EXPECT_EQ(clock.cancelOwner(&ownerA), 1U);
    clock.advance(10);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 1);
}

TEST(VirtualClockTest, AnEventThatThrowsIsGoneAndTheClockGoesOn) {
    VirtualClock clock;
    int after = 0;
    clock.schedule(10, [] { throw std::runtime_error("sink failed"); });
    clock.schedule(20, [&] { ++after; });
    EXPECT_THROW(clock.advance(100), std::runtime_error);
    EXPECT_EQ(clock.now(), 10);
    clock.advance(90);
    EXPECT_EQ(after, 1);
    // Advancing from inside an event is refused, not re-entered.
    clock.schedule(5, [&] { clock.advance(1); });
    EXPECT_THROW(clock.advance(5), std::logic_error);
    EXPECT_EQ(clock.advance(1), 0U);
}

}  // namespace
}  // namespace kt500::simulator
