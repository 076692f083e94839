// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <algorithm>
#include <cstdint>

namespace orv {

/// Copies the elements of a list, or the bytes of a text without a terminator, to a caller's array.
/// Without an array, only stores the needed count. OrvErrorMoreData when the array is too short.
template <typename List, typename Element>
OrvErrorType writeArray(const List& elements, Element* array, std::uint32_t& count) {
    const auto needed = static_cast<std::uint32_t>(elements.size());
    const bool fits = !array || count >= needed;
    count = needed;
    if (!fits)
        return OrvErrorMoreData;
    if (array)
        std::copy(elements.begin(), elements.end(), array);
    return OrvErrorSuccess;
}

} // namespace orv
