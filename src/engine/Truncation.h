// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// \p value without its fraction, held to what 64 bits can carry; 0 for what is not a number.
std::int64_t truncated(double value);
