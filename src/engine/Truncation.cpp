// SPDX-License-Identifier: BSD-3-Clause
#include "engine/Truncation.h"

#include <cmath>
#include <limits>

std::int64_t truncated(double value) {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr double bound = 9223372036854775808.0; // 2^63, the first double beyond the range
    if (std::isnan(value))
        return 0;
    if (value >= bound)
        return Limits::max();
    return value <= -bound ? Limits::min() : static_cast<std::int64_t>(value);
}
