// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>

/// What goes over the wire between a GigE Vision camera and its host. All numbers on the wire are
/// big-endian; blocks of bytes are read and written with the functions at the end.
namespace fakecamera::protocol {

/// Control (GVCP): every packet starts with 8 bytes: key and flags, command, length, request ID.
constexpr std::uint16_t controlPort = 3956;
constexpr std::size_t controlHeaderSize = 8;
/// Most bytes after the header, and most bytes of memory in one packet.
constexpr std::size_t largestControlPayload = 540;
constexpr std::size_t largestMemoryAccess = 536;
constexpr std::uint8_t commandKey = 0x42;
constexpr std::uint8_t flagAcknowledge = 0x01;
constexpr std::uint8_t flagExtendedIds = 0x10;
/// Of Discovery and ForceIp: a camera of another subnet may answer by broadcast.
constexpr std::uint8_t flagBroadcastAnswer = 0x10;

/// An acknowledgement has the command's number plus 1.
enum Command : std::uint16_t {
    Discovery = 0x0002,
    /// Gives the camera with a MAC address an IPv4 address, for all cameras to hear.
    ForceIp = 0x0004,
    PacketResend = 0x0040,
    ReadRegister = 0x0080,
    WriteRegister = 0x0082,
    ReadMemory = 0x0084,
    WriteMemory = 0x0086,
    /// Instead of an acknowledgement: its data ends with the milliseconds that the camera needs.
    PendingAcknowledge = 0x0089,
};

enum Status : std::uint16_t {
    Success = 0x0000,
    /// Of a resent packet. Cameras with 16-bit frame numbers send Success instead.
    Resent = 0x0100,
    NotImplemented = 0x8001,
    InvalidParameter = 0x8002,
    InvalidAddress = 0x8003,
    WriteProtected = 0x8004,
    BadAlignment = 0x8005,
    AccessDenied = 0x8006,
    LocalProblem = 0x8008,
    PacketUnavailable = 0x800c,
    InvalidHeader = 0x800e,
};

/// Data of the command ForceIp: size, and offsets of the MAC address and the new settings.
constexpr std::size_t forceIpSize = 56;
constexpr std::size_t forcedMacAt = 2;
constexpr std::size_t forcedAddressAt = 20;
constexpr std::size_t forcedMaskAt = 36;
constexpr std::size_t forcedGatewayAt = 52;

/// Bits of the registers AddressOptions and AddressOption: ways to an address after the start.
constexpr std::uint32_t persistentIp = 1;
constexpr std::uint32_t linkLocalIp = 4;

/// Streaming (GVSP): sizes of a packet's header with 16-bit and with 64-bit frame numbers, and of
/// the headers of IP and UDP. The packet size that a host sets includes all headers.
constexpr std::size_t streamHeaderSize = 8;
constexpr std::size_t extendedStreamHeaderSize = 20;
constexpr std::size_t ipAndUdpSize = 28;

/// Bits of the packet size's register, of the control privilege and of the capabilities.
constexpr std::uint32_t fireTestPacket = 0x80000000;
constexpr std::uint32_t doNotFragment = 0x40000000;
constexpr std::uint32_t packetSizeBits = 0xffff;
constexpr std::uint32_t exclusiveAccess = 1;
constexpr std::uint32_t controlAccess = 2;
constexpr std::uint32_t hasUserId = 0x80000000;
constexpr std::uint32_t hasSerialNumber = 0x40000000;
constexpr std::uint32_t canResend = 4;
constexpr std::uint32_t canWriteMemory = 2;
constexpr std::uint32_t canConcatenate = 1;

enum class StreamPacket : std::uint32_t { Leader = 1, Trailer = 2, Data = 3 };

inline void put16(std::uint8_t* at, std::uint16_t value) {
    at[0] = static_cast<std::uint8_t>(value >> 8);
    at[1] = static_cast<std::uint8_t>(value);
}
inline void put32(std::uint8_t* at, std::uint32_t value) {
    put16(at, static_cast<std::uint16_t>(value >> 16));
    put16(at + 2, static_cast<std::uint16_t>(value));
}
inline void put64(std::uint8_t* at, std::uint64_t value) {
    put32(at, static_cast<std::uint32_t>(value >> 32));
    put32(at + 4, static_cast<std::uint32_t>(value));
}
inline std::uint16_t get16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] << 8 | at[1]);
}
inline std::uint32_t get32(const std::uint8_t* at) {
    return std::uint32_t{get16(at)} << 16 | get16(at + 2);
}
inline std::uint64_t get64(const std::uint8_t* at) {
    return std::uint64_t{get32(at)} << 32 | get32(at + 4);
}

} // namespace fakecamera::protocol
