// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace orv::aravis {

class FeatureCatalogue;

/// Locks or unlocks the settings that must not change during an acquisition, on cameras that have
/// the feature TLParamsLocked (SFNC) for it. On the device's thread only.
void lockSettings(const FeatureCatalogue& features, bool isLocked);

} // namespace orv::aravis
