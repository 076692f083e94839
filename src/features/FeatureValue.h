// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

/// Value of a feature: integer, float, boolean or UTF-8 text, in this order of indices.
/// A default-made value holds the integer 0.
using FeatureValue = std::variant<std::int64_t, double, bool, std::string>;

/// The value as log messages show it: decimal, with six decimals and a point, "true" or "false", or
/// the text itself.
std::string toText(const FeatureValue& value);

/// The value where it has the type that is asked for, else nothing: a camera may describe any
/// feature in any way, and a failed read answers the integer 0.
std::optional<std::int64_t> integerOf(const FeatureValue& value);
/// Nothing, too, when it is infinite or not a number.
std::optional<double> numberOf(const FeatureValue& value);
std::optional<std::string> textOf(const FeatureValue& value);
