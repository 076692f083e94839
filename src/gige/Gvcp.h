// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/GvcpAnswer.h"
#include "platform/UdpSocket.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gige {

/// How long a request to a camera takes at most: it is sent up to \p tries times, waits \p wait
/// each time, and up to \p pending more when the camera asks for it; a camera may ask for a minute.
struct GvcpPatience {
    std::chrono::milliseconds wait;
    int tries;
    std::chrono::milliseconds pending = std::chrono::milliseconds(1000);
};

/// Sends requests to one camera from one port: a camera knows the program that controls it by that.
/// Bound to one thread.
class GvcpConnection {
public:
    /// \p address in host byte order.
    GvcpConnection(std::uint32_t address, GvcpPatience patience);

    /// Empty when the camera does not answer; the status "busy" when it takes too long.
    std::optional<GvcpAnswer> ask(GvcpCommand command, const std::vector<std::uint8_t>& body);
    std::optional<GvcpAnswer> readRegister(std::uint32_t address);
    std::optional<GvcpAnswer> writeRegister(std::uint32_t address, std::uint32_t value);

private:
    const GvcpPatience m_patience;
    const platform::UdpSocket m_socket;
    const bool m_isConnected;
    std::uint16_t m_lastId = 0;
};

/// Reads registers of a GigE Vision camera without controlling it. Each request uses its own
/// socket. Reentrant.
class Gvcp {
public:
    using Answer = GvcpAnswer;

    /// \p address in host byte order.
    Gvcp(std::uint32_t address, std::chrono::milliseconds wait, int tries,
         std::chrono::milliseconds pending = std::chrono::milliseconds(1000))
        : m_address(address), m_patience{wait, tries, pending} {}

    /// Empty when the camera does not answer; the status "busy" when it takes too long.
    std::optional<Answer> readRegister(std::uint32_t address) const;
    /// \p size is a multiple of 4, at most 512.
    std::optional<Answer> readMemory(std::uint32_t address, std::uint16_t size) const;

    /// A register's value in an answer; nothing when the camera refused.
    static std::optional<std::uint32_t> value(const Answer& answer);
    /// A text in an answer, up to its end.
    static std::string text(const Answer& answer);
    /// The camera is there, but has not done what it was asked.
    static bool isBusy(const Answer& answer);

private:
    const std::uint32_t m_address;
    const GvcpPatience m_patience;
};

/// What other programs leave of the access to a camera. Unknown: the camera does not tell; opening
/// it decides.
enum class ControlState { Free, Controlled, Exclusive, Unknown };

/// The state that a camera tells by this answer about its privilege register.
ControlState controlState(const Gvcp::Answer& privilege);

} // namespace gige
