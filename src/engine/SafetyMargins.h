// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <cstdint>

/// Percentage of an interface that Auto Set leaves free, and percentage added to what a camera
/// needs.
struct SafetyMargins {
    int interfacePercent;
    int cameraPercent;
};

/// Recommended margins by kind of interface: what is used unless a user chooses others.
inline constexpr SafetyMargins recommendedMarginsGigE{10, 5};
inline constexpr SafetyMargins recommendedMarginsUsb{30, 5};

constexpr SafetyMargins recommendedMargins(OrvTransportLayerType type) {
    return type == OrvTransportLayerTypeGEV ? recommendedMarginsGigE : recommendedMarginsUsb;
}

/// Auto Set divides an interface to half a percent: limits that exceed what is usable by less fit.
inline constexpr double divisionTolerance = 1.005;

/// Bytes per second that cameras may send on a link of \p bitsPerSecond, less a margin.
constexpr double usableBytesPerSecond(std::uint64_t bitsPerSecond, double marginPercent) {
    return static_cast<double>(bitsPerSecond) / 8 * (1 - marginPercent / 100);
}
