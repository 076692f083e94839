// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/StreamChannel.h"
#include "tests/fakecamera/UdpSocket.h"

#include <netinet/in.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace fakecamera {

/// Answers a camera's control packets: discovery, reading and writing registers, packets to be sent
/// again. One host at a time controls the camera, and loses control when it is not heard of for the
/// heartbeat's time. Used from one thread.
class ControlChannel {
public:
    /// Listens on the address and for discovery that is broadcast. Throws std::system_error where
    /// the address is not this computer's or is in use.
    ControlChannel(CameraRegisters& registers, StreamChannel& stream, std::uint32_t address);

    /// Answers until the program ends.
    [[noreturn]] void run();

private:
    using Clock = std::chrono::steady_clock;
    struct Request {
        sockaddr_in sender;
        std::uint8_t flags;
        std::uint16_t command;
        std::uint16_t id;
        const std::uint8_t* data;
        std::size_t size;
        /// As long as it says, and not longer than one may be.
        bool isWhole;
    };
    using Bytes = std::vector<std::uint8_t>;

    void receive(UdpSocket& socket);
    void answer(const Request& request, std::uint16_t status, const Bytes& data);
    /// Carries a request out, answers its status and fills what goes back to the sender.
    std::uint16_t handle(const Request& request, Bytes& data);
    std::uint16_t discover(Bytes& data);
    std::uint16_t readRegisters(const Request& request, Bytes& data);
    std::uint16_t writeRegisters(const Request& request, Bytes& data);
    std::uint16_t readMemory(const Request& request, Bytes& data);
    std::uint16_t writeMemory(const Request& request, Bytes& data);
    void resend(const Request& request);
    /// Appends what a host may read to the data.
    std::uint16_t read(const Request& request, std::uint32_t address, std::uint32_t size,
                       Bytes& data) const;
    /// Writes all of the data or nothing.
    std::uint16_t write(const Request& request, std::uint32_t address, std::size_t size,
                        const std::uint8_t* data);

    bool isController(const sockaddr_in& sender) const;
    bool mayWrite(const Request& request, std::uint32_t address) const;
    /// What a camera does beside remembering the value of a register.
    void afterWrite(const Request& request, std::uint32_t address, std::uint32_t value);
    void releaseControl();
    void endSlowCommand();
    void dropSilentController();

    CameraRegisters& m_registers;
    StreamChannel& m_stream;
    UdpSocket m_socket;
    UdpSocket m_broadcasts;
    sockaddr_in m_controller{};
    Clock::time_point m_heardOfController;
    Clock::time_point m_slowCommandEnd;
};

} // namespace fakecamera
