// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/Gvsp.h"

#include "gige/BigEndian.h"

#include <algorithm>

namespace gvsp {

namespace {

using gige::bigEndian16;
using gige::bigEndian32;
using gige::bigEndian48;
using gige::bigEndian64;

/// Statuses of a packet. Those of failures have the highest bit.
constexpr std::uint16_t failureBit = 0x8000;
constexpr std::uint16_t notYetAvailable = 0x8010;
constexpr std::uint16_t removedWithPrevious = 0x8011;
constexpr std::uint16_t temporarilyUnavailable = 0x8014;

constexpr std::uint8_t formatBits = 0x0F;

/// Payload types of a leader. The bit stands for chunks that follow the payload.
constexpr std::uint16_t chunksBit = 0x4000;
constexpr std::uint16_t imagePayload = 1;
constexpr std::uint16_t extendedChunkPayload = 5;
constexpr std::uint16_t multiPartPayload = 10;

/// Offsets in a leader, and in the description of a part, of which a multi-part leader has several:
/// data type, size in 6 bytes, pixel format and, from partRegionOffset, width and height.
constexpr std::size_t payloadTypeOffset = 2;
constexpr std::size_t timestampOffset = 4;
constexpr std::size_t imageOffset = 12;
constexpr std::size_t partsOffset = 12;
constexpr std::size_t partSize = 48;
constexpr std::size_t partSizeOffset = 2;
constexpr std::size_t partFormatOffset = 8;
constexpr std::size_t partRegionOffset = 24;
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

/// \p format points at a pixel format, \p region at width and height.
Image readImage(const std::uint8_t* format, const std::uint8_t* region) {
    return {bigEndian32(region), bigEndian32(region + 4),
            static_cast<OrvPixelFormatType>(bigEndian32(format))};
}

void readParts(const Packet& packet, Leader& leader) {
    const std::size_t end = std::min(packet.size, partsOffset + mostParts * partSize);
    if (packet.captured < partsOffset + partSize)
        return;
    const std::uint8_t* const first = packet.data + partsOffset;
    if (bigEndian16(first) == imagePart)
        leader.image = readImage(first + partFormatOffset, first + partRegionOffset);
    if (packet.captured < packet.size)
        return;
    for (std::size_t at = partsOffset; at + partSize <= end; at += partSize)
        leader.partSizes.push_back(bigEndian48(packet.data + at + partSizeOffset));
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
    const std::uint8_t* const image = packet.data + imageOffset;
    if ((type == imagePayload || type == extendedChunkPayload) &&
        packet.captured >= imageOffset + imageSize)
        leader.image = readImage(image, image + 4);
    if (type == multiPartPayload)
        readParts(packet, leader);
    return leader;
}

std::optional<std::uint64_t> multiPartOffset(const Packet& packet) {
    if (packet.captured < multiPartHeaderSize)
        return std::nullopt;
    return bigEndian48(packet.data + 2);
}

} // namespace gvsp
