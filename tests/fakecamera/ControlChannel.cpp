// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/ControlChannel.h"

#include "tests/fakecamera/Protocol.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>

namespace fakecamera {

using namespace protocol;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t discoverySize = 0xf8;
constexpr std::size_t largestMemoryAccess = 536;
constexpr auto pollTime = 20ms;
/// How long the feature SlowCommand takes.
constexpr auto slowCommandTime = 200ms;
constexpr std::uint32_t fireTestPacket = 0x80000000;
constexpr std::uint32_t doNotFragment = 0x40000000;

/// What acknowledges a write: how many were written.
void putWritten(std::vector<std::uint8_t>& data, std::size_t count) {
    data.resize(4);
    put16(data.data() + 2, static_cast<std::uint16_t>(count));
}

} // namespace

ControlChannel::ControlChannel(CameraRegisters& registers, StreamChannel& stream,
                               std::uint32_t address)
    : m_registers(registers), m_stream(stream) {
    m_socket.bind(socketAddress(address, controlPort));
    // Every camera of this computer hears a broadcast.
    m_broadcasts.set(SOL_SOCKET, SO_REUSEADDR, 1);
    m_broadcasts.bind(socketAddress(INADDR_BROADCAST, controlPort));
}

void ControlChannel::run() {
    std::array<pollfd, 2> sockets{pollfd{m_socket.descriptor(), POLLIN, 0},
                                  pollfd{m_broadcasts.descriptor(), POLLIN, 0}};
    while (true) {
        poll(sockets.data(), sockets.size(), static_cast<int>(pollTime.count()));
        if ((sockets[0].revents & POLLIN) != 0) {
            receive(m_socket);
        }
        if ((sockets[1].revents & POLLIN) != 0) {
            receive(m_broadcasts);
        }
        endSlowCommand();
        dropSilentController();
    }
}

void ControlChannel::receive(UdpSocket& socket) {
    std::array<std::uint8_t, 2048> packet;
    Request request{};
    socklen_t senderSize = sizeof request.sender;
    const ssize_t received =
        recvfrom(socket.descriptor(), packet.data(), packet.size(), MSG_DONTWAIT,
                 reinterpret_cast<sockaddr*>(&request.sender), &senderSize);
    if (received < static_cast<ssize_t>(controlHeaderSize) || packet[0] != commandKey) {
        return;
    }
    request.flags = packet[1];
    request.command = get16(&packet[2]);
    request.id = get16(&packet[6]);
    request.data = &packet[controlHeaderSize];
    request.size = std::min<std::size_t>(get16(&packet[4]),
                                         static_cast<std::size_t>(received) - controlHeaderSize);
    if (isController(request.sender)) {
        m_heardOfController = Clock::now();
    }
    Bytes data;
    const std::uint16_t status = handle(request, data);
    if ((request.flags & flagAcknowledge) != 0) {
        answer(request, status, status == Success ? data : Bytes());
    }
}

void ControlChannel::answer(const Request& request, std::uint16_t status, const Bytes& data) {
    Bytes packet(controlHeaderSize);
    put16(&packet[0], status);
    put16(&packet[2], static_cast<std::uint16_t>(request.command + 1));
    put16(&packet[4], static_cast<std::uint16_t>(data.size()));
    put16(&packet[6], request.id);
    packet.insert(packet.end(), data.begin(), data.end());
    sendto(m_socket.descriptor(), packet.data(), packet.size(), 0,
           reinterpret_cast<const sockaddr*>(&request.sender), sizeof request.sender);
}

std::uint16_t ControlChannel::handle(const Request& request, Bytes& data) {
    switch (request.command) {
    case Discovery:
        return discover(data);
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

std::uint16_t ControlChannel::readRegisters(const Request& request, Bytes& data) {
    data.resize(request.size / 4 * 4);
    for (std::size_t i = 0; i < data.size(); i += 4) {
        if (!m_registers.readMemory(get32(request.data + i), 4, &data[i])) {
            return InvalidAddress;
        }
    }
    return Success;
}

std::uint16_t ControlChannel::writeRegisters(const Request& request, Bytes& data) {
    const std::size_t count = request.size / 8;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t address = get32(request.data + 8 * i);
        if (!mayWrite(request, address)) {
            return AccessDenied;
        }
        if (!m_registers.writeMemory(address, 4, request.data + 8 * i + 4)) {
            return InvalidAddress;
        }
        afterWrite(request, address, get32(request.data + 8 * i + 4));
    }
    putWritten(data, count);
    return Success;
}

std::uint16_t ControlChannel::readMemory(const Request& request, Bytes& data) {
    if (request.size < 8) {
        return InvalidParameter;
    }
    const std::uint32_t size = get16(request.data + 6);
    if (size > largestMemoryAccess) {
        return InvalidParameter;
    }
    data.assign(request.data, request.data + 4);
    data.resize(4 + size);
    return m_registers.readMemory(get32(request.data), size, data.data() + 4) ? Success
                                                                              : InvalidAddress;
}

std::uint16_t ControlChannel::writeMemory(const Request& request, Bytes& data) {
    if (request.size < 8) {
        return InvalidParameter;
    }
    const std::uint32_t address = get32(request.data);
    const std::size_t size = request.size - 4;
    if (!mayWrite(request, address)) {
        return AccessDenied;
    }
    if (!m_registers.writeMemory(address, static_cast<std::uint32_t>(size), request.data + 4)) {
        return InvalidAddress;
    }
    afterWrite(request, address, get32(request.data + 4));
    putWritten(data, size);
    return Success;
}

void ControlChannel::resend(const Request& request) {
    const bool extended = (request.flags & flagExtendedIds) != 0;
    // Hosts may ask from the port that receives the stream.
    const bool fromController = request.sender.sin_addr.s_addr == m_controller.sin_addr.s_addr;
    if (request.size < (extended ? 20u : 12u) || !fromController) {
        return;
    }
    const std::uint64_t frameId = extended ? get64(request.data + 12) : get16(request.data + 2);
    constexpr std::uint32_t packetMask = 0xffffff;
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
    if (address == ControlPrivilege && value == 0) {
        releaseControl();
    } else if (address == ControlPrivilege) {
        m_controller = request.sender;
        m_heardOfController = Clock::now();
    } else if (address == SlowCommand) {
        m_slowCommandEnd = Clock::now() + slowCommandTime;
    } else if (address == StreamPacketSize && (value & fireTestPacket) != 0) {
        m_registers.write(address, value & ~fireTestPacket);
        m_stream.sendTestPacket((value & doNotFragment) == 0);
    }
    m_stream.update();
}

void ControlChannel::endSlowCommand() {
    if (m_registers.read(SlowCommand) != 0 && Clock::now() >= m_slowCommandEnd) {
        m_registers.write(SlowCommand, 0);
    }
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
    m_registers.write(Acquisition, 0);
    m_registers.write(StreamPort, 0);
}

} // namespace fakecamera
