// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// Reads the settings of a network adapter from its driver (ethtool of Linux): its link, its
/// receive ring, its interrupts. Changes nothing; needs no rights. All functions are reentrant.
namespace platform {

/// Passes one command (a structure of linux/ethtool.h, which begins with its number) to the driver
/// of \p adapter, which answers in the same structure. False when the driver refuses or does not
/// know the command.
using EthtoolCall = std::function<bool(const std::string& adapter, void* command)>;

/// Asks the operating system.
bool askDriver(const std::string& adapter, void* command);

enum class Duplex { Unknown, Half, Full };

/// The link of an adapter. Speeds are in bits per second.
struct LinkSettings {
    /// 0: not known, for example without a cable.
    std::int64_t speed = 0;
    Duplex duplex = Duplex::Unknown;
    /// Whether speed and duplex are negotiated with the other end.
    bool isNegotiated = false;
    /// The highest speed that both ends can do; nothing where the other end does not tell.
    std::optional<std::int64_t> possibleSpeed;
};

/// Packets for which the adapter has room until the driver takes them.
struct ReceiveRing {
    std::uint32_t packets = 0;
    std::uint32_t mostPackets = 0;
};

/// How long an adapter waits for more packets before it interrupts a processor.
struct InterruptCoalescing {
    std::uint32_t microseconds = 0;
    /// It does not wait longer once it has so many; 0 and 1: it interrupts for each.
    std::uint32_t packets = 0;
    /// The driver changes the time with the traffic.
    bool isAdaptive = false;
};

/// Nothing where the driver does not tell.
std::optional<LinkSettings> linkSettings(const std::string& adapter,
                                         const EthtoolCall& ask = askDriver);
std::optional<ReceiveRing> receiveRing(const std::string& adapter,
                                       const EthtoolCall& ask = askDriver);
std::optional<InterruptCoalescing> interruptCoalescing(const std::string& adapter,
                                                       const EthtoolCall& ask = askDriver);

} // namespace platform
