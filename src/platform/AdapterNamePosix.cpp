// SPDX-License-Identifier: BSD-3-Clause
#include "platform/NetworkAdapters.h"
#include "platform/NetworkCounters.h"

namespace platform {

std::string adapterWithAddress(std::uint32_t address) {
    const auto adapters = networkAdapters();
    if (!adapters)
        return {};
    for (const NetworkAdapter& adapter : *adapters)
        if (adapter.address == address)
            return adapter.name;
    return {};
}

} // namespace platform
