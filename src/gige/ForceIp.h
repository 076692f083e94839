// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/NetworkAdapters.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace gige {

/// IPv4 settings of a camera in host byte order; a gateway of 0 is none.
struct IpSettings {
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint32_t gateway = 0;
};

/// The data of the command FORCEIP for one camera (GigE Vision 2.2, 16.2). Reentrant.
std::vector<std::uint8_t> forceIpData(std::uint64_t macAddress, const IpSettings& settings);

/// Tells a camera on the network of \p adapter to take \p settings at once, until it is restarted.
/// Answers the status of its acknowledge, 0 for success; nothing when none came within a second,
/// which says little: a camera need not send one. Reentrant.
std::optional<std::uint16_t> forceIp(const platform::NetworkAdapter& adapter,
                                     std::uint64_t macAddress, const IpSettings& settings);

} // namespace gige
