// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/Gvsp.h"

namespace orv::aravis::gvsp {

namespace {

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

std::uint16_t number16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] << 8U | at[1]);
}

std::uint32_t number32(const std::uint8_t* at) {
    return std::uint32_t{number16(at)} << 16U | number16(at + 2);
}

std::uint64_t number64(const std::uint8_t* at) {
    return std::uint64_t{number32(at)} << 32U | number32(at + 4);
}

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
    return Image{number32(at + 4), number32(at + 8), static_cast<OrvPixelFormatType>(number32(at))};
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
    const std::uint16_t status = number16(bytes);
    packet.availability = availabilityOf(status);
    packet.format = static_cast<Format>(bytes[4] & formatBits);
    packet.block = packet.hasExtendedIds ? number64(bytes + 8) : number16(bytes + 2);
    packet.number =
        packet.hasExtendedIds ? number32(bytes + 16) : number32(bytes + 4) & 0x00FFFFFFU;
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
    leader.timestamp = number64(packet.data + timestampOffset);
    const auto type =
        static_cast<std::uint16_t>(number16(packet.data + payloadTypeOffset) & ~chunksBit);
    if (type == imagePayload || type == extendedChunkPayload)
        leader.image = readImage(packet, imageOffset);
    if (type == multiPartPayload && packet.captured >= partOffset + 2 &&
        number16(packet.data + partOffset) == imagePart)
        leader.image = readImage(packet, partImageOffset);
    return leader;
}

std::optional<std::uint64_t> multiPartOffset(const Packet& packet) {
    if (packet.captured < multiPartHeaderSize)
        return std::nullopt;
    return std::uint64_t{number16(packet.data + 2)} << 32U | number32(packet.data + 4);
}

} // namespace orv::aravis::gvsp
