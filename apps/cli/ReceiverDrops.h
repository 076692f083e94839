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
    /// Drops of sockets by their inodes.
    using Sockets = std::map<std::uint64_t, std::uint64_t>;

    struct Count {
        /// Of former sockets.
        std::uint64_t former = 0;
        /// The present sockets and the stream's packets when these sockets were seen first: the
        /// count of a socket that was opened later begins at 0, after the reading before.
        Sockets first;
        std::uint64_t firstPackets = 0;
        /// At the last reading, and the drops that count; none was read yet.
        std::optional<Sockets> last;
        std::uint64_t lastPackets = 0;
        std::uint64_t moved = 0;

        /// Whether the program takes packets from these sockets.
        bool note(const Sockets& sockets, std::uint64_t packets);
        bool areAsBefore(const Sockets& sockets) const;
        void begin(const Sockets& sockets, std::uint64_t packets);
    };

    /// What was dropped of streams that have ended, and that this one continues.
    std::uint64_t endedBefore(const StreamKey& key, const StreamReadings& streams) const;

    std::map<StreamKey, Count> m_counts;
};

} // namespace cli
