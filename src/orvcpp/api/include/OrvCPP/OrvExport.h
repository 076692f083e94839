// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what the camera SDK's library exports. The SDK's own build defines ORVCPP_BUILDING.
#if defined(_WIN32)
#if defined(ORVCPP_BUILDING)
#define ORVCPP_API __declspec(dllexport)
#else
#define ORVCPP_API __declspec(dllimport)
#endif
#else
#define ORVCPP_API __attribute__((visibility("default")))
#endif
