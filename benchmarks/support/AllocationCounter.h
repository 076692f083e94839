// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// Calls of the global operator new in this program so far, on any thread.
std::uint64_t allocationCount();
