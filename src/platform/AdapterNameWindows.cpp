// SPDX-License-Identifier: BSD-3-Clause
#include "platform/NetworkCounters.h"

namespace platform {

std::string adapterWithAddress(std::uint32_t /*address*/) {
    return {};
}

} // namespace platform
