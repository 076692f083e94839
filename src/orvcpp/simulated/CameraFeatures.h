// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureSet.h"
#include "orvcpp/simulated/CameraSettings.h"
#include "orvcpp/simulated/FrameSource.h"

namespace orv::simulated {

/// Features of the module "Camera". The model must outlive them.
FeatureSet makeCameraFeatures(CameraSettings& settings, const StreamStatistics& statistics,
                              bool isUsb);

/// The part of them that shapes the image and decides how many frames are sent, in the categories
/// "/ImageFormatControl", "/AcquisitionControl" and "/DeviceControl/Link".
void addImageFormatFeatures(FeatureSet& set, CameraSettings& settings);
void addAcquisitionFeatures(FeatureSet& set, CameraSettings& settings,
                            const StreamStatistics& statistics);
void addBandwidthFeatures(FeatureSet& set, CameraSettings& settings, bool isUsb);

/// The part that is kept and given back, and has no effect on what is simulated.
void addSettingFeatures(FeatureSet& set, CameraSettings& settings);

/// \p count features more that are kept and given back, "Extra00001" and so on, of the types
/// integer, float, enumeration, boolean and string, for cameras of any size.
void addExtraFeatures(FeatureSet& set, std::int64_t count);

} // namespace orv::simulated
