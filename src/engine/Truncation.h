// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// \p value without its fraction, limited to the range of 64 bits; 0 for NaN. Thread-safe.
std::int64_t truncated(double value);
