// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/ControlChannel.h"

#include "fake-camera/Protocol.h"
#include "fake-camera/WriteRules.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <thread>

namespace fakecamera {

using namespace protocol;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t discoverySize = 0xf8;
constexpr auto pollTime = 20ms;
/// How long the feature SlowCommand takes.
constexpr auto slowCommandTime = 200ms;

/// The data that acknowledges a write: how many words, or bytes, were written.
void putWritten(std::vector<std::uint8_t>& data, std::size_t count) {
    data.resize(4);
    put16(data.data() + 2, static_cast<std::uint16_t>(count));
}

} // namespace

ControlChannel::ControlChannel(CameraRegisters& registers, StreamChannel& stream,
                               const CameraAddress& ownAddress, UserSets& sets)
    : m_registers(registers), m_stream(stream), m_ownAddress(ownAddress), m_userSets(sets),
      m_address(registers.read(CurrentAddress)), m_mask(registers.read(CurrentMask)) {
    // All cameras of this computer receive broadcasts.
    if (!m_socket.bindTo(m_address, controlPort) || !m_socket.set(SOL_SOCKET, SO_BROADCAST, 1) ||
        !m_broadcasts.set(SOL_SOCKET, SO_REUSEADDR, 1) ||
        !m_broadcasts.bindTo(INADDR_BROADCAST, controlPort))
        throw std::system_error(errno, std::generic_category(), "control port");
}

bool ControlChannel::run(int end) {
    std::array<pollfd, 3> sockets{pollfd{m_socket.handle(), POLLIN, 0},
                                  pollfd{m_broadcasts.handle(), POLLIN, 0}, pollfd{end, POLLIN, 0}};
    while ((sockets[2].revents & POLLIN) == 0 && !m_isMoved) {
        poll(sockets.data(), sockets.size(), static_cast<int>(pollTime.count()));
        if ((sockets[0].revents & POLLIN) != 0)
            receive(m_socket);
        if ((sockets[1].revents & POLLIN) != 0)
            receive(m_broadcasts);
        endSlowCommand();
        dropSilentController();
    }
    return m_isMoved;
}

void ControlChannel::receive(const platform::UdpSocket& socket) {
    std::array<std::uint8_t, 2048> packet;
    Request request{};
    socklen_t senderSize = sizeof request.sender;
    const ssize_t received = recvfrom(socket.handle(), packet.data(), packet.size(), MSG_DONTWAIT,
                                      reinterpret_cast<sockaddr*>(&request.sender), &senderSize);
    if (received < static_cast<ssize_t>(controlHeaderSize) || packet[0] != commandKey)
        return;
    request.flags = packet[1];
    request.command = get16(&packet[2]);
    request.id = get16(&packet[6]);
    request.data = &packet[controlHeaderSize];
    request.size = static_cast<std::size_t>(received) - controlHeaderSize;
    request.isWhole = request.size == get16(&packet[4]) && request.size <= largestControlPayload;
    const bool isForAll = request.command == Discovery || request.command == ForceIp;
    if (&socket == &m_broadcasts && !isForAll)
        return;
    if (request.command == ForceIp && request.isWhole && request.size == forceIpSize &&
        !hasMac(request.data + forcedMacAt))
        return;
    if (isController(request.sender))
        m_heardOfController = Clock::now();
    if (!isForAll && stall(request))
        return;
    Bytes data;
    const std::uint16_t status = handle(request, data);
    if ((request.flags & flagAcknowledge) != 0 && request.command != PacketResend)
        answer(request, status, data);
}

