// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/Gvsp.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace observer {

/// Learns the sizes of a stream's frames and packets, which only the program that controls the
/// camera knows, from the packets that pass. Not thread-safe.
class StreamSizes {
public:
    struct Sizes {
        /// Bytes of a frame.
        std::size_t payload = 0;
        /// Bytes of a packet with its IP and UDP headers.
        std::size_t packetSize = 0;
        /// All that tells the sizes has come. Else the payload may be a packet smaller, or, where
        /// trailers do not come, larger.
        bool isExact = true;
    };

    /// Returns sizes when \p packet completes what tells them: most often a trailer.
    std::optional<Sizes> note(const gvsp::Packet& packet);

private:
    void noteData(const gvsp::Packet& packet);
    std::optional<Sizes> sizesOf(const gvsp::Packet& trailer) const;
    std::optional<Sizes> sizesOfImage(const gvsp::Packet& trailer) const;
    /// Of a frame with this number of data packets.
    std::optional<Sizes> estimate(const gvsp::Packet& packet, std::size_t dataPackets) const;

    /// The frame whose leader came last; 0 before the first.
    std::uint64_t m_block = 0;
    std::optional<gvsp::Image> m_image;
    /// Bytes of its first data packet, and of the data packet with the highest number; 0 before.
    std::size_t m_firstSize = 0;
    /// Largest of the frame's data packets.
    std::size_t m_blockFull = 0;
    std::size_t m_lastSize = 0;
    std::uint32_t m_lastNumber = 0;
    /// Largest size and number of all data packets.
    std::size_t m_fullSize = 0;
    std::uint32_t m_highest = 0;
    /// The frame of the last packet, and how many frames there were without a trailer.
    std::uint64_t m_current = 0;
    unsigned m_framesWithoutTrailer = 0;
    /// Number of the last trailer.
    std::uint32_t m_trailer = 0;
};

} // namespace observer
