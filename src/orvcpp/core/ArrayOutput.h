// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <algorithm>
#include <cstdint>

namespace orv {

/// Hands the elements of a list, or the bytes of a text without a terminator, out through an array
/// and a count: without an array the count needed is stored, with one the elements are copied and
/// counted. OrvErrorMoreData when it is too short.
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
