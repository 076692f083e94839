// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

namespace host {

/// A number whose bytes are in network order, as this machine has it.
inline std::uint32_t networkToHost(std::uint32_t number) {
    std::array<std::uint8_t, sizeof number> bytes{};
    std::memcpy(bytes.data(), &number, sizeof number);
    return static_cast<std::uint32_t>(bytes[0]) << 24U |
           static_cast<std::uint32_t>(bytes[1]) << 16U |
           static_cast<std::uint32_t>(bytes[2]) << 8U | bytes[3];
}

/// The way back: either bytes are swapped on this machine or they are not.
inline std::uint32_t hostToNetwork(std::uint32_t number) {
    return networkToHost(number);
}

} // namespace host
