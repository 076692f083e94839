// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orv {

/// Hands \p elements out through an array and a count: without an array the count needed is
/// stored, with one the elements are copied and counted. OrvErrorMoreData when it is too short.
template <typename Element, typename Given>
OrvErrorType handOut(const std::vector<Element>& elements, Given* array, std::uint32_t& count) {
    const auto needed = static_cast<std::uint32_t>(elements.size());
    const bool fits = !array || count >= needed;
    count = needed;
    if (!fits)
        return OrvErrorMoreData;
    if (array)
        std::copy(elements.begin(), elements.end(), array);
    return OrvErrorSuccess;
}

/// The same for a text, through a buffer and a length in bytes, without a terminator.
inline OrvErrorType handOut(const std::string& text, char* buffer, std::uint32_t& length) {
    const auto needed = static_cast<std::uint32_t>(text.size());
    const bool fits = !buffer || length >= needed;
    length = needed;
    if (!fits)
        return OrvErrorMoreData;
    if (buffer)
        std::copy(text.begin(), text.end(), buffer);
    return OrvErrorSuccess;
}

} // namespace orv
