// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// The packets of a GigE Vision stream (GVSP). A camera sends a frame as a block: a leader, packets
/// of data, a trailer. All functions are reentrant and accept any bytes.
namespace gvsp {

/// Bytes of a packet's header with 16-bit block IDs and with 64-bit ones ("extended IDs").
constexpr std::size_t headerSize = 8;
constexpr std::size_t extendedHeaderSize = 20;
/// In byte 4 of a packet's header: the header is the extended one.
constexpr std::uint8_t extendedIdsBit = 0x80;
/// Bytes in front of the data of a multi-part packet: part, zone, and the data's 48-bit offset.
constexpr std::size_t multiPartHeaderSize = 8;
/// Parts of a multi-part block: their number has 8 bits.
constexpr std::size_t mostParts = 255;
/// Bytes of IP and UDP, which a camera's packet size (GevSCPSPacketSize) includes.
constexpr std::size_t ipAndUdpSize = 28;

/// Bytes of the smallest packet that every camera supports.
constexpr std::size_t smallestPacketSize = 576;

enum class Format : std::uint8_t { Leader = 1, Trailer = 2, Data = 3, MultiPartData = 7 };

/// What the status of a packet means to the receiver.
enum class Availability {
    Present,
    /// Requested too early: may be requested again.
    Later,
    /// The camera no longer has this packet.
    Gone,
    /// Neither this packet nor those before it.
    GoneWithPrevious
};

/// A packet; it points at the datagram that it was read from.
struct Packet {
    Availability availability = Availability::Present;
    bool hasExtendedIds = false;
    Format format = Format::Data;
    std::uint64_t block = 0;
    /// From 0 (the leader) to the trailer's.
    std::uint32_t number = 0;
    /// First byte after the header.
    const std::uint8_t* data = nullptr;
    /// Bytes on the wire, and how many of them are at data; fewer if only headers were received.
    std::size_t size = 0;
    std::size_t captured = 0;
};

/// Reads a datagram of \p size bytes of which \p captured are at \p bytes. Empty for one that is no
/// packet of a block, such as a test packet, and for formats that are not supported.
std::optional<Packet> readPacket(const std::uint8_t* bytes, std::size_t captured, std::size_t size);

struct Image {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    OrvPixelFormatType format{};
};

/// Contents of a leader.
struct Leader {
    /// In ticks of the camera; 0 from a camera without a clock.
    std::uint64_t timestamp = 0;
    /// The first image; empty for payloads that are none.
    std::optional<Image> image;
    /// Bytes of each part of a multi-part block; empty when not all of the leader was received.
    std::vector<std::uint64_t> partSizes;
};

/// Empty when the packet is too short.
std::optional<Leader> readLeader(const Packet& packet);

/// Where the data of a packet of MultiPartData belong in the frame; empty when the packet is too
/// short.
std::optional<std::uint64_t> multiPartOffset(const Packet& packet);

} // namespace gvsp
