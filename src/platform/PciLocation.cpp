// SPDX-License-Identifier: BSD-3-Clause
#include "platform/PciLocation.h"

#include <cstdio>

namespace platform {

std::string PciLocation::key() const {
    return std::to_string(bus) + '-' + std::to_string(device) + '-' + std::to_string(function);
}

std::optional<PciLocation> parsePciLocation(const std::string& folderName) {
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
