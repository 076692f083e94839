// SPDX-License-Identifier: BSD-3-Clause
#include "gige/Gvcp.h"

#include "gige/BigEndian.h"
#include "gige/BootstrapRegisters.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/socket.h>

namespace gige {

namespace {

using Clock = std::chrono::steady_clock;

/// The address that a camera repeats in front of memory that was read.
constexpr std::size_t memoryAddressSize = 4;
/// Bits of the privilege register.
constexpr std::uint32_t privilegeExclusive = 1;
constexpr std::uint32_t privilegeControl = 2;

/// Waits for the acknowledge of one request and skips answers to earlier ones. Answers "busy" when
/// the camera has only sent pending acknowledges until the end.
std::optional<GvcpAnswer> receive(int handle, const GvcpRequestId& request,
                                  const GvcpPatience& patience) {
    auto end = Clock::now() + patience.wait;
    const auto latest = end + patience.pending;
    std::optional<GvcpAnswer> noAnswer;
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
            end = std::min(Clock::now() + *reply.pending + patience.wait, latest);
            noAnswer = GvcpAnswer{busy, {}};
        }
    }
}

} // namespace

GvcpConnection::GvcpConnection(std::uint32_t address, GvcpPatience patience)
    : m_patience(patience), m_isConnected(m_socket.connectTo(address, controlPort)) {}

std::optional<GvcpAnswer> GvcpConnection::ask(GvcpCommand command,
                                              const std::vector<std::uint8_t>& body) {
    if (!m_isConnected)
        return std::nullopt;
    for (int i = 0; i < m_patience.tries; ++i) {
        // 0 is no ID.
        m_lastId = static_cast<std::uint16_t>(m_lastId % 0xFFFFU + 1U);
        const auto packet = gvcpPacket(command, acknowledgeRequired, m_lastId, body);
        if (send(m_socket.handle(), packet.data(), packet.size(), MSG_NOSIGNAL) < 0)
            continue;
        if (auto answer = receive(m_socket.handle(), {command, m_lastId}, m_patience))
            return answer;
    }
    return std::nullopt;
}

std::optional<GvcpAnswer> GvcpConnection::readRegister(std::uint32_t address) {
    std::vector<std::uint8_t> body;
    appendBigEndian(body, address, 4);
    return ask(GvcpCommand::ReadRegister, body);
}

std::optional<GvcpAnswer> GvcpConnection::writeRegister(std::uint32_t address,
                                                        std::uint32_t value) {
    std::vector<std::uint8_t> body;
    appendBigEndian(body, address, 4);
    appendBigEndian(body, value, 4);
    return ask(GvcpCommand::WriteRegister, body);
}

std::optional<Gvcp::Answer> Gvcp::readRegister(std::uint32_t address) const {
    return GvcpConnection(m_address, m_patience).readRegister(address);
}

std::optional<Gvcp::Answer> Gvcp::readMemory(std::uint32_t address, std::uint16_t size) const {
    std::vector<std::uint8_t> body;
    appendBigEndian(body, address, 4);
    appendBigEndian(body, size, 4);
    auto answer = GvcpConnection(m_address, m_patience).ask(GvcpCommand::ReadMemory, body);
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

bool Gvcp::isBusy(const Answer& answer) {
    return answer.status == busy;
}

ControlState controlState(const Gvcp::Answer& privilege) {
    const auto value = Gvcp::value(privilege);
    // A camera under exclusive access may refuse.
    if (!value)
        return privilege.status == accessDenied ? ControlState::Exclusive : ControlState::Unknown;
    if ((*value & privilegeExclusive) != 0)
        return ControlState::Exclusive;
    return (*value & privilegeControl) != 0 ? ControlState::Controlled : ControlState::Free;
}

} // namespace gige
