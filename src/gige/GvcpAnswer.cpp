// SPDX-License-Identifier: BSD-3-Clause
#include "gige/GvcpAnswer.h"

#include "gige/BigEndian.h"

namespace gige {

namespace {

/// Instead of an answer: the camera needs the given number of milliseconds more.
constexpr std::uint16_t pendingAcknowledge = 0x89;
/// Offset of the milliseconds, after two reserved bytes.
constexpr std::size_t pendingTimeOffset = gvcpHeaderSize + 2;

} // namespace

GvcpReply parseReply(const std::uint8_t* bytes, std::size_t size, const GvcpRequestId& request) {
    GvcpReply reply;
    if (size < gvcpHeaderSize || bigEndian16(bytes + 6) != request.id)
        return reply;
    const std::uint16_t kind = bigEndian16(bytes + 2);
    if (kind == static_cast<std::uint16_t>(request.command) + 1)
        reply.answer = GvcpAnswer{bigEndian16(bytes), {bytes + gvcpHeaderSize, bytes + size}};
    else if (kind == pendingAcknowledge && size >= pendingTimeOffset + sizeof(std::uint16_t))
        reply.pending = std::chrono::milliseconds(bigEndian16(bytes + pendingTimeOffset));
    return reply;
}

} // namespace gige
