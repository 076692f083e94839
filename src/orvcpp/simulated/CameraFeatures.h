// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureSet.h"
#include "orvcpp/simulated/CameraSettings.h"
#include "orvcpp/simulated/FrameSource.h"

namespace orv::simulated {

/// Features of the module "Camera". The model must outlive them.
FeatureSet makeCameraFeatures(CameraSettings& settings, const StreamStatistics& statistics,
                              bool isUsb);

/// The features that determine image and frame rate, in the categories "/ImageFormatControl",
/// "/AcquisitionControl" and "/DeviceControl/Link".
void addImageFormatFeatures(FeatureSet& set, CameraSettings& settings);
void addAcquisitionFeatures(FeatureSet& set, CameraSettings& settings,
                            const StreamStatistics& statistics);
void addBandwidthFeatures(FeatureSet& set, CameraSettings& settings, bool isUsb);

/// Features that only store their values, without an effect on the simulation.
void addSettingFeatures(FeatureSet& set, CameraSettings& settings);

/// \p count further features that only store their values, named "Extra00001" and so on, of the
/// types integer, float, enumeration, boolean and string.
void addExtraFeatures(FeatureSet& set, std::int64_t count);

} // namespace orv::simulated
