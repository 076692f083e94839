// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/AdapterObserver.h"
#include "platform/UdpSocketTable.h"

#include <cstdint>
#include <map>
#include <optional>
#include <tuple>
#include <vector>

namespace cli {

/// A stream as it is told apart: camera, host and port.
using StreamKey = std::tuple<std::uint32_t, std::uint32_t, std::uint16_t>;
/// The streams of an adapter.
using StreamReadings = std::map<StreamKey, observer::StreamReading>;

/// What the sockets of the receiving programs have dropped of each stream. Not thread-safe.
class ReceiverDrops {
public:
    /// Packets since the stream was seen first; they go on over further sockets, and over further
    /// ports of the camera as the stream's figures do. Absent: streams whose packets do not come
    /// through a UDP socket: it is not there, or refuses them all, since the program has another
    /// way to them. Forgets streams that are not in \p streams.
    std::map<StreamKey, std::uint64_t> read(const StreamReadings& streams,
                                            const std::vector<platform::UdpSocketEntry>& sockets);

private:
    struct Count {
        /// Of former sockets.
        std::uint64_t former = 0;
        /// Drops and packets of the present socket when it was seen first; none was seen yet.
        std::optional<std::uint64_t> firstDrops;
        std::uint64_t firstPackets = 0;
        /// Drops of the socket at the last reading, and those of them that count.
        std::uint64_t lastDrops = 0;
        std::uint64_t moved = 0;

        /// Whether the program takes packets from the socket, which has dropped so many.
        bool note(std::uint64_t drops, std::uint64_t packets);
    };

    /// What was dropped of streams that have ended, and that this one continues.
    std::uint64_t endedBefore(const StreamKey& key, const StreamReadings& streams) const;

    std::map<StreamKey, Count> m_counts;
};

} // namespace cli
