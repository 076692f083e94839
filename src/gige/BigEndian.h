// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <vector>

namespace gige {

/// Numbers in network byte order, as packets of cameras have them. Reentrant.
inline std::uint16_t bigEndian16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8U | bytes[1]);
}

inline std::uint32_t bigEndian32(const std::uint8_t* bytes) {
    return std::uint32_t{bigEndian16(bytes)} << 16U | bigEndian16(bytes + 2);
}

inline std::uint64_t bigEndian64(const std::uint8_t* bytes) {
    return std::uint64_t{bigEndian32(bytes)} << 32U | bigEndian32(bytes + 4);
}

/// Appends the lowest \p count bytes of \p number.
inline void appendBigEndian(std::vector<std::uint8_t>& bytes, std::uint64_t number, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> static_cast<unsigned>(shift)));
}

} // namespace gige
