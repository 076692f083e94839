// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketRing.h"
#include "gvsp/PacketSource.h"
#include "gvsp/WakeablePoll.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace gvsp {

/// The ring of the adapter that has a name. When the adapter was removed, as one on USB that is
/// pulled, and one of this name is there again, it opens a ring on that one with the same
/// endpoints. The counts go on. Packets until it is open, within the time that receive() may wait,
/// are not seen.
class AdapterRing final : public PacketSource {
public:
    /// Null where PacketRing::open() is.
    static std::unique_ptr<AdapterRing> open(const std::string& adapter,
                                             const PacketRing::Use& use);

    void receive(std::chrono::microseconds wait, const Handler& handler) override;
    void wake() override;
    void listen(const std::vector<StreamEndpoint>& endpoints) override;
    std::chrono::milliseconds latency() const override { return m_latency; }
    SourceCounts counts() override;

private:
    AdapterRing(std::string adapter, const PacketRing::Use& use, std::unique_ptr<PacketRing> ring);
    /// Null while there is no adapter. Other threads may hold a ring that was replaced.
    std::shared_ptr<PacketRing> ring() const;
    /// Hands over what came before the adapter was removed. The kernel hands over the last packets
    /// within the ring's latency.
    void receiveRest(PacketRing& ring, const Handler& handler) const;
    void closeRing();
    /// False while there is no adapter of the name.
    bool openRing();

    const std::string m_adapter;
    const PacketRing::Use& m_use;
    const std::chrono::milliseconds m_latency;
    /// For the time without a ring.
    const WakeablePoll m_poll;
    mutable std::mutex m_mutex;
    /// All below guarded by the mutex. Replaced by receive() only.
    std::shared_ptr<PacketRing> m_ring;
    std::vector<StreamEndpoint> m_endpoints;
    /// Without those of the present ring.
    SourceCounts m_counts;
};

} // namespace gvsp
