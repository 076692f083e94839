// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureSet.h"
#include "orvcpp/simulated/CameraSettings.h"
#include "orvcpp/simulated/FrameSource.h"
#include "orvcpp/simulated/Scenario.h"

#include <string>

namespace orv::simulated {

/// Features of the modules other than "Camera". Arguments by reference must outlive them.
FeatureSet makeTransportLayerFeatures(const Scenario& scenario, std::size_t layer);
FeatureSet makeInterfaceFeatures(const Scenario& scenario, std::size_t interface);
FeatureSet makeLocalDeviceFeatures(const Scenario& scenario, const CameraSettings& settings);
FeatureSet makeStreamFeatures(CameraSettings& settings, const StreamStatistics& statistics,
                              bool isUsb);

/// Place of a USB camera: "::", the controller's number from 1, and the ports from the controller
/// down, each after a "/".
std::string deviceLocation(const Scenario& scenario, const CameraData& camera);

} // namespace orv::simulated
