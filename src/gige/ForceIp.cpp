// SPDX-License-Identifier: BSD-3-Clause
#include "gige/ForceIp.h"

#include "gige/BigEndian.h"
#include "gige/BroadcastSocket.h"
#include "gige/GvcpAnswer.h"

#include <chrono>

namespace gige {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds answerWait{500};
constexpr std::uint16_t forceTries = 2;
constexpr std::uint8_t forceFlags = acknowledgeRequired | broadcastAcknowledge;
/// Reserved bytes in front of the MAC address and of each IPv4 address.
constexpr int beforeMac = 2;
constexpr int beforeAddress = 12;

std::optional<std::uint16_t> receive(const BroadcastSocket& socket, const GvcpRequestId& request) {
    const auto end = Clock::now() + answerWait;
    for (auto now = Clock::now(); now < end; now = Clock::now()) {
        socket.wait(std::chrono::ceil<milliseconds>(end - now));
        while (const auto packet = socket.receive()) {
            const GvcpReply reply = parseReply(packet->data(), packet->size(), request);
            if (reply.answer)
                return reply.answer->status;
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<std::uint8_t> forceIpData(std::uint64_t macAddress, const IpSettings& settings) {
    std::vector<std::uint8_t> data;
    appendBigEndian(data, 0, beforeMac);
    appendBigEndian(data, macAddress, 6);
    for (const std::uint32_t each : {settings.address, settings.mask, settings.gateway}) {
        data.insert(data.end(), beforeAddress, 0);
        appendBigEndian(data, each, 4);
    }
    return data;
}

std::optional<std::uint16_t> forceIp(const platform::NetworkAdapter& adapter,
                                     std::uint64_t macAddress, const IpSettings& settings) {
    const BroadcastSocket socket(adapter, Reach::AllSubnets);
    const auto data = forceIpData(macAddress, settings);
    for (std::uint16_t id = 1; id <= forceTries; ++id) {
        socket.send(gvcpPacket(GvcpCommand::ForceIp, forceFlags, id, data));
        if (const auto status = receive(socket, {GvcpCommand::ForceIp, id}))
            return status;
    }
    return std::nullopt;
}

} // namespace gige
