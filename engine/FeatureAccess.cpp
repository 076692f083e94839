// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FeatureAccess.h"

#include <cmath>
#include <limits>

namespace {

template <typename Type> std::optional<Type> alternative(const FeatureValue& value) {
    const Type* const held = std::get_if<Type>(&value);
    return held ? std::optional<Type>(*held) : std::nullopt;
}

} // namespace

std::optional<std::int64_t> integerOf(const FeatureValue& value) {
    return alternative<std::int64_t>(value);
}

std::optional<double> numberOf(const FeatureValue& value) {
    const auto number = alternative<double>(value);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::string> textOf(const FeatureValue& value) {
    return alternative<std::string>(value);
}

std::int64_t truncated(double value) {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr double bound = 9223372036854775808.0; // 2^63, the first double beyond the range
    if (std::isnan(value))
        return 0;
    if (value >= bound)
        return Limits::max();
    return value <= -bound ? Limits::min() : static_cast<std::int64_t>(value);
}
