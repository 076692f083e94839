// SPDX-License-Identifier: BSD-3-Clause
#include "gige/GvcpCommand.h"

#include "gige/BigEndian.h"

namespace gige {

namespace {

constexpr std::uint8_t key = 0x42;

} // namespace

std::vector<std::uint8_t> gvcpPacket(GvcpCommand command, std::uint8_t flags, std::uint16_t id,
                                     const std::vector<std::uint8_t>& body) {
    std::vector<std::uint8_t> packet{key, flags};
    appendBigEndian(packet, static_cast<std::uint16_t>(command), 2);
    appendBigEndian(packet, body.size(), 2);
    appendBigEndian(packet, id, 2);
    packet.insert(packet.end(), body.begin(), body.end());
    return packet;
}

std::vector<std::uint8_t> resendCommand(std::uint64_t block, bool hasExtendedIds,
                                        std::uint32_t first, std::uint32_t last, std::uint16_t id) {
    std::vector<std::uint8_t> body;
    appendBigEndian(body, 0, 2); // stream channel
    appendBigEndian(body, hasExtendedIds ? 0 : block, 2);
    appendBigEndian(body, first, 4);
    appendBigEndian(body, last, 4);
    if (hasExtendedIds)
        appendBigEndian(body, block, 8);
    return gvcpPacket(GvcpCommand::PacketResend, hasExtendedIds ? extendedIds : std::uint8_t{0}, id,
                      body);
}

} // namespace gige
