// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/GvcpAnswer.h"

#include "OrvCPP/OrvTypes.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// UDP port on which a GigE Vision camera is controlled.
constexpr std::uint16_t controlPort = 3956;
/// Bootstrap registers of every GigE Vision camera.
constexpr std::uint32_t userNameRegister = 0xE8;
constexpr std::uint32_t userNameSize = 16;
/// Where the camera's description is: the first place and the second.
constexpr std::uint32_t descriptionUrlRegisters[] = {0x200, 0x400};
constexpr std::uint32_t descriptionUrlSize = 512;
constexpr std::uint32_t privilegeRegister = 0xA00;
/// UDP port of the program that controls the camera; optional.
constexpr std::uint32_t controllerPortRegister = 0xA04;

/// Access to a camera that no program controls.
constexpr auto allModes = static_cast<OrvAccessModeType>(OrvAccessModeFull | OrvAccessModeRead);

/// Reads registers of a GigE Vision camera without controlling it. Each request uses its own
/// socket. Reentrant.
class Gvcp {
public:
    using Answer = GvcpAnswer;

    /// \p address in host byte order. A request is sent up to \p tries times, waits \p wait each
    /// time, and up to \p pending more when the camera asks for it; a camera may ask for a minute.
    Gvcp(std::uint32_t address, std::chrono::milliseconds wait, int tries,
         std::chrono::milliseconds pending = std::chrono::milliseconds(1000))
        : m_address(address), m_wait(wait), m_tries(tries), m_pending(pending) {}

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
    std::optional<Answer> ask(std::uint16_t command, const std::vector<std::uint8_t>& body) const;

    const std::uint32_t m_address;
    const std::chrono::milliseconds m_wait;
    const int m_tries;
    const std::chrono::milliseconds m_pending;
};

/// The command PACKETRESEND, which requests the packets \p first to \p last of a block again; \p id
/// is not 0. The camera sends no acknowledge.
std::vector<std::uint8_t> resendCommand(std::uint64_t block, bool hasExtendedIds,
                                        std::uint32_t first, std::uint32_t last, std::uint16_t id);

/// The access that a camera grants by this answer about its privilege register.
OrvAccessModeType grantedBy(const Gvcp::Answer& privilege);

} // namespace orv::aravis
