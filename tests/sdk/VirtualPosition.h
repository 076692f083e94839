// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstring>

/// Position of a virtual member function among its class's, in declaration order; the destructor
/// has position 0. As the Itanium C++ ABI lays it out: the pointer holds 1 plus the offset in the
/// table of functions, in which a destructor has two entries.
template <class Method> int virtualPosition(Method method) {
    static_assert(sizeof(method) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t value = 0;
    std::memcpy(&value, &method, sizeof(value));
    constexpr auto entry = static_cast<std::ptrdiff_t>(sizeof(void*));
    return static_cast<int>((value - 1) / entry) - 1;
}
