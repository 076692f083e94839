// SPDX-License-Identifier: BSD-3-Clause
#include "gige/Subnet.h"

#include "platform/Ipv4Address.h"

#include <algorithm>

namespace gige {

bool Subnet::isHost(std::uint32_t address) const {
    return contains(address) && address != network() && address != broadcast();
}

std::string Subnet::text() const {
    return platform::addressText(network()) + '/' + std::to_string(prefixOfMask(m_mask));
}

std::optional<AddressRange> Subnet::longestFree(std::vector<std::uint32_t> used) const {
    used.push_back(network());
    used.push_back(broadcast());
    used.erase(std::remove_if(used.begin(), used.end(),
                              [this](std::uint32_t address) { return !contains(address); }),
               used.end());
    std::sort(used.begin(), used.end());
    std::uint32_t longest = 1;
    std::optional<AddressRange> range;
    for (std::size_t i = 1; i < used.size(); ++i) {
        const std::uint32_t distance = used[i] - used[i - 1];
        if (distance > longest) {
            longest = distance;
            range = AddressRange{used[i - 1] + 1, used[i] - 1};
        }
    }
    return range;
}

std::uint32_t maskOfPrefix(int bits) {
    return 0xFFFFFFFFU << static_cast<unsigned>(32 - bits);
}

int prefixOfMask(std::uint32_t mask) {
    int bits = 0;
    for (; (mask & 0x80000000U) != 0; mask <<= 1U)
        ++bits;
    return bits;
}

} // namespace gige