bool ControlChannel::stall(const Request& request) {
    const std::uint32_t delay = m_registers.read(AnswerDelayMilliseconds);
    if (delay > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    const std::uint32_t pending = m_registers.read(PendingMilliseconds);
    const std::uint32_t answered = m_registers.read(PendingAfterCommands);
    if (pending != 0 && answered > 0)
        m_registers.write(PendingAfterCommands, answered - 1);
    if (pending == 0 || answered > 0)
        return false;
    Bytes data(4);
    put16(&data[2], static_cast<std::uint16_t>(pending));
    send(request, Success, PendingAcknowledge, data);
    return true;
}

void ControlChannel::answer(const Request& request, std::uint16_t status, const Bytes& data) {
    send(request, status, static_cast<std::uint16_t>(request.command + 1), data);
}

void ControlChannel::send(const Request& request, std::uint16_t status, std::uint16_t kind,
                          const Bytes& data) {
    Bytes packet(controlHeaderSize);
    put16(&packet[0], status);
    put16(&packet[2], kind);
    put16(&packet[4], static_cast<std::uint16_t>(data.size()));
    put16(&packet[6], request.id);
    packet.insert(packet.end(), data.begin(), data.end());
    sockaddr_in receiver = request.sender;
    if (needsBroadcast(request))
        receiver.sin_addr.s_addr = htonl(INADDR_BROADCAST);
    sendto(m_socket.handle(), packet.data(), packet.size(), 0,
           reinterpret_cast<const sockaddr*>(&receiver), sizeof receiver);
}

bool ControlChannel::needsBroadcast(const Request& request) const {
    const bool isAllowed = (request.command == Discovery || request.command == ForceIp) &&
                           (request.flags & flagBroadcastAnswer) != 0;
    return isAllowed && ((ntohl(request.sender.sin_addr.s_addr) ^ m_address) & m_mask) != 0;
}

std::uint16_t ControlChannel::handle(const Request& request, Bytes& data) {
    if (!request.isWhole)
        return InvalidHeader;
    switch (request.command) {
    case Discovery:
        return discover(data);
    case ForceIp:
        return forceIp(request);
    case ReadRegister:
        return readRegisters(request, data);
    case WriteRegister:
        return writeRegisters(request, data);
    case ReadMemory:
        return readMemory(request, data);
    case WriteMemory:
        return writeMemory(request, data);
    case PacketResend:
        resend(request);
        return Success;
    default:
        return NotImplemented;
    }
}

std::uint16_t ControlChannel::discover(Bytes& data) {
    data.resize(discoverySize);
    m_registers.readMemory(0, discoverySize, data.data());
    return Success;
}

bool ControlChannel::hasMac(const std::uint8_t* mac) const {
    return get16(mac) == m_registers.read(MacHigh) && get32(mac + 2) == m_registers.read(MacLow);
}

std::uint16_t ControlChannel::forceIp(const Request& request) {
    if (request.size != forceIpSize)
        return InvalidHeader;
    if (m_registers.read(ControlPrivilege) != 0)
        return AccessDenied;
    const std::uint32_t address = get32(request.data + forcedAddressAt);
    const std::uint32_t mask = get32(request.data + forcedMaskAt);
    if (!m_ownAddress.canTake(address, mask))
        return LocalProblem;
    m_registers.write(CurrentAddress, address);
    m_registers.write(CurrentMask, mask);
    m_registers.write(CurrentGateway, get32(request.data + forcedGatewayAt));
    m_isMoved = true;
    return Success;
}

std::uint16_t ControlChannel::readRegisters(const Request& request, Bytes& data) {
    if (request.size == 0 || request.size % 4 != 0)
        return InvalidParameter;
    Bytes values;
    for (std::size_t i = 0; i < request.size; i += 4)
        if (const auto status = read(request, get32(request.data + i), 4, values))
            return status;
    data = values;
    return Success;
}

std::uint16_t ControlChannel::writeRegisters(const Request& request, Bytes& data) {
    if (request.size == 0 || request.size % 8 != 0)
        return InvalidParameter;
    for (std::size_t i = 0; i < request.size / 8; ++i) {
        putWritten(data, i);
        const std::uint8_t* const entry = request.data + 8 * i;
        if (const auto status = write(request, get32(entry), 4, entry + 4))
            return status;
    }
    putWritten(data, request.size / 8);
    return Success;
}

std::uint16_t ControlChannel::readMemory(const Request& request, Bytes& data) {
    const std::uint32_t size = request.size == 8 ? get16(request.data + 6) : 0;
    if (size == 0 || size > largestMemoryAccess)
        return InvalidParameter;
    Bytes values(request.data, request.data + 4);
    const auto status = read(request, get32(request.data), size, values);
    if (status == Success)
        data = values;
    return status;
}

std::uint16_t ControlChannel::writeMemory(const Request& request, Bytes& data) {
    if (request.size < 8 || request.size % 4 != 0)
        return InvalidParameter;
    putWritten(data, 0);
    const std::size_t size = request.size - 4;
    const auto status = write(request, get32(request.data), size, request.data + 4);
    putWritten(data, status == Success ? size : 0);
    return status;
}

std::uint16_t ControlChannel::read(const Request& request, std::uint32_t address,
                                   std::uint32_t size, Bytes& data) const {
    if (address % 4 != 0 || size % 4 != 0)
        return BadAlignment;
    const bool isExclusive = (m_registers.read(ControlPrivilege) & exclusiveAccess) != 0;
    if (isExclusive && !isController(request.sender) && address != ControlPrivilege)
        return AccessDenied;
    data.resize(data.size() + size);
    return m_registers.readMemory(address, size, &data[data.size() - size]) ? Success
                                                                            : InvalidAddress;
}

std::uint16_t ControlChannel::write(const Request& request, std::uint32_t address, std::size_t size,
                                    const std::uint8_t* data) {
    if (!mayWrite(request, address))
        return AccessDenied;
    for (std::uint32_t i = 0; i < size; i += 4)
        if (const auto status = checkWrite(m_registers, address + i, get32(data + i)))
            return status;
    m_registers.writeMemory(address, static_cast<std::uint32_t>(size), data);
    for (std::uint32_t i = 0; i < size; i += 4)
        afterWrite(request, address + i, get32(data + i));
    m_stream.update();
    return Success;
}

void ControlChannel::resend(const Request& request) {
    const bool extended = (request.flags & flagExtendedIds) != 0;
    // Hosts may ask from the port that receives the stream.
    const bool fromController = m_registers.read(ControlPrivilege) != 0 &&
                                request.sender.sin_addr.s_addr == m_controller.sin_addr.s_addr;
    const bool can = (m_registers.read(Capabilities) & canResend) != 0;
    if (request.size < (extended ? 20u : 12u) || !fromController || !can)
        return;
    const std::uint64_t frameId = extended ? get64(request.data + 12) : get16(request.data + 2);
    const std::uint32_t packetMask = extended ? 0xffffffff : 0xffffff;
    m_stream.resend(frameId, get32(request.data + 4) & packetMask,
                    get32(request.data + 8) & packetMask);
}

bool ControlChannel::isController(const sockaddr_in& sender) const {
    return m_registers.read(ControlPrivilege) != 0 &&
           sender.sin_addr.s_addr == m_controller.sin_addr.s_addr &&
           sender.sin_port == m_controller.sin_port;
}

bool ControlChannel::mayWrite(const Request& request, std::uint32_t address) const {
    const bool isFree = m_registers.read(ControlPrivilege) == 0;
    return isController(request.sender) || (isFree && address == ControlPrivilege);
}

void ControlChannel::afterWrite(const Request& request, std::uint32_t address,
                                std::uint32_t value) {
    if (address == ControlPrivilege && (value & (exclusiveAccess | controlAccess)) == 0) {
        releaseControl();
    } else if (address == ControlPrivilege) {
        m_controller = request.sender;
        m_registers.write(ControllerPort, ntohs(m_controller.sin_port));
        m_registers.write(ControllerAddress, ntohl(m_controller.sin_addr.s_addr));
        m_heardOfController = Clock::now();
    } else if (address == AddressOption) {
        m_registers.write(address, value | linkLocalIp);
        m_ownAddress.remember();
    } else if (address == PersistentAddress || address == PersistentMask ||
               address == PersistentGateway) {
        m_ownAddress.remember();
    } else if (address == UserSetCommand) {
        m_userSets.obey(value);
    } else if (address == UserSetDefault) {
        m_userSets.remember();
    } else if (address == SlowCommand) {
        m_slowCommandEnd = Clock::now() + slowCommandTime;
    } else if (address == StreamPacketSize && (value & fireTestPacket) != 0) {
        m_registers.write(address, value & ~fireTestPacket);
        m_stream.sendTestPacket((value & doNotFragment) == 0);
    }
}

void ControlChannel::endSlowCommand() {
    if (m_registers.read(SlowCommand) != 0 && Clock::now() >= m_slowCommandEnd)
        m_registers.write(SlowCommand, 0);
}

void ControlChannel::dropSilentController() {
    const auto patience = std::chrono::milliseconds(m_registers.read(HeartbeatMilliseconds));
    if (m_registers.read(ControlPrivilege) != 0 && Clock::now() - m_heardOfController > patience) {
        releaseControl();
        m_stream.update();
    }
}

void ControlChannel::releaseControl() {
    m_registers.write(ControlPrivilege, 0);
    m_registers.write(ControllerPort, 0);
    m_registers.write(ControllerAddress, 0);
    m_registers.write(Acquisition, 0);
    m_registers.write(StreamPort, 0);
}

} // namespace fakecamera
