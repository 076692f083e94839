// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

namespace host {

/// Converts from network to host byte order.
inline std::uint32_t networkToHost(std::uint32_t number) {
    std::array<std::uint8_t, sizeof number> bytes{};
    std::memcpy(bytes.data(), &number, sizeof number);
    return static_cast<std::uint32_t>(bytes[0]) << 24U |
           static_cast<std::uint32_t>(bytes[1]) << 16U |
           static_cast<std::uint32_t>(bytes[2]) << 8U | bytes[3];
}

/// Converts from host to network byte order, which is the same operation.
inline std::uint32_t hostToNetwork(std::uint32_t number) {
    return networkToHost(number);
}

} // namespace host
