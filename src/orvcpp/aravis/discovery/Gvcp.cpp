// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/Gvcp.h"

#include "orvcpp/aravis/BigEndian.h"
#include "platform/UdpSocket.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <poll.h>
#include <sys/socket.h>

namespace orv::aravis {

namespace {

constexpr std::uint8_t key = 0x42;
constexpr std::uint8_t acknowledgeRequired = 1;
/// Flag of a resend command with a 64-bit block ID.
constexpr std::uint8_t extendedIds = 0x10;
constexpr std::uint16_t packetResendCommand = 0x40;
constexpr std::uint16_t readRegisterCommand = 0x80;
constexpr std::uint16_t readMemoryCommand = 0x84;
/// The address that a camera repeats in front of memory that was read.
constexpr std::size_t memoryAddressSize = 4;
/// Statuses of an answer: somebody else controls the camera, and the camera has no time.
constexpr std::uint16_t accessDenied = 0x8006;
constexpr std::uint16_t busy = 0x8007;
/// Bits of the privilege register.
constexpr std::uint32_t privilegeExclusive = 1;
constexpr std::uint32_t privilegeControl = 2;

void append(std::vector<std::uint8_t>& bytes, std::uint32_t number, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

/// Waits for the acknowledge of one request and skips answers to earlier ones. Answers "busy" when
/// the camera has only sent pending acknowledges until the end.
std::optional<Gvcp::Answer> receive(int handle, const GvcpRequestId& request,
                                    std::chrono::milliseconds wait,
                                    std::chrono::milliseconds pending) {
    using Clock = std::chrono::steady_clock;
    auto end = Clock::now() + wait;
    const auto latest = end + pending;
    std::optional<Gvcp::Answer> noAnswer;
    std::array<std::uint8_t, 1024> packet{};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd waiting{handle, POLLIN, 0};
        if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) <= 0)
            return noAnswer;
        const auto size = recv(handle, packet.data(), packet.size(), 0);
        // Fails when the port is unreachable: there is no camera.
        if (size < 0)
            return std::nullopt;
        GvcpReply reply = parseReply(packet.data(), static_cast<std::size_t>(size), request);
        if (reply.answer)
            return std::move(reply.answer);
        if (reply.pending) {
            end = std::min(Clock::now() + *reply.pending + wait, latest);
            noAnswer = Gvcp::Answer{busy, {}};
        }
    }
}

} // namespace

std::optional<Gvcp::Answer> Gvcp::ask(std::uint16_t command,
                                      const std::vector<std::uint8_t>& body) const {
    const platform::UdpSocket socket;
    if (!socket.connectTo(m_address, controlPort))
        return std::nullopt;
    for (int id = 1; id <= m_tries; ++id) {
        std::vector<std::uint8_t> packet{key, acknowledgeRequired};
        append(packet, command, 2);
        append(packet, static_cast<std::uint32_t>(body.size()), 2);
        append(packet, static_cast<std::uint32_t>(id), 2);
        packet.insert(packet.end(), body.begin(), body.end());
        if (send(socket.handle(), packet.data(), packet.size(), MSG_NOSIGNAL) < 0)
            continue;
        if (auto answer = receive(socket.handle(), {command, static_cast<std::uint16_t>(id)},
                                  m_wait, m_pending))
            return answer;
    }
    return std::nullopt;
}

std::optional<Gvcp::Answer> Gvcp::readRegister(std::uint32_t address) const {
    std::vector<std::uint8_t> body;
    append(body, address, 4);
    return ask(readRegisterCommand, body);
}

std::optional<Gvcp::Answer> Gvcp::readMemory(std::uint32_t address, std::uint16_t size) const {
    std::vector<std::uint8_t> body;
    append(body, address, 4);
    append(body, size, 4);
    auto answer = ask(readMemoryCommand, body);
    if (answer && answer->data.size() >= memoryAddressSize)
        answer->data.erase(answer->data.begin(), answer->data.begin() + memoryAddressSize);
    return answer;
}

std::optional<std::uint32_t> Gvcp::value(const Answer& answer) {
    if (answer.status != 0 || answer.data.size() < 4)
        return std::nullopt;
    return bigEndian32(answer.data.data());
}

std::string Gvcp::text(const Answer& answer) {
    if (answer.status != 0)
        return {};
    return {answer.data.begin(), std::find(answer.data.begin(), answer.data.end(), 0)};
}

std::vector<std::uint8_t> resendCommand(std::uint64_t block, bool hasExtendedIds,
                                        std::uint32_t first, std::uint32_t last, std::uint16_t id) {
    constexpr std::uint32_t size = 12;
    constexpr std::uint32_t extendedSize = 20;
    std::vector<std::uint8_t> packet{key, hasExtendedIds ? extendedIds : std::uint8_t{0}};
    append(packet, packetResendCommand, 2);
    append(packet, hasExtendedIds ? extendedSize : size, 2);
    append(packet, id, 2);
    append(packet, 0, 2); // stream channel
    append(packet, hasExtendedIds ? 0 : static_cast<std::uint32_t>(block), 2);
    append(packet, first, 4);
    append(packet, last, 4);
    if (hasExtendedIds) {
        append(packet, static_cast<std::uint32_t>(block >> 32U), 4);
        append(packet, static_cast<std::uint32_t>(block), 4);
    }
    return packet;
}

bool Gvcp::isBusy(const Answer& answer) {
    return answer.status == busy;
}

OrvAccessModeType grantedBy(const Gvcp::Answer& privilege) {
    const auto value = Gvcp::value(privilege);
    // A camera under exclusive access may refuse. After any other refusal, opening decides.
    if (!value)
        return privilege.status == accessDenied ? OrvAccessModeNone : allModes;
    if ((*value & privilegeExclusive) != 0)
        return OrvAccessModeNone;
    return (*value & privilegeControl) != 0 ? OrvAccessModeRead : allModes;
}

} // namespace orv::aravis
