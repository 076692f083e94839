// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// What every GigE Vision camera has at the same place (GigE Vision 2.2, 28).
namespace gige {

/// UDP port on which a camera is controlled.
constexpr std::uint16_t controlPort = 3956;

constexpr std::uint32_t userNameRegister = 0xE8;
constexpr std::uint32_t userNameSize = 16;
/// Where the camera's description is: the first place and the second.
constexpr std::uint32_t descriptionUrlRegisters[] = {0x200, 0x400};
constexpr std::uint32_t descriptionUrlSize = 512;
constexpr std::uint32_t privilegeRegister = 0xA00;
/// UDP port and IPv4 address of the program that controls the camera; optional.
constexpr std::uint32_t controllerPortRegister = 0xA04;
constexpr std::uint32_t controllerAddressRegister = 0xA14;

/// The first stream channel: UDP port and IPv4 address of the receiver, and the size of a packet
/// with its IP and UDP headers.
constexpr std::uint32_t streamPortRegister = 0xD00;
constexpr std::uint32_t streamPacketSizeRegister = 0xD04;
constexpr std::uint32_t streamAddressRegister = 0xD18;
/// Parts of these registers. Sent with the first bit, a size makes the camera send one test packet.
constexpr std::uint32_t streamPortBits = 0x0000FFFF;
constexpr std::uint32_t fireTestPacketBit = 0x80000000;
constexpr std::uint32_t doNotFragmentBit = 0x40000000;
constexpr std::uint32_t packetSizeBits = 0x0000FFFF;

/// Which ways to an IPv4 address the camera takes after its start; see the bits below.
constexpr std::uint32_t ipConfigurationRegister = 0x14;
constexpr std::uint32_t persistentAddressRegister = 0x64C;
constexpr std::uint32_t persistentMaskRegister = 0x65C;
constexpr std::uint32_t persistentGatewayRegister = 0x66C;

/// Bits of the registers that tell which ways there are and which are on.
constexpr std::uint32_t persistentBit = 1;
constexpr std::uint32_t dhcpBit = 2;
constexpr std::uint32_t linkLocalBit = 4;

} // namespace gige
