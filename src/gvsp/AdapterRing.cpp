// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/AdapterRing.h"

#include <utility>

namespace gvsp {

std::unique_ptr<AdapterRing> AdapterRing::open(const std::string& adapter,
                                               const PacketRing::Use& use) {
    auto ring = PacketRing::open(adapter, use);
    if (!ring)
        return nullptr;
    return std::unique_ptr<AdapterRing>(new AdapterRing(adapter, use, std::move(ring)));
}

AdapterRing::AdapterRing(std::string adapter, const PacketRing::Use& use,
                         std::unique_ptr<PacketRing> ring)
    : m_adapter(std::move(adapter)), m_use(use), m_latency(ring->latency()),
      m_ring(std::move(ring)) {}

std::shared_ptr<PacketRing> AdapterRing::ring() const {
    const std::lock_guard lock(m_mutex);
    return m_ring;
}

void AdapterRing::closeRing() {
    const std::lock_guard lock(m_mutex);
    const SourceCounts last = m_ring->counts();
    m_counts.dropped += last.dropped;
    m_counts.freezes += last.freezes;
    ++m_counts.removals;
    m_ring.reset();
}

bool AdapterRing::openRing() {
    std::shared_ptr<PacketRing> ring = PacketRing::open(m_adapter, m_use);
    if (!ring)
        return false;
    const std::lock_guard lock(m_mutex);
    ring->listen(m_endpoints);
    m_ring = std::move(ring);
    ++m_counts.returns;
    return true;
}

void AdapterRing::receiveRest(PacketRing& ring, const Handler& handler) const {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + m_latency;
    bool isEmpty = false;
    while (!isEmpty || Clock::now() < end) {
        isEmpty = true;
        ring.receive(ring.latency(), [&](const StreamDatagram& datagram) {
            isEmpty = false;
            handler(datagram);
        });
    }
}

void AdapterRing::receive(std::chrono::microseconds wait, const Handler& handler) {
    const std::shared_ptr<PacketRing> current = ring();
    if (current && current->isAttached()) {
        current->receive(wait, handler);
        return;
    }
    if (current) {
        receiveRest(*current, handler);
        closeRing();
    }
    // A new ring is read at the next call, since wake() may have been called before it was there.
    if (!openRing())
        m_poll.wait(-1, wait);
}

void AdapterRing::wake() {
    m_poll.wake();
    if (const auto current = ring())
        current->wake();
}

void AdapterRing::listen(const std::vector<StreamEndpoint>& endpoints) {
    const std::lock_guard lock(m_mutex);
    m_endpoints = endpoints;
    if (m_ring)
        m_ring->listen(endpoints);
}

SourceCounts AdapterRing::counts() {
    const std::lock_guard lock(m_mutex);
    SourceCounts counts = m_counts;
    if (m_ring) {
        const SourceCounts present = m_ring->counts();
        counts.dropped += present.dropped;
        counts.freezes += present.freezes;
    }
    return counts;
}

} // namespace gvsp
