// SPDX-License-Identifier: BSD-3-Clause
#include "platform/AddressText.h"

#include <bitset>
#include <cstdio>

namespace platform {

std::string addressText(std::uint32_t address) {
    char text[16];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", address >> 24U, address >> 16U & 0xFFU,
                  address >> 8U & 0xFFU, address & 0xFFU);
    return text;
}

std::string addressText(std::uint32_t address, std::uint32_t mask) {
    return addressText(address) + '/' + std::to_string(std::bitset<32>(mask).count());
}

std::string macText(std::uint64_t mac) {
    std::string text;
    for (int shift = 40; shift >= 0; shift -= 8) {
        char byte[3];
        std::snprintf(byte, sizeof byte, "%02x", static_cast<unsigned>(mac >> shift & 0xFFU));
        text += (text.empty() ? "" : ":") + std::string(byte);
    }
    return text;
}

} // namespace platform
