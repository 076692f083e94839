// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureValue.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

struct Text {
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const std::string& value) const { return value; }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    /// As "%f" writes it, but with a point in every locale.
    std::string operator()(double value) const {
        constexpr int decimals = 6;
        // Room for the longest number there is.
        std::array<char, std::numeric_limits<double>::max_exponent10 + decimals + 4> text;
        const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                       std::chars_format::fixed, decimals);
        return {text.data(), end.ptr};
    }
};

template <typename Type> std::optional<Type> alternative(const FeatureValue& value) {
    const Type* const held = std::get_if<Type>(&value);
    return held ? std::optional<Type>(*held) : std::nullopt;
}

} // namespace

std::string toText(const FeatureValue& value) {
    return std::visit(Text{}, value);
}

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
