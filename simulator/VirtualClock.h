// The built-in BL's time. The simulated device never calls the control from
// another thread: everything it does later (a reply piece, a monitoring
// cycle, the end of a device action) is an event scheduled on this clock,
// and the host delivers the due events on its own thread by advancing the
// clock: the desktop program from a timer in real time, tests and scripts
// deterministically. Events due at the same time are delivered in the order
// they were scheduled.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace kt500::simulator {

class VirtualClock {
public:
    using Milliseconds = std::int64_t;
    using Ticket = std::uint64_t;
    using Action = std::function<void()>;

    // The longest stretch that settle() runs: ten minutes.
    static constexpr Milliseconds kSettleLimit = 10 * 60 * 1000;

    [[nodiscard]] Milliseconds now() const noexcept { return m_now; }

    // Schedules action at now() + delayMs (a negative delay counts as 0).
    // owner and channel let a producer drop its own events later.
    Ticket schedule(Milliseconds delayMs, Action action, const void* owner = nullptr,
                    int channel = 0);
    // Drops one event; false when it was delivered or dropped already.
    bool cancel(Ticket ticket);
    // Drops every event of an owner, or of one of its channels.
    std::size_t cancelOwner(const void* owner);
    std::size_t cancelChannel(const void* owner, int channel);

    // Moves the time forward by ms and delivers, in time order, every event
    // due on the way, including those scheduled meanwhile. Returns how many
    // were delivered. An exception of an event leaves the clock at that
    // event's time, the event gone; it reaches the caller.
    std::size_t advance(Milliseconds ms);
    // Delivers events until none is pending, at most limitMs of time.
    // The clock stops at the last event delivered.
    std::size_t settle(Milliseconds limitMs = kSettleLimit);

    [[nodiscard]] std::optional<Milliseconds> nextEventTime() const;
    [[nodiscard]] std::size_t pending() const noexcept { return m_events.size(); }
    [[nodiscard]] std::size_t pending(const void* owner, int channel) const;

private:
    struct Event {
        Action action;
        const void* owner = nullptr;
        int channel = 0;
    };
    using Key = std::pair<Milliseconds, Ticket>;  // time, then order of scheduling

    // Delivers the first event if it is due by limit; false when none is.
    bool deliverNext(Milliseconds limit);

    Milliseconds m_now = 0;
    Ticket m_nextTicket = 1;
    std::map<Key, Event> m_events;
    bool m_delivering = false;
};

}  // namespace kt500::simulator
