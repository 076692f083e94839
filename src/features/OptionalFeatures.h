// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureValue.h"

#include <cstdint>
#include <optional>

class FeatureController;

/// Reads features that not every camera or SDK has, without a message where one is missing. Bound
/// to the thread of the camera.

/// Nothing where the module has no such feature, or it cannot be read.
std::optional<FeatureValue> readIfPresent(const FeatureController& features, const char* module,
                                          const char* feature);
/// The same of an integer; nothing for a negative one, too.
std::optional<std::uint64_t> readCount(const FeatureController& features, const char* module,
                                       const char* feature);
