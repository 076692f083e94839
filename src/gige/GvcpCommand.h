// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace gige {

/// Commands of the control protocol (GigE Vision 2.2, 16). The acknowledge has the next number.
enum class GvcpCommand : std::uint16_t {
    Discovery = 0x02,
    ForceIp = 0x04,
    PacketResend = 0x40,
    ReadRegister = 0x80,
    WriteRegister = 0x82,
    ReadMemory = 0x84,
};

/// Bytes in front of the data of a command and of an acknowledge.
constexpr std::size_t gvcpHeaderSize = 8;

/// Flags of a command. The meaning of the upper four depends on the command.
constexpr std::uint8_t acknowledgeRequired = 1;
/// Discovery and FORCEIP: a camera of another subnet may answer by broadcast.
constexpr std::uint8_t broadcastAcknowledge = 0x10;
/// Resend: the block ID has 64 bits.
constexpr std::uint8_t extendedIds = 0x10;

/// Statuses of an answer: another program controls the camera, and the camera is busy.
constexpr std::uint16_t accessDenied = 0x8006;
constexpr std::uint16_t busy = 0x8007;

/// A packet with \p body; \p id is not 0. Reentrant.
std::vector<std::uint8_t> gvcpPacket(GvcpCommand command, std::uint8_t flags, std::uint16_t id,
                                     const std::vector<std::uint8_t>& body = {});

/// The command PACKETRESEND, which requests the packets \p first to \p last of a block again; \p id
/// is not 0. The camera sends no acknowledge.
std::vector<std::uint8_t> resendCommand(std::uint64_t block, bool hasExtendedIds,
                                        std::uint32_t first, std::uint32_t last, std::uint16_t id);

} // namespace gige
