// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// Bootstrap registers of every GigE Vision camera.
constexpr std::uint32_t userNameRegister = 0xE8;
constexpr std::uint32_t userNameSize = 16;
constexpr std::uint32_t privilegeRegister = 0xA00;
/// UDP port of the program that controls the camera; not every camera tells it.
constexpr std::uint32_t controllerPortRegister = 0xA04;

/// What a camera grants that nobody has.
constexpr auto allModes = static_cast<OrvAccessModeType>(OrvAccessModeFull | OrvAccessModeRead);

/// Asks a GigE Vision camera that need not be open, past the one who controls it. Every question
/// comes from a socket of its own. Reentrant.
class Gvcp {
public:
    /// \p address in host byte order. A question is asked up to \p tries times, \p wait each,
    /// and a second longer where the camera asks for more time.
    Gvcp(std::uint32_t address, std::chrono::milliseconds wait, int tries)
        : m_address(address), m_wait(wait), m_tries(tries) {}

    struct Answer {
        /// GigE Vision's status, 0 for success.
        std::uint16_t status = 0;
        std::vector<std::uint8_t> data;
    };

    /// Nothing when the camera does not answer; a status when it does not get done in time.
    std::optional<Answer> readRegister(std::uint32_t address) const;
    /// \p size is a multiple of 4, at most 512.
    std::optional<Answer> readMemory(std::uint32_t address, std::uint16_t size) const;

    /// A register's value in an answer; nothing when the camera refused.
    static std::optional<std::uint32_t> value(const Answer& answer);
    /// A text in an answer, up to its end.
    static std::string text(const Answer& answer);

private:
    std::optional<Answer> ask(std::uint16_t command, const std::vector<std::uint8_t>& body) const;

    const std::uint32_t m_address;
    const std::chrono::milliseconds m_wait;
    const int m_tries;
};

/// What a camera grants that has answered thus when it was asked for its privilege register.
OrvAccessModeType grantedBy(const Gvcp::Answer& privilege);

} // namespace orv::aravis
