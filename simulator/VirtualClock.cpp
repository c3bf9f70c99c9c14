#include "simulator/VirtualClock.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::simulator {

namespace {

// Marks a delivery under way; the clock is not advanced from inside an event.
class DeliveryGuard {
public:
    explicit DeliveryGuard(bool& flag) : m_flag(flag) {
        if (m_flag) {
            throw std::logic_error("VirtualClock: advanced from inside one of its events");
        }
        m_flag = true;
    }
    ~DeliveryGuard() { m_flag = false; }
    DeliveryGuard(const DeliveryGuard&) = delete;
    DeliveryGuard& operator=(const DeliveryGuard&) = delete;

private:
    bool& m_flag;
};

}  // namespace

VirtualClock::Ticket VirtualClock::schedule(Milliseconds delayMs, Action action, const void* owner,
                                            int channel) {
    const Ticket ticket = m_nextTicket++;
    m_events.emplace(Key{m_now + std::max<Milliseconds>(delayMs, 0), ticket},
                     Event{std::move(action), owner, channel});
    return ticket;
}

bool VirtualClock::cancel(Ticket ticket) {
    for (auto it = m_events.begin(); it != m_events.end(); ++it) {
        if (it->first.second == ticket) {
            m_events.erase(it);
            return true;
        }
    }
    return false;
}

std::size_t VirtualClock::cancelOwner(const void* owner) {
    return std::erase_if(m_events,
                         [owner](const auto& entry) { return entry.second.owner == owner; });
}

std::size_t VirtualClock::cancelChannel(const void* owner, int channel) {
    return std::erase_if(m_events, [owner, channel](const auto& entry) {
        return entry.second.owner == owner && entry.second.channel == channel;
    });
}

std::size_t VirtualClock::pending(const void* owner, int channel) const {
    return static_cast<std::size_t>(
        std::count_if(m_events.begin(), m_events.end(), [owner, channel](const auto& entry) {
            return entry.second.owner == owner && entry.second.channel == channel;
        }));
}

std::optional<VirtualClock::Milliseconds> VirtualClock::nextEventTime() const {
    if (m_events.empty()) {
        return std::nullopt;
    }
    return m_events.begin()->first.first;
}

bool VirtualClock::deliverNext(Milliseconds limit) {
    if (m_events.empty() || m_events.begin()->first.first > limit) {
        return false;
    }
    auto first = m_events.begin();
    m_now = std::max(m_now, first->first.first);
    Action action = std::move(first->second.action);
    m_events.erase(first);
    action();
    return true;
}

std::size_t VirtualClock::advance(Milliseconds ms) {
    if (ms < 0) {
        throw std::invalid_argument("VirtualClock: time does not run backwards");
    }
    DeliveryGuard guard(m_delivering);
    const Milliseconds target = m_now + ms;
    std::size_t delivered = 0;
    while (deliverNext(target)) {
        ++delivered;
    }
    m_now = target;
    return delivered;
}

std::size_t VirtualClock::settle(Milliseconds limitMs) {
    DeliveryGuard guard(m_delivering);
    const Milliseconds limit = m_now + std::max<Milliseconds>(limitMs, 0);
    std::size_t delivered = 0;
    while (deliverNext(limit)) {
        ++delivered;
    }
    return delivered;
}

}  // namespace kt500::simulator
