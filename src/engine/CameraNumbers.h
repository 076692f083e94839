// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraList.h"
#include "features/FeatureValue.h"

#include <cstdint>
#include <optional>
#include <string>

class CameraHandler;

/// Reads features that not every camera or SDK has, without a message where one is missing. Bound
/// to the thread of the cameras.

/// Nothing where the module has no such feature, or it cannot be read.
std::optional<FeatureValue> readIfPresent(const CameraHandler& camera, const char* module,
                                          const char* feature);
/// The same of an integer; nothing for a negative one, too.
std::optional<std::uint64_t> readCount(const CameraHandler& camera, const char* module,
                                       const char* feature);
/// Name of the network adapter that the cameras share; empty where it is not known.
std::string adapterOf(const CameraList& cameras);
