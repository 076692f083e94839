// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cmath>

namespace orv {

/// Whether \p value, which is at least \p minimum, is a whole number of increments above it, within
/// rounding errors. True without an increment (0 or not a number).
inline bool isOnStep(double value, double minimum, double increment) {
    constexpr double tolerance = 1e-6;
    if (!(increment > 0))
        return true;
    const double steps = (value - minimum) / increment;
    return std::abs(steps - std::round(steps)) <= tolerance * std::max(1.0, steps);
}

} // namespace orv
