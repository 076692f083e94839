// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

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
