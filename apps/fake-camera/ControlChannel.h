// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fake-camera/CameraAddress.h"
#include "fake-camera/CameraRegisters.h"
#include "fake-camera/StreamChannel.h"
#include "fake-camera/UserSets.h"
#include "platform/UdpSocket.h"

#include <netinet/in.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace fakecamera {

/// Answers a camera's control packets: discovery, reads and writes of registers, requests to resend
/// packets. One host at a time controls the camera; it loses control when it sends nothing for the
/// time of the heartbeat. Bound to one thread.
class ControlChannel {
public:
    /// Listens at the camera's current address and for broadcasts. Throws std::system_error when
    /// the address is not one of this computer, or port 3956 is in use.
    ControlChannel(CameraRegisters& registers, StreamChannel& stream,
                   const CameraAddress& ownAddress, UserSets& sets);

    /// Answers until the descriptor \p end is readable. True when it ended before, since a host has
    /// given the camera another address, which the registers have.
    bool run(int end);

private:
    using Clock = std::chrono::steady_clock;
    struct Request {
        sockaddr_in sender;
        std::uint8_t flags;
        std::uint16_t command;
        std::uint16_t id;
        const std::uint8_t* data;
        std::size_t size;
        /// Whether the length in the header is right, and not above the protocol's maximum.
        bool isWhole;
    };
    using Bytes = std::vector<std::uint8_t>;

    void receive(const platform::UdpSocket& socket);
    /// Waits for the delay that is set; true when the request gets a pending acknowledgement only.
    bool stall(const Request& request);
    void send(const Request& request, std::uint16_t status, std::uint16_t kind, const Bytes& data);
    void answer(const Request& request, std::uint16_t status, const Bytes& data);
    /// Executes a request and returns its status; \p data gets the data of the acknowledgement.
    std::uint16_t handle(const Request& request, Bytes& data);
    std::uint16_t discover(Bytes& data);
    bool hasMac(const std::uint8_t* mac) const;
    std::uint16_t forceIp(const Request& request);
    /// Whether the host may get the answer by broadcast and has no other way to it.
    bool needsBroadcast(const Request& request) const;
    std::uint16_t readRegisters(const Request& request, Bytes& data);
    std::uint16_t writeRegisters(const Request& request, Bytes& data);
    std::uint16_t readMemory(const Request& request, Bytes& data);
    std::uint16_t writeMemory(const Request& request, Bytes& data);
    void resend(const Request& request);
    /// Appends memory to \p data if this host may read it.
    std::uint16_t read(const Request& request, std::uint32_t address, std::uint32_t size,
                       Bytes& data) const;
    /// Writes all of the data or nothing.
    std::uint16_t write(const Request& request, std::uint32_t address, std::size_t size,
                        const std::uint8_t* data);

    bool isController(const sockaddr_in& sender) const;
    bool mayWrite(const Request& request, std::uint32_t address) const;
    /// Side effects of a write.
    void afterWrite(const Request& request, std::uint32_t address, std::uint32_t value);
    void releaseControl();
    void endSlowCommand();
    void dropSilentController();

    CameraRegisters& m_registers;
    StreamChannel& m_stream;
    const CameraAddress& m_ownAddress;
    UserSets& m_userSets;
    /// The settings with which it listens.
    const std::uint32_t m_address;
    const std::uint32_t m_mask;
    bool m_isMoved = false;
    const platform::UdpSocket m_socket;
    const platform::UdpSocket m_broadcasts;
    sockaddr_in m_controller{};
    Clock::time_point m_heardOfController;
    Clock::time_point m_slowCommandEnd;
};

} // namespace fakecamera
