// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace gige {

/// The ways in which a camera gets its IPv4 address after its start, tried in this order.
struct IpConfiguration {
    bool persistent = false;
    bool dhcp = false;
    bool linkLocal = false;
};

/// A GigE Vision camera as its discovery answer describes it. IPv4 addresses are in host byte
/// order, 0 where the camera has none. The texts are the camera's: they may hold anything.
struct DiscoveredCamera {
    std::uint64_t macAddress = 0;
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint32_t gateway = 0;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    /// Name that the user gave the camera; empty where it has none or keeps none.
    std::string userName;
    /// Name of this host's adapter on which the camera answered.
    std::string adapter;
    IpConfiguration supported;
    /// The ways that are switched on.
    IpConfiguration current;
};

/// Reads the discovery acknowledge in \p packet, which may hold anything, to the request \p id.
/// Nothing for any other packet. Leaves the adapter empty. Reentrant.
std::optional<DiscoveredCamera> parseDiscovery(const std::uint8_t* packet, std::size_t size,
                                               std::uint16_t id);

/// ID by which Spanlet shows a camera, "DEV_02FC7F000002" for the MAC address "02:fc:7f:00:00:02";
/// also of other hardware IDs. Only digits and upper-case letters, so that it needs no quoting in a
/// shell.
std::string cameraId(const std::string& hardwareId);

} // namespace gige
