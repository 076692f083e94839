// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
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
    std::string key() const;
};

/// Reads the name of a folder in sysfs, "0001:0b:0a.1"; nothing for a device of another bus.
/// Reentrant.
std::optional<PciLocation> parsePciLocation(const std::string& folderName);

} // namespace platform
