// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ReceiverDrops.h"

#include <utility>

namespace cli {

bool ReceiverDrops::Count::note(std::uint64_t drops, std::uint64_t packets) {
    // The program has opened another socket.
    if (!firstDrops || drops < lastDrops) {
        former += std::exchange(moved, 0);
        firstDrops = drops;
        firstPackets = packets;
    }
    lastDrops = drops;
    const std::uint64_t since = drops - *firstDrops;
    const std::uint64_t ofPackets = packets - firstPackets;
    const bool refusesAll = since > 0 && since >= ofPackets - ofPackets / 10;
    moved = refusesAll ? 0 : since;
    return !refusesAll;
}

std::uint64_t ReceiverDrops::endedBefore(const StreamKey& key,
                                         const StreamReadings& streams) const {
    std::uint64_t drops = 0;
    if (streams.at(key).before.packets == 0)
        return drops;
    for (const auto& [each, count] : m_counts) {
        const bool isOfSameCamera =
            std::get<0>(each) == std::get<0>(key) && std::get<1>(each) == std::get<1>(key);
        if (isOfSameCamera && streams.count(each) == 0)
            drops += count.former + count.moved;
    }
    return drops;
}

std::map<StreamKey, std::uint64_t>
ReceiverDrops::read(const StreamReadings& streams,
                    const std::vector<platform::UdpSocketEntry>& sockets) {
    std::map<StreamKey, Count> counts;
    std::map<StreamKey, std::uint64_t> sums;
    for (const auto& [key, stream] : streams) {
        const auto known = m_counts.find(key);
        Count count =
            known == m_counts.end() ? Count{endedBefore(key, streams), {}, 0, 0, 0} : known->second;
        const auto drops = platform::dropsAt(sockets, stream.host, stream.port);
        if (drops && count.note(*drops, stream.figures.packets))
            sums[key] = count.former + count.moved;
        counts[key] = count;
    }
    m_counts = std::move(counts);
    return sums;
}

} // namespace cli
