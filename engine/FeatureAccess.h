// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureValue.h"

#include <cstdint>
#include <optional>
#include <string>

/// Feature values as the engine needs them. A value of another type than asked for counts as
/// absent: a camera may describe any feature in any way, and a failed read answers the integer 0.
std::optional<std::int64_t> integerOf(const FeatureValue& value);
/// Absent, too, when it is infinite or not a number.
std::optional<double> numberOf(const FeatureValue& value);
std::optional<std::string> textOf(const FeatureValue& value);

/// \p value without its fraction, held to what 64 bits can carry; 0 for what is not a number.
std::int64_t truncated(double value);

/// Module names of the feature controller.
inline constexpr char cameraModule[] = "Camera";
inline constexpr char localDeviceModule[] = "Local Device";
inline constexpr char firstStreamModule[] = "Stream0";
