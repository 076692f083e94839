// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/Gvsp.h"

#include "gige/BigEndian.h"

namespace orv::aravis::gvsp {

namespace {

using gige::bigEndian16;
using gige::bigEndian32;
using gige::bigEndian64;

/// Statuses of a packet. Those of failures have the highest bit.
constexpr std::uint16_t failureBit = 0x8000;
constexpr std::uint16_t notYetAvailable = 0x8010;
constexpr std::uint16_t removedWithPrevious = 0x8011;
constexpr std::uint16_t temporarilyUnavailable = 0x8014;

constexpr std::uint8_t extendedIdsBit = 0x80;
constexpr std::uint8_t formatBits = 0x0F;

/// Payload types of a leader. The bit stands for chunks that follow the payload.
constexpr std::uint16_t chunksBit = 0x4000;
constexpr std::uint16_t imagePayload = 1;
constexpr std::uint16_t extendedChunkPayload = 5;
constexpr std::uint16_t multiPartPayload = 10;

/// Offsets in a leader, and in the description of a multi-part leader's first part.
constexpr std::size_t payloadTypeOffset = 2;
constexpr std::size_t timestampOffset = 4;
constexpr std::size_t imageOffset = 12;
constexpr std::size_t partOffset = 12;
constexpr std::size_t partImageOffset = partOffset + 8;
/// Pixel format, width, height.
constexpr std::size_t imageSize = 12;
/// Data type of a part.
constexpr std::uint16_t imagePart = 1;

Availability availabilityOf(std::uint16_t status) {
    if ((status & failureBit) == 0)
        return Availability::Present;
    if (status == notYetAvailable || status == temporarilyUnavailable)
        return Availability::Later;
    return status == removedWithPrevious ? Availability::GoneWithPrevious : Availability::Gone;
}

bool isSupported(Format format) {
    return format == Format::Leader || format == Format::Trailer || format == Format::Data ||
           format == Format::MultiPartData;
}

std::optional<Image> readImage(const Packet& packet, std::size_t offset) {
    if (packet.captured < offset + imageSize)
        return std::nullopt;
    const std::uint8_t* const at = packet.data + offset;
    return Image{bigEndian32(at + 4), bigEndian32(at + 8),
                 static_cast<OrvPixelFormatType>(bigEndian32(at))};
}

} // namespace

std::optional<Packet> readPacket(const std::uint8_t* bytes, std::size_t captured,
                                 std::size_t size) {
    if (captured < headerSize || captured > size)
        return std::nullopt;
    Packet packet;
    packet.hasExtendedIds = (bytes[4] & extendedIdsBit) != 0;
    const std::size_t header = packet.hasExtendedIds ? extendedHeaderSize : headerSize;
    if (captured < header)
        return std::nullopt;
    const std::uint16_t status = bigEndian16(bytes);
    packet.availability = availabilityOf(status);
    packet.format = static_cast<Format>(bytes[4] & formatBits);
    packet.block = packet.hasExtendedIds ? bigEndian64(bytes + 8) : bigEndian16(bytes + 2);
    packet.number =
        packet.hasExtendedIds ? bigEndian32(bytes + 16) : bigEndian32(bytes + 4) & 0x00FFFFFFU;
    packet.data = bytes + header;
    packet.size = size - header;
    packet.captured = captured - header;
    // Block 0 is that of test packets.
    if (packet.block == 0 || !isSupported(packet.format))
        return std::nullopt;
    return packet;
}

std::optional<Leader> readLeader(const Packet& packet) {
    if (packet.captured < imageOffset)
        return std::nullopt;
    Leader leader;
    leader.timestamp = bigEndian64(packet.data + timestampOffset);
    const auto type =
        static_cast<std::uint16_t>(bigEndian16(packet.data + payloadTypeOffset) & ~chunksBit);
    if (type == imagePayload || type == extendedChunkPayload)
        leader.image = readImage(packet, imageOffset);
    if (type == multiPartPayload && packet.captured >= partOffset + 2 &&
        bigEndian16(packet.data + partOffset) == imagePart)
        leader.image = readImage(packet, partImageOffset);
    return leader;
}

std::optional<std::uint64_t> multiPartOffset(const Packet& packet) {
    if (packet.captured < multiPartHeaderSize)
        return std::nullopt;
    return std::uint64_t{bigEndian16(packet.data + 2)} << 32U | bigEndian32(packet.data + 4);
}

} // namespace orv::aravis::gvsp
