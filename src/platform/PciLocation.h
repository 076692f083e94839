// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace platform {

/// Place of a device on the PCI bus.
struct PciLocation {
    /// Number of the bus, plus 256 times its PCI domain: each domain numbers its buses from 0.
    std::uint32_t bus = 0;
    std::uint32_t device = 0;
    std::uint32_t function = 0;

    /// "bus-device-function", decimal. Identifies a USB host controller; the names of its
    /// interfaces contain it.
    std::string key() const {
        return std::to_string(bus) + '-' + std::to_string(device) + '-' + std::to_string(function);
    }
};

/// Reads the name of a folder in sysfs, "0001:0b:0a.1"; nothing for a device of another bus.
/// Reentrant.
inline std::optional<PciLocation> parsePciLocation(const std::string& folderName) {
    constexpr std::uint32_t busesOfADomain = 256;
    unsigned domain = 0;
    PciLocation location;
    char more = 0;
    const int parsed = std::sscanf(folderName.c_str(), "%x:%2x:%2x.%1x%c", &domain, &location.bus,
                                   &location.device, &location.function, &more);
    if (parsed != 4)
        return std::nullopt;
    location.bus += domain * busesOfADomain;
    return location;
}

} // namespace platform
