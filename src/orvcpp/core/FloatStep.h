// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cmath>

namespace orv {

/// Whether a value that is not below \p minimum is a whole number of increments above it, but for
/// what conversions of numbers cost. Every value is where the increment is 0 or unknown.
inline bool isOnStep(double value, double minimum, double increment) {
    constexpr double tolerance = 1e-6;
    if (!(increment > 0))
        return true;
    const double steps = (value - minimum) / increment;
    return std::abs(steps - std::round(steps)) <= tolerance * std::max(1.0, steps);
}

} // namespace orv
