// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>

namespace orv {

/// The clock that events and simulated cameras go by.
using Clock = std::chrono::steady_clock;

} // namespace orv
