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

/// The value if it has that type, else nothing: a camera may give any feature any type, and a
/// failed read returns the integer 0.
std::optional<std::int64_t> integerOf(const FeatureValue& value);
/// Also nothing when it is infinite or NaN.
std::optional<double> numberOf(const FeatureValue& value);
std::optional<std::string> textOf(const FeatureValue& value);
