// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ReceiverDrops.h"

#include <algorithm>
#include <utility>

namespace cli {

namespace {

using Drops = std::map<std::uint64_t, std::uint64_t>;

bool isKnown(const Drops& former, const Drops::value_type& socket) {
    const auto known = former.find(socket.first);
    return known != former.end() && known->second <= socket.second;
}

} // namespace

bool ReceiverDrops::Count::areAsBefore(const Sockets& sockets) const {
    return last && last->size() == sockets.size() &&
           std::all_of(sockets.begin(), sockets.end(),
                       [this](const auto& socket) { return isKnown(*last, socket); });
}

void ReceiverDrops::Count::begin(const Sockets& sockets, std::uint64_t packets) {
    former += std::exchange(moved, 0);
    firstPackets = last ? lastPackets : packets;
    first = sockets;
    for (auto& [inode, drops] : first)
        if (last)
            drops = isKnown(*last, {inode, drops}) ? last->at(inode) : 0;
}

bool ReceiverDrops::Count::note(const Sockets& sockets, std::uint64_t packets) {
    if (!areAsBefore(sockets))
        begin(sockets, packets);
    last = sockets;
    lastPackets = packets;
    std::uint64_t since = 0;
    for (const auto& [inode, drops] : sockets)
        since += drops - first.at(inode);
    const std::uint64_t ofPackets = packets - firstPackets;
    const bool refusesAll = since > 0 && since >= ofPackets - ofPackets / 10;
    moved = refusesAll ? 0 : since;
    return !sockets.empty() && !refusesAll;
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
        Count count = known == m_counts.end() ? Count{endedBefore(key, streams), {}, 0, {}, 0, 0}
                                              : known->second;
        if (count.note(platform::dropsAt(sockets, stream.host, stream.port),
                       stream.figures.packets))
            sums[key] = count.former + count.moved;
        counts[key] = count;
    }
    m_counts = std::move(counts);
    return sums;
}

} // namespace cli
