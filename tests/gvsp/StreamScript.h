// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <netinet/in.h>

/// Datagrams of a GigE Vision stream, byte by byte as a camera sends them. Blocks have a leader
/// (packet 0), data packets (1 to 4, the last one shorter), and a trailer (5).
namespace script {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t packetSize = 600;
constexpr std::size_t lastSize = 100;
constexpr std::uint32_t trailerNumber = 5;

enum Format : std::uint8_t { Leader = 1, Trailer = 2, Data = 3, AllIn = 4, MultiPart = 7 };

inline void append(Bytes& bytes, std::uint64_t number, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

/// A camera's way of numbering and its blocks.
struct Camera {
    bool hasExtendedIds = false;

    std::size_t dataSize() const { return packetSize - 28 - (hasExtendedIds ? 20 : 8); }
    std::size_t payload() const { return 3 * dataSize() + lastSize; }

    Bytes packet(Format format, std::uint64_t block, std::uint32_t number, const Bytes& data = {},
                 std::uint16_t status = 0) const {
        Bytes bytes;
        append(bytes, status, 2);
        append(bytes, hasExtendedIds ? 0 : block, 2);
        append(bytes, format | (hasExtendedIds ? 0x80U : 0U), 1);
        append(bytes, hasExtendedIds ? 0 : number, 3);
        if (hasExtendedIds) {
            append(bytes, block, 8);
            append(bytes, number, 4);
        }
        bytes.insert(bytes.end(), data.begin(), data.end());
        return bytes;
    }
    /// \p timestamp 0: a camera without a clock.
    Bytes leader(std::uint64_t block, std::uint64_t timestamp, std::uint16_t type = 1) const {
        Bytes data;
        append(data, 0, 2);
        append(data, type, 2);
        append(data, timestamp, 8);
        append(data, 0x01080001, 4);
        append(data, 40, 4);
        append(data, 30, 4);
        data.resize(data.size() + 12);
        return packet(Leader, block, 0, data);
    }
    Bytes data(std::uint64_t block, std::uint32_t number) const {
        const std::size_t size = number + 1 == trailerNumber ? lastSize : dataSize();
        return packet(Data, block, number, Bytes(size, static_cast<std::uint8_t>(number)));
    }
    Bytes trailer(std::uint64_t block) const {
        return packet(Trailer, block, trailerNumber, Bytes(8, 0));
    }
    /// Packet \p number of a block, whose timestamp is a thousand times its ID if none is given.
    Bytes any(std::uint64_t block, std::uint32_t number,
              std::optional<std::uint64_t> timestamp = {}) const {
        if (number == 0)
            return leader(block, timestamp.value_or(1000 * block));
        return number == trailerNumber ? trailer(block) : data(block, number);
    }
};

/// An IPv4 packet with UDP to \p to, with \p options bytes of IP options.
inline Bytes ipPacket(const gvsp::StreamEndpoint& to, const Bytes& data, std::size_t options = 0) {
    const std::size_t header = 20 + options;
    Bytes packet;
    // Numbers of 4 bytes: lengths, fragments, protocol, addresses.
    for (const std::size_t number :
         {(0x40 + header / 4) << 24U | (header + 8 + data.size()), std::size_t{0},
          std::size_t{64 << 24 | IPPROTO_UDP << 16}, std::size_t{to.camera}, std::size_t{to.host}})
        append(packet, number, 4);
    packet.resize(header);
    append(packet, 4000U << 16U | to.port, 4);
    append(packet, (8 + data.size()) << 16U, 4);
    packet.insert(packet.end(), data.begin(), data.end());
    return packet;
}

} // namespace script
